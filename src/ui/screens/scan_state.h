#pragma once

// Where the scan screen stands. The numbers count: SetState goes one up, or back.
enum ScanState {
    SCAN_INTRO = 0,         // waiting for the user
    SCAN_SCANNING = 1,      // a scan runs
    SCAN_RESULTS = 2,       // results can be checked and unchecked
    SCAN_CLEANING = 3,      // a clean runs
    SCAN_CLEANED = 4,       // the final report stands
    SCAN_REBOOT_SHRED = 5,  // what waited for the restart is being finished
};

// Whether the screen goes from one state to another: one further, to the beginning, or to the pass after a
// restart. This alone is what makes a start button, a click on the navigation and --autoscan harmless while
// something else goes on.
constexpr bool MayEnter(ScanState current, ScanState next) {
    return next == current + 1 || next == SCAN_INTRO || next == SCAN_REBOOT_SHRED;
}
