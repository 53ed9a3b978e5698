#include "engine/trace.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdio>
#include <iterator>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "base/random_text.h"
#include "engine/app_data_stand_in.h"
#include "engine/engine_fixture.h"
#include "engine/write_recorder.h"
#include "support/api_hook.h"
#include "system/handles.h"
#include "system/system_facts.h"

// The wordings of the trace and their order, of an engine that is built with it.

namespace {

using Lines = std::vector<std::string>;

std::mutex g_mutex;
Lines g_lines;

void Collect(const char* line) {
    const std::lock_guard lock(g_mutex);
    g_lines.emplace_back(line);
}

// The lines since the last look.
Lines TakeLines() {
    const std::lock_guard lock(g_mutex);
    return std::exchange(g_lines, {});
}

// The letters that a worker hands out, each of which starts from the same state.
class WorkerLetters {
  public:
    WorkerLetters() {
        std::thread([this] {
            for (int& number : m_numbers) number = RandomText::Next();
        }).join();
    }
    void Skip(std::size_t count) { m_used += count; }
    // The name that the next rename gives to `path`.
    std::string Renamed(std::string path) {
        for (std::size_t i = path.size(); i > 0 && path[i - 1] != '\\'; --i) {
            if (path[i - 1] != '.') path[i - 1] = Letter();
        }
        return path;
    }
    std::string Tail() {
        std::string tail = "_";
        for (int i = 0; i < 5; ++i) tail += Letter();
        return tail;
    }

  private:
    char Letter() {
        const auto number = static_cast<std::size_t>(m_numbers[m_used++]);
        return RandomText::kAlphabet[number % RandomText::kAlphabet.size()];
    }

    int m_numbers[1000] = {};
    std::size_t m_used = 0;
};

class Trace : public EngineTest {
  protected:
    Trace() {
        RestartEngine();
        SetTraceSink(Collect);
        TakeLines();
    }
    ~Trace() override {
        engine.reset();
        SetTraceSink(nullptr);
    }

    // The lines of a load behind those that any load has.
    Lines LoadLines(const std::string& xml) {
        TakeLines();
        Load(xml);
        Lines lines = TakeLines();
        const auto start = std::find(lines.begin(), lines.end(), "Loading location variables from xml.");
        EXPECT_NE(start, lines.end());
        return start == lines.end() ? lines : Lines(std::next(start), lines.end());
    }
    void Find(const std::string& items) {
        ASSERT_TRUE(Load(OneEntityXml(items)));
        Scan();
        TakeLines();
    }
    Lines CleanLines(int passes = 0) {
        Clean(passes);
        return TakeLines();
    }
    Lines ShredLines(const std::vector<std::string>& files, int passes) {
        for (const std::string& file : files) engine->AddShredFile(file);
        Shred(passes);
        return TakeLines();
    }
    // The line about the attributes of a plain file: systems differ in what they call plain.
    std::string PlainAttributes() {
        const std::string file = folder.MakeFile("plain");
        ::SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_NORMAL);
        char line[40];
        std::snprintf(line, sizeof line, "File attributes are '0x%lx'.", ::GetFileAttributesA(file.c_str()));
        ::DeleteFileA(file.c_str());
        return line;
    }

    const std::string data = folder.MakeFolder("data");
    const std::string product = folder.MakeFolder("data\\Quillmere\\Velvane");
    AppDataStandIn appData{data};
    const TestKey key;
    const std::string keyText = "HKEY_CURRENT_USER\\" + key.Path();
};

std::string Variable(const std::string& name, const std::string& value) {
    return "System location variable '" + name + "' has been created with value '" + value + "'.";
}

std::string ItemLine(const std::string& type, const std::string& location) {
    return "Loaded item Type='" + type + "' Location='" + location + "' Action='Delete'.";
}

