#include "system/redirection_table.h"

#include <gtest/gtest.h>

#include "support/api_hook.h"

namespace {

TEST(RedirectionRows, AreThereForVersions60And61UnderWow64Only) {
    struct {
        DWORD major, minor;
        bool isWow64, inForce;
    } const cases[] = {{6, 0, true, true},  {6, 1, true, true},  {6, 0, false, false}, {6, 1, false, false},
                       {5, 2, true, false}, {6, 2, true, false}, {10, 0, true, false}};
    for (const auto& row : cases) {
        const RegRedirectionRows rows = BuildRegRedirectionRows(row.major, row.minor, row.isWow64);
        EXPECT_EQ(rows.inForce, row.inForce) << row.major << "." << row.minor;
        EXPECT_EQ(NeedsNativeView(rows, "HKEY_CURRENT_USER\\Software\\Foo"), row.inForce);
    }
}

struct LookupCase {
    const char* description;
    const char* keyPath;
    bool needs60;
    bool needs61;
};

const LookupCase kLookupCases[] = {
    {"only the user's root matches", "HKEY_CURRENT_USER\\Software\\Foo", true, true},
    {"SOFTWARE beats the root", "HKEY_LOCAL_MACHINE\\SOFTWARE\\Foo", false, false},
    {"Classes beats SOFTWARE", "HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\Foo", true, true},
    {"CLSID beats Classes", "HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\CLSID\\{x}", false, false},
    {"kept: a path that is doubled in its row",
     "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Shared Tools\\MSInfo", false, false},
    {"shared since 6.1", "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths", false,
     true},
    {"redirected since 6.1", "HKEY_CURRENT_USER\\SOFTWARE\\Classes\\Interface\\x", true, false},
    {"a longer name with a row at its start", "HKEY_LOCAL_MACHINE\\SOFTWARE\\Policies2", true, true},
    {"the empty text", "", true, true},
};

TEST(RedirectionLookup, TheLongestRowDecides) {
    const RegRedirectionRows rows60 = BuildRegRedirectionRows(6, 0, true);
    const RegRedirectionRows rows61 = BuildRegRedirectionRows(6, 1, true);
    for (const LookupCase& row : kLookupCases) {
        EXPECT_EQ(NeedsNativeView(rows60, row.keyPath), row.needs60) << row.description;
        EXPECT_EQ(NeedsNativeView(rows61, row.keyPath), row.needs61) << row.description;
    }
    RegRedirectionRows tie;
    tie.inForce = true;
    tie.redirectedLower = {"abc"};
    tie.sharedLower = {"bcd"};
    EXPECT_TRUE(NeedsNativeView(tie, "ABCD")) << "a tie is not redirected";
    EXPECT_FALSE(NeedsNativeView(tie, "ABC"));
}

TEST(RedirectionTable, IsBuiltForTheRunningSystemAndFreed) {
    auto wow64 = LATE_BOUND_HOOK(IsWow64Process);
    wow64.Replace([](HANDLE, PBOOL answer) { return *answer = TRUE; });
    auto version = API_HOOK(GetVersionExA);
    version.Replace([](OSVERSIONINFOA* answer) {
        answer->dwMajorVersion = 6;
        answer->dwMinorVersion = 1;
        return TRUE;
    });
    InitRegRedirectionTable();
    EXPECT_TRUE(IsRegTableInForce());
    EXPECT_TRUE(RegViewNeeds64Key("HKEY_CURRENT_USER\\Software\\Foo"));
    EXPECT_FALSE(RegViewNeeds64Key("HKEY_LOCAL_MACHINE\\SOFTWARE\\Foo"));
    EXPECT_FALSE(RegViewNeeds64Key(nullptr));
    FreeRegRedirectionTable();
    EXPECT_FALSE(RegViewNeeds64Key("HKEY_CURRENT_USER\\Software\\Foo"));
}

}  // namespace
