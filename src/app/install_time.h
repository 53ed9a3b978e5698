#pragma once

#include <cstdint>
#include <string>

// When the program was installed: 100 nanoseconds since 1601, as the system counts them, in the value
// InstallTime of the product's key below HKEY_LOCAL_MACHINE.

// Writes the time of now for our own product. A failure is silent.
void WriteInstallTime();

// The time of the install as the user's clock showed it, "2024-05-31 13:45:10"; empty when none was written.
std::string ReadInstallDate(const std::string& company, const std::string& product);

// `fileTime` as local time in that form; empty for a time before 1970 or one that has no date.
std::string InstallDateText(std::uint64_t fileTime);
