#pragma once

#include <windows.h>

// What MessageBoxWithCheck is handed and changes.
struct tagCHECKED_MESSAGE {
    HWND checkBox = nullptr;  // valid while the box is up
    int checked = 0;          // 0 or 1: at first, and what the user made of it
    char label[1024] = {};
};

// MessageBoxA with a check box below its text, for a question that the user may silence. The answer is
// MessageBoxA's; `record.checked` counts whatever the answer is. One box at a time. If the check box cannot be
// added, it is a plain message box and the record stays as it came. Main thread.
int MessageBoxWithCheck(HWND owner, const char* text, const char* caption, UINT type,
                        tagCHECKED_MESSAGE& record);
