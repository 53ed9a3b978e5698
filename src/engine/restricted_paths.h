#pragma once

#include <string>
#include <string_view>
#include <vector>

class FolderPaths;

// The folders that the system and the user's data stand on, and the tests against them. A folder itself and
// its whole content as one wildcard are protected, not what lies deeper.

// The protected folders of this machine and its drives ("c:"), in lower case without a trailing backslash.
std::vector<std::string> ProtectedPaths(FolderPaths& folders);

// True for the location of a definition that is a protected path, alone or with a backslash, "\*" or "\*.*"
// behind it, wherever the protected path's text occurs in it. Environment variables are expanded for the
// test.
bool IsRestrictedLocation(std::string_view location, const std::vector<std::string>& protectedPaths);

// True for a path of the user's that is a protected folder, in any case and with or without a trailing
// backslash. Null is not.
// kept: a drive's root counts only when it is written with two backslashes.
bool IsRestrictedUserPath(const char* path, const std::vector<std::string>& protectedPaths);

// True for a folder below which a protected folder lies, a drive's root for one; in any case and with or
// without a trailing backslash.
bool HoldsProtectedPath(const char* path, const std::vector<std::string>& protectedPaths);

// True when `path` starts with the text of the Windows folder and has a backslash at or behind its end.
// kept: with case, and without a look at what follows the text, so that a sibling of a longer name counts.
bool IsInFolderText(const char* path, std::string_view windowsFolder);
