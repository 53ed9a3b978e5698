#include "engine/engine_fixture.h"

#include <cstdlib>
#include <memory>
#include <stdexcept>

#include "base/db_container.h"
#include "base/memory_archive.h"

namespace {

// The record of this name in a list.
template <class Record>
Record& Named(const RecordList<Record>& records, std::string_view name) {
    for (Record& record : records) {
        if (record.name == name) return record;
    }
    throw std::runtime_error("there is no record " + std::string(name));
}

bool StartsWithAnyCase(const std::string& text, const std::string& start) {
    return ::_strnicmp(text.c_str(), start.c_str(), start.size()) == 0;
}

bool IsRegistry(ResultType type) {
    return type != ResultType::File && type != ResultType::Directory && type != ResultType::IniValue;
}

}  // namespace

std::string PackDb(std::string_view text) {
    std::uint8_t* bytes = nullptr;
    const std::uint32_t size = EncodeDbFile(text.data(), static_cast<std::uint32_t>(text.size()), &bytes);
    const UniqueBlock owner(bytes);
    if (size == 0) throw std::runtime_error("the text cannot be packed");
    return std::string(reinterpret_cast<const char*>(bytes), size);
}

std::string ItemXml(std::string_view type, std::string_view location, std::string_view action,
                    std::optional<std::string_view> valueName) {
    std::string xml = "<item Type='" + std::string(type) + "' Location='" + std::string(location) +
                      "' Action='" + std::string(action) + "'";
    if (valueName) xml += " ValueName='" + std::string(*valueName) + "'";
    return xml + " />\n";
}

std::string ElementXml(std::string_view element, std::string_view attributes, std::string_view content) {
    const std::string name(element);
    return "<" + name + " " + std::string(attributes) + ">\n" + std::string(content) + "</" + name + ">\n";
}

std::string DefinitionsXml(std::string_view categories) {
    return ElementXml("xclean_def", "version='7' date='2008-05-01'", categories);
}

std::string OneEntityXml(std::string_view items, std::string_view entityAttributes) {
    const std::string entity = ElementXml("Entity", "Name='Entity' " + std::string(entityAttributes), items);
    return DefinitionsXml(
        ElementXml("Category", "Name='Category'", ElementXml("Application", "Name='Application'", entity)));
}

EngineTest::EngineTest() {
    RestartEngine();
}

EngineTest::~EngineTest() = default;

void EngineTest::RestartEngine() {
    engine.reset();
    engine.emplace();
    engine->SetDefinitionsFile(definitionsFile);
    engine->SetPreferencesFile(preferencesFile);
}

void EngineTest::WriteDefinitions(std::string_view xml) const {
    folder.MakeFile("cleaning.db", PackDb(xml));
}

bool EngineTest::Run(const std::function<std::uintptr_t()>& start, UINT endMessage) {
    window.Clear();
    const std::uintptr_t thread = start();
    const bool started = thread != static_cast<std::uintptr_t>(-1) &&
                         thread != reinterpret_cast<std::uintptr_t>(window.Handle());
    EXPECT_TRUE(started) << "the worker was not started";
    const bool ended = started && window.PumpUntil(endMessage);
    EXPECT_TRUE(!started || ended) << "the worker did not say that it ended";
    const bool idle = window.PumpUntil([this] { return !engine->IsBusy(); });
    EXPECT_TRUE(idle) << "the worker did not end";
    return ended && idle;
}

bool EngineTest::Load() {
    return Run([this] { return engine->StartLoad(window.Handle()); }, WM_ENGINE_LOADED) &&
           window.Messages(WM_ENGINE_LOADED).front().lParam == 1;
}

bool EngineTest::Load(std::string_view xml) {
    WriteDefinitions(xml);
    return Load();
}

void EngineTest::List() {
    Run([this] { return engine->StartList(window.Handle()); }, WM_ENGINE_SHRED_DONE);
}

void EngineTest::Scan() {
    Run([this] { return engine->StartScan(window.Handle()); }, WM_ENGINE_SCAN_DONE);
}

void EngineTest::Clean(int passes) {
    RequireInside();
    Run([this, passes] { return engine->StartClean(window.Handle(), passes); }, WM_ENGINE_CLEAN_DONE);
}

void EngineTest::Shred(int passes) {
    Run([this, passes] { return engine->StartShred(window.Handle(), passes); }, WM_ENGINE_SHRED_DONE);
}

void EngineTest::RequireInside() const {
    for (const tagCLEAN_CATEGORY& category : engine->Categories()) {
        for (const tagCLEAN_APPLICATION& application : category.applications) {
            for (const tagCLEAN_ENTITY& entity : application.entities) {
                for (const tagCLEAN_RESULT* result : Results(entity)) {
                    const std::string inside =
                        IsRegistry(result->type) ? "Software\\VelvaneTests\\" : folder.Path();
                    if (!StartsWithAnyCase(*result->path, inside)) {
                        throw std::runtime_error("refused to clean " + *result->path);
                    }
                }
            }
        }
    }
}

tagCLEAN_CATEGORY& EngineTest::Category(std::string_view category) const {
    return Named(engine->Categories(), category);
}

tagCLEAN_APPLICATION& EngineTest::Application(std::string_view category, std::string_view application) const {
    return Named(Category(category).applications, application);
}

tagCLEAN_ENTITY& EngineTest::Entity(std::string_view category, std::string_view application,
                                    std::string_view entity) const {
    return Named(Application(category, application).entities, entity);
}

std::vector<tagCLEAN_ITEM*> EngineTest::Items(const tagCLEAN_ENTITY& entity) {
    std::vector<tagCLEAN_ITEM*> items;
    for (tagCLEAN_ITEM& item : entity.items) items.push_back(&item);
    return items;
}

std::vector<tagCLEAN_RESULT*> EngineTest::Results(const tagCLEAN_ENTITY& entity) {
    std::vector<tagCLEAN_RESULT*> results;
    for (const tagCLEAN_ITEM* item : Items(entity)) {
        results.insert(results.end(), item->results.begin(), item->results.end());
    }
    return results;
}

std::vector<std::string> EngineTest::Found(const tagCLEAN_ENTITY& entity) {
    std::vector<std::string> found;
    for (const tagCLEAN_RESULT* result : Results(entity)) {
        found.push_back(*result->path + result->name.value_or(""));
    }
    return found;
}

std::string EngineTest::ItemString(HSCANITEM handle) const {
    char text[4096] = "(untouched)";
    DWORD kind = 0;
    engine->GetItemString(handle, text, sizeof text, &kind);
    return text;
}
