#include <cctype>
#include <map>
#include <sstream>

#include "base/delimiting_text_state_machine.h"
#include "fuzz.h"

namespace {

bool IsLeadByte(unsigned char c) {
    return c == 0x81;
}

// The same machine over plain maps: a name is known by all its beginnings.
class PlainMachine {
  public:
    bool Add(const std::string& key, const std::string& value) {
        if (key.empty() || key[0] != '%') return false;
        bool gained = false;
        std::string beginning;
        for (std::size_t i = 1; i < key.size() && static_cast<unsigned char>(key[i]) < 128; ++i) {
            beginning += static_cast<char>(std::tolower(key[i]));
            gained |= known.try_emplace(beginning, value).second;
        }
        return gained;
    }

    std::string Replace(const std::string& text) const {
        std::string out;
        std::size_t token = 0;
        bool matching = false;
        std::string name;
        for (std::size_t i = 0; i < text.size(); ++i) {
            const char c = text[i];
            if (IsLeadByte(static_cast<unsigned char>(c))) {
                out += text.substr(i++, 2);
                token = out.size();
                continue;
            }
            out += c;
            if (!matching && c == '%') {
                matching = true;
                name.clear();
                continue;
            }
            if (matching) {
                name += static_cast<unsigned char>(c) < 128 ? static_cast<char>(std::tolower(c)) : c;
                const auto found = known.find(name);
                matching = found != known.end();
                if (matching && c != '%') continue;
                if (matching) out.replace(token, std::string::npos, found->second);
                matching = false;
            }
            token = out.size();
        }
        return out;
    }

  private:
    std::map<std::string, std::string> known;
};

}  // namespace

// Lines "key=value" that are added and other lines that are replaced, in their order.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    DelimitingTextStateMachine machine('%', IsLeadByte);
    PlainMachine plain;
    std::istringstream lines(InputText(data, size));
    for (std::string line; std::getline(lines, line);) {
        const std::size_t equals = line.find('=');
        if (equals != std::string::npos) {
            const std::string key = line.substr(0, equals);
            const std::string value = line.substr(equals + 1);
            FUZZ_CHECK(machine.AddDelimitedText(key, value) == plain.Add(key, value));
        } else {
            const std::string expected = plain.Replace(line);
            machine.ReplaceDelimitedText(line);
            FUZZ_CHECK(line == expected);
        }
    }
    return 0;
}
