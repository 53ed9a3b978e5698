#include <windows.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

#include "benches.h"
#include "counting_heap.h"
#include "engine_run.h"
#include "system/files.h"
#include "system/handles.h"

namespace {

// A part of the tree that scripts/bench.sh makes: folders of 100 files, 100 of them in a folder, and so on.
struct Tree {
    const char* name;
    const char* folder;  // below the program's folder
    std::uint32_t files;
    bool large;
};
constexpr Tree kTrees[] = {
    {"scan of 10,000 files", "scan\\0\\0\\", 10'000, false},
    {"scan of 100,000 files", "scan\\0\\", 100'000, true},
    {"scan of 200,000 files", "scan\\", 200'000, true},
};

std::string TreeDefinitions(const Tree& tree) {
    return OneItemDefinitions("<Item Type=\"Folder\" Location=\"" + std::string(kBenchFolder) + tree.folder +
                              "\" Action=\"All\"/>");
}

// The bare loop: everything below `path`, which has room for kPathCapacity, each entry told to the window.
std::uint32_t WalkFolder(char* path, std::size_t length, HWND window) {
    WIN32_FIND_DATAA entry;
    std::strcpy(path + length, "*");
    const auto find = OwnHandle<UniqueFind>(::FindFirstFileA(path, &entry));
    if (!find) return 0;
    std::uint32_t count = 0;
    do {
        if (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
            if (std::strcmp(entry.cFileName, ".") == 0 || std::strcmp(entry.cFileName, "..") == 0) continue;
            const std::size_t nameLength = std::strlen(entry.cFileName);
            std::memcpy(path + length, entry.cFileName, nameLength);
            path[length + nameLength] = '\\';
            count += WalkFolder(path, length + nameLength + 1, window);
        }
        ::SendMessageA(window, WM_ENGINE_NODE, 1, reinterpret_cast<LPARAM>(&entry));
        ++count;
    } while (::FindNextFileA(find.get(), &entry));
    return count;
}

std::uint32_t WalkTree(const Tree& tree, HWND window) {
    char path[2 * kPathCapacity];
    std::strcpy(path, kBenchFolder);
    std::strcat(path, tree.folder);
    return WalkFolder(path, std::strlen(path), window);
}

// The engine tells three nodes more: the category, the application and the entity.
constexpr std::uint32_t kUpperNodes = 3;

Rounds ScanRounds(int rounds, const Tree& tree, AnsweringWindow& window) {
    LoadedEngine engine(window, TreeDefinitions(tree));
    std::uint32_t nodes = 0;
    const auto bare = [&] {
        const double seconds = window.TimeWorker([&](HWND target) { WalkTree(tree, target); });
        nodes = window.NodeCount();
        Require(nodes > tree.files, "the whole tree");
        return seconds;
    };
    const auto scan = [&] {
        const double seconds = engine.Scan();
        Require(engine.Engine().GetItemsFound() > tree.files, "the whole tree");
        Require(window.NodeCount() == engine.Engine().GetItemsFound() + kUpperNodes,
                "a node for each result");
        return seconds;
    };
    const Rounds result = TakeTurns(rounds, bare, scan);
    Require(nodes == engine.Engine().GetItemsFound(), "the same work on both sides");
    return result;
}

// With nobody to tell, what is left is the search itself.
Rounds UntoldRounds(int rounds, const Tree& tree, AnsweringWindow& window) {
    LoadedEngine engine(window, TreeDefinitions(tree));
    const auto bare = [&] {
        const double begin = Now();
        WalkTree(tree, nullptr);
        return Now() - begin;
    };
    return TakeTurns(rounds, bare, [&] { return engine.ScanUntold(); });
}

}  // namespace

void BenchScan(const BenchOptions& options, AnsweringWindow& window, Report& report) {
    Rounds latest;
    Rounds before;
    for (const Tree& tree : kTrees) {
        if (tree.large && !options.large) continue;
        before = std::move(latest);
        latest = ScanRounds(options.rounds, tree, window);
        report.Add(tree.name, latest, 1.25);
    }
    if (options.large) {
        report.AddQuotient("200,000 files against 100,000", Median(latest.engine) / Median(before.engine),
                           Median(latest.bare) / Median(before.bare), 2.2);
    }
    report.Add("scan of 10,000 files, nobody told", UntoldRounds(4 * options.rounds, kTrees[0], window),
               kNoLimit);
    report.Add("scan of 100,000 files, nobody told", UntoldRounds(options.rounds, kTrees[1], window),
               kNoLimit);
}

void BenchMemory(const BenchOptions&, AnsweringWindow& window, Report& report) {
    constexpr double kLimit = 160;
    // Each block of the heap of a 64-bit system has a header, and is a multiple of it.
    constexpr std::ptrdiff_t kBlockHeader = 2 * sizeof(void*);
    LoadedEngine engine(window, TreeDefinitions(kTrees[1]));
    StartCountingHeap();
    engine.ScanUntold();
    const HeapUse use = StopCountingHeap();
    std::ptrdiff_t names = 0;
    std::ptrdiff_t count = 0;
    for (const tagCLEAN_RESULT* result :
         engine.Engine().Categories().Head()->applications.Head()->entities.Head()->items.Head()->results) {
        names += static_cast<std::ptrdiff_t>(result->name.value_or("").size());
        ++count;
    }
    Require(count > static_cast<std::ptrdiff_t>(kTrees[1].files), "the whole tree");
    const auto each = [&](std::ptrdiff_t bytes) {
        return static_cast<double>(bytes - names) / static_cast<double>(count);
    };
    const double asked = each(use.bytes);
    const double whole = each(use.bytes + use.blocks * kBlockHeader);
    char text[128];
    std::snprintf(text, sizeof text, "%.1f bytes, %.1f with the heap's headers; limit %.0f", asked, whole,
                  kLimit);
    report.AddLine("memory of a result beyond its name", text, whole <= kLimit);
}
