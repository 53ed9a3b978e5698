#pragma once

#include <windows.h>

#include <string>

// Writes a visible window without a frame as a PNG file. False if it cannot be written.
bool SaveWindow(HWND window, const std::string& path);

// Handles the messages that are waiting, and those that come within `milliseconds`.
void PumpMessages(DWORD milliseconds);
