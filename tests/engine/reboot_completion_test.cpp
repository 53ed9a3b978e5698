#include <gtest/gtest.h>
#include <windows.h>

#include <shlobj.h>

#include <optional>
#include <string>
#include <vector>

#include "base/random_text.h"
#include "engine/engine_fixture.h"
#include "engine/message_log.h"
#include "engine/write_recorder.h"
#include "support/api_hook.h"
#include "system/handles.h"

namespace {

using Lines = std::vector<std::string>;

// An engine whose application data lie in the test's folder.
class Reboot : public EngineTest {
  protected:
    Reboot() {
        m_folders.Replace([this](HWND owner, int csidl, HANDLE token, DWORD flags, LPSTR path) -> HRESULT {
            if (csidl != CSIDL_APPDATA) return m_folders.Real()(owner, csidl, token, flags, path);
            path[data.copy(path, MAX_PATH - 1)] = '\0';
            return S_OK;
        });
        RestartEngine();
    }
    // It saves nothing on its way out, but it goes before what it was told of does.
    ~Reboot() override { engine.reset(); }

    const std::string data = folder.MakeFolder("data");
    const std::string product = folder.MakeFolder("data\\Quillmere\\Velvane");
    const std::string rebootFolder = product + "\\DeleteOnReboot\\";

  private:
    ApiHook<decltype(&::SHGetFolderPathA)> m_folders{"SHGetFolderPathA"};
};

// What the system was asked to do at its restart.
struct Delayed {
    std::string from;
    std::optional<std::string> to;
    bool operator==(const Delayed&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Delayed& delayed) {
    return stream << delayed.from << " -> " << delayed.to.value_or("(nowhere)");
}

// Locked files without any file: whatever path is told lies there and cannot be opened, and the restart is
// only written down.
class RebootSchedule : public Reboot {
  protected:
    RebootSchedule() {
        m_clears.Replace([](auto...) { return TRUE; });
        m_attributes.Replace([](auto) { return DWORD{FILE_ATTRIBUTE_NORMAL}; });
        m_opens.FailAlways(ERROR_SHARING_VIOLATION, INVALID_HANDLE_VALUE);
        m_renames.FailAlways(ERROR_SHARING_VIOLATION);
        m_delays.Replace([this](LPCSTR from, LPCSTR to, DWORD flags) {
            EXPECT_EQ(flags, DWORD{MOVEFILE_DELAY_UNTIL_REBOOT});
            delayed.push_back({from, to ? std::optional<std::string>(to) : std::nullopt});
            return answer;
        });
        creates.Replace([](auto...) { return FALSE; });
    }

    // What comes of one locked file; nothing if it is not scheduled.
    std::optional<Delayed> Schedule(const std::string& path) {
        delayed.clear();
        EXPECT_FALSE(engine->ShredFile(path, false));
        EXPECT_LE(delayed.size(), 1u);
        if (delayed.empty()) return std::nullopt;
        return delayed.front();
    }

    BOOL answer = TRUE;
    std::vector<Delayed> delayed;
    ApiHook<decltype(&::CreateDirectoryA)> creates{"CreateDirectoryA"};