constexpr const char* kSystemVariables[] = {"%Appdata%",       "%internetcache%", "%cdburn%",
                                            "%commonappdata%", "%history%",       "%commonprogramfiles%",
                                            "%cookies%",       "%desktop%",       "%favorites%",
                                            "%localappdata%",  "%mydocuments%",   "%programfiles%",
                                            "%recentdocs%",    "%startmenu%",     "%startupprograms%",
                                            "%system%",        "%systemroot%",    "%temp%",
                                            "%user_sid%",      "%userprofile%",   "%windir%"};

constexpr int kProtectedFolders[] = {CSIDL_APPDATA,
                                     CSIDL_COMMON_APPDATA,
                                     CSIDL_LOCAL_APPDATA,
                                     CSIDL_PROGRAM_FILES,
                                     CSIDL_PROGRAM_FILES_COMMON,
                                     CSIDL_DESKTOPDIRECTORY,
                                     CSIDL_PERSONAL,
                                     CSIDL_PROFILE,
                                     CSIDL_WINDOWS,
                                     CSIDL_SYSTEM,
                                     CSIDL_MYVIDEO,
                                     CSIDL_MYPICTURES,
                                     CSIDL_MYMUSIC};

TEST_F(Trace, TellsAWholeLoad) {
    const std::string variable = "<LocationVariables><LocationVariable Name='where' Type='SYS' Location='" +
                                 folder.Path() + "' ValueName='' /></LocationVariables>";
    const std::string items = ItemXml("File", "%where%a.txt") + ItemXml("Folder", "%where%sub\\");
    const std::string entity = ElementXml("Entity", "Name='Entity'", items);
    const std::string category =
        ElementXml("Category", "Name='Category'",
                   ElementXml("Application", "Name='Here'", entity) +
                       ElementXml("Application", "Name='Gone' InstallLocation='%where%none'", entity));
    const std::string xml = DefinitionsXml(variable + category);
    folder.MakeFile("CleanPreferences.db", PackDb("<scan_item_states></scan_item_states>"));
    ASSERT_TRUE(Load(xml));
    const Lines lines = TakeLines();

    Lines expected = {
        "Loading cleaning definitions from '" + definitionsFile + "'.",
        "Cleaning definition version '7' '2008-05-01'.  " + std::to_string(xml.size()) + " bytes.",
        "Creating system location variables."};
    for (const std::string name : kSystemVariables) {
        const std::string value = engine->ExpandLocation(name);
        if (value != name) expected.push_back(Variable(name, value));
    }
    expected.push_back("Creating restricted file paths.");
    for (const int csidl : kProtectedFolders) {
        if (const auto path = FolderPath(csidl)) {
            expected.push_back("Restrict path '" + LowerText(*path) + "' has been created.");
        }
    }
    const Lines rest = {
        "Loading location variables from xml.",
        "User-defined Location variable '%where%' has been created with value '" + folder.Path() + "'.",
        ItemLine("File", "%where%a.txt"),
        ItemLine("Folder", "%where%sub\\"),
        "Loaded entity 'Entity'.",
        "Loaded application 'Here'.  Installed='yes'",
        ItemLine("File", "%where%a.txt"),
        ItemLine("Folder", "%where%sub\\"),
        "Loaded entity 'Entity'.",
        "Loaded application 'Gone'.  Installed='no'",
        "Loaded category 'Category'.",
        "Loading scanning item enabled states.",
        "Cleaning definitions have been loaded.",
    };
    expected.insert(expected.end(), rest.begin(), rest.end());
    EXPECT_EQ(lines, expected);
}

