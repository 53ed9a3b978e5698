#include "app/xml_file.h"

#include "base/xml_text.h"
#include "system/files.h"

namespace {

// No file of ours comes near it, and what is larger is not worth the memory.
constexpr std::uint32_t kLargestFile = 1024 * 1024;

}  // namespace

bool LoadXmlFile(const std::string& path, XmlFile& file) {
    const auto content = ReadWholeFile(path.c_str(), kLargestFile);
    if (!content) return false;
    file.text.assign(content->begin(), content->end());
    // The text is one that ends at its first zero.
    file.text.resize(std::char_traits<char>::length(file.text.c_str()));
    return ParseXmlText(file.document, file.text);
}
