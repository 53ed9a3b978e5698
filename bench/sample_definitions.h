#pragma once

#include <cstddef>
#include <string>

// Definitions of at least `size` bytes: applications of the usual kinds of places in the user's and the
// system's folders and in the registry, in categories of some hundred. Always the same for the same size.
std::string SampleDefinitions(std::size_t size);