  private:
    ApiHook<decltype(&::SetFileAttributesA)> m_clears{"SetFileAttributesA"};
    ApiHook<decltype(&::GetFileAttributesA)> m_attributes{"GetFileAttributesA"};
    ApiHook<decltype(&::CreateFileA)> m_opens{"CreateFileA"};
    ApiHook<decltype(&::MoveFileA)> m_renames{"MoveFileA"};
    ApiHook<decltype(&::MoveFileExA)> m_delays{"MoveFileExA"};
};

TEST_F(RebootSchedule, WithoutPassesTheSystemDeletesTheFile) {
    engine->SetShredPasses(0);
    EXPECT_EQ(Schedule("D:\\locked.txt"), (Delayed{"D:\\locked.txt", std::nullopt}));
    EXPECT_EQ(Schedule("C:\\locked.txt"), (Delayed{"C:\\locked.txt", std::nullopt})) << "wherever it lies";
    EXPECT_EQ(creates.Calls(), 0) << "nothing goes to the folder";
}

TEST_F(RebootSchedule, WithPassesTheFileMovesUnderANameOfItsOwn) {
    RandomText::Seed(5);
    std::string letters;
    for (int i = 0; i < 10; ++i) letters += RandomText::Letter();
    RandomText::Seed(5);
    const std::string first = rebootFolder + "a.b.txt_" + letters.substr(0, 5);
    const std::string second = rebootFolder + "a.b.txt_" + letters.substr(5);
    EXPECT_EQ(Schedule("C:\\one\\a.b.txt"), (Delayed{"C:\\one\\a.b.txt", first}));
    EXPECT_EQ(Schedule("c:\\two\\a.b.txt"), (Delayed{"c:\\two\\a.b.txt", second}));
    EXPECT_EQ(engine->FilesWaitingForRestart(), Lines({"C:\\one\\a.b.txt", "c:\\two\\a.b.txt"}));
    EXPECT_EQ(creates.Calls(), 1) << "made once in the life of the engine, whatever came of it";

    answer = FALSE;
    EXPECT_TRUE(Schedule("C:\\three\\a.txt"));
    EXPECT_EQ(engine->FilesWaitingForRestart().size(), 2u) << "the system did not take it";
    answer = TRUE;
    EXPECT_TRUE(Schedule("D:\\three\\a.txt"));
    EXPECT_EQ(engine->FilesWaitingForRestart().size(), 2u) << "the restart moves nothing to another volume";
}

TEST_F(RebootSchedule, LeavesWhatTheFolderItselfIsIn) {
    // kept: the test is a comparison of texts, so that it holds for every folder above.
    const std::string upper = [&] {
        std::string text = rebootFolder;
        ::CharUpperA(text.data());
        return text;
    }();
    for (const std::string& path :
         {rebootFolder + "a.txt", upper + "a.txt", product + "\\a.txt", data + "\\a.txt",
          std::string("C:\\a.txt"), std::string("\\a.txt"), std::string("a.txt"),
          product.substr(0, product.size() - 3) + "\\a.txt"}) {
        EXPECT_EQ(Schedule(path), std::nullopt) << path;
    }
    for (const std::string& path :
         {rebootFolder + "deeper\\a.txt", product + "s\\a.txt", data + "\\other\\a.txt"}) {
        EXPECT_TRUE(Schedule(path)) << path;
    }
}

TEST_F(RebootSchedule, SchedulesNothingUnderAPathThatIsTooLong) {
    const std::size_t room = 259 - rebootFolder.size() - 6;  // the tail is "_" and five letters
    EXPECT_TRUE(Schedule("D:\\" + std::string(room, 'n')));
    EXPECT_EQ(Schedule("D:\\" + std::string(room + 1, 'n')), std::nullopt);
}

TEST_F(RebootSchedule, StopsBeforeTheListOfTheSystemIsFull) {
    DWORD listSize = 0;
    auto queries = API_HOOK(RegQueryValueExA);
    queries.Replace([&](HKEY key, LPCSTR name, LPDWORD reserved, LPDWORD type, LPBYTE bytes, LPDWORD size) {
        if (std::string_view(name) != "PendingFileRenameOperations") {
            return queries.Real()(key, name, reserved, type, bytes, size);
        }
        *size = listSize;
        return LSTATUS{ERROR_SUCCESS};
    });
    for (const int passes : {0, 1}) {
        engine->SetShredPasses(passes);
        listSize = 15863;
        EXPECT_TRUE(Schedule("D:\\folder\\a.txt"));
        listSize = 15864;
        EXPECT_EQ(Schedule("D:\\folder\\a.txt"), std::nullopt);
    }
}

class RebootCompletion : public Reboot {
  protected:
    void MakeLeftovers(const std::vector<std::string>& names) {
        for (const std::string& name : names) {
            folder.MakeFile("data\\Quillmere\\Velvane\\DeleteOnReboot\\" + name, "secret");
        }
    }
    Lines LoadLog() {
        Load();
        return MessageLog().Lines(window.Messages());
    }
};

TEST_F(RebootCompletion, SaysNothingWithoutAFolder) {
    EXPECT_EQ(LoadLog(), Lines({"loaded 0"}));
    MakeLeftovers({"a.txt_AAAAA"});
    ASSERT_TRUE(::MoveFileA(rebootFolder.c_str(), (product + "\\kept").c_str()));
    folder.MakeFile("data\\Quillmere\\Velvane\\DeleteOnReboot");
    EXPECT_EQ(LoadLog(), Lines({"loaded 0"})) << "a file of that name is no folder";
    EXPECT_EQ(NamesIn(product), Lines({"DeleteOnReboot", "kept"}));
}

TEST_F(RebootCompletion, ShredsWhatIsThereForTheWindowThatIsNamed) {
    MakeLeftovers({"a.txt_AAAAA", "folder\\b.txt"});
    WriteDefinitions(OneEntityXml(ItemXml("File", folder.At("x"))));
    RecordingWindow other;
    window.OnMessage([&](const RecordedMessage& message) {
        return message.message == WM_ENGINE_REBOOT_BEGIN ? reinterpret_cast<LRESULT>(other.Handle()) : 0;
    });
    WriteRecorder recorder;
    EXPECT_EQ(LoadLog(), Lines({"completion begins", "completion ended", "loaded 1"}));
    EXPECT_EQ(MessageLog().Lines(other.Messages()),
              Lines({"node Shred After Reboot", "node a.txt_AAAAA", "node b.txt", "node folder\\",
                     "cleaned a.txt_AAAAA 33%", "cleaned b.txt 66%", "cleaned folder\\ 100%",
                     "cleaned nothing 100%"}));
    EXPECT_EQ(recorder.passes.size(), 2u) << "one pass each, whatever the settings say";
    EXPECT_EQ(NamesIn(product), Lines());

    const RecordedNode entity = other.Nodes().front();
    EXPECT_EQ(entity.level, 3u);
    EXPECT_TRUE(entity.checked);
    EXPECT_TRUE(entity.expanded);
    EXPECT_EQ(other.Messages().front().wParam, 1u);
    EXPECT_EQ(other.Nodes()[1].filePath, rebootFolder + "a.txt_AAAAA");
}

TEST_F(RebootCompletion, WhatIsStillLockedWaitsForTheNextStart) {
    MakeLeftovers({"a_AAAAA", "b_BBBBB"});
    auto delays = API_HOOK(MoveFileExA);
    {
        const auto lock = OwnHandle<UniqueHandle>(::CreateFileA(
            (rebootFolder + "a_AAAAA").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
        ASSERT_TRUE(lock);
        LoadLog();
    }
    EXPECT_EQ(NamesIn(rebootFolder), Lines({"a_AAAAA"}));
    EXPECT_EQ(delays.Calls(), 0) << "it is where it was to be moved";
    RestartEngine();
    LoadLog();
    EXPECT_EQ(NamesIn(product), Lines());
}

}  // namespace
