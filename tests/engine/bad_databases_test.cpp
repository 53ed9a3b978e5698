#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "base/db_container.h"
#include "base/memory_archive.h"
#include "engine/counting_heap.h"
#include "engine/engine_fixture.h"

// Databases that nobody in his senses wrote: a load ends, with less or with nothing, takes no more memory
// than it should, and never touches the preferences.

namespace {

using namespace std::string_literals;

std::string Repeated(std::string_view text, std::size_t count) {
    std::string all;
    all.reserve(text.size() * count);
    while (count-- != 0) all += text;
    return all;
}

std::string UnderTheKey(std::string bytes) {
    for (char& c : bytes) c = static_cast<char>(c ^ 0x5B);
    return bytes;
}

std::string SmallDefinitions() {
    return OneEntityXml(ItemXml("File", "%temp%\\nothing") +
                        ItemXml("RegValue", "HKCU\\Software\\x", "All", "v"));
}

constexpr char kStates[] =
    "<scan_item_states>\r\n"
    "\t<scan_item category=\"Category\" enabled=\"no\" />\r\n"
    "\t<scan_item category=\"Category\" application=\"Application\" enabled=\"no\" />\r\n"
    "\t<whitelist_item>keep.txt</whitelist_item>\r\n"
    "</scan_item_states>\r\n";

// An archive whose one entry has this name.
std::string ArchiveWith(const char* entry, std::string_view payload) {
    ArchiveBuffer archive;
    EXPECT_TRUE(WriteArchive(archive, entry, payload.data(), static_cast<std::uint32_t>(payload.size())));
    return UnderTheKey(std::string(reinterpret_cast<const char*>(archive.Data()), archive.Length()));
}

// A database that declares a payload of this size and is otherwise whole.
std::string Declaring(std::string_view text, std::uint32_t size) {
    std::string archive = UnderTheKey(PackDb(text));
    const std::size_t directory = archive.rfind("PK\x01\x02");
    for (const std::size_t at : {std::size_t{22}, directory + 24}) {
        for (int i = 0; i < 4; ++i) archive[at + i] = static_cast<char>(size >> (8 * i));
    }
    return UnderTheKey(std::move(archive));
}

class BadDatabases : public EngineTest {
  protected:
    BadDatabases() { folder.MakeFile("CleanPreferences.db", m_preferences); }

    // Loads these bytes as the definitions by a fresh engine, saves in vain where that failed, and looks at
    // the preferences.
    bool LoadDatabase(const std::string& bytes) {
        folder.MakeFile("cleaning.db", bytes);
        RestartEngine();
        const bool loaded = engine->LoadDefinitions();
        EXPECT_EQ(loaded, engine->Categories().Head() != nullptr);
        if (!loaded) engine->SaveItemStates();
        EXPECT_TRUE(FileContent(preferencesFile) == m_preferences) << "the preferences were changed";
        return loaded;
    }

    bool LoadText(std::string_view text) { return LoadDatabase(PackDb(text)); }

    // Loads good definitions with these bytes as the preferences, which stay as they are. The answer is
    // whether they were taken for preferences.
    bool LoadPreferences(const std::string& bytes) {
        m_preferences = bytes;
        folder.MakeFile("CleanPreferences.db", bytes);
        EXPECT_TRUE(LoadText(SmallDefinitions()));
        return !Category().enabled;
    }

    // Every way to harm a database byte by byte.
    static void ForEachTruncation(const std::string& bytes,
                                  const std::function<void(const std::string&)>& load) {
        for (std::size_t size = 0; size < bytes.size(); ++size) {
            SCOPED_TRACE("cut to " + std::to_string(size));
            load(bytes.substr(0, size));
        }
    }
    static void ForEachDamage(const std::string& bytes, const std::function<void(const std::string&)>& load) {
        constexpr char kChanges[] = {'\xFF', '\x01', '\x80', '\x04'};
        for (std::size_t at = 0; at < bytes.size(); ++at) {
            SCOPED_TRACE("damaged at " + std::to_string(at));
            std::string damaged = bytes;
            damaged[at] = static_cast<char>(damaged[at] ^ kChanges[at % std::size(kChanges)]);
            load(damaged);
        }
    }

