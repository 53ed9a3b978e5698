#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

// Texts with places that stand for others, as sets of texts. Standard C++ alone.

// One place of a glob: a character, or any of a set of characters, once or any number of times.
struct GlobPart {
    enum class Fits { Literal, NoSlash, NoSlashNoDot, Any };
    Fits fits;
    char literal = 0;
    bool repeats = false;
};
using Glob = std::vector<GlobPart>;

// Appends each character of `text` as itself.
void AppendLiteral(Glob& glob, std::string_view text);

// The globs that a pattern of our own stands for: `*` and `?` are any characters or one of a part of a path,
// `**` any parts, and `\**\` also none.
std::vector<Glob> PatternGlobs(std::string_view pattern);

// Whether there is a text that fits both.
bool Meet(const Glob& a, const Glob& b);
