#include <gtest/gtest.h>
#include <windows.h>

#include <shellapi.h>
#include <wininet.h>

#include <string>
#include <vector>

#include "engine/engine_fixture.h"
#include "engine/message_log.h"
#include "support/api_hook.h"
#include "support/folder_link.h"
#include "system/handles.h"

// The run over the files that the user chose.

namespace {

using Lines = std::vector<std::string>;

class ShredRun : public EngineTest {
  protected:
    ShredRun() {
        m_schedules.Replace([](auto...) { return TRUE; });
    }

    // Makes files and queues them.
    void Queue(const std::vector<std::string>& names) {
        for (const std::string& name : names) engine->AddShredFile(folder.MakeFile(name, "secret"));
    }

    Lines ShredLog(int passes = 1) {
        Shred(passes);
        return MessageLog().Lines(window.Messages());
    }

    void ExpectCounters(std::uint32_t cleaned, std::uint32_t failed) const {
        EXPECT_EQ(engine->GetItemsCleaned(), cleaned);
        EXPECT_EQ(engine->GetItemsFailed(), failed);
    }

  private:
    ApiHook<decltype(&::MoveFileExA)> m_schedules{"MoveFileExA"};
};

TEST_F(ShredRun, TellsEachFileAndForgetsTheList) {
    Queue({"a.txt", "locked.txt", "c.txt"});
    engine->AddShredFile(folder.At("missing.txt"));
    engine->AddShredFile(folder.MakeFolder("empty"));
    {
        const auto lock = OwnHandle<UniqueHandle>(::CreateFileA(folder.At("locked.txt").c_str(), GENERIC_READ,
                                                                0, nullptr, OPEN_EXISTING, 0, nullptr));
        EXPECT_EQ(ShredLog(),
                  Lines({"shred started", "shredded a.txt 20%", "shredded nothing 40%", "shredded c.txt 60%",
                         "shredded missing.txt 80%", "shredded empty 100%", "shred done"}));
    }
    for (const RecordedMessage& message : window.Messages()) EXPECT_TRUE(message.sentByWorker);
    EXPECT_EQ(window.Messages(WM_ENGINE_SHRED_PROGRESS).front().shreddedPath, folder.At("a.txt"));
    ExpectCounters(4, 1);
    EXPECT_EQ(NamesIn(folder.Path()), Lines({"locked.txt"}));

    EXPECT_EQ(ShredLog(), Lines({"shred started", "shred done"}));
    ExpectCounters(0, 0);
    EXPECT_TRUE(Exists(folder.At("locked.txt"))) << "it is not on the list any more";
}

TEST_F(ShredRun, AStopEndsTheRunAndEmptiesTheList) {
    Queue({"a.txt", "b.txt", "c.txt"});
    window.OnMessage([&](const RecordedMessage& message) {
        if (message.message == WM_ENGINE_SHRED_PROGRESS) engine->CancelAction();
        return LRESULT{0};
    });
    EXPECT_EQ(ShredLog(), Lines({"shred started", "shredded a.txt 33%", "shred done"}));
    ExpectCounters(1, 0);
    window.OnMessage(nullptr);
    EXPECT_EQ(ShredLog(), Lines({"shred started", "shred done"}));
    EXPECT_EQ(NamesIn(folder.Path()), Lines({"b.txt", "c.txt"}));

    Queue({"d.txt"});
    engine->CancelAction();
    Shred(1);
    ExpectCounters(1, 0);
    EXPECT_FALSE(Exists(folder.At("d.txt"))) << "a stop of before has no effect";
}

TEST_F(ShredRun, ADryRunTakesItsTimeAndChangesNothing) {
    Queue({"a.txt", "b.txt"});
    engine->SetScanOnly(true);
    auto sleeps = API_HOOK(Sleep);
    DWORD slept = 0;
    sleeps.Replace([&](DWORD milliseconds) { slept += milliseconds; });
    EXPECT_EQ(ShredLog(),
              Lines({"shred started", "shredded a.txt 50%", "shredded b.txt 100%", "shred done"}));
    EXPECT_EQ(slept, 1000u);
    ExpectCounters(0, 0);
    EXPECT_EQ(NamesIn(folder.Path()), Lines({"a.txt", "b.txt"}));
}

TEST_F(ShredRun, DoesNotFollowALinkThatTookTheWayOfTheList) {
    const TestFolder elsewhere;
    const std::string precious = elsewhere.MakeFile("a.txt", "precious");
    Queue({"Sub\\a.txt"});
    engine->AddShredFile(folder.At("Sub") + "\\");
    ASSERT_TRUE(::MoveFileA(folder.At("Sub").c_str(), folder.At("moved").c_str()));
    const FolderLink link(folder.At("Sub"), elsewhere.Path());
    Shred(1);
    EXPECT_EQ(FileContent(precious), "precious");
    ExpectCounters(0, 2);
}

// A 32-bit process lists the real System32 without redirection; with it the run would destroy another file.
TEST_F(ShredRun, WorksOnTheFilesThatWereListedWithoutRedirection) {
    Queue({"a.txt"});
    auto wow64 = LATE_BOUND_HOOK(IsWow64Process);
    wow64.Replace([](HANDLE, BOOL* answer) {
        *answer = TRUE;
        return TRUE;
    });
    auto disables = LATE_BOUND_HOOK(Wow64DisableWow64FsRedirection);
    disables.Replace([](PVOID*) { return TRUE; });
    auto reverts = LATE_BOUND_HOOK(Wow64RevertWow64FsRedirection);
    reverts.Replace([](PVOID) { return TRUE; });
    Shred(1);
    EXPECT_EQ(disables.Calls(), 1);
    EXPECT_EQ(reverts.Calls(), 1);
}

struct BinCase {
    const char* name;
    HRESULT answer;
    __int64 items;
    int emptied;
};

// kept: the bin that holds nothing is emptied, the one that holds something is not.
const BinCase kBinCases[] = {
    {"a bin without items", S_OK, 0, 1},
    {"a bin with an item", S_OK, 1, 0},
    {"a bin that does not answer", E_FAIL, 0, 0},
};

TEST_F(ShredRun, EmptiesOnlyAnEmptyBin) {
    for (const BinCase& row : kBinCases) {
        SCOPED_TRACE(row.name);
        auto queries = API_HOOK(SHQueryRecycleBinA);
        queries.Replace([&](LPCSTR root, LPSHQUERYRBINFO info) {
            EXPECT_EQ(root, nullptr);
            // The layout of the platform: 20 bytes in a 32-bit process.
            EXPECT_EQ(info->cbSize, sizeof(void*) == 4 ? 20u : 24u);
            info->i64NumItems = row.items;
            return row.answer;
        });
        auto empties = API_HOOK(SHEmptyRecycleBinA);
        empties.Replace([](HWND owner, LPCSTR root, DWORD flags) {
            EXPECT_EQ(owner, nullptr);
            EXPECT_EQ(root, nullptr);
            EXPECT_EQ(flags, 7u);
            return E_FAIL;
        });
        auto entries = API_HOOK(FindFirstUrlCacheEntryA);
        EXPECT_EQ(ShredLog(), Lines({"shred started", "shred done"}));
        EXPECT_EQ(empties.Calls(), row.emptied);
        EXPECT_EQ(entries.Calls(), 1) << "the URL cache is tidied as well";
    }
}

}  // namespace
