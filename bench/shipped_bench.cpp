#include <windows.h>

#include <memory_resource>
#include <pugixml.hpp>
#include <string>
#include <vector>

#include "benches.h"
#include "engine/definition_rules.h"
#include "engine/registry_location.h"
#include "engine/restricted_paths.h"
#include "engine_run.h"
#include "packed_text.h"
#include "system/handles.h"
#include "system/registry.h"
#include "system/system_facts.h"

namespace {

constexpr double kLimit = 2.5;

struct Value {
    std::string type, location, section, name;
};

// What the definitions ask the machine for while they load: where programs are, and values of variables.
struct Questions {
    std::vector<std::string> installed;
    std::vector<Value> values;
    std::vector<std::size_t> pictures;  // their bytes; a load writes each to a file
};

Questions QuestionsOf(const std::string& text, CCleaningEngine& engine) {
    pugi::xml_document document;
    Require(document.load_buffer(text.data(), text.size()), "definitions that are whole");
    const pugi::xml_node root = document.child("xclean_def");
    Questions questions;
    for (const pugi::xml_node& variable : root.child("LocationVariables").children()) {
        const std::string location = variable.attribute("Location").value();
        questions.values.push_back({variable.attribute("Type").value(), engine.ExpandLocation(location),
                                    variable.attribute("Section").value(),
                                    variable.attribute("ValueName").value()});
    }
    for (const pugi::xml_node& category : root.children("Category")) {
        const std::string picture = category.attribute("Image").value();
        if (!picture.empty()) questions.pictures.push_back(picture.size() / 4 * 3);
        for (const pugi::xml_node& application : category.children()) {
            const std::string sign = application.attribute("Image").value();
            if (!sign.empty()) questions.pictures.push_back(sign.size() / 4 * 3);
            const std::string location = application.attribute("InstallLocation").value();
            if (!location.empty()) questions.installed.push_back(engine.ExpandLocation(location));
        }
    }
    return questions;
}

// The path of a new file of `size` bytes.
std::string WritePicture(std::size_t size) {
    const std::string bytes(size, 'p');
    char folder[MAX_PATH] = "";
    char path[MAX_PATH] = "";
    ::GetTempPathA(MAX_PATH, folder);
    ::GetTempFileNameA(folder, "be", 0, path);
    const UniqueHandle file = OwnHandle<UniqueHandle>(
        ::CreateFileA(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    DWORD written = 0;
    Require(file && ::WriteFile(file.get(), bytes.data(), static_cast<DWORD>(size), &written, nullptr),
            "a place for a picture");
    return path;
}

// The seconds of the same calls to the system as a load makes.
double Ask(const Questions& questions) {
    const double begin = Now();
    FolderPaths folders;
    SystemLocationVariables(folders);
    ProtectedPaths(folders);
    for (const Value& value : questions.values) {
        if (value.type == "INI") {
            char text[MAX_PATH];
            ::GetPrivateProfileStringA(value.section.c_str(), value.name.c_str(), "", text, sizeof text,
                                       value.location.c_str());
        } else if (value.type == "REG") {
            if (const auto key = ParseRegistryLocation(value.location)) {
                RegReadText(key->hive, key->path.data(), value.name.c_str(), "");
            }
        }
    }
    for (const std::string& location : questions.installed) ::GetFileAttributesA(location.c_str());
    std::vector<std::string> pictures;
    for (const std::size_t size : questions.pictures) pictures.push_back(WritePicture(size));
    const double seconds = Now() - begin;
    for (const std::string& path : pictures) ::DeleteFileA(path.c_str());
    return seconds;
}

// Adds up what is taken of it.
class CountingResource : public std::pmr::memory_resource {
  public:
    std::size_t taken = 0;  // bytes

  private:
    void* do_allocate(std::size_t size, std::size_t alignment) override {
        taken += size;
        return std::pmr::new_delete_resource()->allocate(size, alignment);
    }
    void do_deallocate(void* place, std::size_t size, std::size_t alignment) override {
        std::pmr::new_delete_resource()->deallocate(place, size, alignment);
    }
    bool do_is_equal(const memory_resource& other) const noexcept override { return this == &other; }
};

// The records and texts of the hierarchy, whose memory is taken from the default resource.
std::size_t HierarchySize(const DefinitionsFile& file, AnsweringWindow& window) {
    CountingResource counting;
    std::pmr::memory_resource* const before = std::pmr::set_default_resource(&counting);
    {
        const LoadedEngine engine(window, file);
        std::pmr::set_default_resource(before);
    }
    return counting.taken;
}

}  // namespace

void BenchShippedLoad(const BenchOptions& options, AnsweringWindow& window, Report& report) {
    const DefinitionsFile shipped{ProgramFolder() + "cleaning.db"};
    const std::string none = std::string(kBenchFolder) + "none.db";
    PackedText packed(shipped.path);
    LoadedEngine loaded(window, shipped);
    const Questions questions = QuestionsOf(packed.Text(), loaded.Engine());

    const auto load = [&] { return TimeLoad(window, shipped.path, none); };
    const int rounds = 4 * options.rounds;
    report.Add("load of what is shipped, against the same calls",
               TakeTurns(
                   rounds, [&] { return packed.Parse() + Ask(questions); }, load),
               kLimit);
    report.Add("against its parse alone",
               TakeTurns(
                   rounds, [&] { return packed.Parse(); }, load),
               kNoLimit);
    report.AddLine("memory of what is shipped",
                   std::to_string(HierarchySize(shipped, window) / 1024) + " KB of records and texts", true);
}
