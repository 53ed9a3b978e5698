#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Replaces variables such as %windir% in a text in one pass over it. Names match in any case; the first value
// of a name stays for good; a value is not looked at again, so no variable is replaced inside a value.
// Not reentrant, for one thread at a time.
class DelimitingTextStateMachine {
  public:
    using LeadByteTest = bool (*)(unsigned char);

    // `delimiter` opens and closes a variable. `isLeadByte` tells the first byte of a double-byte character,
    // whose second byte is then never taken for a delimiter; null: no double-byte characters.
    explicit DelimitingTextStateMachine(char delimiter, LeadByteTest isLeadByte = nullptr);
    virtual ~DelimitingTextStateMachine();
    DelimitingTextStateMachine(const DelimitingTextStateMachine&) = delete;
    DelimitingTextStateMachine& operator=(const DelimitingTextStateMachine&) = delete;

    // Makes `key` (delimiters included) stand for `value`. True if the key was not known before, in whole or
    // in part; false, with nothing changed, if it does not start with the delimiter.
    bool AddDelimitedText(std::string_view key, std::string_view value);

    // Replaces every known variable in `text`.
    void ReplaceDelimitedText(std::string& text);

    // Number of AddDelimitedText calls that stored a value, repeated keys included.
    std::uint32_t VariableCount() const;
};
