#include <pugixml.hpp>

#include "base/db_container.h"
#include "base/reference_pass.h"
#include "fuzz.h"

namespace {

bool PlainReplace(std::string& text, const std::string& from, const std::string& to) {
    bool replaced = false;
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
        text.replace(at, from.size(), to);
        replaced = true;
    }
    return replaced;
}

}  // namespace

// The whole road of a definitions file that is plain text under the key: text, references, document.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::vector<std::uint8_t> file(data, data + size);
    for (auto& byte : file) byte ^= 0x5B;
    std::string text = DbFileText(file);
    FUZZ_CHECK(text.size() <= size * 1032);

    std::string expected = text;
    const bool replaced = PlainReplace(expected, "&amp;", "&") || PlainReplace(expected, "&apos;", "'") ||
                          PlainReplace(expected, "&quot;", "\"");
    FUZZ_CHECK(ResolveReferences(text) == replaced);
    FUZZ_CHECK(text == expected);

    pugi::xml_document document;
    constexpr unsigned kOptions = pugi::parse_cdata | pugi::parse_wconv_attribute | pugi::parse_eol;
    if (!document.load_buffer_inplace(text.data(), text.size(), kOptions, pugi::encoding_utf8)) return 0;
    const auto isRoot = [](pugi::xml_node node) { return std::string(node.name()) == "xclean_def"; };
    std::size_t characters = 0;
    for (const pugi::xml_node category : document.find_node(isRoot))
        for (const pugi::xml_attribute attribute : category.attributes())
            characters += std::string(attribute.value()).size();
    FUZZ_CHECK(characters <= expected.size());
    return 0;
}
