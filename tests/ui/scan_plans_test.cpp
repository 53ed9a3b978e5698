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

ScanMetrics PageMetrics() {
    ScanMetrics metrics;
    metrics.client = {613, 441};
    metrics.scale = 1;
    metrics.newButtonHeight = 28;
    metrics.intro1 = {360, 19};
    metrics.introImage = {360, 112};
    metrics.intro2 = {560, 19};
    metrics.startButton = {180, 58};
    metrics.hint1Height = 13;
    metrics.hint2Height = 13;
    return metrics;
}

TEST(ScanLayout, AtTheEndTheHeightLosesATopThatIsNotThere) {
    EXPECT_EQ(LayoutScan(SCAN_RESULTS, PageMetrics()).tree, (RECT{0, 34, 608, 381}));
    EXPECT_EQ(LayoutScan(SCAN_CLEANED, PageMetrics()).tree, (RECT{0, 0, 301, 347})) << "kept";
    EXPECT_EQ(LayoutScan(SCAN_REBOOT_SHRED, PageMetrics()).tree, std::nullopt) << "all stays where it is";
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
        ScanMetrics metrics = PageMetrics();
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
        {"photo.JPG", 10, true},     {"archive.gz", 10, true},  // kept: by its first letter
        {"a.tiff", 10, false},       {"noextension", 10, false},
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
