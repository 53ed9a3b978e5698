#pragma once

#include <string>

// The only decoding of character references in definitions: replaces all "&amp;" by "&"; only if there was
// none, all "&apos;" by "'"; only if there was none of these either, all "&quot;" by a double quote
// character. True if anything was replaced.
bool ResolveReferences(std::string& text);
