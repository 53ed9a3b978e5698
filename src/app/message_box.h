#pragma once

#include <windows.h>

// Message boxes with the program's display name as their caption. `style` and the answer are those of
// MessageBoxA. `owner` may be null. Main thread.
int AppMessageBox(HWND owner, const char* text, UINT style);

// The same with a text of the resources.
int AppMessageBox(HWND owner, UINT textId, UINT style);