TEST_F(Trace, TellsWhatALoadDrops) {
    const auto variable = [](const std::string& attributes) {
        return "<LocationVariable " + attributes + " />";
    };
    const std::string any = "HKCU\\Software\\Velvane";
    const std::string variables = variable("Name='a' Type='REG' Location='HKCU\\x'") +
                                  variable("Name='b' Type='REG' Location='nowhere' ValueName='v'") +
                                  variable("Name='c' Type='sys' Location='l' ValueName='v'");
    const std::string items = ElementXml("item", "Type='File' Action='Delete'", "") +
                              ItemXml("Folder", "Q:\\x\\") + ItemXml("RegKey", "nowhere") +
                              ItemXml("RegValue", any) + ItemXml("IniValue", "x.ini") +
                              ItemXml("RegKey", any, "Erase") + ItemXml("Other", "y");
    const std::string named = ElementXml("Entity", "Name='E'", "");
    const std::string application =
        ElementXml("Application", "Name='A'", ElementXml("Entity", "", "") + named);
    EXPECT_EQ(
        LoadLines(DefinitionsXml(
            "<LocationVariables>" + variables + "</LocationVariables>" + ElementXml("Category", "", "") +
            ElementXml("Category", "Name='C'", ElementXml("Application", "", "") + application) +
            ElementXml("Category", "Name='D'",
                       ElementXml("Application", "Name='B'", ElementXml("Entity", "Name='F'", items))))),
        Lines({
            "Error: location variable format invalid.  Name: 'a' Type: 'REG' Location: 'HKCU\\x' ValueName: "
            "'(null)'.",
            "Error: registry section invalid while creating location variable.  Valid section names are: "
            "HKCR, "
            "HKCU and HKLM.  Name: 'b' Type: 'REG' Location: 'nowhere' ValueName: 'v'.",
            "Info: location variable value not loaded.  Name: 'b' Type: 'REG' Location: 'nowhere' ValueName: "
            "'v'.",
            "Error: Unknown location variable type.  Name: 'c' Type: 'sys' Location: 'l' ValueName: 'v'.",
            "Info: location variable value not loaded.  Name: 'c' Type: 'sys' Location: 'l' ValueName: 'v'.",
            "Error: Cleaning category with no name found!",
            "Error: Cleaning application with no name found!",
            "Error: Cleaning entity with no name found for application 'A'.",
            "Warning: entity 'E' not loaded because it has no item entries.",
            "Warning application 'A' not loaded because it has no entity entries.",
            "Warning category 'C' not loaded because it has no application entries.",
            "Error: cleaning item not loaded due to missing xml tags.  Type='File' Location='(null)' "
            "Action='Delete'.",
            "Cleaning item not loaded because the path is not a fixed drive.  Type='Folder' "
            "Location='Q:\\x\\' "
            "Action='Delete'.",
            "Error: path for cleaning item of type RegValue or RegKey needs to start with HKCR, HKCU, or "
            "HKLM.  "
            "Type='RegKey' Location='nowhere' Action='Delete'.",
            "Error: cleaning item not loaded due to invalid type or action.  Type='RegKey' "
            "Location='nowhere' "
            "Action='Delete'.",
            "Error: cleaning item of type RegValue is missing ValueName.  Type='RegValue' Location='" + any +
                "' Action='Delete'.",
            "Error: cleaning item not loaded due to invalid type or action.  Type='RegValue' Location='" +
                any + "' Action='Delete'.",
            "Error: cleaning item of type IniValue is missing ValueName.  Type='IniValue' Location='x.ini' "
            "Action='Delete'.",
            "Error: cleaning item not loaded due to invalid type or action.  Type='IniValue' "
            "Location='x.ini' "
            "Action='Delete'.",
            "Error: cleaning item not loaded due to invalid type or action.  Type='RegKey' Location='" + any +
                "' Action='Erase'.",
            ItemLine("Other", "y"),
            "Loaded entity 'F'.",
            "Loaded application 'B'.  Installed='yes'",
            "Loaded category 'D'.",
            "Cleaning definitions have been loaded.",
        }));
}

