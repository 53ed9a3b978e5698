#include <windows.h>

#include <set>
#include <string>
#include <utility>

#include "benches.h"
#include "engine_run.h"
#include "system/registry.h"
#include "system/system_facts.h"

// What a scan of the shipped definitions costs where there is next to nothing to find: it should be little
// more than the questions whether the places are there.

namespace {

constexpr double kLimit = 1.2;

// The locations, each once: a registry key, or without a hive a file or folder.
using Places = std::set<std::pair<HKEY, std::string>>;

template <class Visit>
void ForEachItem(const CCleaningEngine& engine, bool searchedOnly, const Visit& visit) {
    for (const tagCLEAN_CATEGORY& category : engine.Categories()) {
        for (const tagCLEAN_APPLICATION& application : category.applications) {
            if (searchedOnly && !application.present) continue;
            for (const tagCLEAN_ENTITY& entity : application.entities) {
                if (searchedOnly && !entity.enabled) continue;
                for (const tagCLEAN_ITEM& item : entity.items) visit(item);
            }
        }
    }
}

Places PlacesOf(const CCleaningEngine& engine, bool searchedOnly) {
    Places places;
    ForEachItem(engine, searchedOnly, [&](const tagCLEAN_ITEM& item) {
        places.insert({item.hive, item.location.OrEmpty()});
    });
    return places;
}

// One question for each: whether the key, the file, or the folder of a mask is there.
double LookUp(const Places& places) {
    const double begin = Now();
    for (const auto& [hive, location] : places) {
        if (hive) {
            UniqueKey key;
            OpenKey(hive, location.c_str(), KEY_QUERY_VALUE, key);
        } else {
            const bool isMask =
                location.ends_with('\\') || location.find_first_of("*?`") != std::string::npos;
            ::GetFileAttributesA(isMask ? location.substr(0, location.rfind('\\')).c_str()
                                        : location.c_str());
        }
    }
    return Now() - begin;
}

// Every application counts as one that is there, and everything is switched on.
void SwitchAllOn(const CCleaningEngine& engine) {
    for (tagCLEAN_CATEGORY& category : engine.Categories()) {
        for (tagCLEAN_APPLICATION& application : category.applications) {
            application.enabled = application.present = true;
            for (tagCLEAN_ENTITY& entity : application.entities) entity.enabled = true;
        }
    }
}

std::string Counted(const char* what, std::size_t places) {
    return std::string(what) + ", " + std::to_string(places) + " places";
}

}  // namespace

void BenchLookups(const BenchOptions& options, AnsweringWindow& window, Report& report) {
    LoadedEngine engine(window, DefinitionsFile{ProgramFolder() + "cleaning.db"});
    const auto scan = [&] { return engine.Scan(); };
    const auto untold = [&] { return engine.ScanUntold(); };
    const int rounds = 4 * options.rounds;

    const Places all = PlacesOf(engine.Engine(), false);
    report.Add(Counted("scan with nothing installed against all", all.size()),
               TakeTurns(
                   rounds, [&] { return LookUp(all); }, scan),
               kLimit);
    // An application that is not there is not searched, so these are far fewer.
    const Places searched = PlacesOf(engine.Engine(), true);
    const auto bare = [&] { return LookUp(searched); };
    report.Add(Counted("against those that are searched", searched.size()), TakeTurns(rounds, bare, scan),
               kNoLimit);
    report.Add("the same, nobody told", TakeTurns(rounds, bare, untold), kNoLimit);
    SwitchAllOn(engine.Engine());
    report.Add("everything searched, nobody told",
               TakeTurns(
                   options.rounds, [&] { return LookUp(all); }, untold),
               kNoLimit);
}
