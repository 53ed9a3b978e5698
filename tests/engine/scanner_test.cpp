#include <gtest/gtest.h>
#include <windows.h>

#include <aclapi.h>
#include <sddl.h>
#include <shlobj.h>

#include <algorithm>
#include <string>
#include <vector>

#include "engine/bin_stand_in.h"
#include "engine/engine_fixture.h"
#include "support/api_hook.h"
#include "support/folder_link.h"

namespace {

using Lines = std::vector<std::string>;

std::string CategoryXml(const std::string& attributes, const std::string& content) {
    return ElementXml("Category", attributes, content);
}

std::string ApplicationXml(const std::string& attributes, const std::string& content) {
    return ElementXml("Application", attributes, content);
}

std::string EntityXml(const std::string& attributes, const std::string& content) {
    return ElementXml("Entity", attributes, content);
}

class Scanner : public EngineTest {
  protected:
    // One message as a line: what it is, and all that it carries.
    std::string Line(const RecordedMessage& message) const {
        EXPECT_TRUE(message.sentByWorker) << message.message;
        switch (message.message) {
            case WM_ENGINE_NODE: {
                EXPECT_EQ(message.wParam, 1u);
                const RecordedNode& node = *message.node;
                EXPECT_FALSE(node.imageFile || node.image);
                return "node " + std::to_string(node.level) + " " + node.name +
                       (node.help ? " help=" + *node.help : "") +
                       (node.filePath ? " file=" + *node.filePath : "") + (node.checked ? " checked" : "") +
                       (node.expanded ? " expanded" : "");
            }
            case WM_ENGINE_NODE_DONE:
                EXPECT_EQ(message.lParam, 0);
                return "empty " + ItemString(reinterpret_cast<HSCANITEM>(message.wParam));
            case WM_ENGINE_SCAN_PROGRESS:
                EXPECT_EQ(message.wParam, 0u);
                return "progress " + std::to_string(message.lParam);
            case WM_ENGINE_SCAN_DONE:
                EXPECT_LT(message.wParam, 60000u);
                return "done " + std::to_string(message.lParam);
            default:
                return "unexpected " + std::to_string(message.message);
        }
    }

    Lines Log() const {
        Lines lines;
        for (const RecordedMessage& message : window.Messages()) lines.push_back(Line(message));
        return lines;
    }

    // Loads and scans definitions with these items in one entity.
    void ScanItems(const std::string& items, const std::string& entityAttributes = "") {
        ASSERT_TRUE(Load(OneEntityXml(items, entityAttributes)));
        Scan();
    }

    std::string FileItem(const std::string& pattern) const { return ItemXml("File", folder.At(pattern)); }

