#include <gtest/gtest.h>
#include <shlobj.h>

#include <aclapi.h>
#include <string>
#include <vector>

#include "engine/cleaning_engine.h"
#include "engine/engine_fixture.h"
#include "support/api_hook.h"

namespace {

using namespace std::string_literals;

const std::string kItem = ItemXml("File", "C:\\f");
const std::string kEntity = ElementXml("Entity", "Name='E'", kItem);
const std::string kApplication = ElementXml("Application", "Name='A'", kEntity);
const std::string kCategory = ElementXml("Category", "Name='C'", kApplication);

class Definitions : public EngineTest {
  protected:
    // What was loaded, in one line: "C{A{E{1 item}}}".
    std::string Outline() const {
        std::string text;
        for (const tagCLEAN_CATEGORY& category : engine->Categories()) {
            text += category.name + "{";
            for (const tagCLEAN_APPLICATION& application : category.applications) {
                text += application.name + "{";
                for (const tagCLEAN_ENTITY& entity : application.entities) {
                    text += entity.name + "{" + std::to_string(Items(entity).size()) + "}";
                }
                text += "}";
            }
            text += "}";
        }
        return text;
    }
};

struct DocumentCase {
    const char* name;
    std::string xml;
    const char* outline;
};

TEST_F(Definitions, LoadWhatCanBeUsedAndDropTheRestElementByElement) {
    const std::string noApplications = ElementXml("Category", "Name='X'", "");
    const DocumentCase cases[] = {
        {"a whole document", DefinitionsXml(kCategory), "C{A{E{1}}}"},
        {"order stays and names may repeat",
         DefinitionsXml(kCategory + ElementXml("Category", "Name='B'", kApplication) + kCategory),
         "C{A{E{1}}}B{A{E{1}}}C{A{E{1}}}"},
        {"the root is found at any depth", "<a><b>" + DefinitionsXml(kCategory) + "</b></a>", "C{A{E{1}}}"},
        {"other elements are passed over on every level",
         DefinitionsXml("text<Application/>" +
                        ElementXml("Category", "Name='C'",
                                   "<Entity/>" + ElementXml("Application", "Name='A'",
                                                            "<Category/>" + kEntity + "<!-- x -->"))),
         "C{A{E{1}}}"},
        {"a category without a name goes",
         DefinitionsXml(ElementXml("Category", "Help='x'", kApplication) + kCategory), "C{A{E{1}}}"},
        {"an entity without items takes its empty parents with it",
         DefinitionsXml(
             ElementXml("Category", "Name='X'",
                        ElementXml("Application", "Name='A'", ElementXml("Entity", "Name='E'", ""))) +
             noApplications + kCategory),
         "C{A{E{1}}}"},
        {"every child of an entity is an item, whatever it is called",
         DefinitionsXml(ElementXml("Category", "Name='C'",
                                   ElementXml("Application", "Name='A'",
                                              ElementXml("Entity", "Name='E'",
                                                         "text<a Type='File' Location='C:\\' Action='All'/>"
                                                         "<b Type='File' Location='C:\\' Action='All'/>")))),
         "C{A{E{2}}}"},
        {"cut off in its last tag", "<xclean_def>" + kCategory + "</xclean_de", ""},
    };
    for (const DocumentCase& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(Load(c.xml), *c.outline != '\0');
        EXPECT_EQ(Outline(), c.outline);
    }
}

TEST_F(Definitions, SwitchRecordsOffAndOnByTheirFirstCharacter) {
    struct {
        const char* attributes;
        bool enabled;
        bool whitelistable;
    } const cases[] = {
        {"", true, false},
        {"Default='0'", false, false},
        {"Default='No'", true, false},
        {"Default='1' Whitelist='10'", true, true},
        {"Whitelist='yes'", true, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.attributes);
        const std::string attributes = c.attributes;
        ASSERT_TRUE(Load(DefinitionsXml(
            ElementXml("Category", "Name='C' " + attributes,
                       ElementXml("Application", "Name='A' " + attributes,
                                  ElementXml("Entity", "Name='E' Help='h' " + attributes, kItem))))));
        EXPECT_TRUE(Category("C").enabled) << "a category knows no default";
        EXPECT_EQ(Application("C", "A").enabled, c.enabled);
        EXPECT_EQ(Entity("C", "A", "E").enabled, c.enabled);
        EXPECT_EQ(Entity("C", "A", "E").whitelistable, c.whitelistable);
        EXPECT_TRUE(Category("C").selected && Application("C", "A").selected &&
                    Entity("C", "A", "E").selected);
        EXPECT_EQ(Entity("C", "A", "E").help, "h");
        ::DeleteFileA(preferencesFile.c_str());
        RestartEngine();
    }
}

TEST_F(Definitions, TakeAnApplicationForPresentByItsInstallLocation) {
    folder.MakeFile("setup\\program.exe");
    const std::pair<std::string, bool> cases[] = {
        {"", true},
        {"InstallLocation='" + folder.At("setup") + "'", true},
        {"InstallLocation='" + folder.At("setup\\program.exe") + "'", true},
        {"InstallLocation='" + folder.At("setup\\other.exe") + "'", false},
        {"InstallLocation='%unknown%\\system32'", false},
        {"InstallLocation='%nothing%'", false},
    };
    for (const auto& [attribute, present] : cases) {
        SCOPED_TRACE(attribute);
        ASSERT_TRUE(Load(DefinitionsXml(
            ElementXml("LocationVariables", "",
                       "<LocationVariable Name='nothing' Type='SYS' Location='' ValueName=''/>") +
            ElementXml("Category", "Name='C'",
                       ElementXml("Application", "Name='A' " + attribute, kEntity)))));
        EXPECT_EQ(Application("C", "A").present, present);
    }
}

class DefinitionsFile : public EngineTest {
  protected:
    DefinitionsFile() {
        folder.MakeFolder("common\\Quillmere\\Velvane");
        folder.MakeFolder("program");
        folders.Replace([this](HWND owner, int csidl, HANDLE token, DWORD flags, LPSTR path) {
            if (csidl != CSIDL_COMMON_APPDATA) return folders.Real()(owner, csidl, token, flags, path);
            if (noCommonFolder) return HRESULT{E_FAIL};
            ::lstrcpynA(path, folder.At("common").c_str(), MAX_PATH);
            return HRESULT{S_OK};
        });
        program.Replace([this](HMODULE module, LPSTR path, DWORD size) {
            if (module != nullptr) return program.Real()(module, path, size);
            const std::string file = folder.At("program\\velvane.exe");
            ::lstrcpynA(path, file.c_str(), static_cast<int>(size));
            return static_cast<DWORD>(file.size());
        });
        engine.emplace();  // one that finds its file by itself
        engine->SetPreferencesFile(preferencesFile);
    }

