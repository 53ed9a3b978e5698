#pragma once

#include <string_view>

// True if a system's file pattern can have found a name by that name itself, both in one letter case. The
// system finds a file by its short name as well: "*.htm" finds "PAGE~1.HTM", which is "page.html". Where the
// systems differ it is the more generous answer: a "?" takes one character or none, and a dot may stand for
// the end of the name.
bool CanFitPattern(std::wstring_view pattern, std::wstring_view name);
