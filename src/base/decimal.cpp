#include "base/decimal.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

std::int32_t DecimalValue(const char* text) {
    if (text == nullptr) return 0;
    using Limits = std::numeric_limits<std::int32_t>;
    const long long number = std::strtoll(text, nullptr, 10);  // has its own bounds, and stays within them
    return static_cast<std::int32_t>(std::clamp<long long>(number, Limits::min(), Limits::max()));
}
