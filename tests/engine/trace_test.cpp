#include <gtest/gtest.h>
#include <windows.h>

#include <shlobj.h>

#include <string>
#include <string_view>
#include <vector>

#include "engine/trace_fixture.h"
#include "engine/write_recorder.h"
#include "support/api_hook.h"
#include "system/handles.h"
#include "system/system_facts.h"

// The wordings of the trace and their order. The expected texts are whole logs.

namespace {

TEST_F(Trace, TellsAWholeLoad) {
    const std::string variable = "<LocationVariables><LocationVariable Name='where' Type='SYS' Location='" +
                                 folder.Path() + "' ValueName='' /></LocationVariables>";
    const std::string entity =
        ElementXml("Entity", "Name='E'", ItemXml("File", "%where%a.txt") + ItemXml("Other", "y", "All"));
    const std::string xml = DefinitionsXml(
        variable +
        ElementXml("Category", "Name='C'",
                   ElementXml("Application", "Name='Here'", entity) +
                       ElementXml("Application", "Name='Gone' InstallLocation='%where%none'", entity)));
    folder.MakeFile("CleanPreferences.db", PackDb("<scan_item_states></scan_item_states>"));
    ASSERT_TRUE(Load(xml));
    NameInText("  " + std::to_string(xml.size()) + " bytes", "  <size> bytes");
    std::string text = TakeText();

    // Each variable that is defined, and each protected folder, has its line.
    for (const char* name : {"%Appdata%", "%history%", "%systemroot%", "%user_sid%", "%windir%"}) {
        std::string line = "System location variable '" + std::string(name) +
                           "' has been created with value '" + engine->ExpandLocation(name) + "'.\n";
        ReplaceAll(line, data, "<data>");
        EXPECT_NE(text.find(line), std::string::npos) << line << text;
    }
    const std::string system = LowerText(FolderPath(CSIDL_SYSTEM).value());
    EXPECT_NE(text.find("\nRestrict path '" + system + "' has been created.\n"), std::string::npos) << text;
    for (const char* many : {"\nSystem location variable '", "\nRestrict path '"}) {
        for (std::size_t at = 0; (at = text.find(many)) != std::string::npos;) {
            text.erase(at, text.find('\n', at + 1) - at);
        }
    }
    EXPECT_EQ(text, R"(
Loading cleaning definitions from '<folder>cleaning.db'.
Cleaning definition version '7' '2008-05-01'.  <size> bytes.
Creating system location variables.
Creating restricted file paths.
Loading location variables from xml.
User-defined Location variable '%where%' has been created with value '<folder>'.
Loaded item Type='File' Location='%where%a.txt' Action='Delete'.
Loaded item Type='Other' Location='y' Action='All'.
Loaded entity 'E'.
Loaded application 'Here'.  Installed='yes'
Loaded item Type='File' Location='%where%a.txt' Action='Delete'.
Loaded item Type='Other' Location='y' Action='All'.
Loaded entity 'E'.
Loaded application 'Gone'.  Installed='no'
Loaded category 'C'.
Loading scanning item enabled states.
Cleaning definitions have been loaded.
)");
}

TEST_F(Trace, TellsWhatALoadDrops) {
    const std::string variables =
        "<LocationVariable Name='a' Type='REG' Location='HKCU\\x' />"
        "<LocationVariable Name='b' Type='REG' Location='nowhere' ValueName='v' />"
        "<LocationVariable Name='c' Type='sys' Location='l' ValueName='v' />";
    const std::string items = ElementXml("item", "Type='File' Action='Delete'", "") +
                              ItemXml("Folder", "Q:\\x\\") + ItemXml("RegKey", "nowhere") +
                              ItemXml("RegValue", "HKCU\\k") + ItemXml("IniValue", "x.ini") +
                              ItemXml("RegKey", "HKCU\\k", "Erase");
    const std::string entities = ElementXml("Entity", "", "") + ElementXml("Entity", "Name='E'", "");
    const std::string applications =
        ElementXml("Application", "", "") + ElementXml("Application", "Name='A'", entities);
    const std::string loaded = ElementXml("Application", "Name='B'", ElementXml("Entity", "Name='F'", items));
    const std::string categories = ElementXml("Category", "", "") +
                                   ElementXml("Category", "Name='C'", applications) +
                                   ElementXml("Category", "Name='D'", loaded);
    EXPECT_EQ(LoadText(DefinitionsXml(ElementXml("LocationVariables", "", variables) + categories)), R"(
Error: location variable format invalid.  Name: 'a' Type: 'REG' Location: 'HKCU\x' ValueName: '(null)'.
Error: registry section invalid while creating location variable.  Valid section names are: HKCR, HKCU and HKLM.  Name: 'b' Type: 'REG' Location: 'nowhere' ValueName: 'v'.
Info: location variable value not loaded.  Name: 'b' Type: 'REG' Location: 'nowhere' ValueName: 'v'.
Error: Unknown location variable type.  Name: 'c' Type: 'sys' Location: 'l' ValueName: 'v'.
Info: location variable value not loaded.  Name: 'c' Type: 'sys' Location: 'l' ValueName: 'v'.
Error: Cleaning category with no name found!
Error: Cleaning application with no name found!
Error: Cleaning entity with no name found for application 'A'.
Warning: entity 'E' not loaded because it has no item entries.
Warning application 'A' not loaded because it has no entity entries.
Warning category 'C' not loaded because it has no application entries.
Error: cleaning item not loaded due to missing xml tags.  Type='File' Location='(null)' Action='Delete'.
Cleaning item not loaded because the path is not a fixed drive.  Type='Folder' Location='Q:\x\' Action='Delete'.
Error: path for cleaning item of type RegValue or RegKey needs to start with HKCR, HKCU, or HKLM.  Type='RegKey' Location='nowhere' Action='Delete'.
Error: cleaning item not loaded due to invalid type or action.  Type='RegKey' Location='nowhere' Action='Delete'.
Error: cleaning item of type RegValue is missing ValueName.  Type='RegValue' Location='HKCU\k' Action='Delete'.
Error: cleaning item not loaded due to invalid type or action.  Type='RegValue' Location='HKCU\k' Action='Delete'.
Error: cleaning item of type IniValue is missing ValueName.  Type='IniValue' Location='x.ini' Action='Delete'.
Error: cleaning item not loaded due to invalid type or action.  Type='IniValue' Location='x.ini' Action='Delete'.
Error: cleaning item not loaded due to invalid type or action.  Type='RegKey' Location='HKCU\k' Action='Erase'.
Loaded entity 'F'.
Loaded application 'B'.  Installed='yes'
Loaded category 'D'.
Cleaning definitions have been loaded.
)");
}

TEST_F(Trace, TellsOfTheFilesOfDefinitionsAndStates) {
    const std::string xml = OneEntityXml(ItemXml("Other", "y"));
    ASSERT_TRUE(Load(xml));
    TakeText();
    ::DeleteFileA(definitionsFile.c_str());
    EXPECT_FALSE(Load());
    EXPECT_EQ(TakeText(), R"(
Freeing cleaning definition objects.
Saving scanning item enabled states.
Error: could not load cleaning config due to error while opening file
)");
    ASSERT_TRUE(Load(xml));
    TakeText();
    engine->DeleteItemStates();
    engine->SetItemCheck(reinterpret_cast<HSCANITEM>(0xABC), true, true);
    EXPECT_EQ(TakeText(), R"(
User cleaning preference file deleted.
Freeing cleaning definition objects.
Error: CCleaningEngine::SetItemCheck() was passed an invalid HSCANITEM abc.
)");
}

TEST_F(Trace, TellsAScanAndTheKeysThatItOpens) {
    const std::string locked = key.MakeKey("locked");
    key.MakeKey("locked\\sub");
    ASSERT_TRUE(Load(OneEntityXml(ItemXml("RegKey", "HKCU\\" + locked))));
    DenyEveryone(key.Root(), locked);
    TakeText();
    Scan();
    EXPECT_EQ(engine->GetItemsFound(), 1u);
    EXPECT_EQ(TakeText(), R"(
Starting scan.
Permissions for registry key increased: '<key>\locked'.
Permissions for registry key reverted: '<key>\locked'.
Finished scan.
)");
}

TEST_F(Trace, TellsACleanOfEachKind) {
    FindEachKind();
    engine->SetScanOnly(true);
    EXPECT_EQ(CleanText(), R"(
Starting cleaning.
There are 5 items to clean.
Cleaning reg value 'HKEY_CURRENT_USER\<key> -> value'.
Cleaning reg key 'HKEY_CURRENT_USER\<key>\keys\sub'.
Cleaned file '<folder>a.b.txt'.
Cleaning folder '<folder>root\sub\'.
Cleaning ini value '<folder>a.ini' [part]key.
Finished cleaning.
)");
    engine->SetScanOnly(false);
    Scan();
    TakeText();
    EXPECT_EQ(CleanText(), R"(
Starting cleaning.
There are 5 items to clean.
Starting to clean reg value 'HKEY_CURRENT_USER\<key> -> value'.
Cleaned reg value 'HKEY_CURRENT_USER\<key> -> value'.
Starting to clean reg key 'HKEY_CURRENT_USER\<key>\keys\sub'.
Cleaned reg key 'HKEY_CURRENT_USER\<key>\keys\sub'.
Starting to clean file '<folder>a.b.txt'.
File attributes are '<plain>'.
Deleting '<folder>a.b.txt'.
Renaming '<folder>a.b.txt' to '<folder><renamed>'.
File has been renamed from '<folder>a.b.txt' to '<folder><renamed>'.
File has been successfully deleted.
Cleaned file '<folder>a.b.txt'.
Starting to clean folder '<folder>root\sub\'.
Cleaning folder '<folder>root\sub\'.
Starting to clean ini value '<folder>a.ini' [part]key.
Cleaning ini value '<folder>a.ini' [part]key.
Finished cleaning.
)");
    EXPECT_EQ(CleanText(), R"(
Starting cleaning.
There are no items to clean.
)");
}

TEST_F(Trace, TellsWhatCouldNotBeCleaned) {
    FindEachKind();
    auto values = API_HOOK(RegDeleteValueA);
    values.FailAlways(0, LSTATUS{ERROR_GEN_FAILURE});
    key.MakeKey("keys\\sub\\late");
    folder.MakeFile("root\\sub\\late");
    ::SetFileAttributesA(folder.At("a.ini").c_str(), FILE_ATTRIBUTE_READONLY);
    auto renames = API_HOOK(MoveFileA);
    renames.FailAlways(ERROR_ACCESS_DENIED);
    auto delays = API_HOOK(MoveFileExA);
    delays.FailAlways(ERROR_ACCESS_DENIED);
    EXPECT_EQ(CleanText(), R"(
Starting cleaning.
There are 5 items to clean.
Starting to clean reg value 'HKEY_CURRENT_USER\<key> -> value'.
Error: could not clean reg value 'HKEY_CURRENT_USER\<key> -> value'.
Starting to clean reg key 'HKEY_CURRENT_USER\<key>\keys\sub'.
Error: could not clean reg key 'HKEY_CURRENT_USER\<key>\keys\sub'.
Starting to clean file '<folder>a.b.txt'.
File attributes are '<plain>'.
Deleting '<folder>a.b.txt'.
Renaming '<folder>a.b.txt' to '<folder><renamed>'.
PendingFileRenameOperations registry value is 0 bytes.
File will be deleted on reboot: '<folder>a.b.txt'.
Finish MoveFileEx call.
Error: could not clean file '<folder>a.b.txt'.
Starting to clean folder '<folder>root\sub\'.
Error: could not clean folder '<folder>root\sub\'.
Starting to clean ini value '<folder>a.ini' [part]key.
Error: could not clean ini value '<folder>a.ini' [part]key.
Finished cleaning.
)");
}

TEST_F(Trace, TellsAShred) {
    EXPECT_EQ(ShredText({}, 1), "\nStarting shredding files.\nNo files to shred.\n");
    const std::string file = folder.MakeFile("a.b.txt");
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
    const WriteRecorder recorder;
    WorkerLetters letters(WriteRecorder::kCluster);  // behind the random pass
    NameInText(letters.Renamed(file).substr(folder.Path().size()), "<renamed>");
    NameInText(letters.Renamed(special).substr(folder.Path().size()), "<renamed special>");
    EXPECT_EQ(ShredText({file, folder.At("missing.txt"), special}, 3), R"(
Starting shredding files.
Shredding '<folder>a.b.txt'.
File attributes are '<plain>'.
Opening file to shred '<folder>a.b.txt'.
Deleting '<folder>a.b.txt'.
Renaming '<folder>a.b.txt' to '<folder><renamed>'.
File has been renamed from '<folder>a.b.txt' to '<folder><renamed>'.
File has been successfully deleted.
Shredding '<folder>missing.txt'.
File was already deleted before shredding: '<folder>missing.txt'.
Shredding '<folder>special'.
File attributes could not be changed: '<folder>special'.
File attributes are '0x800'.
Opening file to shred '<folder>special'.
Attempting to write over special file '<folder>special'.
Deleting '<folder>special'.
Renaming '<folder>special' to '<folder><renamed special>'.
File has been renamed from '<folder>special' to '<folder><renamed special>'.
File has been successfully deleted.
Finished shredding files.
)");
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
    WorkerLetters letters(0);
    std::string tail = "_";
    for (int i = 0; i < 5; ++i) tail += letters.Letter();
    NameInText(tail, "<tail>");
    const std::string first = ShredText({file}, 1);
    listSize = 15864;
    EXPECT_EQ(first + ShredText({file}, 1), R"(
Starting shredding files.
Shredding '<folder>elsewhere\a.txt'.
File attributes are '<plain>'.
Opening file to shred '<folder>elsewhere\a.txt'.
PendingFileRenameOperations registry value is 15863 bytes.
File will be moved on reboot from '<folder>elsewhere\a.txt' to '<data>\Quillmere\Velvane\DeleteOnReboot\a.txt<tail>'.
Finish MoveFileEx call.
Finished shredding files.

Starting shredding files.
Shredding '<folder>elsewhere\a.txt'.
File attributes are '<plain>'.
Opening file to shred '<folder>elsewhere\a.txt'.
PendingFileRenameOperations registry value is 15864 bytes.
Cannot delete file on reboot because PendingFileRenameOperations registry value is full. '<folder>elsewhere\a.txt'.
Finished shredding files.
)");
}

TEST_F(Trace, TellsTheCompletion) {
    const std::string file = folder.MakeFile("data\\Quillmere\\Velvane\\DeleteOnReboot\\a.txt");
    NameInText("<data>\\Quillmere\\Velvane\\DeleteOnReboot", "<waiting>");
    const WriteRecorder recorder;
    const std::string renamed = WorkerLetters(WriteRecorder::kCluster).Renamed(file);
    NameInText(renamed.substr(renamed.rfind('\\') + 1), "<renamed>");
    EXPECT_FALSE(Load());
    EXPECT_EQ(TakeText(), R"(
Found 1 items to clean on reboot.
Starting to clean file '<waiting>\a.txt'.
File attributes are '<plain>'.
Opening file to shred '<waiting>\a.txt'.
Deleting '<waiting>\a.txt'.
Renaming '<waiting>\a.txt' to '<waiting>\<renamed>'.
File has been renamed from '<waiting>\a.txt' to '<waiting>\<renamed>'.
File has been successfully deleted.
Cleaned file '<waiting>\a.txt'.
1 items found and 1 items cleaned on reboot.
Error: could not load cleaning config due to error while opening file
)");
}

// Each loop that ends before its next element tells it.
class TraceStop : public Trace {
  protected:
    TraceStop() { NameInText("User cancelled current action.\n", "<stop>\n"); }

