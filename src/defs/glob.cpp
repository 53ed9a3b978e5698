#include "defs/glob.h"

#include <string>
#include <utility>

namespace {

constexpr std::string_view kAnyFolders = "\\**\\";

bool FitsSet(GlobPart::Fits set, char c) {
    if (set == GlobPart::Fits::Any) return true;
    return c != '\\' && (c != '.' || set != GlobPart::Fits::NoSlashNoDot);
}

// Whether one character fits both.
bool ShareCharacter(const GlobPart& a, const GlobPart& b) {
    using enum GlobPart::Fits;
    if (a.fits == Literal && b.fits == Literal) return a.literal == b.literal;
    if (a.fits == Literal) return FitsSet(b.fits, a.literal);
    if (b.fits == Literal) return FitsSet(a.fits, b.literal);
    return true;
}

Glob PatternGlob(std::string_view pattern) {
    Glob glob;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (pattern.substr(i).starts_with("**")) {
            glob.push_back({GlobPart::Fits::Any, 0, true});
            ++i;
        } else if (pattern[i] == '*' || pattern[i] == '?') {
            glob.push_back({GlobPart::Fits::NoSlash, 0, pattern[i] == '*'});
        } else {
            glob.push_back({GlobPart::Fits::Literal, pattern[i]});
        }
    }
    return glob;
}

}  // namespace

void AppendLiteral(Glob& glob, std::string_view text) {
    for (const char c : text) glob.push_back({GlobPart::Fits::Literal, c});
}

std::vector<Glob> PatternGlobs(std::string_view pattern) {
    std::vector<Glob> globs = {PatternGlob(pattern)};
    const std::size_t at = pattern.find(kAnyFolders);
    if (at == std::string_view::npos) return globs;
    const std::string start(pattern.substr(0, at + 1));
    const std::string_view rest = pattern.substr(at + kAnyFolders.size() - 1);  // with its backslash
    globs.clear();
    for (const Glob& tail : PatternGlobs(rest)) {
        for (const char* between : {"", "\\**"}) {
            Glob glob = PatternGlob(start.substr(0, at) + between);
            glob.insert(glob.end(), tail.begin(), tail.end());
            globs.push_back(std::move(glob));
        }
    }
    return globs;
}

// A walk over the pairs of places that one common text can reach.
bool Meet(const Glob& a, const Glob& b) {
    // Most globs part in their first characters, and are many.
    for (std::size_t i = 0; i < a.size() && i < b.size(); ++i) {
        if (a[i].fits != GlobPart::Fits::Literal || b[i].fits != GlobPart::Fits::Literal) break;
        if (a[i].literal != b[i].literal) return false;
    }
    const std::size_t width = b.size() + 1;
    std::vector<bool> seen((a.size() + 1) * width);
    std::vector<std::pair<std::size_t, std::size_t>> open;
    const auto reach = [&](std::size_t i, std::size_t j) {
        if (seen[i * width + j]) return;
        seen[i * width + j] = true;
        open.emplace_back(i, j);
    };
    reach(0, 0);
    while (!open.empty()) {
        const auto [i, j] = open.back();
        open.pop_back();
        if (i == a.size() && j == b.size()) return true;
        const bool aRepeats = i < a.size() && a[i].repeats;
        const bool bRepeats = j < b.size() && b[j].repeats;
        if (aRepeats) reach(i + 1, j);
        if (bRepeats) reach(i, j + 1);
        if (i == a.size() || j == b.size() || !ShareCharacter(a[i], b[j])) continue;
        reach(aRepeats ? i : i + 1, bRepeats ? j : j + 1);
    }
    return false;
}
