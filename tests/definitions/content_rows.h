#pragma once

#include <span>

// What lies in the profiles of programs, and what cleaning makes of it.

enum class Fate {
    Trace,   // goes with the defaults
    Chosen,  // goes only when everything is switched on
    Kept,    // stays, whatever is switched on
};

struct ContentRow {
    Fate fate;
    const char* file;  // below the stand-ins of the variables' folders: "%appdata%\...", "%localappdata%\..."
    const char* text = "";  // what is in the file; its own name where there is none
};

// A program with all that lies in its profile.
struct ContentCase {
    const char* application;  // as the definitions call it
    std::span<const ContentRow> rows;
};

// Each half of the definitions has a table of its own.
std::span<const ContentCase> WebContent();
std::span<const ContentCase> DesktopContent();
