#include "base/delimiting_text_state_machine.h"

namespace {

constexpr std::uint32_t kRoot = 0;

bool IsAscii(char c) {
    return static_cast<unsigned char>(c) < 128;
}

char ToLower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

}  // namespace

DelimitingTextStateMachine::DelimitingTextStateMachine(char openAndClose, LeadByteTest leadByteTest)
    : delimiter(openAndClose), isLeadByte(leadByteTest), nodes(1) {}

DelimitingTextStateMachine::~DelimitingTextStateMachine() = default;

std::uint32_t DelimitingTextStateMachine::VariableCount() const {
    return variableCount;
}

std::uint32_t DelimitingTextStateMachine::FindChild(std::uint32_t node, char c) const {
    std::uint32_t child = nodes[node].firstChild;
    while (child != kNone && nodes[child].character != c) child = nodes[child].nextSibling;
    return child;
}

std::uint32_t DelimitingTextStateMachine::AddChild(std::uint32_t node, char c) {
    const auto child = static_cast<std::uint32_t>(nodes.size());
    nodes.push_back({.nextSibling = nodes[node].firstChild, .character = c});
    nodes[node].firstChild = child;
    return child;
}

bool DelimitingTextStateMachine::AddDelimitedText(std::string_view key, std::string_view value) {
    if (key.empty() || key.front() != delimiter) return false;
    ++variableCount;
    bool gained = false;
    bool used = false;
    // Before the nodes: when memory runs out, no closing delimiter is left without its value.
    const auto stored = static_cast<std::uint32_t>(values.size());
    values.emplace_back(value);
    std::uint32_t node = kRoot;
    for (const char written : key.substr(1)) {
        if (!IsAscii(written)) break;
        const char c = ToLower(written);
        std::uint32_t child = FindChild(node, c);
        if (child == kNone) {
            child = AddChild(node, c);
            gained = true;
            if (c == delimiter) {
                nodes[child].value = stored;
                used = true;
            }
        }
        node = child;
    }
    if (!used) values.pop_back();
    return gained;
}

// The match of the name goes on, ends or begins with one character of the text.
DelimitingTextStateMachine::Outcome DelimitingTextStateMachine::Step(char c) {
    if (cursor == kNone) {
        if (c != delimiter) return Outcome::kNoMatch;
        cursor = kRoot;
        return Outcome::kUnderWay;
    }
    // A name is stored in lower case, so its characters need not be tried as they are written.
    cursor = FindChild(cursor, c == delimiter ? c : ToLower(c));
    // kept: a delimiter that comes too early ends the match and does not open a new one, so that in
    // "%win%windir%" nothing is replaced.
    if (cursor == kNone) return Outcome::kNoMatch;
    return c == delimiter ? Outcome::kComplete : Outcome::kUnderWay;
}

bool DelimitingTextStateMachine::OpensDoubleByte(char c) const {
    return !IsAscii(c) && isLeadByte != nullptr && isLeadByte(static_cast<unsigned char>(c));
}

// Where the next character stands that is more than a character outside of a match; the end if there is none.
std::size_t DelimitingTextStateMachine::FindNotable(std::string_view text, std::size_t from) const {
    while (from < text.size() && text[from] != delimiter && !OpensDoubleByte(text[from])) ++from;
    return from;
}

// Puts a value in the place of what stands in the output from `token` on, unless the text would grow too far:
// `read` characters of it have been read by then.
bool DelimitingTextStateMachine::Append(std::uint32_t value, std::size_t token, std::size_t read) {
    const std::string& text = values[value];
    if (token + text.size() > read + kMaxGrowth) return false;
    workBuffer.resize(token);
    workBuffer.append(text);
    return true;
}

// The place for a variable; `name` begins with the delimiter and goes on.
DelimitingTextStateMachine::Written& DelimitingTextStateMachine::LatelyLike(std::string_view name) {
    return lately[static_cast<unsigned char>(name[1]) % lately.size()];
}

void DelimitingTextStateMachine::ReplaceDelimitedText(std::string& text) {
    const std::string_view replaced = Replaced(text);
    if (replaced.data() != text.data()) text = replaced;
}

std::string_view DelimitingTextStateMachine::Replaced(std::string_view text) {
    workBuffer.clear();
    cursor = kNone;
    bool replaced = false;
    std::size_t token = 0;  // where in the output the variable began that is being matched
    std::size_t begin = 0;  // where it began in the text
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (cursor == kNone) {
            begin = FindNotable(text, i);
            workBuffer.append(text.substr(i, begin - i));
            token = workBuffer.size();
            i = begin;
            if (text.size() - i < 2) {
                workBuffer.append(text.substr(i));
                break;
            }
            const Written& known = LatelyLike(text.substr(i));
            if (known.value != kNone && text.substr(i).starts_with(known.name) &&
                Append(known.value, token, i + known.name.size())) {
                i += known.name.size() - 1;
                replaced = true;
                continue;
            }
        }
        const char c = text[i];
        if (OpensDoubleByte(c)) {
            // kept: the match goes on behind a double-byte character, and then replaces only what stands
            // between that character and the closing delimiter.
            workBuffer.append(text.substr(i, 2));
            ++i;
            token = workBuffer.size();
            begin = text.size();
            continue;
        }
        const Outcome outcome = Step(c);
        if (outcome == Outcome::kComplete) {
            const std::uint32_t value = nodes[cursor].value;
            cursor = kNone;
            if (begin < i) {
                const std::string_view name = text.substr(begin, i + 1 - begin);
                LatelyLike(name) = {std::string(name), value};
            }
            if (Append(value, token, i + 1)) {
                replaced = true;
                continue;
            }
        }
        workBuffer.push_back(c);
    }
    cursor = kNone;
    return replaced ? workBuffer : text;
}
