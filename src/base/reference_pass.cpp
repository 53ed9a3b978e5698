#include "base/reference_pass.h"

#include <cstddef>
#include <string_view>

namespace {

// Replaces every `reference` by `character`, in one walk that closes the gaps as it goes. What a replacement
// forms together with the text behind it is not looked at again.
bool ReplaceAll(std::string& text, std::string_view reference, char character) {
    std::size_t found = text.find(reference);
    if (found == std::string::npos) return false;
    std::size_t out = found;
    while (found != std::string::npos) {
        text[out++] = character;
        const std::size_t from = found + reference.size();
        found = text.find(reference, from);
        const std::size_t end = found == std::string::npos ? text.size() : found;
        // traits' move copes with the overlap of source and target.
        std::string::traits_type::move(&text[out], text.data() + from, end - from);
        out += end - from;
    }
    text.resize(out);
    return true;
}

}  // namespace

bool ResolveReferences(std::string& text) {
    // kept: the forms exclude one another; a text with one "&amp;" keeps its "&apos;" and "&quot;" as
    // written.
    return ReplaceAll(text, "&amp;", '&') || ReplaceAll(text, "&apos;", '\'') ||
           ReplaceAll(text, "&quot;", '"');
}
