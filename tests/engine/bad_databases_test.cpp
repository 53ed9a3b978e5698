#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "base/db_container.h"
#include "engine/engine_fixture.h"

// Databases that nobody in his senses wrote: a load ends, with less or with nothing, and never touches the
// preferences.

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

    // Each beginning of a database.
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
    EXPECT_FALSE(LoadText(DefinitionsXml("") + std::string(kMaxDbPayload, ' '))) << "too long";
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
    EXPECT_FALSE(
        LoadText(DefinitionsXml(Repeated("<Category Name='C'>", kDepth) + Repeated("</Category>", kDepth))));
    EXPECT_TRUE(LoadText(OneEntityXml(Repeated(item, kDepth)))) << "as many beside each other are no fault";
    EXPECT_EQ(Items(Entity()).size(), kDepth);
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
    EXPECT_FALSE(LoadPreferences(PackDb(kStates + std::string(kMaxDbPayload, ' ')))) << "too long";
    EXPECT_TRUE(LoadPreferences(PackDb(Repeated("<a>", 100000) + kStates + Repeated("</a>", 100000))));
}

}  // namespace