TEST_F(Trace, TellsOfTheFilesOfDefinitionsAndStates) {
    EXPECT_FALSE(Load());
    EXPECT_EQ(TakeLines(), Lines({"Error: could not load cleaning config due to error while opening file"}));
    ASSERT_TRUE(Load(OneEntityXml(ItemXml("Other", "y"))));
    TakeLines();
    ::DeleteFileA(definitionsFile.c_str());
    EXPECT_FALSE(Load());
    EXPECT_EQ(TakeLines(),
              Lines({"Freeing cleaning definition objects.", "Saving scanning item enabled states.",
                     "Error: could not load cleaning config due to error while opening file"}));
    ASSERT_TRUE(Load(OneEntityXml(ItemXml("Other", "y"))));
    TakeLines();
    engine->DeleteItemStates();
    EXPECT_EQ(TakeLines(),
              Lines({"User cleaning preference file deleted.", "Freeing cleaning definition objects."}));
    engine->SetItemCheck(reinterpret_cast<HSCANITEM>(0xABC), true, true);
    EXPECT_EQ(TakeLines(),
              Lines({"Error: CCleaningEngine::SetItemCheck() was passed an invalid HSCANITEM abc."}));
}

TEST_F(Trace, TellsAScanAndTheKeysThatItOpens) {
    const std::string locked = key.MakeKey("locked");
    key.MakeKey("locked\\sub");
    ASSERT_TRUE(Load(OneEntityXml(ItemXml("RegKey", "HKCU\\" + locked))));
    DenyEveryone(key.Root(), locked);
    TakeLines();
    Scan();
    EXPECT_EQ(TakeLines(), Lines({
                               "Starting scan.",
                               "Permissions for registry key increased: '" + locked + "'.",
                               "Permissions for registry key reverted: '" + locked + "'.",
                               "Finished scan.",
                           }));
    EXPECT_EQ(engine->GetItemsFound(), 1u);
}

TEST_F(Trace, TellsACleanOfEachKind) {
    key.SetText("value", "text");
    key.MakeKey("keys\\sub");
    const std::string file = folder.MakeFile("a.b.txt");
    folder.MakeFolder("root\\sub");
    const std::string ini = folder.MakeFile("a.ini", "[part]\r\nkey=secret\r\n");
    const std::string items = ItemXml("RegValue", "HKCU\\" + key.Path(), "Delete", "value") +
                              ItemXml("RegKey", "HKCU\\" + key.At("keys")) + ItemXml("File", file) +
                              ItemXml("Folder", folder.At("root") + "\\") +
                              ItemXml("IniValue", ini, "Delete", "[part]key");
    const std::string value = "reg value '" + keyText + " -> value'.";
    const std::string subKey = "reg key '" + keyText + "\\keys\\sub'.";
    const std::string sub = "folder '" + folder.At("root\\sub\\") + "'.";
    const std::string iniKey = "ini value '" + ini + "' [part]key.";
    WorkerLetters letters;
    letters.Skip(5);  // the value's overwrite
    const std::string renamed = letters.Renamed(file);

    Find(items);
    engine->SetScanOnly(true);
    EXPECT_EQ(CleanLines(), Lines({"Starting cleaning.", "There are 5 items to clean.", "Cleaning " + value,
                                   "Cleaning " + subKey, "Cleaned file '" + file + "'.", "Cleaning " + sub,
                                   "Cleaning " + iniKey, "Finished cleaning."}));

    engine->SetScanOnly(false);
    Scan();
    TakeLines();
    EXPECT_EQ(CleanLines(), Lines({
                                "Starting cleaning.",
                                "There are 5 items to clean.",
                                "Starting to clean " + value,
                                "Cleaned " + value,
                                "Starting to clean " + subKey,
                                "Cleaned " + subKey,
                                "Starting to clean file '" + file + "'.",
                                PlainAttributes(),
                                "Deleting '" + file + "'.",
                                "Renaming '" + file + "' to '" + renamed + "'.",
                                "File has been renamed from '" + file + "' to '" + renamed + "'.",
                                "File has been successfully deleted.",
                                "Cleaned file '" + file + "'.",
                                "Starting to clean " + sub,
                                "Cleaning " + sub,
                                "Starting to clean " + iniKey,
                                "Cleaning " + iniKey,
                                "Finished cleaning.",
                            }));
    EXPECT_EQ(CleanLines(), Lines({"Starting cleaning.", "There are no items to clean."}));
}

