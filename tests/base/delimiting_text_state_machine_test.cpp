#include "base/delimiting_text_state_machine.h"

#include <gtest/gtest.h>

namespace {

using Machine = DelimitingTextStateMachine;

std::string Replaced(Machine& machine, std::string text) {
    machine.ReplaceDelimitedText(text);
    return text;
}

struct ReplaceCase {
    const char* what;
    const char* text;
    const char* replaced;
};

// With %Windir%, %sid% (empty) and %self%.
const ReplaceCase kReplaceCases[] = {
    {"in any case", "%WINDIR%\\x %windir%%WinDir%", "C:\\Windows\\x C:\\WindowsC:\\Windows"},
    {"an empty value", "HKU\\%sid%\\x", "HKU\\\\x"},
    {"no variable inside a value", "%self%", "%windir%"},
    {"an unknown name stays", "%recyclebin%\\", "%recyclebin%\\"},
    {"a match that dies leaves the next delimiter free", "%nothing%windir%", "%nothingC:\\Windows"},
    {"a delimiter inside a known name is lost", "%win%windir%", "%win%windir%"},
    {"the text ends inside a name", "%windir", "%windir"},
};

TEST(DelimitingTextStateMachine, ReplacesKnownVariablesInOnePass) {
    Machine machine('%');
    machine.AddDelimitedText("%Windir%", "C:\\Windows");
    machine.AddDelimitedText("%sid%", "");
    machine.AddDelimitedText("%self%", "%windir%");
    // What was met once is replaced without a walk: nothing may change by that.
    for (int round = 0; round < 2; ++round) {
        for (const ReplaceCase& row : kReplaceCases) {
            EXPECT_EQ(Replaced(machine, row.text), row.replaced) << row.what << ", round " << round;
        }
    }
}

TEST(DelimitingTextStateMachine, KeysAreTakenOnceAndForAll) {
    Machine machine('%');
    EXPECT_TRUE(machine.AddDelimitedText("%temp%", "first"));
    EXPECT_FALSE(machine.AddDelimitedText("%TEMP%", "second")) << "the name is known";
    EXPECT_TRUE(machine.AddDelimitedText("%tempo%", "music")) << "it is more than a known name";
    EXPECT_FALSE(machine.AddDelimitedText("%te", "half")) << "it is the beginning of a known name";
    EXPECT_TRUE(machine.AddDelimitedText("%open", "never")) << "accepted, though without a way to end";
    EXPECT_FALSE(machine.AddDelimitedText("%", "nothing")) << "a delimiter alone has no name";
    EXPECT_EQ(machine.VariableCount(), 6u);
    EXPECT_FALSE(machine.AddDelimitedText("temp%", "x"));
    EXPECT_FALSE(machine.AddDelimitedText("", "x"));
    EXPECT_EQ(machine.VariableCount(), 6u) << "a key that does not open with the delimiter changes nothing";
    EXPECT_EQ(Replaced(machine, "%temp% %tempo% %te% %open %%"), "first music %te% %open %%");
    EXPECT_TRUE(machine.AddDelimitedText("%open%", "at last"));
    EXPECT_EQ(Replaced(machine, "%open%"), "at last");
}

TEST(DelimitingTextStateMachine, TheSecondByteOfADoubleByteCharacterIsNoDelimiter) {
    Machine machine('%', [](unsigned char c) { return c == 0x81; });
    machine.AddDelimitedText("%windir%", "W");
    EXPECT_EQ(Replaced(machine, "\x81%windir%"), "\x81%windir%");
    EXPECT_EQ(Replaced(machine, "\x81%%windir%\x81"), "\x81%W\x81");
    // kept: the match survives the character, and its value takes the place of what follows it.
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(Replaced(machine, "%win\x81%dir%!"), "%win\x81%W!");
        EXPECT_EQ(Replaced(machine, "%windir%%win\x81%"), "W%win\x81%");
    }
}

TEST(DelimitingTextStateMachine, ValuesBuiltFromValuesDoNotFillTheMemory) {
    Machine machine('%');
    machine.AddDelimitedText("%0%", std::string(1000, 'x'));
    for (char round = '0'; round < '9'; ++round) {
        std::string value;
        for (int i = 0; i < 50; ++i) value += {'%', round, '%'};
        machine.ReplaceDelimitedText(value);
        EXPECT_LE(value.size(), 150 + Machine::kMaxGrowth);
        const char next = static_cast<char>(round + 1);
        machine.AddDelimitedText(std::string{'%', next, '%'}, value);
    }
    EXPECT_EQ(Replaced(machine, "%0%").size(), 1000u);
    EXPECT_EQ(Replaced(machine, "%1%").size(), 50000u);
    EXPECT_EQ(Replaced(machine, "%2%").substr(50000 * 20, 3), "%1%") << "what no longer fits stays written";
}

}  // namespace
