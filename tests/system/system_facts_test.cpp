#include "system/system_facts.h"

#include <gtest/gtest.h>
#include <shlobj.h>

#include <cstring>
#include <string>

#include "support/api_hook.h"

namespace {

TEST(Wow64, IsWhatTheSystemSaysWhereItHasTheQuestion) {
    char folder[MAX_PATH];
    const bool is64BitWindows = ::GetSystemWow64DirectoryA(folder, sizeof folder) != 0;
    EXPECT_EQ(IsWow64(), sizeof(void*) == 4 && is64BitWindows);
    auto question = LATE_BOUND_HOOK(IsWow64Process);
    question.Replace([](HANDLE, PBOOL answer) { return *answer = TRUE; });
    EXPECT_TRUE(IsWow64());
    const MissingEntryPoint older("IsWow64Process");
    EXPECT_FALSE(IsWow64());
}

TEST(Folders, ComeWithoutATrailingBackslash) {
    EXPECT_EQ(FolderPath(CSIDL_WINDOWS), "C:\\windows");
    EXPECT_FALSE(FolderPath(CSIDL_BITBUCKET)) << "a folder without a path";
    EXPECT_FALSE(FolderPath(0x7FFF));
    auto folder = API_HOOK(SHGetFolderPathA);
    folder.Replace([](HWND, int, HANDLE, DWORD, LPSTR path) {
        std::strcpy(path, "D:\\");
        return HRESULT{S_OK};
    });
    EXPECT_EQ(FolderPath(CSIDL_PERSONAL), "D:");
}

TEST(Folders, OfTheProgramIsWholeHoweverLong) {
    EXPECT_TRUE(ProgramFolder().starts_with("X:\\"));
    EXPECT_TRUE(ProgramFolder().ends_with("\\"));

    const std::string folder = "\\\\?\\C:\\" + std::string(700, 'a') + "\\";
    const std::string program = folder + "velvane.exe";
    auto fileName = API_HOOK(GetModuleFileNameA);
    fileName.Replace([&](HMODULE module, LPSTR buffer, DWORD size) {
        EXPECT_EQ(module, nullptr);
        const std::size_t length = program.copy(buffer, size);  // what does not fit is cut off without an end
        if (length < size) buffer[length] = '\0';
        return static_cast<DWORD>(length);
    });
    EXPECT_EQ(ProgramFolder(), folder);
    fileName.FailAlways(ERROR_MOD_NOT_FOUND);
    EXPECT_EQ(ProgramFolder(), "");
}

TEST(LowerText, FollowsTheCodePageAndLetsALetterChangeItsLength) {
    ASSERT_EQ(::GetACP(), UINT{CP_UTF8}) << "by the manifest";
    EXPECT_EQ(LowerText(""), "");
    EXPECT_EQ(LowerText("C:\\Program Files\\A1_[]"), "c:\\program files\\a1_[]");
    EXPECT_EQ(LowerText("\xC3\x84\xD0\x96x"), "\xC3\xA4\xD0\xB6x");
    EXPECT_EQ(LowerText("\xC8\xBAZ"), "\xE2\xB1\xA5z") << "two bytes become three";
    EXPECT_EQ(LowerText("\xE2\xB1\xA2Z"), "\xC9\xABz") << "three become two";
}

}  // namespace