TEST_F(Trace, TellsWhatCouldNotBeCleaned) {
    key.SetText("value", "text");
    key.MakeKey("keys\\sub");
    const std::string file = folder.MakeFile("a.txt");
    folder.MakeFolder("root\\sub");
    const std::string ini = folder.MakeFile("a.ini", "[part]\r\nkey=secret\r\n");
    Find(ItemXml("RegValue", "HKCU\\" + key.Path(), "Delete", "value") +
         ItemXml("RegKey", "HKCU\\" + key.At("keys")) + ItemXml("File", file) +
         ItemXml("Folder", folder.At("root") + "\\") + ItemXml("IniValue", ini, "Delete", "[part]key"));
    auto values = API_HOOK(RegDeleteValueA);
    values.FailAlways(0, LSTATUS{ERROR_GEN_FAILURE});
    key.MakeKey("keys\\sub\\late");
    folder.MakeFile("root\\sub\\late");
    ::SetFileAttributesA(ini.c_str(), FILE_ATTRIBUTE_READONLY);
    auto renames = API_HOOK(MoveFileA);
    renames.FailAlways(ERROR_ACCESS_DENIED);
    auto delays = API_HOOK(MoveFileExA);
    delays.FailAlways(ERROR_ACCESS_DENIED);
    WorkerLetters letters;
    letters.Skip(5);
    const std::string value = "reg value '" + keyText + " -> value'.";
    const std::string subKey = "reg key '" + keyText + "\\keys\\sub'.";
    const std::string sub = "folder '" + folder.At("root\\sub\\") + "'.";
    const std::string iniKey = "ini value '" + ini + "' [part]key.";
    EXPECT_EQ(CleanLines(), Lines({
                                "Starting cleaning.",
                                "There are 5 items to clean.",
                                "Starting to clean " + value,
                                "Error: could not clean " + value,
                                "Starting to clean " + subKey,
                                "Error: could not clean " + subKey,
                                "Starting to clean file '" + file + "'.",
                                PlainAttributes(),
                                "Deleting '" + file + "'.",
                                "Renaming '" + file + "' to '" + letters.Renamed(file) + "'.",
                                "PendingFileRenameOperations registry value is 0 bytes.",
                                "File will be deleted on reboot: '" + file + "'.",
                                "Finish MoveFileEx call.",
                                "Error: could not clean file '" + file + "'.",
                                "Starting to clean " + sub,
                                "Error: could not clean " + sub,
                                "Starting to clean " + iniKey,
                                "Error: could not clean " + iniKey,
                                "Finished cleaning.",
                            }));
}

TEST_F(Trace, TellsAShred) {
    EXPECT_EQ(ShredLines({}, 1), Lines({"Starting shredding files.", "No files to shred."}));

    const std::string file = folder.MakeFile("a.b.txt");
    const std::string missing = folder.At("missing.txt");
    const std::string special = folder.MakeFile("special");
    auto attributes = API_HOOK(GetFileAttributesA);
    attributes.Replace([&](LPCSTR path) {
        const DWORD real = attributes.Real()(path);
        return path == special && real != INVALID_FILE_ATTRIBUTES ? DWORD{FILE_ATTRIBUTE_COMPRESSED} : real;
    });
    auto clears = API_HOOK(SetFileAttributesA);
    clears.Replace([&](LPCSTR path, DWORD flags) {
        if (path != special) return clears.Real()(path, flags);
        ::SetLastError(ERROR_ACCESS_DENIED);
        return FALSE;
    });
    const std::string plain = PlainAttributes();
    const WriteRecorder recorder;
    WorkerLetters letters;
    letters.Skip(WriteRecorder::kCluster);  // the random pass
    const std::string renamed = letters.Renamed(file);
    const std::string renamedSpecial = letters.Renamed(special);
    EXPECT_EQ(ShredLines({file, missing, special}, 3),
              Lines({
                  "Starting shredding files.",
                  "Shredding '" + file + "'.",
                  plain,
                  "Opening file to shred '" + file + "'.",
                  "Deleting '" + file + "'.",
                  "Renaming '" + file + "' to '" + renamed + "'.",
                  "File has been renamed from '" + file + "' to '" + renamed + "'.",
                  "File has been successfully deleted.",
                  "Shredding '" + missing + "'.",
                  "File was already deleted before shredding: '" + missing + "'.",
                  "Shredding '" + special + "'.",
                  "File attributes could not be changed: '" + special + "'.",
                  "File attributes are '0x800'.",
                  "Opening file to shred '" + special + "'.",
                  "Attempting to write over special file '" + special + "'.",
                  "Deleting '" + special + "'.",
                  "Renaming '" + special + "' to '" + renamedSpecial + "'.",
                  "File has been renamed from '" + special + "' to '" + renamedSpecial + "'.",
                  "File has been successfully deleted.",
                  "Finished shredding files.",
              }));
}

