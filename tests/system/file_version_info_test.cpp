#include "system/file_version_info.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "support/api_hook.h"
#include "system/system_facts.h"

namespace {

// Has five languages, each with its own name for the product's version: French, British English, the neutral
// one, Swiss German and German.
std::string VersionFile() {
    return ProgramFolder() + "versions.dll";
}

TEST(FileVersionInfo, SpeaksTheLanguageThatSuitsTheUserBest) {
    constexpr LANGID kBritish = 0x0809, kAmerican = 0x0409, kGerman = 0x0407, kAustrian = 0x0C07,
                     kTurkish = 0x041F;
    const struct {
        const char* behaviour;
        UINT bytes;  // of the list of languages, of four bytes each
        LANGID user;
        const char* version;
    } rows[] = {
        {"the user's own, with its own code page", 20, kGerman, "German"},
        {"the first of the user's primary language", 20, kAustrian, "Swiss"},
        {"which goes before the neutral one", 20, kAmerican, "British"},
        {"the neutral one", 20, kTurkish, "neutral"},
        {"English", 8, kTurkish, "British"},
        {"the first", 4, kTurkish, "French"},
        {"a list that does not end", 0xFFFFFFFC, kBritish, "British"},
        {"no language", 3, kBritish, ""},
    };
    auto user = API_HOOK(GetUserDefaultLangID);
    auto query = API_HOOK(VerQueryValueA);
    CFileVersionInfo info;
    for (const auto& row : rows) {
        user.Replace([&] { return row.user; });
        query.Replace([&](LPCVOID block, LPCSTR name, LPVOID* data, PUINT length) {
            const BOOL found = query.Real()(block, name, data, length);
            if (std::strcmp(name, "\\VarFileInfo\\Translation") == 0) *length = row.bytes;
            return found;
        });
        EXPECT_EQ(info.Create(VersionFile().c_str()), *row.version != '\0') << row.behaviour;
        EXPECT_EQ(info.GetProductVersion(), row.version) << row.behaviour;
        EXPECT_EQ(info.GetFixedInfo().dwFileVersionMS, 0x00010002u);
    }
}

TEST(FileVersionInfo, OfAModuleForgetsTheOneBefore) {
    const HMODULE module = ::LoadLibraryA(VersionFile().c_str());
    CFileVersionInfo info;
    EXPECT_TRUE(info.CreateFromModule(module));
    EXPECT_EQ(info.GetCompanyName(), "Tests");
    EXPECT_FALSE(info.CreateFromModule(nullptr)) << "this program has no version";
    EXPECT_EQ(info.GetCompanyName(), "");
    EXPECT_EQ(info.GetFixedInfo().dwFileVersionMS, 0u);
    ::FreeLibrary(module);
}

TEST(ShortVersion, HasPointsAndAtMostThreeNumbers) {
    EXPECT_EQ(ShortVersion("3, 1, 1, 4"), "3.1.1");
    EXPECT_EQ(ShortVersion("3.1.1.4.5"), "3.1.1");
    EXPECT_EQ(ShortVersion("3, 1, 1"), "3.1.1");
    EXPECT_EQ(ShortVersion("3, 1"), "3.1");
    EXPECT_EQ(ShortVersion("3,1"), "3,1");
    EXPECT_EQ(ShortVersion(""), "");
}

}  // namespace
