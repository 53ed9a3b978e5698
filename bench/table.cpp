#include "table.h"

#include <cstdio>

namespace {

std::string Text(const char* format, double value) {
    char text[80];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

}  // namespace

Table::Table() {
    std::printf("%-52s %12s %12s\n", "", "measured", "limit");
}

void Table::Add(const std::string& what, const char* format, double value, double limit) {
    const bool holds = limit == kNoLimit || value <= limit;
    std::printf("%-52s %12s %12s  %s\n", what.c_str(), Text(format, value).c_str(),
                limit == kNoLimit ? "" : Text(format, limit).c_str(), holds ? "" : "MISSED");
    std::fflush(stdout);
    m_allHold = m_allHold && holds;
}
