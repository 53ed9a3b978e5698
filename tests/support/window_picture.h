#pragma once

#include <windows.h>

#include <string>

// Writes a visible window with its frame as a PNG file; false if it cannot be written. It is moved to the
// screen's corner, and what is beyond the screen's edge then is not in the picture. GDI+ has to be started.
bool SaveWindowPicture(HWND window, const std::string& path);

// The same with what the screen shows where the window stands, for the window of another program, on a
// display.
bool SaveScreenPicture(HWND window, const std::string& path);

// Handles the messages that are waiting, and those that come within `milliseconds`.
void PumpMessages(DWORD milliseconds);
