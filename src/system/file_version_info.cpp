#include "system/file_version_info.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string_view>
#include <vector>

#include "system/system_facts.h"

namespace {

// The system finds its way in a resource by the lengths and the ends of texts in it, and whoever made the
// file may have written anything there. A length has 16 bits, of a text in units of two bytes, and a text is
// converted into the memory as far behind the resource as its length says: with so many zeros there, what the
// system follows ends within our memory.
constexpr std::size_t kZerosBehind = 4 * 65536;

// No resource whose lengths have 16 bits needs more.
constexpr DWORD kLargestResource = 1024 * 1024;

struct Translation {
    WORD language;
    WORD codePage;
};
static_assert(sizeof(Translation) == 4);
static_assert(sizeof(VS_FIXEDFILEINFO) == 52);

bool ReadResource(const char* fileName, std::vector<char>& resource) {
    DWORD ignored = 0;
    const DWORD size = ::GetFileVersionInfoSizeA(fileName, &ignored);
    if (size == 0 || size > kLargestResource) return false;
    resource.assign(size + kZerosBehind, '\0');
    return ::GetFileVersionInfoA(fileName, 0, size, resource.data()) != FALSE;
}

// An entry of the resource as far as it lies in our memory; nothing when it is missing or empty. `length` is
// what the system tells, in its own unit: bytes of data, or characters of a text.
struct Entry {
    std::string_view upToTheEnd;  // from its first byte to the end of our memory
    std::size_t length;
    std::string_view Bytes() const { return upToTheEnd.substr(0, length); }
};
std::optional<Entry> FindEntry(std::vector<char>& resource, const std::string& name) {
    void* data = nullptr;
    UINT length = 0;
    if (!::VerQueryValueA(resource.data(), name.c_str(), &data, &length) || length == 0) return std::nullopt;
    // As numbers, for pointers into different blocks have no order.
    const auto first = reinterpret_cast<std::uintptr_t>(data);
    const auto begin = reinterpret_cast<std::uintptr_t>(resource.data());
    if (first < begin || first - begin >= resource.size()) return std::nullopt;
    const std::string_view all(resource.data(), resource.size());
    return Entry{all.substr(first - begin), length};
}

std::vector<Translation> ReadTranslations(std::vector<char>& resource) {
    const auto entry = FindEntry(resource, "\\VarFileInfo\\Translation");
    if (!entry) return {};
    const std::string_view bytes = entry->Bytes();
    std::vector<Translation> translations(bytes.size() / sizeof(Translation));  // half a pair is none
    if (!translations.empty()) {
        std::memcpy(translations.data(), bytes.data(), translations.size() * sizeof(Translation));
    }
    return translations;
}

// The pair that suits the user best. `translations` has at least one.
Translation PickTranslation(const std::vector<Translation>& translations) {
    const LANGID user = ::GetUserDefaultLangID();
    const auto exact = std::ranges::find(translations, user, &Translation::language);
    if (exact != translations.end()) return *exact;
    const auto primary = [](const Translation& translation) { return PRIMARYLANGID(translation.language); };
    for (const int language : {PRIMARYLANGID(user), LANG_NEUTRAL, LANG_ENGLISH}) {
        const auto found = std::ranges::find(translations, language, primary);
        if (found != translations.end()) return *found;
    }
    return translations.front();
}

}  // namespace

const CFileVersionInfo::NamedText CFileVersionInfo::kTexts[] = {
    {"CompanyName", &CFileVersionInfo::companyName},
    {"FileDescription", &CFileVersionInfo::fileDescription},
    {"FileVersion", &CFileVersionInfo::fileVersion},
    {"InternalName", &CFileVersionInfo::internalName},
    {"LegalCopyright", &CFileVersionInfo::legalCopyright},
    {"OriginalFileName", &CFileVersionInfo::originalFileName},
    {"ProductName", &CFileVersionInfo::productName},
    {"ProductVersion", &CFileVersionInfo::productVersion},
    {"Comments", &CFileVersionInfo::comments},
    {"LegalTrademarks", &CFileVersionInfo::legalTrademarks},
    {"PrivateBuild", &CFileVersionInfo::privateBuild},
    {"SpecialBuild", &CFileVersionInfo::specialBuild},
};

void CFileVersionInfo::Reset() {
    fixedInfo = {};
    for (const NamedText& row : kTexts) (this->*row.text).clear();
}

bool CFileVersionInfo::Create(const char* fileName) {
    Reset();
    std::vector<char> resource;
    if (!ReadResource(fileName, resource)) return false;

    const auto fixed = FindEntry(resource, "\\");
    if (fixed && fixed->Bytes().size() == sizeof fixedInfo) {
        std::memcpy(&fixedInfo, fixed->Bytes().data(), sizeof fixedInfo);
    }

    const std::vector<Translation> translations = ReadTranslations(resource);
    if (translations.empty()) return false;
    const Translation picked = PickTranslation(translations);
    char prefix[32];
    std::snprintf(prefix, sizeof prefix, "\\StringFileInfo\\%04X%04X\\", picked.language, picked.codePage);
    for (const NamedText& row : kTexts) {
        const auto entry = FindEntry(resource, std::string(prefix) + row.name);
        if (!entry) continue;
        // Its length may be that of the text before it was converted, so that its end counts.
        const std::string_view text = entry->upToTheEnd;
        this->*row.text = text.substr(0, text.find('\0'));
    }
    return true;
}

bool CFileVersionInfo::CreateFromModule(HMODULE module) {
    return Create(ModulePath(module).c_str());
}

std::string ShortVersion(std::string text) {
    for (std::size_t at = text.find(", "); at != std::string::npos; at = text.find(", ", at + 1)) {
        text.replace(at, 2, ".");
    }
    std::size_t point = text.find('.');
    for (int further = 0; further < 2 && point != std::string::npos; ++further) {
        point = text.find('.', point + 1);
    }
    if (point != std::string::npos) text.resize(point);
    return text;
}
