#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "engine/cleaning_engine.h"
#include "engine/write_recorder.h"
#include "support/api_hook.h"
#include "support/sandbox.h"
#include "system/handles.h"

// The fate of one file.

namespace {

// Stands in for the list of what the system does at its restart.
class Schedules {
  public:
    Schedules() {
        m_moves.Replace([this](LPCSTR from, LPCSTR to, DWORD flags) {
            EXPECT_EQ(flags, DWORD{MOVEFILE_DELAY_UNTIL_REBOOT});
            from_.emplace_back(from);
            EXPECT_TRUE(to == nullptr || *to != '\0');
            moves_ += to != nullptr;
            return TRUE;
        });
    }
    const std::vector<std::string>& From() const { return from_; }
    // How many are to be moved, not deleted.
    int Moves() const { return moves_; }

  private:
    std::vector<std::string> from_;
    int moves_ = 0;
    ApiHook<decltype(&::MoveFileExA)> m_moves{"MoveFileExA"};
};

using Paths = std::vector<std::string>;

class Shredder : public ::testing::Test {
  protected:
    const TestFolder folder;
    CCleaningEngine engine;
    Schedules schedules;
};

UniqueHandle OpenLocked(const std::string& path, DWORD sharing = 0) {
    auto handle = OwnHandle<UniqueHandle>(
        ::CreateFileA(path.c_str(), GENERIC_READ, sharing, nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_TRUE(handle) << path;
    return handle;
}

TEST_F(Shredder, DestroysWhatIsReadOnlyOrHidden) {
    for (const int passes : {0, 1}) {
        engine.SetShredPasses(passes);
        for (const DWORD attributes : {FILE_ATTRIBUTE_READONLY, FILE_ATTRIBUTE_HIDDEN,
                                       FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_SYSTEM}) {
            const std::string file = folder.MakeFile("a.txt", "content", attributes);
            EXPECT_TRUE(engine.ShredFile(file, false)) << passes << " passes, attributes " << attributes;
        }
    }
    EXPECT_EQ(NamesIn(folder.Path()), Paths());
    EXPECT_EQ(schedules.From(), Paths());
}

TEST_F(Shredder, WhatIsNotThereIsDone) {
    auto moves = API_HOOK(MoveFileA);
    EXPECT_TRUE(engine.ShredFile(folder.At("missing.txt"), false));
    EXPECT_TRUE(engine.ShredFile(folder.At("missing\\folder\\a.txt"), false));
    EXPECT_EQ(moves.Calls(), 0);

    // A file that goes between the first two steps.
    const std::string file = folder.MakeFile("a.txt");
    auto clears = API_HOOK(SetFileAttributesA);
    clears.Replace([](LPCSTR path, DWORD) { return ::DeleteFileA(path); });
    auto opens = API_HOOK(CreateFileA);
    EXPECT_TRUE(engine.ShredFile(file, false));
    EXPECT_EQ(opens.Calls(), 0);
    EXPECT_EQ(schedules.From(), Paths());
}

// The overwrite reaches the disk, and of a link the link itself.
TEST_F(Shredder, OpensTheFileAloneAndUncached) {
    const std::string file = folder.MakeFile("a.txt");
    auto opens = API_HOOK(CreateFileA);
    opens.Replace([&](LPCSTR path, DWORD access, DWORD sharing, LPSECURITY_ATTRIBUTES security,
                      DWORD disposition, DWORD flags, HANDLE pattern) {
        EXPECT_EQ(path, file);
        EXPECT_EQ(access, DWORD{GENERIC_WRITE});
        EXPECT_EQ(sharing, 0u);
        EXPECT_EQ(disposition, DWORD{OPEN_EXISTING});
        EXPECT_EQ(flags, 0x80200000u);
        return opens.Real()(path, access, sharing, security, disposition, flags, pattern);
    });
    EXPECT_TRUE(engine.ShredFile(file, false));
    EXPECT_EQ(opens.Calls(), 1);
}

// kept: a file that is compressed, encrypted or sparse is only renamed and deleted.
TEST_F(Shredder, DoesNotOverwriteASpecialFile) {
    for (const DWORD special :
         {FILE_ATTRIBUTE_COMPRESSED, FILE_ATTRIBUTE_ENCRYPTED, FILE_ATTRIBUTE_SPARSE_FILE}) {
        const std::string file = folder.MakeFile("a.txt");
        WriteRecorder recorder;
        auto moves = API_HOOK(MoveFileA);
        auto attributes = API_HOOK(GetFileAttributesA);
        attributes.Replace([&](LPCSTR path) {
            const DWORD real = attributes.Real()(path);
            return real == INVALID_FILE_ATTRIBUTES ? real : real | special;
        });
        EXPECT_TRUE(engine.ShredFile(file, false));
        EXPECT_EQ(recorder.passes.size(), 0u) << special;
        EXPECT_EQ(moves.Calls(), 1);
        EXPECT_EQ(NamesIn(folder.Path()), Paths());
    }
}

// What a package manager links from its cache into a project has one content.
TEST_F(Shredder, LeavesTheContentToTheOtherNamesOfTheFile) {
    const std::string file = folder.MakeFile("cache.txt", "precious");
    const std::string other = folder.At("project.txt");
    ASSERT_TRUE(::CreateHardLinkA(other.c_str(), file.c_str(), nullptr));
    EXPECT_TRUE(engine.ShredFile(file, false));
    EXPECT_EQ(NamesIn(folder.Path()), Paths({"project.txt"}));
    EXPECT_EQ(FileContent(other), "precious");

    WriteRecorder recorder;
    EXPECT_TRUE(engine.ShredFile(other, false));
    EXPECT_EQ(recorder.passes.size(), 1u) << "the last name takes the content along";
}

TEST_F(Shredder, SchedulesALockedFileAndLeavesItAsItIs) {
    for (const int passes : {0, 3}) {
        SCOPED_TRACE(passes);
        const std::string file = folder.MakeFile("locked " + std::to_string(passes) + ".txt", "secret");
        {
            const auto lock = OpenLocked(file);
            engine.SetShredPasses(passes);
            EXPECT_FALSE(engine.ShredFile(file, false));
        }
        EXPECT_EQ(FileContent(file), "secret");
    }
    EXPECT_EQ(schedules.From(), Paths({folder.At("locked 0.txt"), folder.At("locked 3.txt")}));
    EXPECT_EQ(engine.FilesWaitingForRestart(), schedules.From());
}

struct FaultCase {
    const char* name;
    bool renameFails;
    BOOL deleteAnswer;  // of a delete that does nothing
};

const FaultCase kFaultCases[] = {
    {"the rename fails", true, FALSE},
    {"the delete fails", false, FALSE},
    {"the delete says that it was done, and the file stays", false, TRUE},
};

TEST_F(Shredder, AFileThatStaysHasItsNameBackAndIsScheduled) {
    for (const FaultCase& row : kFaultCases) {
        SCOPED_TRACE(row.name);
        const std::string file = folder.MakeFile("a.b.txt", "secret");
        auto moves = API_HOOK(MoveFileA);
        if (row.renameFails) moves.FailAt(1, ERROR_ACCESS_DENIED);
        auto deletes = API_HOOK(DeleteFileA);
        std::string deleted;
        deletes.Replace([&](LPCSTR path) {
            deleted = path;
            ::SetLastError(ERROR_ACCESS_DENIED);
            return row.deleteAnswer;
        });
        EXPECT_FALSE(engine.ShredFile(file, false));
        EXPECT_EQ(deletes.Calls(), row.renameFails ? 0 : 1);
        EXPECT_EQ(moves.Calls(), row.renameFails ? 1 : 2);
        EXPECT_NE(deleted, file) << "it is deleted under its random name";
        EXPECT_EQ(NamesIn(folder.Path()), Paths({"a.b.txt"}));
        EXPECT_NE(FileContent(file), "secret") << "what was overwritten stays overwritten";
        EXPECT_EQ(schedules.From().back(), file);
    }
    EXPECT_EQ(schedules.From().size(), std::size(kFaultCases));
}

TEST_F(Shredder, APathThatFillsTheBufferIsTheLongestThatCanBeRenamed) {
    const std::size_t room = 259 - folder.Path().size();
    ASSERT_LT(room, 250u) << "the test needs a longer folder";
    const std::string longest = folder.MakeFile(std::string(room, 'n'));
    ASSERT_EQ(longest.size(), 259u);
    EXPECT_TRUE(engine.ShredFile(longest, false));
    EXPECT_FALSE(Exists(longest));

    // The system itself takes no longer path here, so the calls around the rename are answered.
    const std::string tooLong = longest + "n";
    auto clears = API_HOOK(SetFileAttributesA);
    clears.Replace([](auto...) { return TRUE; });
    auto attributes = API_HOOK(GetFileAttributesA);
    attributes.Replace([](auto) { return DWORD{FILE_ATTRIBUTE_NORMAL}; });
    auto moves = API_HOOK(MoveFileA);
    engine.SetShredPasses(0);
    EXPECT_FALSE(engine.ShredFile(tooLong, false));
    EXPECT_EQ(moves.Calls(), 0);
    EXPECT_EQ(schedules.From(), Paths({tooLong}));
}

// What stays in a folder was not chosen, so the restart must not move it to where everything is shredded.
TEST_F(Shredder, RemovesAnEmptyFolderAndSchedulesAFullOneWithoutItsContent) {
    EXPECT_TRUE(engine.ShredFile(folder.MakeFolder("empty"), false));
    folder.MakeFile("full\\a.txt");
    EXPECT_FALSE(engine.ShredFile(folder.At("full"), false));
    const std::string stays = folder.MakeFolder("stays");
    auto removals = API_HOOK(RemoveDirectoryA);
    removals.Replace([](auto) { return TRUE; });
    EXPECT_FALSE(engine.ShredFile(stays, false)) << "the system says that it was done, and the folder stays";
    EXPECT_EQ(NamesIn(folder.Path()), Paths({"full", "stays"}));
    EXPECT_EQ(schedules.From(), Paths({folder.At("full"), stays}));
    EXPECT_EQ(schedules.Moves(), 0);
}

// A platform that opens what a link leads to gives no way to remove the link itself: it stays, and so does
// what it leads to, now and at the restart.
TEST_F(Shredder, LeavesAFolderLinkThatThePlatformFollows) {
    const std::string link = folder.MakeFolder("link");
    auto attributes = API_HOOK(GetFileAttributesA);
    attributes.Replace([&](LPCSTR path) {
        const DWORD real = attributes.Real()(path);
        return real == INVALID_FILE_ATTRIBUTES ? real : real | FILE_ATTRIBUTE_REPARSE_POINT;
    });
    auto finds = API_HOOK(FindFirstFileA);
    finds.Replace([&](LPCSTR path, LPWIN32_FIND_DATAA entry) {
        const HANDLE search = finds.Real()(path, entry);
        entry->dwFileAttributes |= FILE_ATTRIBUTE_REPARSE_POINT;
        entry->dwReserved0 = IO_REPARSE_TAG_MOUNT_POINT;
        return search;
    });
    auto clears = API_HOOK(SetFileAttributesA);
    auto removals = API_HOOK(RemoveDirectoryA);
    EXPECT_FALSE(engine.ShredFile(link, false));
    EXPECT_TRUE(Exists(link));
    EXPECT_EQ(clears.Calls(), 0);
    EXPECT_EQ(removals.Calls(), 0);
    EXPECT_EQ(schedules.From(), Paths());
}

TEST_F(Shredder, AStopLeavesTheFileOverwrittenUnderItsName) {
    const std::string file = folder.MakeFile("a.txt", "secret");
    engine.CancelAction();
    WriteRecorder recorder;
    engine.SetShredPasses(3);
    EXPECT_FALSE(engine.ShredFile(file, false));
    EXPECT_EQ(recorder.passes.size(), 1u) << "the random pass runs in any case";
    EXPECT_EQ(NamesIn(folder.Path()), Paths({"a.txt"}));
    EXPECT_NE(FileContent(file), "secret");
    EXPECT_EQ(schedules.From(), Paths());
}

// The system's redirection of files is switched off for the file and on again, on every way out.
TEST_F(Shredder, SwitchesTheRedirectionOffAndOnAgain) {
    const std::string file = folder.MakeFile("a.txt");
    BOOL answer = TRUE;
    bool existsAtRevert = true;
    auto disables = LATE_BOUND_HOOK(Wow64DisableWow64FsRedirection);
    disables.Replace([&](PVOID* saved) {
        *saved = &answer;
        return answer;
    });
    auto reverts = LATE_BOUND_HOOK(Wow64RevertWow64FsRedirection);
    reverts.Replace([&](PVOID saved) {
        // kept: it is the address of what was saved.
        EXPECT_EQ(*static_cast<PVOID*>(saved), &answer);
        existsAtRevert = Exists(file);
        return TRUE;
    });
    EXPECT_TRUE(engine.ShredFile(file, true));
    EXPECT_EQ(reverts.Calls(), 1);
    EXPECT_FALSE(existsAtRevert) << "the way back comes behind the delete";
    folder.MakeFile("a.txt");
    const auto lock = OpenLocked(file);
    EXPECT_FALSE(engine.ShredFile(file, true));
    EXPECT_EQ(disables.Calls(), 2);
    EXPECT_EQ(reverts.Calls(), 2);
}

}  // namespace
