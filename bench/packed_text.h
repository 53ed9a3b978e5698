#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// The compressed bytes of a definitions file, for the bare loop that a load is measured against.
class PackedText {
  public:
    // Ends the program when the file is not there or not whole.
    explicit PackedText(const std::string& path);

    // Inflates and parses, and frees what that took. Returns the seconds.
    double Parse();

    // The text itself.
    const std::string& Text() const { return m_text; }

  private:
    bool ParseOnce();

    std::string m_text;
    std::vector<std::uint8_t> m_archive;
    std::size_t m_begin = 0;
};
