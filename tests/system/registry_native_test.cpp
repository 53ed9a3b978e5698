#include "system/registry_native.h"

#include <gtest/gtest.h>
#include <shellapi.h>

#include <string>
#include <vector>

#include "support/api_hook.h"
#include "support/sandbox.h"
#include "system/registry.h"

using namespace std::string_literals;

namespace {

// The view of the registry that this process has to ask for.
constexpr REGSAM kOtherView = sizeof(void*) == 8 ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;

TEST(DeleteRegKeyEx, DeletesInTheViewThatItIsToldOrWithoutOneOnOlderSystems) {
    const TestKey key(HKEY_LOCAL_MACHINE);
    const std::string sub = key.MakeKey("sub");
    EXPECT_EQ(DeleteRegKeyEx(HKEY_LOCAL_MACHINE, sub.c_str(), kOtherView, 0), ERROR_FILE_NOT_FOUND);
    EXPECT_TRUE(KeyExists(HKEY_LOCAL_MACHINE, sub));
    const MissingEntryPoint older("RegDeleteKeyExA");
    EXPECT_EQ(DeleteRegKeyEx(HKEY_LOCAL_MACHINE, sub.c_str(), kOtherView, 0), ERROR_SUCCESS);
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, sub));
    EXPECT_EQ(DeleteRegKeyEx(HKEY_LOCAL_MACHINE, nullptr, 0, 0), ERROR_INVALID_PARAMETER);
}

// Stands in for the start of the helper, and keeps what it was started with.
class HelperHook {
  public:
    HelperHook() {
        m_execute.Replace([this](SHELLEXECUTEINFOA* info) {
            m_order += "run ";
            m_arguments = info->lpParameters;
            m_info = *info;
            // A process that has ended, as far as the wait can see.
            info->hProcess = ::CreateEventA(nullptr, TRUE, TRUE, nullptr);
            return TRUE;
        });
        m_disable.Replace([this](PVOID* saved) {
            m_order += "disable ";
            m_saved = saved;
            return TRUE;
        });
        m_revert.Replace([this](PVOID state) {
            m_order += state == m_saved ? "revert " : "revert-another ";
            return TRUE;
        });
    }

    ApiHook<decltype(&::ShellExecuteExA)> m_execute{"ShellExecuteExA"};
    ApiHook<decltype(&::Wow64DisableWow64FsRedirection)> m_disable{
        LateBound{"Wow64DisableWow64FsRedirection"}};
    ApiHook<decltype(&::Wow64RevertWow64FsRedirection)> m_revert{LateBound{"Wow64RevertWow64FsRedirection"}};
    std::string m_order;
    std::string m_arguments;
    SHELLEXECUTEINFOA m_info = {};
    void* m_saved = nullptr;
};

TEST(RegStringCompat, WritesDirectlyUnlessAHelpersValueNamesAProgramFolder) {
    const TestKey key;
    UniqueKey opened;
    ASSERT_EQ(OpenKey(HKEY_CURRENT_USER, key.c_str(), KEY_WRITE, opened), ERROR_SUCCESS);
    HelperHook helper;
    auto setValue = API_HOOK(RegSetValueExA);
    DWORD size = 0;
    setValue.Replace(
        [&](HKEY handle, LPCSTR name, DWORD reserved, DWORD type, const BYTE* data, DWORD bytes) {
            size = bytes;
            return setValue.Real()(handle, name, reserved, type, data, bytes);
        });
    const auto set = [&](const char* data, bool viaHelper) {
        return SetRegStringCompat(opened.get(), "HKCU", key.c_str(), "name", data, viaHelper);
    };
    EXPECT_EQ(set("%ProgramFiles%\\x", false), ERROR_SUCCESS);
    EXPECT_EQ(size, 16u) << "without the terminator";
    EXPECT_EQ(RegReadText(HKEY_CURRENT_USER, key.c_str(), "name", ""), "%ProgramFiles%\\x");
    EXPECT_EQ(set("%programfiles%", true), ERROR_SUCCESS);
    EXPECT_EQ(set("plain", true), ERROR_SUCCESS);
    EXPECT_EQ(helper.m_execute.Calls(), 0);
    EXPECT_EQ(set("%ProgramFiles%", true), ERROR_SUCCESS);
    EXPECT_EQ(set("a%CommonProgramFiles%b", true), ERROR_SUCCESS);
    EXPECT_EQ(helper.m_execute.Calls(), 2);
    EXPECT_EQ(setValue.Calls(), 3);
    EXPECT_EQ(SetRegStringCompat(nullptr, "HKCU", "key", "name", "data", false), ERROR_INVALID_PARAMETER);
}

struct ArgumentCase {
    const char* description;
    const char* subKey;
    const char* data;
    const char* arguments;
};

const ArgumentCase kArgumentCases[] = {
    {"plain", "Software\\x", "data", R"(ADD "HKLM\Software\x" /v "name" /t REG_SZ /d "data" /f)"},
    {"quotes are escaped", "a\"b", "c\"d\"", R"(ADD "HKLM\a\"b" /v "name" /t REG_SZ /d "c\"d\"" /f)"},
    {"a variable arrives as text", "k", "%TESTVAR%\\x",
     R"(ADD "HKLM\k" /v "name" /t REG_SZ /d "%"TESTVAR"%\x" /f)"},
    {"of a long value", "k", "%TESTLONG%", R"(ADD "HKLM\k" /v "name" /t REG_SZ /d "%"TESTLONG"%" /f)"},
    {"what is no variable stays", "k", "%NOSUCHVAR% 100%",
     R"(ADD "HKLM\k" /v "name" /t REG_SZ /d "%NOSUCHVAR% 100%" /f)"},
    {"behind no variable one character is passed over", "k", "%NOSUCHVAR%%TESTVAR%TESTVAR%",
     R"(ADD "HKLM\k" /v "name" /t REG_SZ /d "%NOSUCHVAR%%TESTVAR%"TESTVAR"%" /f)"},
};

TEST(RegStringHelper, IsStartedHiddenAndNativeWithTheValueAsText) {
    ::SetEnvironmentVariableA("TESTVAR", "value");
    ::SetEnvironmentVariableA("TESTLONG", std::string(6000, 'x').c_str());
    HelperHook helper;
    auto close = API_HOOK(CloseHandle);
    for (const ArgumentCase& row : kArgumentCases) {
        EXPECT_EQ(SetRegStringViaRegExe("HKLM", row.subKey, "name", row.data), ERROR_SUCCESS)
            << row.description;
        EXPECT_EQ(helper.m_arguments, row.arguments) << row.description;
        EXPECT_EQ(helper.m_order, "disable run revert ") << row.description;
        helper.m_order.clear();
    }
    EXPECT_STREQ(helper.m_info.lpFile, "reg.exe");
    EXPECT_EQ(helper.m_info.fMask, ULONG{SEE_MASK_NOCLOSEPROCESS});
    EXPECT_EQ(helper.m_info.nShow, 0);
    EXPECT_EQ(close.Calls(), static_cast<int>(std::size(kArgumentCases))) << "each process handle once";
}

TEST(RegStringHelper, WritesTheUnexpandedText) {
    const TestKey key;
    ASSERT_EQ(SetRegStringViaRegExe("HKCU", key.c_str(), "name", "%ProgramFiles%\\a b"), ERROR_SUCCESS);
    EXPECT_EQ(RegReadText(HKEY_CURRENT_USER, key.c_str(), "name", "nothing"), "%ProgramFiles%\\a b");
}

}  // namespace
