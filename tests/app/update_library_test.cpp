#include "app/update_library.h"

#include <gtest/gtest.h>
#include <shlobj.h>
#include <windows.h>

#include <string>

#include "support/api_hook.h"
#include "support/sandbox.h"
#include "system/system_facts.h"

namespace {

const HWND kOwner = reinterpret_cast<HWND>(std::uintptr_t{0x1234});  // 4660

// The folder in which the program looks for the library.
class UpdateLibrary : public testing::Test {
  protected:
    UpdateLibrary() {
        Remove();
        ::CreateDirectoryA(m_parent.c_str(), nullptr);
        ::CreateDirectoryA((m_parent + "\\Kovar3").c_str(), nullptr);
    }
    ~UpdateLibrary() override { Remove(); }

    void Install(const char* form) {
        const std::string source = ProgramFolder() + "update_library_" + form + ".dll";
        // What is handed to the test program is read-only, and so is a copy of it.
        ASSERT_TRUE(::CopyFileA(source.c_str(), m_library.c_str(), FALSE) &&
                    ::SetFileAttributesA(m_library.c_str(), FILE_ATTRIBUTE_NORMAL));
    }

    // The calls since the last question, one a line. The library is unloaded behind each operation.
    std::string Calls() {
        EXPECT_EQ(::GetModuleHandleA("Kovar3.dll"), nullptr);
        const std::string calls = FileContent(m_library + ".txt").value_or("");
        ::DeleteFileA((m_library + ".txt").c_str());
        return calls;
    }

    void Remove() {
        ::DeleteFileA(m_library.c_str());
        ::DeleteFileA((m_library + ".txt").c_str());
        ::RemoveDirectoryA((m_parent + "\\Kovar3").c_str());
        ::RemoveDirectoryA(m_parent.c_str());
    }

    const std::string m_parent = FolderPath(CSIDL_PROGRAM_FILES_COMMON).value() + "\\Quillmere";
    const std::string m_library = m_parent + "\\Kovar3\\Kovar3.dll";
};

TEST_F(UpdateLibrary, GetsEachCallWithItsRecord) {
    Install("whole");
    EXPECT_EQ(ShowUpdateSettings(kOwner), 0);
    EXPECT_EQ(Calls(), "settings 0 4660 \ndelete 0 \n") << "no instance is made";
    EXPECT_EQ(RunUpdatesWithUi(true), 0);
    EXPECT_EQ(Calls(), "updates with a flag 0 1 \ndelete 0 \n");
    EXPECT_EQ(ShowEmailPage("C:\\J\xC3\xBCrg\\email.htm", 0, "&pid=5", kOwner), 0);
    EXPECT_EQ(Calls(), "create \nemail 2 'C:\\J\xC3\xBCrg\\email.htm' 0 4660 '&pid=5' \ndelete 77 \n");
    EXPECT_EQ(InitLibrary("Velvane", "state", "http://link/", 0x123456789A, kOwner), 0);
    EXPECT_EQ(Calls(), "create \ninit 77 2 'Velvane' 'state' 'http://link/' 0 '" + ProgramFolder() +
                           "' 78187493530 1 4660 \ndelete 77 \n");
}

TEST_F(UpdateLibrary, MayBeMissingOrLackEntries) {
    for (const bool missing : {true, false}) {
        if (!missing) Install("empty");
        EXPECT_EQ(ShowUpdateSettings(kOwner), 0);
        EXPECT_EQ(RunUpdatesWithUi(true), 0);
        EXPECT_EQ(ShowEmailPage("page", 0, "", kOwner), -1);
        EXPECT_EQ(InitLibrary("", "", "", 0, kOwner), -1);
        EXPECT_EQ(Calls(), "");
    }
    Install("older");
    EXPECT_EQ(RunUpdatesWithUi(true), 0);
    EXPECT_EQ(Calls(), "updates 0 \ndelete 0 \n") << "the flag is lost";
}

TEST_F(UpdateLibrary, IsOnlyLookedForWhereTheShellSays) {
    auto folders = API_HOOK(SHGetSpecialFolderPathA);
    folders.FailAlways(ERROR_FILE_NOT_FOUND);
    auto loads = API_HOOK(LoadLibraryA);
    EXPECT_EQ(RunUpdatesWithUi(true), 0);
    EXPECT_EQ(loads.Calls(), 0);
}

}  // namespace
