#include "base/xml_text.h"

#include <string_view>

pugi::xml_parse_result ParseXmlText(pugi::xml_document& document, std::string& text) {
    constexpr unsigned int kOptions = pugi::parse_cdata | pugi::parse_wconv_attribute | pugi::parse_eol;
    return document.load_buffer_inplace(text.data(), text.size(), kOptions, pugi::encoding_utf8);
}

const char* AttributeOrNull(const pugi::xml_node& node, const char* name) {
    const pugi::xml_attribute attribute = node.attribute(name);
    return attribute ? attribute.value() : nullptr;
}

const char* TextOrNull(const pugi::xml_node& node) {
    for (const pugi::xml_node& child : node.children()) {
        const bool isText = child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata;
        if (isText && *child.value() != '\0') return child.value();
    }
    return nullptr;
}

pugi::xml_node FindElement(const pugi::xml_node& root, const char* name) {
    return root.find_node(
        [name](const pugi::xml_node& node) { return std::string_view(node.name()) == name; });
}
