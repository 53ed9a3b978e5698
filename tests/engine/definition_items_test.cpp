#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "engine/cleaning_engine.h"
#include "engine/engine_fixture.h"
#include "support/api_hook.h"

namespace {

using Text = std::optional<std::string>;

constexpr ItemAction kDelete = ItemAction::Delete;
constexpr ItemAction kAll = ItemAction::All;

// What becomes of one element.
enum class Fate {
    Loaded,
    // For what it says: it counts all the same, so that its entity stays, if need be without items.
    Dropped,
    // For what it lacks or where it lies: an entity of such elements alone is dropped as well.
    NotCounted,
};

struct ItemCase {
    const char* name;
    std::string attributes;
    Fate fate;
    // Of a loaded one.
    ItemType type = ItemType::Unknown;
    ItemAction action = ItemAction::Invalid;
    HKEY hive = nullptr;
    Text location = {};
    Text valueName = {};
};

const ItemCase kItemCases[] = {
    {"a value", R"(Type='RegValue' Location='HKCU\a\b' Action='Delete' ValueName='v')", Fate::Loaded,
     ItemType::RegValue, kDelete, HKEY_CURRENT_USER, R"(a\b)", "v"},
    {"a key", R"(Type='RegKey' Location='HKLM\a' Action='All' ValueName='not read')", Fate::Loaded,
     ItemType::RegKey, kAll, HKEY_LOCAL_MACHINE, "a"},
    {"a key of an unknown hive", R"(Type='RegKey' Location='HKXX\abc' Action='All')", Fate::Loaded,
     ItemType::RegKey, kAll, nullptr, "abc"},
    {"a hive is told by its first, fourth and fifth character",
     R"(Type='RegKey' Location='HxyM\a' Action='All')", Fate::Loaded, ItemType::RegKey, kAll,
     HKEY_LOCAL_MACHINE, "a"},
    {"a file", R"(Type='File' Location='C:\*.tmp' Action='Delete' ValueName='not read')", Fate::Loaded,
     ItemType::File, kDelete, nullptr, R"(C:\*.tmp)"},
    {"a folder", R"(Type='Folder' Location='C:\a\' Action='All')", Fate::Loaded, ItemType::Directory, kAll,
     nullptr, R"(C:\a\)"},
    {"an ini value", R"(Type='IniValue' Location='C:\a.ini' Action='Delete' ValueName='[s]k')", Fate::Loaded,
     ItemType::IniValue, kDelete, nullptr, R"(C:\a.ini)", "[s]k"},
    {"an unknown type with a good action stays, without a location",
     R"(Type='file' Location='C:\a' Action='Delete' ValueName='v')", Fate::Loaded, ItemType::Unknown,
     kDelete},

    {"no location", R"(Type='File' Action='Delete')", Fate::NotCounted},
    {"no action", R"(Type='File' Location='C:\a')", Fate::NotCounted},

    {"an unknown action", R"(Type='File' Location='C:\a' Action='delete')", Fate::Dropped},
    {"a value without a hive", R"(Type='RegValue' Location='a\b' Action='All' ValueName='v')", Fate::Dropped},
    {"a value without a name", R"(Type='RegValue' Location='HKCU\a' Action='All')", Fate::Dropped},
    {"an ini value without a name", R"(Type='IniValue' Location='C:\a' Action='All')", Fate::Dropped},
};

using DefinitionItems = EngineTest;

TEST_F(DefinitionItems, AreLoadedDroppedOrPassedOverByWhatTheySay) {
    for (const ItemCase& c : kItemCases) {
        SCOPED_TRACE(c.name);
        const bool loaded = Load(OneEntityXml("<item " + c.attributes + "/>"));
        ASSERT_EQ(loaded, c.fate != Fate::NotCounted);
        if (!loaded) continue;
        const auto items = Items(Entity());
        ASSERT_EQ(items.size(), c.fate == Fate::Loaded ? 1u : 0u);
        if (items.empty()) continue;
        EXPECT_EQ(items[0]->type, c.type);
        EXPECT_EQ(items[0]->action, c.action);
        EXPECT_EQ(items[0]->hive, c.hive);
        EXPECT_EQ(items[0]->location, c.location);
        EXPECT_EQ(items[0]->valueName, c.valueName);
        EXPECT_FALSE(items[0]->restricted);
        EXPECT_EQ(items[0]->entity, &Entity());
        EXPECT_TRUE(items[0]->results.empty());
    }
}

TEST_F(DefinitionItems, HaveTheVariablesOfTheirLocationReplacedAndNoOthers) {
    ASSERT_TRUE(Load(DefinitionsXml(
        ElementXml("LocationVariables", "",
                   "<LocationVariable Name='hive' Type='SYS' Location='HKCU\\Software' ValueName=''/>") +
        ElementXml("Category", "Name='Category'",
                   ElementXml("Application", "Name='Application'",
                              ElementXml("Entity", "Name='Entity'",
                                         ItemXml("RegKey", "%hive%\\x") +
                                             ItemXml("RegValue", "%HIVE%\\x", "All", "%hive%") +
                                             ItemXml("IniValue", "%hive%.ini", "All", "[%hive%]%hive%") +
                                             ItemXml("File", "%hive%%unknown%")))))));
    const auto items = Items(Entity());
    ASSERT_EQ(items.size(), 4u);
    EXPECT_EQ(items[0]->hive, HKEY_CURRENT_USER);
    EXPECT_EQ(items[0]->location, "Software\\x");
    EXPECT_EQ(items[1]->location, "Software\\x");
    EXPECT_EQ(items[1]->valueName, "%hive%");
    EXPECT_EQ(items[2]->location, "HKCU\\Software.ini");
    EXPECT_EQ(items[2]->valueName, "[%hive%]%hive%");
    EXPECT_EQ(items[3]->location, "HKCU\\Software%unknown%");
}

class FixedDrives : public EngineTest {
  protected:
    FixedDrives() {
        drives.Replace([this](LPCSTR root) -> UINT {
            asked.push_back(root);
            const std::string text = root;
            if (text == "C:\\") return DRIVE_FIXED;
            if (text == "D:\\") return DRIVE_CDROM;
            return DRIVE_NO_ROOT_DIR;
        });
    }

    std::vector<std::string> asked;
    ApiHook<decltype(&::GetDriveTypeA)> drives = API_HOOK(GetDriveTypeA);
};

TEST_F(FixedDrives, AreWhereAFileOrFolderThatIsWrittenWithoutAVariableMustLie) {
    const std::string variable = "<LocationVariable Name='disc' Type='SYS' Location='D:\\' ValueName=''/>";
    struct {
        const char* type;
        const char* location;
        bool loaded;
        std::vector<std::string> asked;
    } const cases[] = {
        {"File", "C:\\a", true, {"C:\\"}},   {"Folder", "D:\\a", false, {"D:\\"}},
        {"File", "C:a", false, {"C:a"}},     {"Folder", "\\\\server\\share\\a\\", false, {"\\\\s"}},
        {"Folder", "%disc%a", true, {}},     {"File", "x%disc%", false, {"x%d"}},
        {"IniValue", "D:\\a.ini", true, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.location);
        asked.clear();
        const std::string items = ItemXml(c.type, c.location, "All", "[s]k");
        EXPECT_EQ(Load(DefinitionsXml(ElementXml("LocationVariables", "", variable) +
                                      ElementXml("Category", "Name='Category'",
                                                 ElementXml("Application", "Name='A'",
                                                            ElementXml("Entity", "Name='E'", items))))),
                  c.loaded);
        EXPECT_EQ(asked, c.asked);
    }
}

}  // namespace
