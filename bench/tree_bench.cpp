#include <windows.h>

#include <psapi.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <memory>
#include <vector>

#include "report.h"
#include "ui/tree/scan_tree.h"
#include "ui_benches.h"

// What the tree of the results costs, with as many rows as a large scan finds. It makes all of its rows
// itself and needs no fixture.

namespace {

using Node = CScanTree::Node;

constexpr int kFew = 10'000;
constexpr int kMany = 1'000'000;

// The shape of a real scan: the rows above the results, and the length of what a result shows.
constexpr int kCategories = 12;
constexpr int kApplications = 120;
constexpr int kEntities = 900;
constexpr char kPathFormat[] = "C:\\Users\\anna\\AppData\\Local\\Browser\\Cache\\f_%06x";

// A tree in a visible window.
class BenchTree {
  public:
    BenchTree() {
        const RECT place = {0, 0, 600, 500};
        m_parent = ::CreateWindowExA(0, "STATIC", "", WS_POPUP | WS_VISIBLE, 0, 0, place.right, place.bottom,
                                     nullptr, nullptr, nullptr, nullptr);
        tree.SetMode(CScanTree::kResults);
        tree.Create(m_parent, &place, "", 0, 0, 1);
    }
    ~BenchTree() { ::DestroyWindow(m_parent); }

    // As the message does it, which costs its way besides.
    Node* Add(Node* parent, DWORD level, const char* label, const char* help = nullptr) {
        CScanTree::Insertion insertion = {
            parent, 1, 1, 1, NewNodeData(level, reinterpret_cast<HSCANITEM>(m_nextHandle), label, help)};
        m_nextHandle += 96;
        LRESULT result = 0;
        tree.ProcessWindowMessage(tree, WM_TREE_INSERT, reinterpret_cast<WPARAM>(&insertion), 1, result);
        return reinterpret_cast<Node*>(result);
    }

    // Rows in the shape of a scan; all open. The first category takes half of the results.
    void Fill(int rows) {
        const int share = kMany / rows;
        const int entities = std::max(kEntities / share, 24);
        const int applications = std::max(kApplications / share, kCategories);
        int results = rows - entities - applications - kCategories;
        int entity = 0;
        for (int category = 0; category < kCategories; ++category) {
            Node* const card = Add(tree.GetRoot(), ROW_CATEGORY, "Internet browsers", "Pages and files");
            for (int i = 0; i < applications / kCategories; ++i) {
                Node* const application = Add(card, ROW_APPLICATION, "A browser");
                const int below = entities / applications;
                for (int j = 0; j < below; ++j, ++entity) {
                    Node* const parent = Add(application, ROW_ENTITY, "Cache", "Copies of pages");
                    // The very first has half of them all.
                    const int count = entity == 0 ? results / 2 : results / 2 / (entities - 1);
                    for (int k = 0; k < count; ++k) {
                        char label[80];
                        std::snprintf(label, sizeof label, kPathFormat, k);
                        last = Add(parent, ROW_RESULT, label);
                        ++added;
                    }
                }
            }
        }
    }

    void Paint() {
        tree.Invalidate();
        tree.UpdateWindow();
    }
    static void Pump() {
        for (MSG message; ::PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE);) ::DispatchMessageA(&message);
    }
    // To any place, painted.
    double Jump(int position) {
        const double start = Now();
        // The thumb's own messages have its place from the bar.
        SCROLLINFO info = {};
        info.cbSize = sizeof info;
        info.fMask = SIF_POS;
        info.nPos = position;
        tree.SetScrollInfo(SB_VERT, info);
        tree.Send(WM_VSCROLL, MAKEWPARAM(SB_THUMBPOSITION, LOWORD(position)));
        tree.UpdateWindow();
        return Now() - start;
    }
    void Toggle(Node* node, UINT part) {
        const RowRect row = {0, PlaceOf(*tree.GetRoot(), *node).top - tree.GetScrollPos(),
                             static_cast<int>(tree.GetClientRect().right), node->height};
        const RowParts parts = LayoutRow(tree.Metrics(), node->data->type, true, row);
        const RowRect& box = part == HIT_CHECK ? parts.check : parts.expander;
        tree.Send(WM_LBUTTONDOWN, 0, MAKELPARAM(box.x + 5, box.y + 5));
    }

    CScanTree tree;
    Node* last = nullptr;
    int added = 0;

  private:
    HWND m_parent = nullptr;
    std::uintptr_t m_nextHandle = 0x10000000;
};

std::size_t PrivateBytes() {
    PROCESS_MEMORY_COUNTERS counters = {};
    counters.cb = sizeof counters;
    ::GetProcessMemoryInfo(::GetCurrentProcess(), &counters, sizeof counters);
    return counters.PagefileUsage;
}

double Timed(const std::function<void()>& work) {
    const double start = Now();
    work();
    return Now() - start;
}

