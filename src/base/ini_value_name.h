#pragma once

#include <optional>
#include <string>
#include <string_view>

// The two halves of "[section]key".
struct IniValueName {
    std::string section;
    std::string key;
};

// Splits at the first "]". The first character is taken for the opening bracket without a look. Nothing
// when there is no "]", or when the section would not fit the 260 characters that a section may have.
std::optional<IniValueName> SplitIniValueName(std::string_view text);
