#include <windows.h>

#include <string>

#include "benches.h"
#include "engine_run.h"
#include "packed_text.h"
#include "sample_definitions.h"

namespace {

constexpr std::size_t kTextSize = 10u << 20;  // bytes

}  // namespace

void BenchDefinitions(const BenchOptions& options, AnsweringWindow& window, Report& report) {
    const std::string path = WriteDefinitionsFile(SampleDefinitions(kTextSize));
    const std::string states = std::string(kBenchFolder) + "states.db";
    const std::string none = std::string(kBenchFolder) + "none.db";
    PackedText packed(path);

    const auto bare = [&] { return packed.Parse(); };
    const int rounds = 4 * options.rounds;
    report.Add("load of definitions of 10 MB",
               TakeTurns(rounds, bare, [&] { return TimeLoad(window, path, none); }), 2.5);

    {
        CCleaningEngine engine;
        engine.SetDefinitionsFile(path);
        engine.SetPreferencesFile(states);
        Require(engine.LoadDefinitions(), "definitions that load");
        engine.SaveItemStates();
    }
    report.Add("load with the states of every node",
               TakeTurns(options.rounds, bare, [&] { return TimeLoad(window, path, states); }), kNoLimit);
    ::DeleteFileA(states.c_str());

    BenchShippedLoad(options, window, report);
}
