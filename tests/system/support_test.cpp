#include <gtest/gtest.h>
#include <windows.h>

#include <stdexcept>

#include "support/sandbox.h"

// The guards that keep the tests in their prefix and their folders.

namespace {

TEST(Sandbox, RefusesNamesThatLeadOutOfIt) {
    const TestFolder folder;
    for (const char* name : {"..\\a", "C:\\a", "\\a", "a\\..\\..\\b", "a/../../b", ""}) {
        EXPECT_THROW(folder.At(name), std::invalid_argument) << name;
    }
    EXPECT_THROW(TestKey(HKEY_CLASSES_ROOT), std::invalid_argument);
}

TEST(Sandbox, LeavesNothingBehind) {
    std::string folderPath;
    std::string keyPath;
    {
        const TestFolder folder;
        folder.MakeFile("deep\\er\\a.txt", "text", FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN);
        folderPath = folder.Path();
        const TestKey key;
        keyPath = key.Path();
        DenyEveryone(HKEY_CURRENT_USER, key.MakeKey("locked\\below"));
        DenyEveryone(HKEY_CURRENT_USER, key.At("locked"));
        EXPECT_FALSE(ValueExists(HKEY_CURRENT_USER, key.At("locked"), ""));
    }
    EXPECT_FALSE(Exists(folderPath));
    EXPECT_FALSE(KeyExists(HKEY_CURRENT_USER, keyPath));
    EXPECT_FALSE(KeyExists(HKEY_CURRENT_USER, "Software\\VelvaneTests"));
}

// Runs this program anew, to have its tests listed; its exit code.
DWORD ExitCodeOfAnotherRun() {
    char program[MAX_PATH] = {};
    ::GetModuleFileNameA(nullptr, program, sizeof program);
    std::string command = std::string("\"") + program + "\" --gtest_list_tests --gtest_filter=-*";
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;  // and none given: what it prints is not ours
    PROCESS_INFORMATION process = {};
    if (!::CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                          &process)) {
        return MAXDWORD;
    }
    ::WaitForSingleObject(process.hProcess, 30000);
    DWORD code = MAXDWORD;
    ::GetExitCodeProcess(process.hProcess, &code);
    ::CloseHandle(process.hThread);
    ::CloseHandle(process.hProcess);
    return code;
}

TEST(TestMain, RefusesToStartWhereAShellFolderLeadsOutOfThePrefix) {
    constexpr const char* key = "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders";
    const auto pointTo = [&](const std::string& folder) {
        ASSERT_EQ(::RegSetKeyValueA(HKEY_CURRENT_USER, key, "Favorites", REG_EXPAND_SZ, folder.c_str(),
                                    static_cast<DWORD>(folder.size() + 1)),
                  ERROR_SUCCESS);
    };
    const auto before = ValueBytes(HKEY_CURRENT_USER, key, "Favorites");
    pointTo("O:\\");  // the drive for results lies beside the prefix
    EXPECT_EQ(ExitCodeOfAnotherRun(), 125u);
    pointTo(before ? before->c_str() : "C:\\");
    EXPECT_EQ(ExitCodeOfAnotherRun(), 0u);
}

}  // namespace
