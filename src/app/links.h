#pragma once

#include <pugixml.hpp>
#include <string>
#include <string_view>

// The web links. All of them go through one redirect service, which decides where each ends.

struct tagAPP_LINKS {
    std::string urlSupport;
    std::string urlCompany;
    std::string urlProduct;  // built and overridden, and opened by nothing
    std::string urlHelp;
    std::string urlUid;     // "&uid=" with the affiliate
    std::string urlSuffix;  // the tail that ends every link
};

// `host` stands in front of each path; without one the links lead nowhere, and OpenLink does not open them.
tagAPP_LINKS BuildLinks(std::string_view host, unsigned int productId, const std::string& affiliate);

// The affiliate of this user's installation; "0" unless there is one.
std::string ReadAffiliate();

// Puts the links of a distribution, elements at whatever depth of its settings file, in place of ours.
void OverrideLinks(const pugi::xml_node& settings, tagAPP_LINKS& links);

// True for what begins with http:// or https://, in any letter case, and holds no quote, backslash nor
// control character, with which it could be more than one argument to a browser.
bool IsWebLink(std::string_view link);

// Hands a web link to the shell. Anything else, which a settings file may name, is not opened; nor is null. A
// failure has no effect and shows nothing.
void OpenLink(const char* link);
