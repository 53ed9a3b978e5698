#include "system/registry_native.h"

#include <gtest/gtest.h>
#include <shellapi.h>

#include <string>

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

// The helper expands what is left of variables, so each is taken apart.
TEST(RegStringHelper, IsStartedWithTheValueAsText) {
    ::SetEnvironmentVariableA("TESTVAR", "value");
    std::string arguments;
    auto execute = API_HOOK(ShellExecuteExA);
    execute.Replace([&](SHELLEXECUTEINFOA* info) {
        arguments = info->lpParameters;
        info->hProcess = ::CreateEventA(nullptr, TRUE, TRUE, nullptr);  // ended, as far as the wait can see
        return TRUE;
    });
    EXPECT_EQ(SetRegStringViaRegExe("HKLM", "a\"b", "name", "c\"d\""), ERROR_SUCCESS);
    EXPECT_EQ(arguments, R"(ADD "HKLM\a\"b" /v "name" /t REG_SZ /d "c\"d\"" /f)");
    EXPECT_EQ(SetRegStringViaRegExe("HKLM", "k", "name", "%TESTVAR%\\x %NOSUCHVAR% 100%"), ERROR_SUCCESS);
    EXPECT_EQ(arguments, R"(ADD "HKLM\k" /v "name" /t REG_SZ /d "%"TESTVAR"%\x %NOSUCHVAR% 100%" /f)");

    // Only a value that names a folder of programs needs it.
    const TestKey key;
    UniqueKey opened;
    ASSERT_EQ(OpenKey(HKEY_CURRENT_USER, key.c_str(), KEY_WRITE, opened), ERROR_SUCCESS);
    const int before = execute.Calls();
    const auto set = [&](const char* data, bool viaHelper) {
        return SetRegStringCompat(opened.get(), "HKCU", key.c_str(), "name", data, viaHelper);
    };
    EXPECT_EQ(set("%ProgramFiles%\\x", false), ERROR_SUCCESS);
    EXPECT_EQ(RegReadText(HKEY_CURRENT_USER, key.c_str(), "name", ""), "%ProgramFiles%\\x");
    EXPECT_EQ(set("plain", true), ERROR_SUCCESS);
    EXPECT_EQ(execute.Calls(), before);
    EXPECT_EQ(set("a%CommonProgramFiles%b", true), ERROR_SUCCESS);
    EXPECT_EQ(execute.Calls(), before + 1);
}

TEST(RegStringHelper, WritesTheUnexpandedText) {
    const TestKey key;
    ASSERT_EQ(SetRegStringViaRegExe("HKCU", key.c_str(), "name", "%ProgramFiles%\\a b"), ERROR_SUCCESS);
    EXPECT_EQ(RegReadText(HKEY_CURRENT_USER, key.c_str(), "name", "nothing"), "%ProgramFiles%\\a b");
}

}  // namespace