    HSCANITEM ResultHandle(std::size_t index) const { return HandleOf(*Results(Entity()).at(index)); }
};

TEST_F(Scanner, SendsEachNodeEachStepAndEachEmptyNodeInOrder) {
    const std::string a = folder.MakeFile("a.txt");
    const std::string ini = folder.MakeFile("x.ini", "[S]\r\nK=text\r\n");
    const std::string nothing = FileItem("nothing");
    const std::string found =
        EntityXml("Name='Files' Help='about files'",
                  ItemXml("File", a) + ItemXml("Folder", "%windir%\\") + ItemXml("Unheard", "of")) +
        EntityXml("Name='Ini'", ItemXml("IniValue", ini, "Delete", "[S]K")) +
        EntityXml("Name='Off' Default='0'", FileItem("*")) + EntityXml("Name='Nothing'", nothing);
    ASSERT_TRUE(Load(DefinitionsXml(
        CategoryXml("Name='Traces' Help='about traces'",
                    ApplicationXml("Name='Program'", found) +
                        ApplicationXml("Name='Absent' InstallLocation='C:\\nowhere'",
                                       EntityXml("Name='In absent'", FileItem("*"))) +
                        ApplicationXml("Name='Unwanted' Default='no'",
                                       EntityXml("Name='In unwanted'", FileItem("*")))) +
        CategoryXml("Name='Empty'", ApplicationXml("Name='Clean'", EntityXml("Name='Spotless'", nothing))) +
        CategoryXml("Name='Disabled'",
                    ApplicationXml("Name='Idle'", EntityXml("Name='In idle'", FileItem("*")))))));
    engine->SetItemCheck(HandleOf(Category("Disabled")), false, true);

    auto debugger = API_HOOK(OutputDebugStringA);
    Lines warnings;
    debugger.Replace([&](LPCSTR text) { warnings.push_back(text); });
    Scan();
    EXPECT_EQ(
        Log(),
        (Lines{"node 1 Traces help=about traces checked", "node 2 Program checked expanded",
               "node 3 Files help=about files checked", "node 4 a.txt file=" + a + " checked", "progress 16",
               "progress 33",  // the restricted one
               "progress 50",  // the one of no known type
               "progress 50", "node 3 Ini checked", "node 4 [S]K checked", "progress 66", "progress 66",
               "node 3 Nothing checked", "progress 83", "progress 83", "node 1 Empty checked",
               "node 2 Clean checked expanded", "node 3 Spotless checked", "progress 100", "progress 100",
               // children before their parent, scanned or not
               "empty Off", "empty Nothing", "empty In absent", "empty Absent", "empty In unwanted",
               "empty Unwanted", "empty Spotless", "empty Clean", "empty Empty", "empty In idle",
               "empty Idle", "empty Disabled", "done 0"}));
    const std::string restricted = Items(Entity("Traces", "Program", "Files"))[1]->location.OrEmpty();
    EXPECT_EQ(warnings, Lines{"Skipping Restricted Path: " + restricted});

    const auto nodes = window.Nodes();
    EXPECT_EQ(nodes[0].handle, HandleOf(Category("Traces")));
    EXPECT_EQ(nodes[1].handle, HandleOf(Application("Traces", "Program")));
    EXPECT_EQ(nodes[2].handle, HandleOf(Entity("Traces", "Program", "Files")));
    EXPECT_EQ(nodes[3].handle, HandleOf(*Results(Entity("Traces", "Program", "Files")).at(0)));

    EXPECT_EQ(engine->GetItemsFound(), 2u);
    EXPECT_EQ(Entity("Traces", "Program", "Files").foundCount, 1u);
    EXPECT_EQ(Entity("Traces", "Program", "Ini").foundCount, 0u) << "kept: an ini value is not counted";
    EXPECT_EQ(Application("Traces", "Program").foundCount, 1u);
    EXPECT_EQ(Category("Traces").foundCount, 1u);
}

TEST_F(Scanner, StopsAtTheNextElementOfAnyLevel) {
    folder.MakeFile("a1");
    folder.MakeFile("a2");
    const std::string items = FileItem("a*") + FileItem("a*");
    const std::string entities = EntityXml("Name='E1'", items) + EntityXml("Name='E2'", items);
    const std::string applications =
        ApplicationXml("Name='P1'", entities) + ApplicationXml("Name='P2'", entities);
    const std::string xml =
        DefinitionsXml(CategoryXml("Name='K1'", applications) + CategoryXml("Name='K2'", applications));
    const struct {
        std::string at;
        Lines rest;
        std::uint32_t found;
    } kCases[] = {
        {"node 2 P1", {}, 0},
        {"node 4 a1", {"progress 6", "progress 6"}, 1},
        {"progress 12", {"progress 12"}, 4},  // behind the last item of the entity
        {"node 1 K2", {}, 16},
    };
    for (const auto& row : kCases) {
        SCOPED_TRACE(row.at);
        ASSERT_TRUE(Load(xml));
        bool stopped = false;
        window.OnMessage([&](const RecordedMessage& message) {
            if (!stopped && message.message != WM_ENGINE_LOADED && Line(message).starts_with(row.at)) {
                stopped = true;
                engine->CancelAction();
                window.Clear();  // what comes after is looked at
            }
            return window.DefaultAnswer(message);
        });
        Scan();
        window.OnMessage(nullptr);
        Lines log = Log();
        ASSERT_FALSE(log.empty());
        EXPECT_EQ(log.back(), "done 1");
        log.pop_back();
        const auto firstEmpty = std::find_if(
            log.begin(), log.end(), [](const std::string& line) { return line.starts_with("empty"); });
        EXPECT_NE(firstEmpty, log.end()) << "the empty nodes are told after a stop, too";
        EXPECT_EQ(Lines(log.begin(), firstEmpty), row.rest);
        EXPECT_EQ(engine->GetItemsFound(), row.found) << "what was found stays";
        EXPECT_EQ(Results(Entity("K1", "P1", "E1")).size(), std::min(row.found, 4u));
        EXPECT_FALSE(Category("K2").selected);
    }
}

TEST_F(Scanner, CountsAnewExceptForTheLaterApplications) {
    folder.MakeFile("a.txt");
    const std::string entity = EntityXml("Name='E'", FileItem("*.txt"));
    ASSERT_TRUE(Load(DefinitionsXml(CategoryXml(
        "Name='K'", ApplicationXml("Name='First'", entity) + ApplicationXml("Name='Second'", entity)))));
    Scan();
    folder.MakeFile("b.txt");
    Scan();
    EXPECT_EQ(engine->GetItemsFound(), 4u);
    EXPECT_EQ(Application("K", "First").foundCount, 2u);
    EXPECT_EQ(Application("K", "Second").foundCount, 3u) << "kept: it goes on from what it held";
    // What is switched off keeps neither its count nor its results.
    engine->SetItemCheck(HandleOf(Application("K", "First")), false, true);
    Scan();
    EXPECT_EQ(Application("K", "First").foundCount, 0u);
    EXPECT_TRUE(Results(Entity("K", "First", "E")).empty());
}

TEST_F(Scanner, AsksTheWhitelistForItsEntitiesAlone) {
    folder.MakeFile("keep.txt");
    folder.MakeFile("other.txt");
    const std::string items = FileItem("*.txt");
    ASSERT_TRUE(Load(DefinitionsXml(
        CategoryXml("Name='K'", ApplicationXml("Name='P'", EntityXml("Name='Listed' Whitelist='1'", items) +
                                                               EntityXml("Name='Plain'", items))))));
    engine->SetWhitelisted("keep.txt", true);
    engine->SetWhitelisted("OTHER.TXT", true);
    Scan();
    const auto checked = [&](const std::string& entity) {
        Lines lines;
        for (const tagCLEAN_RESULT* result : Results(Entity("K", "P", entity))) {
            if (result->enabled) lines.push_back(*result->name);
        }
        std::sort(lines.begin(), lines.end());
        return lines;
    };
    EXPECT_EQ(checked("Listed"), Lines{"other.txt"});
    EXPECT_EQ(checked("Plain"), (Lines{"keep.txt", "other.txt"}));
    EXPECT_EQ(engine->GetItemsWhitelisted(), 1u);
    EXPECT_EQ(engine->GetItemsFound(), 4u);
    for (const RecordedNode& node : window.Nodes()) {
        if (node.level != 4) continue;
        EXPECT_EQ(node.checked, reinterpret_cast<tagCLEAN_RESULT*>(node.handle)->enabled);
    }
}

TEST_F(Scanner, TheBinIsSearchedThroughTheShellAndNotAskedOfTheWhitelist) {
    const std::string storage = folder.MakeFolder("storage") + "\\";
    const std::string file = folder.MakeFile("storage\\De1.txt");
    folder.MakeFile("storage\\Dc2\\keep.txt");
    const BinStandIn bin(storage);
    engine->SetWhitelisted("keep.txt", true);
    engine->SetWhitelisted("De1.txt", true);
    ScanItems(ItemXml("Folder", "%RecycleBin%\\") + ItemXml("Folder", storage), "Whitelist='1'");
    Lines found = Found(Entity());
    std::sort(found.begin(), found.end());
    const std::string folder2 = storage + "Dc2\\";
    EXPECT_EQ(found, (Lines{folder2, folder2, folder2 + "keep.txt", folder2 + "keep.txt", file, file}));
    EXPECT_EQ(engine->GetItemsWhitelisted(), 2u) << "of the folder alone";
    EXPECT_EQ(Entity().foundCount, 3u) << "kept: the bin's own entries are not counted";
    EXPECT_EQ(engine->GetItemsFound(), 6u);
}

TEST_F(Scanner, AHandleOfAResultEndsWithTheNextScan) {
    folder.MakeFile("a.txt");
    ScanItems(FileItem("*.txt"), "Whitelist='1'");
    const HSCANITEM handle = ResultHandle(0);
    ::DeleteFileA(folder.At("a.txt").c_str());
    Scan();
    EXPECT_EQ(ItemString(handle), "<item not found>");
    engine->SetItemCheck(handle, false, true);
    EXPECT_FALSE(engine->IsWhitelisted("a.txt"));
}

// What is not a whole path would be searched, and cleaned, in the current folder.
TEST_F(Scanner, SearchesWholePathsOnlyWhicheverWayTheirSlashesLean) {
    const std::string wanted = folder.MakeFile("sub\\a.txt");
    for (const char* name : {"a.txt", "%nothing%\\a.txt", "%nothing%\\sub\\b.txt"}) folder.MakeFile(name);
    std::string slashes = wanted;
    std::ranges::replace(slashes, '\\', '/');
    char former[MAX_PATH] = "";
    ::GetCurrentDirectoryA(sizeof former, former);
    ASSERT_TRUE(::SetCurrentDirectoryA(folder.Path().c_str()));
    const std::string fromRoot = folder.At("sub").substr(2);
    EXPECT_TRUE(Load(OneEntityXml(ItemXml("File", slashes) + ItemXml("File", "%nothing%\\*.txt") +
                                  ItemXml("Folder", "%nothing%\\") + ItemXml("File", "a.txt") +
                                  ItemXml("File", fromRoot + "\\*") + ItemXml("Folder", fromRoot + "\\"))));
    Scan();
    ::SetCurrentDirectoryA(former);
    EXPECT_EQ(Found(Entity()), Lines{wanted});
}

// A variable may spell a protected folder in any way, or name one that it is in.
TEST_F(Scanner, NeverTakesAProtectedFolderWholeHoweverItIsSpelt) {
    folder.MakeFile("above\\profile\\a.txt");
    folder.MakeFile("above\\beside\\b.txt");
    const std::string profile = folder.At("above\\profile");
    const FolderLink link(folder.At("link"), profile);
    auto folders = API_HOOK(SHGetFolderPathA);
    folders.Replace([&](HWND, int csidl, HANDLE, DWORD, LPSTR path) -> HRESULT {
        if (csidl != CSIDL_PROFILE) return E_FAIL;
        ::lstrcpyA(path, profile.c_str());
        return S_OK;
    });
    const std::string above = folder.At("above");
    std::string items = ItemXml("Folder", above + "\\");
    for (const std::string& spelling : {above + "\\beside\\..\\profile", above + "\\.\\profile",
                                        folder.At("link"), above + "\\profile\\.", "\\\\?\\" + profile}) {
        items += ItemXml("Folder", spelling + "\\") + ItemXml("File", spelling + "\\*");
    }
    const std::string allowed =
        ItemXml("File", folder.At("link") + "\\*.txt") + ItemXml("Folder", above + "\\beside\\");
    EXPECT_TRUE(Load(OneEntityXml(items + allowed)));
    Scan();
    EXPECT_EQ(Found(Entity()), (Lines{folder.At("link\\a.txt"), above + "\\beside\\b.txt"}));
}

// A cache that the user has moved elsewhere is one still; where others may make links, theirs lead anywhere.
TEST_F(Scanner, FollowsTheUsersOwnLinksToALocationAndNobodyElses) {
    const TestFolder elsewhere;
    for (const char* name : {"a.txt", "deep\\b.txt"}) elsewhere.MakeFile(name);
    elsewhere.MakeFile("c.ini", "[a]\r\nb=c\r\n");
    const FolderLink link(folder.At("link"), elsewhere.Path());
    const std::string at = folder.At("link") + "\\";
    EXPECT_TRUE(Load(OneEntityXml(ItemXml("Folder", at + "deep\\") + ItemXml("File", at + "a.txt") +
                                  ItemXml("IniValue", at + "c.ini", "Delete", "[a]b"))));
    Scan();
    EXPECT_EQ(Results(Entity()).size(), 3u);

    auto security = API_HOOK(GetSecurityInfo);
    security.Replace([](HANDLE, SE_OBJECT_TYPE, SECURITY_INFORMATION, PSID* owner, PSID*, PACL*, PACL*,
                        PSECURITY_DESCRIPTOR* descriptor) -> DWORD {
        ::ConvertStringSecurityDescriptorToSecurityDescriptorA("O:S-1-5-21-1-2-3-1001", SDDL_REVISION_1,
                                                               descriptor, nullptr);
        BOOL defaulted = FALSE;
        ::GetSecurityDescriptorOwner(*descriptor, owner, &defaulted);
        return ERROR_SUCCESS;
    });
    Clean();
    EXPECT_EQ(engine->GetItemsFailed(), 3u) << "the link was made since the scan";
    EXPECT_EQ(NamesIn(elsewhere.Path()), (Lines{"a.txt", "c.ini", "deep"}));
    Scan();
    EXPECT_EQ(Found(Entity()), Lines());
}

}  // namespace
