#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "answering_window.h"
#include "benches.h"

namespace {

struct Bench {
    std::string_view name;
    void (*run)(const BenchOptions& options, AnsweringWindow& window, Report& report);
};
constexpr Bench kBenches[] = {
    {"overwrite", BenchOverwrite}, {"definitions", BenchDefinitions},
    {"lookups", BenchLookups},     {"memory", BenchMemory},
    {"registry", BenchRegistry},   {"clean", BenchClean},
    {"scan", BenchScan},           {"start", BenchStart},
};

constexpr char kUsage[] =
    "velvane-bench [--rounds N] [--small] "
    "[overwrite|definitions|lookups|memory|registry|clean|scan|start]...\n"
    "Started by scripts/bench.sh, which makes what it works on.\n";

[[noreturn]] void EndWithUsage() {
    std::fputs(kUsage, stderr);
    std::exit(2);
}

}  // namespace

int main(int argc, char** argv) {
    BenchOptions options;
    std::vector<std::string_view> names;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (argument == "--small") {
            options.large = false;
        } else if (argument == "--rounds" && i + 1 < argc) {
            options.rounds = std::atoi(argv[++i]);
        } else {
            names.push_back(argument);
        }
    }
    const auto isUnknown = [](std::string_view name) {
        return std::ranges::none_of(kBenches, [&](const Bench& bench) { return bench.name == name; });
    };
    if (options.rounds < 1 || std::ranges::any_of(names, isUnknown)) EndWithUsage();

    AnsweringWindow window;
    Report report;
    for (const Bench& bench : kBenches) {
        if (names.empty() || std::ranges::find(names, bench.name) != names.end()) {
            bench.run(options, window, report);
        }
    }
    return report.AllHold() ? 0 : 1;
}