    // Two of everything, so that each loop has an element left: 24 results in the end.
    void LoadTwoOfEach() {
        folder.MakeFile("many\\a.txt");
        folder.MakeFile("many\\b.txt");
        const std::string items =
            ItemXml("Folder", folder.At("many") + "\\") + ItemXml("File", folder.MakeFile("x"));
        const std::string entity = ElementXml("Entity", "Name='E'", items);
        const std::string application = ElementXml("Application", "Name='A'", entity + entity);
        const std::string category = ElementXml("Category", "Name='C'", application + application);
        ASSERT_TRUE(Load(DefinitionsXml(category + category)));
    }

    // Stops the run from within the first message of this number.
    void StopAt(UINT message) {
        window.OnMessage([this, message](const RecordedMessage& sent) {
            if (sent.message == message) engine->CancelAction();
            return LRESULT{0};
        });
    }
};

TEST_F(TraceStop, OfALoad) {
    const std::string entities =
        ElementXml("Entity", "Name='E'", ItemXml("File", "C:\\x") + ItemXml("File", "C:\\y")) + "<Entity />";
    const std::string applications = ElementXml("Application", "Name='A'", entities) + "<Application />";
    auto drives = API_HOOK(GetDriveTypeA);
    drives.Before(1, [&] { engine->CancelAction(); });
    EXPECT_EQ(LoadText(DefinitionsXml(ElementXml("Category", "Name='C'", applications) + "<Category />")), R"(
Loaded item Type='File' Location='C:\x' Action='Delete'.
<stop>
Loaded entity 'E'.
<stop>
Loaded application 'A'.  Installed='yes'
<stop>
Loaded category 'C'.
<stop>
Cleaning definitions have been loaded.
)");
}

// The entries, the items, the entities, the applications and the categories.
TEST_F(TraceStop, OfAScanAndAClean) {
    LoadTwoOfEach();
    TakeText();
    window.OnMessage([this](const RecordedMessage& sent) {
        if (sent.node && sent.node->level == 4) engine->CancelAction();
        return LRESULT{0};
    });
    Scan();
    EXPECT_EQ(TakeText(), "\nStarting scan.\n<stop>\n<stop>\n<stop>\n<stop>\n<stop>\nFinished scan.\n");

    window.OnMessage(nullptr);
    Scan();
    engine->SetScanOnly(true);
    TakeText();
    StopAt(WM_ENGINE_CLEAN_PROGRESS);
    EXPECT_EQ(CleanText(), R"(
Starting cleaning.
There are 24 items to clean.
Cleaned file '<folder>many\a.txt'.
<stop>
<stop>
<stop>
<stop>
<stop>
Finished cleaning.
)");
}

TEST_F(TraceStop, OfAShred) {
    StopAt(WM_ENGINE_SHRED_PROGRESS);
    EXPECT_EQ(ShredText({folder.At("missing"), folder.At("other")}, 1), R"(
Starting shredding files.
Shredding '<folder>missing'.
File was already deleted before shredding: '<folder>missing'.
<stop>
Finished shredding files.
)");
}

}  // namespace
