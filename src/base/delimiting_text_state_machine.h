#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

// Replaces variables such as %windir% in a text in one pass over it. Names match in any case; the first value
// of a name stays for good; a value is not looked at again, so no variable is replaced inside a value.
// Not reentrant, for one thread at a time.
class DelimitingTextStateMachine {
  public:
    using LeadByteTest = bool (*)(unsigned char);

    // How far one call of ReplaceDelimitedText lets a text grow, in bytes. No path comes near it; values
    // that are built from values in a few rounds would otherwise fill the memory.
    static constexpr std::size_t kMaxGrowth = 1 << 20;

    // `delimiter` opens and closes a variable. `isLeadByte` tells the first byte of a double-byte character,
    // whose second byte is then never taken for a delimiter; null: no double-byte characters. It is not asked
    // of ASCII, which is no lead byte in any code page.
    explicit DelimitingTextStateMachine(char delimiter, LeadByteTest isLeadByte = nullptr);
    virtual ~DelimitingTextStateMachine();
    DelimitingTextStateMachine(const DelimitingTextStateMachine&) = delete;
    DelimitingTextStateMachine& operator=(const DelimitingTextStateMachine&) = delete;

    // Makes `key` (delimiters included) stand for `value`. True if the key was not known before, in whole or
    // in part; false, with nothing changed, if it does not start with the delimiter. Names are ASCII: a key
    // with a byte above 127 is accepted and never matches, nor does a key without its closing delimiter.
    bool AddDelimitedText(std::string_view key, std::string_view value);

    // Replaces every known variable in `text`. What is unknown or incomplete stays as it is written, and so
    // does a variable whose value would make the text grow by more than kMaxGrowth.
    void ReplaceDelimitedText(std::string& text);

    // The same without touching `text`: gives `text` itself where nothing is replaced, else a text of the
    // machine's own that the next call overwrites.
    std::string_view Replaced(std::string_view text);

    // Number of AddDelimitedText calls that stored a value, repeated keys included.
    std::uint32_t VariableCount() const;

  private:
    enum class Outcome { kNoMatch, kUnderWay, kComplete };

    static constexpr std::uint32_t kNone = 0xFFFFFFFF;

    // One character of a name. Children are chained, so that a node is small whatever the keys are, and all
    // nodes stand in one list, so that nothing recurses along a long key. A chain has at most 128 links.
    struct Node {
        std::uint32_t firstChild = kNone;
        std::uint32_t nextSibling = kNone;
        std::uint32_t value = kNone;  // set on closing delimiters only
        char character = 0;
    };

    // A variable as it was last written. What is written so again needs no walk: a name that is known keeps
    // its value for good.
    struct Written {
        std::string name;  // with both delimiters; empty where none was met
        std::uint32_t value = kNone;
    };

    std::uint32_t FindChild(std::uint32_t node, char c) const;
    std::uint32_t AddChild(std::uint32_t node, char c);
    Outcome Step(char c);
    bool OpensDoubleByte(char c) const;
    std::size_t FindNotable(std::string_view text, std::size_t from) const;
    bool Append(std::uint32_t value, std::size_t token, std::size_t read);
    Written& LatelyLike(std::string_view name);

    char delimiter;
    LeadByteTest isLeadByte;
    std::uint32_t variableCount = 0;
    std::deque<Node> nodes;           // the first one is the root; in pieces, so that growing copies none
    std::vector<std::string> values;  // those that a node refers to
    std::uint32_t cursor = kNone;     // where the match stands; kNone when no match is under way
    std::string workBuffer;           // the output; kept from call to call
    std::array<Written, 32> lately;   // by the first character of the name
};
