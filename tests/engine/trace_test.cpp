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

TEST_F(Trace, TellsAShred) {
    EXPECT_EQ(ShredText({}, 1), "\nStarting shredding files.\nNo files to shred.\n");
    const std::string file = folder.MakeFile("a.b.txt");
    const WriteRecorder recorder;
    EXPECT_EQ(ShredText({file, folder.At("missing.txt")}, 3), R"(
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
Finished shredding files.
)");
}

// Each loop that ends before its next element tells it: the entries, the items, the entities, the
// applications and the categories.
TEST_F(Trace, TellsAStopOnEachLevel) {
    folder.MakeFile("many\\a.txt");
    folder.MakeFile("many\\b.txt");
    const std::string items = ItemXml("Folder", folder.At("many") + "\\") + ItemXml("File", folder.At("x"));
    const std::string entity = ElementXml("Entity", "Name='E'", items);
    const std::string application = ElementXml("Application", "Name='A'", entity + entity);
    const std::string category = ElementXml("Category", "Name='C'", application + application);
    ASSERT_TRUE(Load(DefinitionsXml(category + category)));
    NameInText("User cancelled current action.\n", "<stop>\n");
    TakeText();
    window.OnMessage([this](const RecordedMessage& sent) {
        if (sent.node && sent.node->level == 4) engine->CancelAction();
        return LRESULT{0};
    });
    Scan();
    EXPECT_EQ(TakeText(), "\nStarting scan.\n<stop>\n<stop>\n<stop>\n<stop>\n<stop>\nFinished scan.\n");
}

}  // namespace
