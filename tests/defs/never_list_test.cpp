#include "defs/never_list.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr char kList[] = R"(# comment
<app> = %appdata%\App
<app> = %localappdata%\App
<profile> = <app>\Profile *

[secrets]
<profile>\Keys*
%windir%\Logs\**\deep.dat
HKCU\Software\App\*\Accounts\**
%appdata%\app.ini\[Login]*
**\*.docx
)";

struct NeverCase {
    ItemType type;
    const char* location;
    const char* valueName;
    int line;  // of the pattern that it meets, 0 for none
};

const NeverCase kNeverCases[] = {
    {ItemType::File, "%appdata%\\app\\profile 1\\KEYS.db", "", 7},
    {ItemType::File, "%userprofile%\\AppData\\Local\\App\\Profile 1\\*", "", 7},
    {ItemType::File, "%appdata%\\app\\profile 1\\*.log", "", 7},
    {ItemType::File, "%appdata%\\app\\profile 1\\log?", "", 0},
    {ItemType::Directory, "%appdata%\\app\\", "", 7},
    {ItemType::Directory, "%appdata%\\app\\cache\\", "", 0},
    {ItemType::Directory, "%appdata%\\app\\profile 1\\cache\\", "", 0},
    {ItemType::Directory, "%appdata%\\app\\keys.db", "", 7},
    {ItemType::Directory, "%appdata%\\app\\k*", "", 7},
    {ItemType::Directory, "%appdata%\\app\\*.log", "", 7},  // "Keys.log" is below
    {ItemType::Directory, "%appdata%\\app\\akeys", "", 0},
    {ItemType::Directory, "%appdata%\\app\\`keys?", "", 7},
    {ItemType::File, "C:\\Windows\\Logs\\deep.dat", "", 8},
    {ItemType::File, "%windir%\\Logs\\a\\b\\deep.dat", "", 8},
    {ItemType::File, "%windir%\\Logs\\adeep.dat", "", 0},
    {ItemType::RegKey, "HKCU\\Software\\App", "", 9},
    {ItemType::RegKey, "HKCU\\Software\\App\\1\\Accounts\\x", "", 9},
    {ItemType::RegKey, "HKCU\\Software\\App\\1\\Recent", "", 0},
    {ItemType::RegValue, "HKCU\\Software\\App\\1\\Accounts", "Password", 9},
    {ItemType::RegValue, "HKCU\\Software\\App\\1", "Accounts", 0},
    {ItemType::IniValue, "%appdata%\\app.ini", "[login]Name", 10},
    {ItemType::IniValue, "%appdata%\\app.ini", "[Window]Left", 0},
    {ItemType::File, "%notes%\\a.docx", "", 11},
    {ItemType::Directory, "%temp%\\*.docx", "", 11},
    {ItemType::Directory, "%temp%\\", "", 0},
};

TEST(NeverList, IsMetByWhatAnItemCouldTakeOrByItsNameAlone) {
    std::vector<Finding> findings;
    const NeverList never("n", kList, findings);
    EXPECT_TRUE(findings.empty());
    for (const NeverCase& c : kNeverCases) {
        const std::string why = never.WhyNever(TargetOf(c.type, PlainLocation(c.location), c.valueName));
        EXPECT_EQ(why, c.line ? "secrets: n:" + std::to_string(c.line) : "")
            << c.location << " " << c.valueName;
    }
}

TEST(NeverList, SaysWhatCannotBeReadOfIt) {
    std::vector<Finding> findings;
    const NeverList never("n", "a\\b\n[r]\n<x>\\a\n<x> = <y>\\b\n<z = 1\n<w>=\n<v> = 1\n<v>\\<v\n", findings);
    std::string lines;
    for (const Finding& finding : findings) lines += std::to_string(finding.at.line) + " ";
    EXPECT_EQ(lines, "1 3 4 5 6 8 ");
    EXPECT_EQ(never.Size(), 0u);
}

}  // namespace
