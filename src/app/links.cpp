#include "app/links.h"

#include <windows.h>
// Behind windows.h, which it does not include by itself.
#include <shellapi.h>

#include <algorithm>

#include "base/xml_text.h"
#include "system/registry.h"

namespace {

std::string LinkPath(int link, unsigned int productId) {
    return "redirect/?aid=" + std::to_string(link) + "&vid=31245&pid=" + std::to_string(productId) +
           "&lid=en";
}

bool StartsWithAnyCase(std::string_view text, std::string_view lowerStart) {
    return text.size() >= lowerStart.size() &&
           std::equal(lowerStart.begin(), lowerStart.end(), text.begin(), [](char expected, char c) {
               return expected == (c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c);
           });
}

// The element's value followed by `tail`; without a value `link` stays.
void OverrideLink(const pugi::xml_node& settings, const char* element, const std::string& tail,
                  std::string& link) {
    if (const char* value = TextOrNull(FindElement(settings, element))) link = value + tail;
}

}  // namespace

tagAPP_LINKS BuildLinks(std::string_view host, unsigned int productId, const std::string& affiliate) {
    tagAPP_LINKS links;
    links.urlUid = "&uid=" + affiliate;
    // kept: the tail repeats what each path has already, and with a fixed 5.
    links.urlSuffix = "&vid=31245&pid=5&lid=en" + links.urlUid;
    const auto build = [&](int link) {
        return std::string(host) + LinkPath(link, productId) + links.urlSuffix;
    };
    links.urlProduct = build(1);
    links.urlSupport = build(2);
    links.urlCompany = build(6);
    links.urlHelp = build(18);
    return links;
}

std::string ReadAffiliate() {
    // kept: the key's name is the pattern itself, per cent signs and all, which no installer fills in.
    return RegReadText(HKEY_CURRENT_USER, "Software\\%s\\%s %s", "AffiliateID", "0");
}

void OverrideLinks(const pugi::xml_node& settings, tagAPP_LINKS& links) {
    // The tail comes first: the links behind it take the new one. kept: a link that is not overridden keeps
    // the old one.
    OverrideLink(settings, "CUSTOMIZATION", links.urlUid, links.urlSuffix);
    OverrideLink(settings, "URLPROD", links.urlSuffix, links.urlProduct);
    OverrideLink(settings, "URLSUPPORT", links.urlSuffix, links.urlSupport);
    OverrideLink(settings, "URLCOMPANY", links.urlSuffix, links.urlCompany);
    OverrideLink(settings, "URLHELP", links.urlSuffix, links.urlHelp);
}

bool IsWebLink(std::string_view link) {
    const bool isHarmless = std::ranges::none_of(link, [](char c) {
        return c == '"' || c == '\\' || static_cast<unsigned char>(c) < ' ' || c == '\x7F';
    });
    return isHarmless && (StartsWithAnyCase(link, "http://") || StartsWithAnyCase(link, "https://"));
}

void OpenLink(const char* link) {
    if (link == nullptr || !IsWebLink(link)) return;
    ::ShellExecuteA(nullptr, "open", link, nullptr, nullptr, SW_SHOWNORMAL);
}
