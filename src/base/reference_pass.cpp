#include "base/reference_pass.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "base/find_byte.h"

namespace {

// Where the first `reference` stands at or behind `from`, the text's size if there is none.
std::size_t FindReference(std::string_view text, std::string_view reference, std::size_t from) {
    from = FindByte(text, reference.front(), from);
    while (from < text.size() && !text.substr(from).starts_with(reference)) {
        from = FindByte(text, reference.front(), from + 1);
    }
    return from;
}

// Replaces every `reference` by `character`, in one walk that closes the gaps as it goes. What a replacement
// forms together with the text behind it is not looked at again.
bool ReplaceAll(std::string& text, std::string_view reference, char character) {
    std::size_t found = FindReference(text, reference, 0);
    if (found == text.size()) return false;
    std::size_t out = found;
    while (found < text.size()) {
        text[out++] = character;
        const std::size_t from = found + reference.size();
        found = FindReference(text, reference, from);
        // traits' move copes with the overlap of source and target.
        std::string::traits_type::move(&text[out], text.data() + from, found - from);
        out += found - from;
    }
    text.resize(out);
    return true;
}

struct Reference {
    std::string_view text;
    char character;
};

constexpr Reference kReferences[] = {{"&amp;", '&'}, {"&apos;", '\''}, {"&quot;", '"'}};

}  // namespace

bool ResolveReferences(std::string& text) {
    // kept: the forms exclude one another; a text with one "&amp;" keeps its "&apos;" and "&quot;" as
    // written.
    return std::ranges::any_of(kReferences, [&](const Reference& reference) {
        return ReplaceAll(text, reference.text, reference.character);
    });
}

std::string_view ReferenceToResolve(std::string_view text) {
    for (const Reference& reference : kReferences) {
        if (FindReference(text, reference.text, 0) < text.size()) return reference.text;
    }
    return {};
}
