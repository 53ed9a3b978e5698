#include "base/ini_value_name.h"

#include <algorithm>
#include <cstddef>

namespace {

constexpr std::size_t kMaxSection = 260;  // characters

}  // namespace

std::optional<IniValueName> SplitIniValueName(std::string_view text) {
    const std::size_t close = text.find(']');
    if (close == std::string_view::npos) return std::nullopt;
    const std::size_t open = std::min<std::size_t>(1, close);  // a text may begin with the closing bracket
    if (close - open > kMaxSection) return std::nullopt;
    return IniValueName{std::string(text.substr(open, close - open)), std::string(text.substr(close + 1))};
}