// Clicks at the top, and single calls, with all rows there.
void MeasureActions(BenchTree& bench, Table& table) {
    Node* const top = bench.tree.GetRoot()->FirstChild();
    Node* const entity = top->FirstChild()->FirstChild();
    bench.Jump(0);
    bench.Toggle(top, HIT_CHECK);  // selects it, too
    BenchTree::Pump();
    const double check = Timed([&] { bench.Toggle(top, HIT_CHECK); });
    table.Add("check of the first category", "%.2f ms", check * 1e3, 5);
    BenchTree::Pump();
    bench.Toggle(entity, HIT_EXPANDER);
    BenchTree::Pump();
    const double open = Timed([&] {
        bench.Toggle(entity, HIT_EXPANDER);
        BenchTree::Pump();
    });
    table.Add("opening of 500,000 rows, painted", "%.2f ms", open * 1e3, 20);

    constexpr int kFinds = 100'000;
    std::vector<HSCANITEM> handles;
    for (Node* node = entity->FirstChild(); handles.size() < 1000; node = node->NextSibling()) {
        handles.push_back(node->data->handle);
    }
    const double find = Timed([&] {
        for (int i = 0; i < kFinds; ++i) bench.tree.FindNode(handles[static_cast<unsigned>(i) % 1000]);
    });
    table.Add("a search for a handle", "%.0f ns", find / kFinds * 1e9);
    const LONG rows = bench.tree.PartCount();
    Require(rows > kMany * 9 / 10, "rows to ask for");
    const double ask = Timed([&] {
        for (LONG i = 0; i < kFinds; ++i) bench.tree.DescribePart(1 + static_cast<LONG>(i * 7919LL % rows));
    });
    table.Add("what a screen reader asks of a row", "%.1f us", ask / kFinds * 1e6);
}

// The rows of the entities, one message each, in the order in which they stand; their number.
int DeleteResults(BenchTree& bench, int count) {
    int deleted = 0;
    Node* const root = bench.tree.GetRoot();
    for (Node* card = root->FirstChild(); card; card = card->NextSibling()) {
        for (Node* application = card->FirstChild(); application; application = application->NextSibling()) {
            for (Node* entity = application->FirstChild(); entity; entity = entity->NextSibling()) {
                while (Node* const node = entity->FirstChild()) {
                    if (deleted == count) return deleted;
                    LRESULT result = 0;
                    bench.tree.ProcessWindowMessage(bench.tree, WM_TREE_DELETE,
                                                    reinterpret_cast<WPARAM>(node), 0, result);
                    ++deleted;
                }
            }
        }
    }
    return deleted;
}

// Jumps to places all over both trees, in turns; of each place the shortest of its tries.
void MeasurePaints(BenchTree& few, BenchTree& many, Table& table) {
    constexpr int kJumps = 100;
    constexpr int kTries = 5;
    std::vector<double> fewTimes(kJumps, 1), manyTimes(kJumps, 1);
    BenchTree::Pump();
    for (int i = 0; i < kJumps * kTries; ++i) {
        const int place = i % kJumps;
        const auto jump = [place](BenchTree& bench, std::vector<double>& times) {
            const double at = (place * 37 % kJumps + 0.5) / kJumps;
            double& shortest = times[static_cast<std::size_t>(place)];
            shortest = std::min(shortest, bench.Jump(static_cast<int>(bench.tree.GetContentHeight() * at)));
        };
        jump(few, fewTimes);
        jump(many, manyTimes);
    }
    table.Add("paint after a jump among 1,000,000 rows", "%.1f ms", Median(manyTimes) * 1e3, 16);
    table.Add("the slowest place", "%.1f ms", *std::max_element(manyTimes.begin(), manyTimes.end()) * 1e3,
              16);
    table.Add("paint against that among 10,000", "%.2f", Median(manyTimes) / Median(fewTimes), 1.2);
}

// One large tree against a hundred small ones that live at the same time: so both sides take as much new
// memory from the system.
void Measure(Table& table, int rounds) {
    constexpr int kSmallTrees = kMany / kFew;
    std::vector<double> insertions, insertionRatios, deletions, deletionRatios;
    const auto fill = [](int count) {
        std::vector<std::unique_ptr<BenchTree>> trees;
        for (int i = 0; i < count; ++i) trees.push_back(std::make_unique<BenchTree>());
        return trees;
    };
    const auto add = [](std::vector<std::unique_ptr<BenchTree>>& trees) {
        return Timed([&] {
            for (const auto& bench : trees) bench->Fill(kMany / static_cast<int>(trees.size()));
        });
    };
    const auto remove = [](std::vector<std::unique_ptr<BenchTree>>& trees) {
        return Timed([&] {
            const int share = kMany * 9 / 10 / static_cast<int>(trees.size());
            for (const auto& bench : trees) Require(DeleteResults(*bench, share) == share, "rows to delete");
        });
    };
    for (int round = 0; round < rounds; ++round) {
        // Who begins finds the memory that was given back.
        auto small = fill(kSmallTrees);
        auto large = fill(1);
        double smallInsertion = 0;
        if (round % 2 == 0) smallInsertion = add(small);
        const std::size_t before = PrivateBytes();
        const double largeInsertion = add(large);
        const std::size_t after = PrivateBytes();
        if (round % 2 != 0) smallInsertion = add(small);
        if (round == 0) {
            table.Add("memory of a row and its label of 46 letters", "%.0f bytes",
                      static_cast<double>(after - before) / large[0]->added, 200);
            MeasurePaints(*small[0], *large[0], table);
            MeasureActions(*large[0], table);
        }
        const double smallDeletion = remove(small);
        const double largeDeletion = remove(large);
        insertions.push_back(largeInsertion);
        insertionRatios.push_back(largeInsertion / smallInsertion);
        deletions.push_back(largeDeletion);
        deletionRatios.push_back(largeDeletion / smallDeletion);
    }
    table.Add("insertion of 1,000,000 rows", "%.2f s", Median(insertions), 1.5);
    table.Add("against 100 trees of 10,000", "%.2f", Median(insertionRatios), 1.2);
    table.Add("deletion of 900,000 rows, one by one", "%.2f s", Median(deletions), 1.5);
    table.Add("against 9,000 of each of 100 trees", "%.2f", Median(deletionRatios), 1.2);
}

}  // namespace

void BenchTree(int rounds, Table& table) {
    Measure(table, rounds);
}
