#include <gtest/gtest.h>
#include <windows.h>

#include <wininet.h>

#include <algorithm>
#include <string>
#include <thread>
#include <vector>

#include "base/random_text.h"
#include "engine/engine_fixture.h"
#include "engine/message_log.h"
#include "engine/write_recorder.h"
#include "support/api_hook.h"
#include "support/folder_link.h"
#include "system/handles.h"
#include "system/redirection_table.h"

namespace {

using Lines = std::vector<std::string>;

std::string Named(std::string_view element, std::string_view name, std::string_view content) {
    return ElementXml(element, "Name='" + std::string(name) + "'", content);
}

UniqueHandle OpenLocked(const std::string& path) {
    auto handle = OwnHandle<UniqueHandle>(
        ::CreateFileA(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_TRUE(handle) << path;
    return handle;
}

class Cleaner : public EngineTest {
  protected:
    // An item for one file, which is made.
    std::string FileItem(const std::string& name) { return ItemXml("File", folder.MakeFile(name)); }
    std::string FolderItem(const std::string& name) { return ItemXml("Folder", folder.At(name) + "\\"); }
    std::string ValueItem(const std::string& name) {
        return ItemXml("RegValue", "HKCU\\" + key.Path(), "Delete", name);
    }

    // Loads and scans; false, with a failure, if not `count` results were found.
    void Find(const std::string& xml, std::size_t count) {
        ASSERT_TRUE(Load(xml));
        Scan();
        ASSERT_EQ(engine->GetItemsFound(), count);
    }

    tagCLEAN_RESULT& Result(std::string_view name) const {
        for (tagCLEAN_CATEGORY& category : engine->Categories()) {
            for (tagCLEAN_APPLICATION& application : category.applications) {
                for (tagCLEAN_ENTITY& entity : application.entities) {
                    for (tagCLEAN_RESULT* result : Results(entity)) {
                        if (result->name == name) return *result;
                    }
                }
            }
        }
        throw std::runtime_error("there is no result " + std::string(name));
    }

    // Cleans and tells the messages.
    Lines CleanLog(int passes = 0) {
        MessageLog log(*engine);
        Clean(passes);
        return log.Lines(window.Messages());
    }

    void ExpectCounters(std::uint32_t cleaned, std::uint32_t failed) const {
        EXPECT_EQ(engine->GetItemsCleaned(), cleaned);
        EXPECT_EQ(engine->GetItemsFailed(), failed);
    }

    const TestKey key;
};

TEST_F(Cleaner, TellsEachNodeInOrderWithItsPercentage) {
    key.SetText("value", "text");
    folder.MakeFile("sub\\deep\\d.txt");
    ::SetFileAttributesA(folder.At("sub\\deep").c_str(), FILE_ATTRIBUTE_READONLY);
    const std::string one = Named("Category", "One",
                                  Named("Application", "App",
                                        Named("Entity", "Values", ValueItem("value") + ValueItem("missing")) +
                                            Named("Entity", "Files", FileItem("a.tmp") + FileItem("b.tmp"))));
    const std::string two = Named(
        "Category", "Two",
        Named("Application", "Left", Named("Entity", "X", FileItem("x.log"))) +
            Named("Application", "Right",
                  Named("Entity", "Kept", FileItem("y.log")) + Named("Entity", "Folder", FolderItem("sub"))));
    const std::string three = Named(
        "Category", "Empty",
        Named("Application", "None", Named("Entity", "Nothing", ItemXml("File", folder.At("missing")))));
    Find(DefinitionsXml(one + two + three), 7);
    engine->SetItemCheck(HandleOf(Result("b.tmp")), false, false);
    engine->SetItemCheck(HandleOf(Application("Two", "Left")), false, false);
    engine->SetItemCheck(HandleOf(Entity("Two", "Right", "Kept")), false, false);
    const HSCANITEM stale = HandleOf(Result("a.tmp"));

    // The result that was unticked is one of the five that make 100. kept: behind an item stands what was
    // cleaned of its category alone.
    EXPECT_EQ(CleanLog(),
              Lines({
                  "cleaned value 20%",  "cleaned nothing 20%", "cleaned nothing 20%", "cleaned Values 20%",
                  "cleaned a.tmp 40%",  "cleaned nothing 40%", "passed over b.tmp",   "cleaned nothing 40%",
                  "cleaned Files 40%",  "cleaned App 40%",     "cleaned One 40%",     "passed over Left",
                  "passed over Kept",   "cleaned d.txt 60%",   "cleaned deep\\ 80%",  "cleaned nothing 40%",
                  "cleaned Folder 80%", "cleaned Right 80%",   "cleaned Two 80%",     "passed over Empty",
                  "clean done",
              }));
    for (const RecordedMessage& message : window.Messages()) EXPECT_TRUE(message.sentByWorker);
    ExpectCounters(4, 0);
    EXPECT_EQ(engine->GetCategoryCleaned(HandleOf(Category("One"))), 2);
    EXPECT_EQ(engine->GetCategoryCleaned(HandleOf(Category("Two"))), 2);
    EXPECT_EQ(engine->GetCategoryCleaned(HandleOf(Category("Empty"))), 0);

    EXPECT_FALSE(ValueExists(key.Root(), key.Path(), "value"));
    EXPECT_EQ(NamesIn(folder.Path()), Lines({"b.tmp", "cleaning.db", "sub", "x.log", "y.log"}));
    EXPECT_EQ(NamesIn(folder.At("sub")), Lines()) << "the folder of the definition itself stays";
    EXPECT_EQ(Found(Entity("One", "App", "Files")), Lines()) << "the results are freed, cleaned or not";
    EXPECT_EQ(ItemString(stale), "<item not found>");
}

TEST_F(Cleaner, CountsWhatStaysAsFailedAndGoesOn) {
    folder.MakeFile("full\\inner\\kept.txt");
    folder.MakeFile("full\\inner\\gone.txt");
    const std::string locked = folder.MakeFile("locked.txt");
    auto schedules = API_HOOK(MoveFileExA);
    schedules.Replace([&](LPCSTR from, LPCSTR, DWORD) {
        EXPECT_EQ(from, locked);
        return TRUE;
    });
    Find(OneEntityXml(ItemXml("File", locked) + FolderItem("full")), 4);
    engine->SetItemCheck(HandleOf(Result("kept.txt")), false, false);
    const auto lock = OpenLocked(locked);
    const Lines log = CleanLog();
    ExpectCounters(1, 2);
    EXPECT_EQ(log.front(), "cleaned nothing 25%")
        << "a failure names no node, and is dealt with all the same";
    EXPECT_EQ(std::count(log.begin(), log.end(), "cleaned Category 75%"), 1);
    EXPECT_EQ(NamesIn(folder.At("full\\inner")), Lines({"kept.txt"}));
    EXPECT_EQ(schedules.Calls(), 1) << "a folder that stays is not scheduled";
    EXPECT_EQ(engine->FilesWaitingForRestart(), Lines({locked}));
}

TEST_F(Cleaner, WhatVanishedSinceTheScanIsCleaned) {
    key.SetText("value", "text");
    const std::string gone = folder.MakeFolder("root\\gone");
    key.MakeKey("keys\\gone");
    const std::string keys = ItemXml("RegKey", "HKCU\\" + key.At("keys"));
    Find(OneEntityXml(ValueItem("value") + FileItem("a.txt") + FolderItem("root") + keys), 4);
    HKEY opened = nullptr;
    ASSERT_EQ(::RegOpenKeyExA(key.Root(), key.c_str(), 0, KEY_WRITE, &opened), ERROR_SUCCESS);
    ::RegDeleteValueA(opened, "value");
    ::RegDeleteKeyA(opened, "keys\\gone");
    ::RegCloseKey(opened);
    ::DeleteFileA(folder.At("a.txt").c_str());
    ::RemoveDirectoryA(gone.c_str());
    auto writes = API_HOOK(RegSetValueExA);
    Clean();
    ExpectCounters(4, 0);
    EXPECT_EQ(writes.Calls(), 0) << "a value without a size is not made anew to be overwritten";
}

TEST_F(Cleaner, DoesNotFollowALinkThatTookTheWayOfTheScan) {
    const TestFolder elsewhere;
    for (const char* name : {"a.txt", "deep\\b.txt"}) {
        elsewhere.MakeFile(name);
        folder.MakeFile(std::string("root\\sub\\") + name);
    }
    elsewhere.MakeFolder("empty");
    folder.MakeFolder("root\\sub\\empty");
    auto schedules = API_HOOK(MoveFileExA);
    Find(OneEntityXml(FolderItem("root")), 5);
    ASSERT_TRUE(::MoveFileA(folder.At("root\\sub").c_str(), folder.At("moved").c_str()));
    const FolderLink link(folder.At("root\\sub"), elsewhere.Path());
    Clean(1);
    ExpectCounters(0, 5);
    EXPECT_EQ(schedules.Calls(), 0);
    EXPECT_EQ(NamesIn(elsewhere.Path()), Lines({"a.txt", "deep", "empty"}));
    EXPECT_TRUE(Exists(elsewhere.At("deep\\b.txt")));
}

// What a value was overwritten with.
struct Overwrite {
    std::string name;
    DWORD type;
    std::string data;
};

// The first letters of the generator on a thread that never seeded it.
std::string FirstLetters(std::size_t count) {
    std::string letters;
    std::thread([&] {
        for (std::size_t i = 0; i < count; ++i) letters += RandomText::Letter();
    }).join();
    return letters;
}

TEST_F(Cleaner, OverwritesAValueWithLettersBeforeItGoes) {
    key.SetText("text", "a secret");
    key.SetNumber("number", 7);
    key.SetRaw("bytes", REG_BINARY, std::string(300, '\x01'));
    key.SetRaw("empty", REG_SZ, "");
    key.SetText("", "the default value");
    Find(OneEntityXml(ItemXml("RegKey", "HKCU\\" + key.Path())), 5);
    const std::vector<std::string> order = [&] {
        std::vector<std::string> names;
        for (const tagCLEAN_RESULT* result : Results(Entity())) names.push_back(result->name.value());
        return names;
    }();

    std::vector<Overwrite> overwrites;
    auto writes = API_HOOK(RegSetValueExA);
    writes.Replace([&](HKEY opened, LPCSTR name, DWORD reserved, DWORD type, const BYTE* data, DWORD size) {
        EXPECT_TRUE(ValueExists(key.Root(), key.Path(), name)) << "it is still there";
        overwrites.push_back({name, type, std::string(reinterpret_cast<const char*>(data), size)});
        return writes.Real()(opened, name, reserved, type, data, size);
    });
    Clean();
    ExpectCounters(5, 0);
    for (const std::string& name : order) EXPECT_FALSE(ValueExists(key.Root(), key.Path(), name.c_str()));
    EXPECT_TRUE(KeyExists(key.Root(), key.Path())) << "the key of the definition stays";

    const std::map<std::string, std::size_t> sizes = {{"text", 9}, {"number", 4}, {"bytes", 300}, {"", 18}};
    ASSERT_EQ(overwrites.size(), sizes.size()) << "an empty value is not overwritten";
    std::string all;
    for (const Overwrite& one : overwrites) {
        EXPECT_EQ(one.type, DWORD{REG_BINARY}) << one.name;
        EXPECT_EQ(one.data.size(), sizes.at(one.name)) << one.name;
        all += one.data;
    }
    // kept: a worker's generator starts from its default in every run.
    EXPECT_EQ(all, FirstLetters(all.size()));
}

TEST_F(Cleaner, DeletesKeysFromTheLeavesUp) {
    key.SetText("v", "1", "keys\\a\\b\\c");
    key.SetText("v", "2", "keys\\a");
    key.MakeKey("keys\\d");
    key.MakeKey("keys\\late");
    Find(OneEntityXml(ItemXml("RegKey", "HKCU\\" + key.At("keys"))), 7);
    // A sub-key that came after the scan keeps its parent: nothing is deleted that was not found.
    key.MakeKey("keys\\late\\newcomer");
    Clean();
    ExpectCounters(6, 1);
    EXPECT_FALSE(KeyExists(key.Root(), key.At("keys\\a")));
    EXPECT_FALSE(KeyExists(key.Root(), key.At("keys\\d")));
    EXPECT_TRUE(KeyExists(key.Root(), key.At("keys\\late\\newcomer")));
}

// kept: the key of an ini file stays, without a value.
TEST_F(Cleaner, EmptiesAnIniValue) {
    const std::string file = folder.MakeFile("a.ini", "[part]\r\nkey=secret\r\nother=stays\r\n");
    const std::string locked = folder.MakeFile("b.ini", "[part]\r\nkey=secret\r\n");
    const auto item = [](const std::string& path) {
        return ItemXml("IniValue", path, "Delete", "[part]key");
    };
    Find(OneEntityXml(item(file) + item(locked)), 2);
    ::SetFileAttributesA(locked.c_str(), FILE_ATTRIBUTE_READONLY);
    Clean();
    ExpectCounters(1, 1);
    const std::string content = FileContent(file).value_or("");
    EXPECT_NE(content.find("key=\r\n"), std::string::npos) << content;
    EXPECT_NE(content.find("other=stays"), std::string::npos) << content;
    Scan();
    EXPECT_EQ(Found(Entity()), Lines({locked + "[part]key"})) << "it is no trace any more";
}

TEST_F(Cleaner, AStopBetweenResultsLeavesTheRest) {
    const std::string entity = FileItem("a.txt") + FileItem("b.txt");
    const std::string other = Named("Application", "Other", Named("Entity", "E", FileItem("c.txt")));
    Find(
        DefinitionsXml(Named("Category", "Category",
                             Named("Application", "Application", Named("Entity", "Entity", entity)) + other)),
        3);
    window.OnMessage([&](const RecordedMessage& message) {
        if (message.message == WM_ENGINE_CLEAN_PROGRESS) engine->CancelAction();
        return LRESULT{0};
    });
    EXPECT_EQ(CleanLog(), Lines({
                              "cleaned a.txt 33%",
                              "cleaned nothing 33%",
                              "cleaned Entity 33%",
                              "cleaned Application 33%",
                              "cleaned Category 33%",
                              "clean done",
                          }));
    ExpectCounters(1, 0);
    EXPECT_EQ(NamesIn(folder.Path()), Lines({"b.txt", "c.txt", "cleaning.db"}));
    EXPECT_EQ(Found(Entity()), Lines()) << "the results are freed, the user has to scan again";
}

TEST_F(Cleaner, ADryRunReportsAllAndChangesNothingButTheUrlCache) {
    key.SetText("value", "text");
    key.MakeKey("keys\\a");
    folder.MakeFolder("root\\sub");
    const std::string ini = folder.MakeFile("a.ini", "[part]\r\nkey=secret\r\n");
    Find(OneEntityXml(ValueItem("value") + ItemXml("RegKey", "HKCU\\" + key.At("keys")) + FileItem("a.txt") +
                      FolderItem("root") + ItemXml("IniValue", ini, "Delete", "[part]key")),
         5);
    engine->SetItemCheck(HandleOf(Result("a.txt")), false, false);
    engine->SetScanOnly(true);
    auto entries = API_HOOK(FindFirstUrlCacheEntryA);
    for (int run = 0; run < 2; ++run) {
        Clean(3);
        ExpectCounters(4, 0);
        Scan();
        EXPECT_EQ(engine->GetItemsFound(), 5u) << "everything is still there";
        engine->SetItemCheck(HandleOf(Result("a.txt")), false, false);
    }
    EXPECT_EQ(ValueBytes(key.Root(), key.Path(), "value"), std::string("text\0", 5));
    EXPECT_EQ(entries.Calls(), 2);
}

TEST_F(Cleaner, ShredsFilesByThePassCountOfTheRun) {
    Find(OneEntityXml(FileItem("a.txt") + FileItem("b.txt")), 2);
    WriteRecorder recorder;
    std::uintptr_t second = 0;
    window.OnMessage([&](const RecordedMessage& message) {
        // kept: a start that is refused changes the count of what runs.
        if (second == 0 && message.message == WM_ENGINE_CLEAN_PROGRESS) {
            second = engine->StartClean(window.Handle(), 7);
        }
        return LRESULT{0};
    });
    Clean(3);
    ExpectCounters(2, 0);
    EXPECT_EQ(recorder.passes.size(), 3u + 7u);
    EXPECT_EQ(second, reinterpret_cast<std::uintptr_t>(window.Handle())) << "it was refused";
    EXPECT_EQ(window.Count(WM_ENGINE_CLEAN_DONE), 1u);
}

}  // namespace
