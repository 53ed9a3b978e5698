#pragma once

#include <windows.h>

#include <optional>
#include <string_view>

// "HKCU\Software\..." taken apart.
struct RegistryLocation {
    HKEY hive;              // null when the fourth letter is none of M, R and U
    std::string_view path;  // what stands behind the hive's backslash; points into the text
};

// Nothing when the text is no hive path: it starts with "H", its fifth character is a backslash, and
// something follows. kept: only the fourth letter decides on the hive, and an unknown one is a hive path all
// the same.
std::optional<RegistryLocation> ParseRegistryLocation(std::string_view text);
