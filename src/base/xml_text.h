#pragma once

#include <pugixml.hpp>
#include <string>

// The one way in which the program reads XML: its definitions, the user's item states, its preferences.

// Parses `text` in place, which must outlive `document`. Nothing is decoded, a bare "&" is accepted, and the
// bytes of names and values stay as they are. False when it is no XML; the result then says where and why.
pugi::xml_parse_result ParseXmlText(pugi::xml_document& document, std::string& text);

// The value of an attribute, or null when it is not there.
const char* AttributeOrNull(const pugi::xml_node& node, const char* name);

// The text of the first child that carries any; null when none does. Belongs to the document.
const char* TextOrNull(const pugi::xml_node& node);

// The first element of a name below `root`, depth first; empty when there is none.
pugi::xml_node FindElement(const pugi::xml_node& root, const char* name);
