#pragma once

#include <windows.h>

namespace Gdiplus {
class Image;
}

// What the engine and the window that started one of its workers tell each other. Each message is sent
// synchronously from the worker unless it is marked as posted. A scan, a clean, a shred and a listing hold
// the engine's lock while they send, so the window's thread must not call a locking engine operation until
// the run has ended.

// The address of a record of the scan hierarchy, of any level, used as an opaque handle. A handle of a
// definition level is valid until the definitions are freed, one of a result until the results are cleared.
// A handle that is not valid any more is no fault: nothing is found under it.
struct HSCANITEM__;
using HSCANITEM = HSCANITEM__*;

// Add one node to the tree. wParam 0 while listing, 1 during a scan or a reboot pass; lParam a
// tagSCAN_NODE_INFO. The receiver returns the tree item.
inline constexpr UINT WM_ENGINE_NODE = WM_USER + 0x101;
// The node in wParam needs no further display.
inline constexpr UINT WM_ENGINE_NODE_DONE = WM_USER + 0x103;
// Posted. Load finished; lParam 1 if at least one category was loaded.
inline constexpr UINT WM_ENGINE_LOADED = WM_USER + 0x105;
// lParam percent of the definition items visited.
inline constexpr UINT WM_ENGINE_SCAN_PROGRESS = WM_USER + 0x107;
// Scan finished; wParam elapsed milliseconds, lParam 1 if it was stopped.
inline constexpr UINT WM_ENGINE_SCAN_DONE = WM_USER + 0x108;
// wParam the node that was dealt with, or 0; lParam percent.
inline constexpr UINT WM_ENGINE_CLEAN_PROGRESS = WM_USER + 0x110;
// Clean finished; wParam elapsed milliseconds.
inline constexpr UINT WM_ENGINE_CLEAN_DONE = WM_USER + 0x111;
// A shred run begins.
inline constexpr UINT WM_ENGINE_SHRED_STARTED = WM_USER + 0x112;
// wParam the path (const char*) of the file that is done, or 0 if it was not; lParam percent.
inline constexpr UINT WM_ENGINE_SHRED_PROGRESS = WM_USER + 0x113;
// Shred run finished, wParam elapsed milliseconds; or, with 0, the whole tree was listed.
inline constexpr UINT WM_ENGINE_SHRED_DONE = WM_USER + 0x114;
// The completion after a restart begins. The handler returns the window that is to get its messages.
inline constexpr UINT WM_ENGINE_REBOOT_BEGIN = WM_USER + 0x116;
// It ended; the window of before has the messages again.
inline constexpr UINT WM_ENGINE_REBOOT_END = WM_USER + 0x117;

static_assert(WM_ENGINE_NODE == 1281 && WM_ENGINE_REBOOT_END == 1303, "the numbers are fixed");

// One node for the tree. The texts live only for the call.
struct tagSCAN_NODE_INFO {
    DWORD level;            // 1 category, 2 application, 3 entity, 4 result
    const char* imageFile;  // categories and applications only, may be null
    const char* name;       // node text; of a result its name, or its path where it has none
    const char* help;       // of a category or entity, may be null
    const char* filePath;   // of a file result its whole path, else null
    // Of a category or application, may be null. Belongs to the engine: one of a listing lives as long as its
    // record, one of a scan until the next scan starts.
    Gdiplus::Image* image;
    BYTE checked;      // the node's check mark
    BYTE expanded;     // the node starts open
    HSCANITEM handle;  // the record
};
