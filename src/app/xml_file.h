#pragma once

#include <pugixml.hpp>
#include <string>

// An XML file that was read. It stays where it is: the document stands on the text.
struct XmlFile {
    std::string text;
    pugi::xml_document document;
};

// False when the file is missing, too large, not read to its end, or no XML.
bool LoadXmlFile(const std::string& path, XmlFile& file);
