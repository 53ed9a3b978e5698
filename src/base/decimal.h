#pragma once

#include <cstdint>

// The decimal number that `text` begins with, behind white space and a sign. 0 when it begins with no digit
// or is null; what does not fit becomes the nearest number that does.
std::int32_t DecimalValue(const char* text);
