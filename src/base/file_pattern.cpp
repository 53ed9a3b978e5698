#include "base/file_pattern.h"

#include <cstddef>
#include <utility>
#include <vector>

bool CanFitPattern(std::wstring_view pattern, std::wstring_view name) {
    // How much of the name the pattern so far can take, as a set of lengths.
    std::vector<bool> reached(name.size() + 1);
    reached[0] = true;
    for (const wchar_t c : pattern) {
        std::vector<bool> next(name.size() + 1);
        bool starred = false;
        for (std::size_t i = 0; i <= name.size(); ++i) {
            starred = starred || (c == L'*' && reached[i]);
            if (starred) next[i] = true;
            if (!reached[i]) continue;
            if (c == L'?' || (c == L'.' && i == name.size())) next[i] = true;
            if (i < name.size() && (c == L'?' || c == name[i])) next[i + 1] = true;
        }
        reached = std::move(next);
    }
    return reached.back();
}
