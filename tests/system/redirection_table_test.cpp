#include "system/redirection_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "support/api_hook.h"
#include "support/sandbox.h"
#include "system/registry.h"

namespace {

using Rows = std::vector<std::string>;

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

// Classes of the machine, made for a test and removed after it.
class TestClass {
  public:
    explicit TestClass(const char* name, const char* server)
        : m_path(std::string("SOFTWARE\\Classes\\CLSID\\") + name) {
        HKEY key = nullptr;
        ::RegCreateKeyExA(HKEY_LOCAL_MACHINE, (m_path + "\\" + server).c_str(), 0, nullptr, 0, KEY_READ,
                          nullptr, &key, nullptr);
        ::RegCloseKey(key);
    }
    ~TestClass() { ::RegDeleteTreeA(HKEY_LOCAL_MACHINE, m_path.c_str()); }
    TestClass(const TestClass&) = delete;
    TestClass& operator=(const TestClass&) = delete;

    std::string MachineRow() const { return "HKEY_LOCAL_MACHINE\\" + m_path; }

  private:
    std::string m_path;
};

TEST(RedirectionRows, Of60ShareClassesWithoutAnInProcessServer) {
    const TestClass server("{7E1A0001-0000-4000-8000-56656C76616E}", "InprocServer32");
    const TestClass handler("{7E1A0002-0000-4000-8000-56656C76616E}", "InprocHandler32");
    const TestClass neither("{7E1A0003-0000-4000-8000-56656C76616E}", "LocalServer32");
    const RegRedirectionRows rows = BuildRegRedirectionRows(6, 0, true);
    const auto isShared = [&](const std::string& row) {
        return std::find(rows.shared.begin(), rows.shared.end(), row) != rows.shared.end();
    };
    EXPECT_FALSE(isShared(server.MachineRow()));
    EXPECT_FALSE(isShared(handler.MachineRow()));
    EXPECT_TRUE(isShared(neither.MachineRow()));
    EXPECT_TRUE(isShared("HKEY_CLASSES_ROOT\\CLSID\\{7E1A0003-0000-4000-8000-56656C76616E}"));
    EXPECT_EQ(rows.redirected.size(), 3u);

    EXPECT_FALSE(NeedsNativeView(rows, server.MachineRow() + "\\x"));
    EXPECT_TRUE(NeedsNativeView(rows, neither.MachineRow() + "\\x")) << "the longer row wins again";
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
