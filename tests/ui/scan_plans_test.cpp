#include <gtest/gtest.h>

#include <fstream>

#include "support/sandbox.h"
#include "ui/screens/preview_queue.h"
#include "ui/screens/scan_layout.h"
#include "ui/screens/scan_report.h"
#include "ui/screens/scan_state.h"

bool operator==(const RECT& a, const RECT& b) {
    return ::EqualRect(&a, &b) != FALSE;
}

std::ostream& operator<<(std::ostream& out, const RECT& rect) {
    return out << rect.left << ',' << rect.top << ' ' << rect.right << ',' << rect.bottom;
}

namespace {

// --- states

TEST(ScanStates, GoOneFurtherOrBack) {
    constexpr int kStates = SCAN_REBOOT_SHRED + 1;
    const char* const kAllowed[kStates] = {
        // to: intro, scanning, results, cleaning, cleaned, reboot
        "xx...x",  // from intro
        "x.x..x",  // scanning
        "x..x.x",  // results
        "x...xx",  // cleaning
        "x....x",  // cleaned
        "x....x",  // the pass after a restart
    };
    for (int from = 0; from < kStates; ++from) {
        for (int to = 0; to < kStates; ++to) {
            EXPECT_EQ(MayEnter(static_cast<ScanState>(from), static_cast<ScanState>(to)),
                      kAllowed[from][to] == 'x')
                << from << " to " << to;
        }
    }
}

// --- places

ScanMetrics PageMetrics(float scale = 1) {
    ScanMetrics metrics;
    metrics.client = {613, 441};
    metrics.scale = scale;
    metrics.newButtonHeight = 28;
    metrics.intro1 = {360, 19};
    metrics.introImage = {360, 112};
    metrics.intro2 = {560, 19};
    metrics.startButton = {180, 58};
    metrics.hint1Height = 13;
    metrics.hint2Height = 13;
    return metrics;
}

TEST(ScanLayout, PlacesTheWorkingStates) {
    struct Case {
        const char* name;
        ScanState state;
        float scale;
        std::optional<RECT> tree, report, panel, footer;
    };
    const Case kCases[] = {
        {"a scan shares the page with the preview", SCAN_SCANNING, 1, RECT{0, 0, 301, 381},
         RECT{311, 0, 612, 381}, RECT{311, 0, 612, 381}, RECT{0, 386, 613, 446}},
        {"results have the width",
         SCAN_RESULTS,
         1,
         RECT{0, 34, 608, 381},
         {},
         RECT{},
         RECT{0, 386, 613, 446}},
        {"a clean keeps it", SCAN_CLEANING, 1, RECT{0, 34, 608, 381}, {}, RECT{}, RECT{0, 386, 613, 446}},
        {"at the end the height loses a top that is not there",
         SCAN_CLEANED,
         1,
         RECT{0, 0, 301, 347},
         RECT{311, 0, 612, 347},
         RECT{},
         {}},
        {"lengths at another scale are truncated",
         SCAN_RESULTS,
         1.25f,
         RECT{0, 42, 607, 366},
         {},
         RECT{},
         RECT{0, 372, 613, 447}},
        {"the pass after a restart moves nothing", SCAN_REBOOT_SHRED, 1, {}, {}, {}, {}},
    };
    for (const Case& row : kCases) {
        const ScanPlaces places = LayoutScan(row.state, PageMetrics(row.scale));
        EXPECT_EQ(places.tree, row.tree) << row.name;
        EXPECT_EQ(places.report, row.report) << row.name;
        EXPECT_EQ(places.panel, row.panel) << row.name;
        EXPECT_EQ(places.footer, row.footer) << row.name;
        EXPECT_EQ(places.animation.y, 441 - 28 + static_cast<int>(5 * row.scale)) << row.name;
    }
}

TEST(ScanLayout, LetsNothingOfTheIntroOverlap) {
    struct Case {
        const char* name;
        SIZE client, intro1, intro2, button;
        bool withImage;
    };
    const Case kCases[] = {
        {"large letters shrink the picture", {560, 430}, {540, 28}, {520, 60}, {270, 87}, true},
        {"very large ones leave no room for it", {470, 400}, {460, 114}, {440, 125}, {360, 116}, false},
    };
    for (const Case& row : kCases) {
        ScanMetrics metrics = PageMetrics(1);
        metrics.client = row.client;
        metrics.intro1 = row.intro1;
        metrics.intro2 = row.intro2;
        metrics.startButton = row.button;
        const ScanPlaces places = LayoutScan(SCAN_INTRO, metrics);
        EXPECT_EQ(places.introImage->bottom > places.introImage->top, row.withImage) << row.name;
        const RECT order[] = {*places.intro1,      *places.introImage, *places.intro2,
                              *places.startButton, *places.hint1,      *places.hint2};
        int end = 0;
        for (const RECT& place : order) {
            if (place.bottom == place.top) continue;
            EXPECT_GE(place.top, end) << row.name << ": " << place;
            EXPECT_NEAR(place.left, row.client.cx - place.right, 1) << row.name << ": in the middle";
            end = place.bottom;
        }
        EXPECT_EQ(end, row.client.cy) << row.name;
    }
}

// --- reports

constexpr const char* kHeader =
    "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang4105{\\fonttbl{\\f0\\fswiss\\fcharset0 Tahoma;}}\n"
    "{\\colortbl ;\\red0\\green164\\blue0;\\red224\\green0\\blue0;}\n"
    "\\viewkind4\\uc1\\pard\\f0\\fs6\\par\\fs22 ";

TEST(ScanReports, AreWrittenWordForWord) {
    const ReportLines lines = {{"Web", 5}, {"{A}\\", 0}};
    const std::string told = "\\fs18 Web: \\cf2 5\\cf0 \\par \\fs18 \\{A\\}\\\\: \\cf2 0\\cf0 \\par ";
    const std::string header = kHeader;
    EXPECT_EQ(RunningReport("Looking", lines), header + "Looking\\par \\par " + told);
    EXPECT_EQ(ScannedReport({"Done", WithNumber("Found: %d", 5), "Press", "Clean"}, lines),
              header + "Done\\par \\par \\fs18 \\cf2 Found: 5\\cf0 \\par \\par " + told +
                  "\\par \\fs20 Press  \\cf2 \\b Clean\\b0 \\cf0 ");
    EXPECT_EQ(CleanedReport({"Gone", "Removed: 4", "Failed: 1"}, lines),
              header + "Gone\\par \\par \\fs18 Removed: 4\\par Failed: 1\\par \\par " + told);
    EXPECT_EQ(CleanedReport({"Gone", "Removed: 5", ""}, {}),
              header + "Gone\\par \\par \\fs18 Removed: 5\\par \\par ");
    EXPECT_EQ(WithNumber("%d of %d, 100 %", 4000000000u), "4000000000 of %d, 100 %");
}

TEST(ScanReports, OfARunningCleanLeaveOutWhatWaits) {
    struct Case {
        const char* name;
        const char* categories;  // d: done, w: waits, D and W: no category
        const char* reported;
    };
    const Case kCases[] = {
        {"until two are done all are told", "dww", "xxx"},
        {"from the second on, those that wait are left out", "wdwdwdw", "xxxx.x."},
        {"a row that is no category counts and is not told", "DDdw", "..x."},
    };
    for (const Case& row : kCases) {
        std::vector<CleanedCategory> categories;
        for (const char* at = row.categories; *at != '\0'; ++at) {
            categories.push_back({*at == 'd' || *at == 'D', *at == 'd' || *at == 'w'});
        }
        std::string reported;
        for (const bool told : ReportedWhileCleaning(categories)) reported += told ? 'x' : '.';
        EXPECT_EQ(reported, row.reported) << row.name;
    }
}

// --- the preview's queue

TEST(PreviewQueue, TakesSmallReadableFilesThatMayBePictures) {
    TestFolder folder;
    struct Case {
        const char* name;
        std::size_t size;
        bool taken;
    };
    const Case kCases[] = {
        {"photo.JPG", 10, true},     {"x.bmp", 10, true},           {"a.tiff", 10, false},
        {"archive.gz", 10, true},    {"noextension", 10, false},    {"dot.", 10, false},
        {"large.png", 511999, true}, {"larger.png", 512000, false},
    };
    for (const Case& row : kCases) {
        CPreviewQueue queue;
        queue.Offer(folder.MakeFile(row.name, std::string(row.size, 'x')));
        EXPECT_EQ(queue.Size(), row.taken ? 1u : 0u) << row.name;
    }
    CPreviewQueue queue;
    queue.Offer(folder.At("missing.png"));
    const std::string held = folder.MakeFile("held.png");
    {
        std::ofstream writer(held, std::ios::app);
        queue.Offer(held);
    }
    EXPECT_TRUE(queue.IsEmpty());
    for (std::size_t number = 0; number < CPreviewQueue::kLimit + 1; ++number) queue.Offer(held);
    EXPECT_EQ(queue.Size(), CPreviewQueue::kLimit);
}

}  // namespace
