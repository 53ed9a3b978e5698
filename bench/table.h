#pragma once

#include <string>

#include "report.h"

// The table of a run of velvane-ui-bench: values of different units. A line is printed as soon as it is
// known.
class Table {
  public:
    // Prints the head.
    Table();

    // `format` writes the value with its unit.
    void Add(const std::string& what, const char* format, double value, double limit = kNoLimit);

    // Whether every limit was kept.
    bool AllHold() const { return m_allHold; }

  private:
    bool m_allHold = true;
};
