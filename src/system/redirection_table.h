#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

// What a 32-bit process must know of a 64-bit Windows: which registry keys have a 32-bit and a 64-bit view
// and which are shared. Built once before any worker starts, read-only afterwards.

// Key paths with the long root name. The lookups use the lower-case copies.
struct RegRedirectionRows {
    bool inForce = false;
    std::vector<std::string> redirected;
    std::vector<std::string> shared;
    std::vector<std::string> redirectedLower;
    std::vector<std::string> sharedLower;
};

// The rows for a Windows version, with the registry of this machine for the rows that depend on it. Only
// versions 6.0 and 6.1 under Wow64 have any; everything else gives an empty table that is not in force.
RegRedirectionRows BuildRegRedirectionRows(DWORD majorVersion, DWORD minorVersion, bool isWow64);

// True when `keyPath` (long root name, backslash, sub-key) needs KEY_WOW64_64KEY by these rows.
bool NeedsNativeView(const RegRedirectionRows& rows, std::string_view keyPath);

// The process-wide table.
void InitRegRedirectionTable();
void FreeRegRedirectionTable();

// True in a 32-bit process on a 64-bit Windows of a known version.
bool IsRegTableInForce();

// True when the key is to be opened with KEY_WOW64_64KEY. False for null and while the table is not in force.
bool RegViewNeeds64Key(const char* keyPath);
