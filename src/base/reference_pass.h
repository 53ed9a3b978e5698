#pragma once

#include <string>
#include <string_view>

// The only decoding of character references in definitions: replaces all "&amp;" by "&"; only if there was
// none, all "&apos;" by "'"; only if there was none of these either, all "&quot;" by a double quote
// character. True if anything was replaced.
bool ResolveReferences(std::string& text);

// The one form that ResolveReferences would replace in `text`; empty when it would replace nothing.
std::string_view ReferenceToResolve(std::string_view text);