TEST_F(Trace, TellsWhatWaitsForTheRestart) {
    const std::string file = folder.MakeFile("elsewhere\\a.txt");
    const auto lock = OwnHandle<UniqueHandle>(
        ::CreateFileA(file.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    auto delays = API_HOOK(MoveFileExA);
    delays.Replace([](auto...) { return TRUE; });
    DWORD listSize = 15863;
    auto queries = API_HOOK(RegQueryValueExA);
    queries.Replace(
        [&](HKEY opened, LPCSTR name, LPDWORD reserved, LPDWORD type, LPBYTE bytes, LPDWORD size) {
            if (std::string_view(name) != "PendingFileRenameOperations") {
                return queries.Real()(opened, name, reserved, type, bytes, size);
            }
            *size = listSize;
            return LSTATUS{ERROR_SUCCESS};
        });
    WorkerLetters letters;
    const Lines start = {"Starting shredding files.", "Shredding '" + file + "'.", PlainAttributes(),
                         "Opening file to shred '" + file + "'."};
    const auto whole = [&](Lines middle) {
        Lines lines = start;
        lines.insert(lines.end(), middle.begin(), middle.end());
        lines.push_back("Finished shredding files.");
        return lines;
    };
    EXPECT_EQ(ShredLines({file}, 1), whole({"PendingFileRenameOperations registry value is 15863 bytes.",
                                            "File will be moved on reboot from '" + file + "' to '" +
                                                product + "\\DeleteOnReboot\\a.txt" + letters.Tail() + "'.",
                                            "Finish MoveFileEx call."}));
    listSize = 15864;
    EXPECT_EQ(
        ShredLines({file}, 1),
        whole({"PendingFileRenameOperations registry value is 15864 bytes.",
               "Cannot delete file on reboot because PendingFileRenameOperations registry value is full. '" +
                   file + "'."}));
}

TEST_F(Trace, TellsTheCompletion) {
    const std::string file = folder.MakeFile("data\\Quillmere\\Velvane\\DeleteOnReboot\\a.txt");
    const std::string plain = PlainAttributes();
    const WriteRecorder recorder;
    WorkerLetters letters;
    letters.Skip(WriteRecorder::kCluster);
    const std::string renamed = letters.Renamed(file);
    EXPECT_FALSE(Load());
    EXPECT_EQ(TakeLines(), Lines({
                               "Found 1 items to clean on reboot.",
                               "Starting to clean file '" + file + "'.",
                               plain,
                               "Opening file to shred '" + file + "'.",
                               "Deleting '" + file + "'.",
                               "Renaming '" + file + "' to '" + renamed + "'.",
                               "File has been renamed from '" + file + "' to '" + renamed + "'.",
                               "File has been successfully deleted.",
                               "Cleaned file '" + file + "'.",
                               "1 items found and 1 items cleaned on reboot.",
                               "Error: could not load cleaning config due to error while opening file",
                           }));
}

// Each loop that ends before its next element tells it.
class TraceStop : public Trace {
  protected:
    // Stops the run from within a message.
    void StopAt(UINT message, LPARAM lParam = -1) {
        window.OnMessage([=, this](const RecordedMessage& sent) {
            if (sent.message == message && (lParam == -1 || sent.lParam == lParam)) engine->CancelAction();
            return LRESULT{0};
        });
    }
    const std::string stop = "User cancelled current action.";
};

TEST_F(TraceStop, OfALoad) {
    const std::string file = folder.At("x");
    const std::string category = ElementXml(
        "Category", "Name='C'",
        ElementXml(
            "Application", "Name='A'",
            ElementXml("Entity", "Name='E'", ItemXml("File", file) + ItemXml("File", file)) + "<Entity />") +
            "<Application />");
    auto drives = API_HOOK(GetDriveTypeA);
    drives.Before(1, [&] { engine->CancelAction(); });
    EXPECT_EQ(LoadLines(DefinitionsXml(category + "<Category />")),
              Lines({ItemLine("File", file), stop, "Loaded entity 'E'.", stop,
                     "Loaded application 'A'.  Installed='yes'", stop, "Loaded category 'C'.", stop,
                     "Cleaning definitions have been loaded."}));
}

TEST_F(TraceStop, OfAScan) {
    folder.MakeFile("many\\a.txt");
    folder.MakeFile("many\\b.txt");
    const std::string items = ItemXml("Folder", folder.At("many") + "\\") + ItemXml("File", folder.At("x"));
    const std::string entity = ElementXml("Entity", "Name='E'", items);
    const std::string application = ElementXml("Application", "Name='A'", entity + entity);
    const std::string category = ElementXml("Category", "Name='C'", application + application);
    ASSERT_TRUE(Load(DefinitionsXml(category + category)));
    TakeLines();
    window.OnMessage([this](const RecordedMessage& sent) {
        if (sent.node && sent.node->level == 4) engine->CancelAction();
        return LRESULT{0};
    });
    Scan();
    EXPECT_EQ(TakeLines(), Lines({"Starting scan.", stop, stop, stop, stop, stop, "Finished scan."}))
        << "the entries of the folder, the items, the entities, the applications and the categories";
}

TEST_F(TraceStop, OfAClean) {
    const auto file = [this](const char* name) { return ItemXml("File", folder.MakeFile(name)); };
    folder.MakeFile("many\\a.txt");
    folder.MakeFile("many\\b.txt");
    const std::string items = ItemXml("Folder", folder.At("many") + "\\") + file("x");
    const std::string entity = ElementXml("Entity", "Name='E'", items);
    const std::string application = ElementXml("Application", "Name='A'", entity + entity);
    const std::string category = ElementXml("Category", "Name='C'", application + application);
    ASSERT_TRUE(Load(DefinitionsXml(category + category)));
    Scan();
    engine->SetScanOnly(true);
    TakeLines();
    StopAt(WM_ENGINE_CLEAN_PROGRESS);
    const Lines lines = CleanLines();
    EXPECT_EQ(lines, Lines({"Starting cleaning.", "There are 24 items to clean.",
                            "Cleaned file '" + folder.At("many\\a.txt") + "'.", stop, stop, stop, stop, stop,
                            "Finished cleaning."}))
        << "the results, the items, the entities, the applications and the categories";
}

TEST_F(TraceStop, OfAShred) {
    StopAt(WM_ENGINE_SHRED_PROGRESS);
    const std::string missing = folder.At("missing");
    EXPECT_EQ(ShredLines({missing, missing}, 1),
              Lines({"Starting shredding files.", "Shredding '" + missing + "'.",
                     "File was already deleted before shredding: '" + missing + "'.", stop,
                     "Finished shredding files."}));
}

}  // namespace
