#include "base/match_mask.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace {

constexpr char kStarAsControl = 0x1A;

bool IsSlash(char c) {
    return c == '/' || c == '\\';
}

// The places in a name that the part of the mask walked so far can reach. A walk over sets instead of a
// search with retreat: a star that stops at dots together with a question mark that takes one makes any
// shortcut by "the last star only" wrong, and full retreat takes exponential time for many stars.
class Places {
  public:
    explicit Places(std::string_view ofName) : name(ofName), reached(ofName.size() + 1) { reached[0] = true; }

    bool Empty() const { return first > last; }
    bool AtEnd() const { return !Empty() && reached[name.size()]; }

    // One mask character that takes one name character for which `fits` holds.
    template <typename Fits>
    void Step(Fits fits) {
        std::size_t newFirst = name.size() + 1;
        std::size_t newLast = 0;
        for (std::size_t i = last + 1; i-- > first;) {
            const bool goesOn = reached[i] && i < name.size() && fits(name[i]);
            reached[i] = false;
            if (!goesOn) continue;
            reached[i + 1] = true;
            newFirst = i + 1;
            if (newLast == 0) newLast = i + 1;
        }
        first = newFirst;
        last = newLast;
    }

    // A star: from each place on, up to the next dot, slash or the end.
    void Star() {
        bool running = false;
        for (std::size_t i = first; i <= name.size() && (running || i <= last); ++i) {
            running = running || reached[i];
            reached[i] = running;
            if (running && i > last) last = i;
            if (i < name.size() && (IsSlash(name[i]) || name[i] == '.')) running = false;
        }
    }

  private:
    std::string_view name;
    std::vector<bool> reached;  // by place; true nowhere outside of [first, last]
    std::size_t first = 0;
    std::size_t last = 0;
};

}  // namespace

bool MatchMask(const char* mask, const char* name) {
    if (mask == nullptr || name == nullptr) return false;
    if (*name == '\0') return *mask == '\0';
    Places places(name);
    for (; *mask != '\0' && !places.Empty(); ++mask) {
        switch (*mask) {
            case '*':
            case kStarAsControl:
                places.Star();
                break;
            case '?':
                places.Step([](char c) { return !IsSlash(c); });
                break;
            case '/':
            case '\\':
                places.Step(IsSlash);
                break;
            case '`':
                ++mask;
                if (*mask == '\0') return false;
                [[fallthrough]];
            default:
                places.Step([wanted = *mask](char c) { return c == wanted; });
        }
    }
    return *mask == '\0' && places.AtEnd();
}