    std::string Common() const { return folder.At("common\\Quillmere\\Velvane\\cleaning.db"); }
    std::string BesideTheProgram() const { return folder.At("program\\cleaning.db"); }

    void Write(const std::string& file, const char* category) const {
        folder.MakeFile(
            file.substr(folder.Path().size()),
            PackDb(DefinitionsXml(ElementXml("Category", "Name='"s + category + "'", kApplication))));
    }

    // The name of the loaded category, empty if the load failed.
    std::string LoadedCategory() { return Load() ? engine->Categories().Head()->name : ""; }

    bool noCommonFolder = false;
    ApiHook<decltype(&::SHGetFolderPathA)> folders = API_HOOK(SHGetFolderPathA);
    ApiHook<decltype(&::GetModuleFileNameA)> program = API_HOOK(GetModuleFileNameA);
};

TEST_F(DefinitionsFile, IsTheFirstThatOpensOfTheTwoPlaces) {
    EXPECT_EQ(LoadedCategory(), "") << "neither is there";
    Write(BesideTheProgram(), "program");
    EXPECT_EQ(LoadedCategory(), "program");
    Write(Common(), "common");
    EXPECT_EQ(LoadedCategory(), "common");
    {
        const HANDLE writer = ::CreateFileA(Common().c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                            OPEN_EXISTING, 0, nullptr);
        EXPECT_EQ(LoadedCategory(), "program") << "the first is being written";
        ::CloseHandle(writer);
    }
    noCommonFolder = true;
    EXPECT_EQ(LoadedCategory(), "program");
    noCommonFolder = false;
    {
        SID everybody = {SID_REVISION, 1, SECURITY_WORLD_SID_AUTHORITY, {SECURITY_WORLD_RID}};
        auto security = API_HOOK(GetNamedSecurityInfoA);
        security.Replace([&](LPCSTR, SE_OBJECT_TYPE, SECURITY_INFORMATION, PSID* owner, PSID*, PACL*, PACL*,
                             PSECURITY_DESCRIPTOR* descriptor) -> DWORD {
            *owner = &everybody;
            *descriptor = nullptr;
            return ERROR_SUCCESS;
        });
        EXPECT_EQ(LoadedCategory(), "program") << "another user does not say what is deleted";
    }
    folder.MakeFile("common\\Quillmere\\Velvane\\cleaning.db", "nonsense");
    EXPECT_EQ(LoadedCategory(), "") << "what opens is what counts";
}

TEST_F(DefinitionsFile, MayHoldTheBareTextUnderTheKeyButNotWithoutIt) {
    std::string text = DefinitionsXml(kCategory);
    folder.MakeFile("program\\cleaning.db", text);
    EXPECT_EQ(LoadedCategory(), "");
    for (char& c : text) c = static_cast<char>(c ^ 0x5B);
    folder.MakeFile("program\\cleaning.db", text);
    EXPECT_EQ(LoadedCategory(), "C");
}

}  // namespace
