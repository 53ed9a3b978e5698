#pragma once

#include <string>
#include <string_view>

// `text` as it stands in the text of an RTF document in code page 1252 with \uc1: backslashes and braces mean
// themselves, a line feed begins a line, letters outside of ASCII are written by their numbers. `text` is
// UTF-8; a byte that is none counts as a letter of the code page. Other control characters are left out.
std::string EscapeRtf(std::string_view text);
