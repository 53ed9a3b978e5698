#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "engine_run.h"
#include "report.h"
#include "screen_run.h"
#include "ui_benches.h"

namespace {

// Trees that scripts/bench.sh makes: each 200 folders of 100 files.
struct Fixture {
    const char* name;
    const char* folder;       // below the program's folder
    double againstAnswering;  // limit
};
constexpr Fixture kFixtures[] = {
    {"20,000 files", "scan\\0\\", 1.15},
    // The screen opens each picture to learn whether it can be shown, and shows some: work that the other
    // window does not have.
    {"20,000 files, 1,000 pictures", "pictures\\", kNoLimit},
};
constexpr int kFolders = 200;
constexpr std::uint32_t kFiles = 20'000;

constexpr double kLongestWait = 100;  // ms
constexpr double kLongestStop = 200;  // ms
constexpr int kStops = 5;             // of a round, all along the scan

// An entity for each folder, five of them in an application and four of those in a category: a scan reports
// its progress, and adds to the rows above the results, as a real one does.
std::string ScreenDefinitions(const Fixture& fixture) {
    std::string xml = "<xclean_def version=\"1\">";
    for (int i = 0; i < kFolders; ++i) {
        if (i % 20 == 0) xml += "<Category Name=\"Category " + std::to_string(i / 20) + "\">";
        if (i % 5 == 0) xml += "<Application Name=\"Application " + std::to_string(i / 5) + "\">";
        xml += "<Entity Name=\"Entity " + std::to_string(i) + "\"><Item Type=\"Folder\" Location=\"" +
               kBenchFolder + fixture.folder + std::to_string(i / 100) + "\\" + std::to_string(i % 100) +
               "\\\" Action=\"All\"/></Entity>";
        if (i % 5 == 4) xml += "</Application>";
        if (i % 20 == 19) xml += "</Category>";
    }
    return xml + "</xclean_def>";
}

double AtMost(const std::vector<double>& values) {
    return *std::max_element(values.begin(), values.end());
}

// The value that all but one in a thousand stay below.
double NearlyAll(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() - 1 - values.size() / 1000];
}

void MeasureWaits(ScreenRun& screen, int rounds, const std::string& what, Table& table) {
    std::vector<double> waits;
    for (int round = 0; round < rounds; ++round) screen.ScanProbed(waits);
    table.Add(what + ": messages that waited", "%.0f", static_cast<double>(waits.size()));
    table.Add("  median wait", "%.2f ms", Median(waits) * 1e3);
    table.Add("  all but one in a thousand", "%.1f ms", NearlyAll(waits) * 1e3);
    table.Add("  longest", "%.1f ms", AtMost(waits) * 1e3, kLongestWait);
}

void MeasureStops(ScreenRun& screen, int rounds, std::uint32_t nodes, Table& table) {
    std::vector<double> stops;
    for (int i = 0; i < rounds * kStops; ++i) {
        // From close to the beginning to close to the end, at another place each time.
        const double at = (i + 0.5) / (rounds * kStops);
        stops.push_back(screen.ScanStopped(static_cast<std::uint32_t>(nodes * at)));
        Require(screen.NodeCount() < nodes, "a scan that was stopped");
    }
    table.Add("  stop, median", "%.1f ms", Median(stops) * 1e3);
    table.Add("  stop, longest", "%.1f ms", AtMost(stops) * 1e3, kLongestStop);
}

void MeasureFixture(const Fixture& fixture, int rounds, Table& table) {
    const std::string what = fixture.name;
    const std::string xml = ScreenDefinitions(fixture);
    AnsweringWindow answering;
    LoadedEngine engine(answering, xml);
    ScreenRun screen(xml);

    // The first scan finds nothing in memory, neither folders nor frames of the animation.
    MeasureWaits(screen, 1, what + ", first scan", table);
    engine.Scan();
    const std::uint32_t nodes = screen.NodeCount();
    Require(screen.Found() >= kFiles && screen.Found() == engine.Engine().GetItemsFound() &&
                nodes == answering.NodeCount(),
            "the same work on both sides");

    const Rounds times = TakeTurns(
        rounds, [&] { return engine.Scan(); }, [&] { return screen.Scan(); });
    table.Add(what + ": into a window that answers", "%.0f ms", Median(times.bare) * 1e3);
    table.Add("  into the screen", "%.0f ms", Median(times.engine) * 1e3);
    table.Add("  ratio", "%.3f", RatioOf(times), fixture.againstAnswering);
    table.Add("  the first against itself", "%.3f", BareRatioOf(times));
    MeasureWaits(screen, rounds, what, table);
    MeasureStops(screen, rounds, nodes, table);
}

}  // namespace

void BenchScreen(int rounds, Table& table) {
    for (const Fixture& fixture : kFixtures) MeasureFixture(fixture, rounds, table);
}