  private:
    std::string m_preferences = PackDb(kStates);
};

TEST_F(BadDatabases, ThatAreCutOffFail) {
    const std::string whole = PackDb(SmallDefinitions());
    EXPECT_TRUE(LoadDatabase(whole));
    ForEachTruncation(whole, [&](const std::string& cut) { EXPECT_FALSE(LoadDatabase(cut)); });
    // Whole archives of a text that was cut off.
    std::string text = SmallDefinitions();
    text.erase(text.find_last_not_of("\r\n") + 1);
    ForEachTruncation(text, [&](const std::string& cut) { EXPECT_FALSE(LoadText(cut)); });
    EXPECT_TRUE(LoadText(text));
}

TEST_F(BadDatabases, ThatAreDamagedOrMadeUpEnd) {
    ForEachDamage(PackDb(SmallDefinitions()), [&](const std::string& bytes) { LoadDatabase(bytes); });
    std::mt19937 random(20080501);
    for (int i = 0; i < 100; ++i) {
        std::string bytes(random() % 2000, '\0');
        for (char& c : bytes) c = static_cast<char>(random());
        EXPECT_FALSE(LoadDatabase(bytes));
        EXPECT_FALSE(LoadDatabase(UnderTheKey("PK\x03\x04" + bytes)));
    }
}

// Documents of the right words in the wrong order.
TEST_F(BadDatabases, ThatAreMadeUpOfTheRightWordsKeepTheRulesOfTheHierarchy) {
    const std::string words[] = {"<xclean_def>",
                                 "<xclean_def>",
                                 "</xclean_def>",
                                 "<Category Name='C'>",
                                 "<Category>",
                                 "</Category>",
                                 "<Application Name='A'>",
                                 "<Application Name='A' Image='AAAA' InstallLocation='%x'>",
                                 "</Application>",
                                 "<Entity Name='E' Whitelist='1' Default='n'>",
                                 "</Entity>",
                                 "<LocationVariables>",
                                 "</LocationVariables>",
                                 "<LocationVariable Name='x' Type='SYS' Location='%x%%x%' ValueName=''/>",
                                 "<item Type='File' Location='C:\\' Action='All'/>",
                                 "<item Type='RegKey' Location='H' Action='All'/>",
                                 "<item Type='IniValue' Location='%x%' Action='Delete' ValueName='[]'/>",
                                 "&amp;",
                                 "&quot;",
                                 "'",
                                 "<",
                                 "text",
                                 "<!-- x -->",
                                 "<![CDATA[x]]>"};
    std::mt19937 random(20080502);
    int loads = 0;
    for (int i = 0; i < 500; ++i) {
        // The first half is put together so that most of it is well-formed.
        std::string text = "<xclean_def><Category Name='C'><Application Name='A'><Entity Name='E'>";
        for (std::uint32_t word = random() % (i % 2 == 0 ? 4 : 40); word != 0; --word) {
            text += words[random() % std::size(words)];
        }
        text += "</Entity></Application></Category></xclean_def>";
        loads += LoadDatabase(UnderTheKey(text));
        for (const tagCLEAN_CATEGORY& category : engine->Categories()) {
            EXPECT_NE(category.applications.Head(), nullptr);
            for (const tagCLEAN_APPLICATION& application : category.applications) {
                EXPECT_FALSE(application.name.empty());
                EXPECT_NE(application.entities.Head(), nullptr);
                for (const tagCLEAN_ENTITY& entity : application.entities) EXPECT_FALSE(entity.name.empty());
            }
        }
    }
    EXPECT_GT(loads, 10);
    EXPECT_LT(loads, 450);
}

TEST_F(BadDatabases, ThatAreNoContainersOfOursFail) {
    const std::string text = SmallDefinitions();
    EXPECT_FALSE(LoadDatabase(ArchiveWith("Other", text)));
    EXPECT_TRUE(LoadDatabase(ArchiveWith("CLEAN", text)));
    EXPECT_FALSE(LoadDatabase(UnderTheKey(PackDb(text))));
    EXPECT_FALSE(LoadDatabase(PackDb(PackDb(text))));
    EXPECT_FALSE(LoadDatabase(PackDb("\0"s + text)));
    EXPECT_FALSE(LoadDatabase(PackDb(kStates)));
}

TEST_F(BadDatabases, ThatDeclareMoreThanTheyHoldTakeNoMemoryForIt) {
    const std::string text = SmallDefinitions();
    EXPECT_TRUE(LoadDatabase(Declaring(text, static_cast<std::uint32_t>(text.size()))));
    const CountingHeap heap;
    for (const std::uint32_t size : {0xFFFFFFFFu, 0xFFFFFFFEu, 0x80000000u, kMaxDbPayload + 1, 1000000u}) {
        EXPECT_FALSE(LoadDatabase(Declaring(text, size))) << size;
        EXPECT_LT(heap.Peak(), 1u << 20) << size;
    }
    EXPECT_FALSE(LoadDatabase(Declaring(text, 10)));
    // A text that is really too long, packed and plain.
    const std::string tooLong = DefinitionsXml("") + std::string(kMaxDbPayload, ' ');
    EXPECT_FALSE(LoadText(tooLong));
    EXPECT_FALSE(LoadDatabase(UnderTheKey(tooLong)));
}

TEST_F(BadDatabases, OfAnyDepthLoadWhatIsInReach) {
    constexpr std::size_t kDepth = 100000;
    const std::string down = Repeated("<a>", kDepth);
    const std::string up = Repeated("</a>", kDepth);
    const std::string item = ItemXml("File", "C:\\x");
    const auto inEntity = [&](const std::string& content) { return OneEntityXml(item + content); };
    EXPECT_TRUE(LoadText(down + SmallDefinitions() + up));
    EXPECT_TRUE(LoadText(inEntity(down + up)));
    EXPECT_EQ(Items(Entity()).size(), 1u);
    EXPECT_FALSE(LoadText(down));
    EXPECT_FALSE(LoadText(inEntity(down)));
    for (const char* element : {"xclean_def", "Category Name='C'", "Application Name='A'", "Entity Name='E'",
                                "LocationVariables"}) {
        const std::string tag = element;
        EXPECT_FALSE(LoadText(DefinitionsXml(Repeated("<" + tag + ">", kDepth) +
                                             Repeated("</" + tag.substr(0, tag.find(' ')) + ">", kDepth))));
    }
    EXPECT_TRUE(LoadText(OneEntityXml(Repeated(item, kDepth)))) << "as many beside each other are no fault";
    EXPECT_EQ(Items(Entity()).size(), kDepth);
}

TEST_F(BadDatabases, WithAttributesOfAMegabyteAreLoadedListedScannedAndSaved) {
    const std::string mega(1u << 20, 'x');
    const std::string picture(1u << 20, 'A');
    const std::string attributes = "Name='" + mega + "' ";
    const std::string text = ElementXml(
        "xclean_def", "version='" + std::string(1u << 20, '1') + "' date='" + mega + "'",
        ElementXml("LocationVariables", "",
                   "<LocationVariable Name='" + mega + "' Type='SYS' Location='y' ValueName='" + mega +
                       "'/><LocationVariable Name='v' Type='SYS' Location='" + mega + "' ValueName=''/>") +
            ElementXml(
                "Category", attributes + "Help='" + mega + "' Image='" + picture + "'",
                ElementXml("Application",
                           attributes + "Default='" + mega + "' InstallLocation='C:\\" + mega + "'",
                           ElementXml("Entity", attributes, ItemXml("File", "C:\\" + mega))) +
                    ElementXml("Application", attributes + "Image='" + picture + "'",
                               ElementXml("Entity", attributes,
                                          ItemXml("File", "C:\\" + mega) + ItemXml("Folder", "%v%" + mega) +
                                              ItemXml("RegKey", "HKCU\\" + mega) +
                                              ItemXml("RegValue", "HKCU\\Software", "All", mega) +
                                              ItemXml("IniValue", "C:\\" + mega, "All", "[" + mega + "]k") +
                                              ItemXml(mega, mega) + ItemXml("File", "%" + mega + "%")))));
    ASSERT_TRUE(LoadText(text));
    tagCLEAN_ENTITY& entity = *engine->Categories().Head()->applications.Head()->next->entities.Head();
    EXPECT_EQ(entity.name, mega);
    ASSERT_EQ(Items(entity).size(), 7u);
    EXPECT_EQ(Items(entity)[6]->location, "y");
    List();
    EXPECT_EQ(window.Nodes().size(), 5u);
    engine->SetItemCheck(HandleOf(entity), true, true);
    Scan();
    EXPECT_EQ(engine->GetItemsFound(), 0u);
    entity.enabled = false;
    engine->SaveItemStates();
    ASSERT_TRUE(Load());
    EXPECT_FALSE(engine->Categories().Head()->applications.Head()->entities.Head()->enabled)
        << "the first of its names";
}

TEST_F(BadDatabases, WithAnyByteInANameOrALocationEnd) {
    for (int c = 0; c < 256; ++c) {
        SCOPED_TRACE(c);
        const std::string name = "a"s + static_cast<char>(c) + "b";
        const bool loaded = LoadText(DefinitionsXml(ElementXml(
            "Category", "Name='" + name + "'",
            ElementXml(
                "Application", "Name='" + name + "'",
                ElementXml("Entity", "Name='" + name + "'",
                           ItemXml("File", folder.Path() + name) +
                               ItemXml("Folder", folder.Path() + name + "\\" + name) +
                               ItemXml("RegKey", "HKCU\\" + name) +
                               ItemXml("RegValue", "HKCU\\" + name, "All", name) +
                               ItemXml("IniValue", folder.Path() + name, "All", "[" + name + "]" + name))))));
        EXPECT_EQ(loaded, c != 0 && c != '\'');
        engine->Scan();
        EXPECT_EQ(engine->GetItemsFound(), 0u);
    }
}

TEST_F(BadDatabases, MadeToFillTheMemoryDoNot) {
    constexpr std::size_t kSize = 4u << 20;
    const std::string entity = ElementXml("Entity", "Name='E'", ItemXml("File", "C:\\"));
    const auto filled = [&](std::string_view text) { return Repeated(text, kSize / text.size()); };
    const auto inEntity = [&](std::string_view text) { return OneEntityXml(filled(text)); };
    // Each value is the one before it many times over, as far as it goes.
    std::string variables =
        "<LocationVariable Name='v0' Type='SYS' Location='" + std::string(260, 'x') + "' ValueName=''/>";
    for (int i = 1; i <= 4; ++i) {
        variables += "<LocationVariable Name='v" + std::to_string(i) + "' Type='SYS' Location='" +
                     Repeated("%v" + std::to_string(i - 1) + "%", 60) + "' ValueName=''/>";
    }
    const std::string laughter = DefinitionsXml(
        ElementXml("LocationVariables", "", variables) +
        ElementXml("Category", "Name='C'",
                   ElementXml("Application", "Name='A' InstallLocation='%v2%'",
                              ElementXml("Entity", "Name='E'", filled(ItemXml("File", "%v4%"))))));
    struct {
        const char* name;
        std::string text;
    } const cases[] = {
        {"elements without anything", DefinitionsXml(filled("<a/>"))},
        {"elements down and down", Repeated("<a>", kSize / 3)},
        {"attributes", "<xclean_def " + filled("a='' ") + "/>"},
        {"text", DefinitionsXml(filled("a<a/>"))},
        {"items", inEntity("<a Type='' Location='' Action='All'/>")},
        {"entities", DefinitionsXml(ElementXml("Category", "Name='C'",
                                               ElementXml("Application", "Name='A'", filled(entity))))},
        {"a variable's name", DefinitionsXml("<LocationVariables><LocationVariable Type='SYS' Location='x' "
                                             "ValueName='' Name='" +
                                             filled("x") + "'/></LocationVariables>")},
        {"variables made of variables", laughter},
    };
    for (const auto& c : cases) {
        const std::string packed = PackDb(c.text);
        RestartEngine();
        const CountingHeap heap;
        LoadDatabase(packed);
        // The parser's 64 bytes for an element of four, and as much again for what is made of it.
        EXPECT_LT(heap.Peak(), 32 * kSize) << c.name;
    }
}

TEST_F(BadDatabases, AndTooLittleMemoryFailALoadAndNothingElse) {
    const std::string text = SmallDefinitions();
    const CountingHeap heap;
    LoadText(text);
    std::size_t failures = 0;
    for (bool loaded = false; !loaded;) {
        RestartEngine();
        heap.FailAt(++failures);
        loaded = engine->LoadDefinitions();
        heap.FailAt(0);
        ASSERT_EQ(loaded, engine->Categories().Head() != nullptr);
        ASSERT_TRUE(engine->LoadDefinitions());
        ASSERT_EQ(Items(Entity()).size(), 2u);
    }
    EXPECT_GT(failures, 50u);
}

TEST_F(BadDatabases, OfPreferencesAreDefaultsWhereTheyAreCutOffOrDamaged) {
    const std::string whole = PackDb(kStates);
    EXPECT_TRUE(LoadPreferences(whole));
    ForEachTruncation(whole, [&](const std::string& cut) { EXPECT_FALSE(LoadPreferences(cut)); });
    std::string text = kStates;
    text.erase(text.find_last_not_of("\r\n") + 1);
    ForEachTruncation(text, [&](const std::string& cut) {
        EXPECT_FALSE(LoadPreferences(PackDb(cut)));
        EXPECT_TRUE(engine->WhitelistEntries().Entries().empty());
    });
    ForEachDamage(whole, [&](const std::string& bytes) { LoadPreferences(bytes); });
}

TEST_F(BadDatabases, OfPreferencesThatAreNoneOrTooMuchAreDefaults) {
    EXPECT_FALSE(LoadPreferences(""));
    EXPECT_FALSE(LoadPreferences(ArchiveWith("Other", kStates)));
    EXPECT_FALSE(LoadPreferences(Declaring(kStates, 0xFFFFFFFE)));
    EXPECT_FALSE(LoadPreferences(PackDb(SmallDefinitions())));
    EXPECT_FALSE(LoadPreferences(PackDb(kStates + std::string(kMaxDbPayload, ' '))));
    EXPECT_TRUE(LoadPreferences(PackDb(Repeated("<a>", 100000) + kStates + Repeated("</a>", 100000))));
    const std::string mega(1u << 20, 'x');
    EXPECT_TRUE(LoadPreferences(PackDb("<scan_item_states><scan_item category='" + mega + "' enabled='" +
                                       mega + "'/><whitelist_item>" + mega + "</whitelist_item>" +
                                       "<scan_item category='Category' " + mega + "='' enabled='no'/>" +
                                       "</scan_item_states>")));
    EXPECT_TRUE(engine->IsWhitelisted(mega));
    for (const char* line : {"<whitelist_item>%d</whitelist_item>", "<whitelist_item/>",
                             "<scan_item category='Category' enabled='no'/>"}) {
        constexpr std::size_t kSize = 4u << 20;
        std::string lines;
        for (int i = 0; lines.size() < kSize; ++i) {
            lines += line;
            if (const auto at = lines.find("%d", lines.size() - 30); at != std::string::npos) {
                lines.replace(at, 2, std::to_string(i));
            }
        }
        const std::string packed = PackDb("<scan_item_states>" + lines + "</scan_item_states>");
        RestartEngine();
        const CountingHeap heap;
        LoadPreferences(packed);
        EXPECT_LT(heap.Peak(), 32 * kSize) << line;
    }
}

}  // namespace
