#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "defs/checker.h"
#include "engine/engine_fixture.h"

using std::max;
using std::min;
#include <objidl.h>

#include <gdiplus.h>

namespace {

constexpr char kNever[] = "[passwords]\n%appdata%\\App\\secret.db\n**\\*.docx\n";

// What the check says of sources called a.xml, b.xml ...: "LINE:COLUMN reason", with the letter of the file
// in front from the second one on, a line each.
std::string Findings(const std::vector<std::string>& texts) {
    Sources sources;
    for (const std::string& text : texts) {
        const std::string file = std::string(1, static_cast<char>('a' + sources.size())) + ".xml";
        sources.push_back(std::make_unique<SourceDocument>(file, text));
    }
    std::vector<Finding> faults;
    const NeverList never("never.txt", kNever, faults);
    EXPECT_TRUE(faults.empty());
    std::string lines;
    for (const Finding& finding : CheckSources(sources, never).findings) {
        lines += (lines.empty() ? "" : "\n") + (finding.file == "a.xml" ? "" : finding.file + " ") +
                 std::to_string(finding.at.line) + ":" + std::to_string(finding.at.column) + " " +
                 finding.reason;
    }
    return lines;
}

// A document with the variables %reg% (of the registry) and %sys%, whose one entity has `items` on its third
// line.
std::string Framed(const std::string& items) {
    return "<xclean_def version='1' date='d'><LocationVariables>"
           "<LocationVariable Name='reg' Type='REG' Location='HKCU\\x' ValueName='v'/>"
           "<LocationVariable Name='sys' Type='SYS' Location='%appdata%\\App' "
           "ValueName=''/></LocationVariables>\n"
           "<Category Name='C'><Application Name='A'><Entity Name='E'>\n" +
           items + "\n</Entity></Application></Category></xclean_def>";
}

struct CheckCase {
    std::string text;
    std::string findings;
};

// A finding that says "dropped" has to be of an item that a load drops, and any other of one that it keeps.
const CheckCase kItems[] = {
    {R"(<i Type='File' Location='%sys%\a*.log' Action='Delete'/>)", ""},
    {R"(<i Type='Folder' Location='%reg%\x\' Action='Delete'/>)", ""},
    {R"(<i Type='Folder' Location='%RecycleBin%\' Action='All'/>)", ""},
    {R"(<i Type='File' Location='%no%\a' action='All'/>)",
     "3:1 no Action: dropped\n3:16 nothing defines %no%: finds nothing\n3:34 action is not read here"},
    {R"(<i Type='Folder' Location='%sys%\Cache' Action='All'/>)",
     "3:18 'Cache' is a mask for files at any depth; end a folder with a backslash, or write `Cache if a "
     "mask is "
     "meant"},
    {R"(<i Type='Folder' Location='%sys%\`Cache' Action='All'/>)", ""},
    {R"(<i Type='File' Location='C:\a' Action='delete'/>)",
     "3:32 'delete' is no action (Delete, All): dropped"},
    {R"(<i Type='file' Location='C:\a' Action='All'/>)",
     "3:4 'file' is no type (RegValue, RegKey, File, Folder, IniValue): finds nothing"},
    {R"(<i Type='File' Location='Q:\a' Action='All'/>)", "3:16 not on a fixed drive: dropped"},
    {R"(<i Type='RegKey' Location='HKEY_CURRENT_USER\a' Action='All'/>)",
     R"(3:18 does not begin with HKLM\, HKCU\ or HKCR\: dropped)"},
    {R"(<i Type='RegValue' Location='HKCU\a' Action='All'/>)", "3:1 no ValueName: dropped"},
    {R"(<i Type='RegValue' Location='HKCU\a' Action='All' ValueName='%temp%'/>)",
     "3:51 in a ValueName variables are not replaced"},
    {R"(<i Type='Folder' Location='%appdata%\*.*' Action='All'/>)",
     "3:18 a protected folder or drive: never searched"},
    {R"(<i Type='Folder' Location='%temp%' Action='All'/>)", "3:18 a folder needs a backslash at its end"},
    {R"(<i Type='Folder' Location='%sys%\x\..\' Action='All'/>)",
     "3:18 a location says where it is without '.' and '..'"},
    {R"(<i Type='File' Location='%sys%\*\x' Action='All'/>)",
     "3:16 a wildcard in a folder's name: finds nothing"},
    {R"(<i Type='Folder' Location='%sys%\a`*' Action='All'/>)",
     "3:18 no file's name has a wildcard: the mask fits nothing"},
    {"<i Type='File' Location='%sys%\\" + std::string(260, 'x') + "' Action='All'/>",
     "3:16 more than 259 characters: finds nothing"},
    {"<i Type='File' Location='%sys%\\x' Action='All'/>\n<i Type='File' Location='%APPDATA%\\App\\X' "
     "Action='All'/>",
     "4:1 the same item stands at a.xml:3"},
    {R"(<i Type='Folder' Location='%sys%\' Action='All'/>)", "3:18 never a target: passwords: never.txt:2"},
    {R"(<i Type='File' Location='C:\a' Action='All' location='x' Type='RegKey'/>)",
     "3:45 location is not read here\n3:58 a second Type is not read"},
    {R"(<i Type='File' Location='C:\a' Action='All'><b/></i>)", "3:45 nothing is read inside of an item"},
};

class CheckOfItems : public EngineTest {
  protected:
    std::size_t LoadedItems() const {
        std::size_t count = 0;
        for (const auto& category : engine->Categories()) {
            for (const auto& application : category.applications) {
                for (const auto& entity : application.entities) {
                    count +=
                        static_cast<std::size_t>(std::distance(entity.items.begin(), entity.items.end()));
                }
            }
        }
        return count;
    }
};

TEST_F(CheckOfItems, TellsWhatALoadDropsAndWhatFindsNothing) {
    for (const CheckCase& c : kItems) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(Findings({Framed(c.text)}), c.findings);
        Load(Framed(c.text));
        const bool dropped = c.findings.find(": dropped") != std::string::npos;
        EXPECT_EQ(LoadedItems(), dropped ? 0u : c.text.find('\n') == std::string::npos ? 1u : 2u);
    }
}

// An item that nothing is wrong with.
constexpr char kItem[] = "<i Type='File' Location='C:\\a' Action='All'/>";

std::string Rooted(const std::string& content) {
    return "<xclean_def version='1' date='d'>\n" + content + "\n</xclean_def>";
}

std::string Variable(const std::string& attributes) {
    return Rooted("<LocationVariables><LocationVariable " + attributes + "/></LocationVariables>");
}

const CheckCase kDocuments[] = {
    {"<xclean_def>\n<a>\n</b>\n</xclean_def>", "3:3 nothing loads: Start-end tags mismatch"},
    {"<xclean_def version='v2' Date='d'/>",
     "1:1 no date\n1:13 no number: reads as 0\n1:26 Date is not read here"},
    {Rooted("<Category Name='C' Default='0'><Application Name=''/></Category>"),
     "2:20 Default is not read here\n2:32 an empty Name: dropped"},
    {Rooted("<Category Name='C' "
            "Image='iVBORw0KGgoAAAANSUhEUgAAAAIAAAADCAIAAAA2iEnWAAAAEElEQVR42mP4z8AARAwoFABE0AX7TM5x"
            "DwAAAABJRU5ErkJggg=='/>"),
     "2:1 no Application in it: dropped"},
    {Rooted("<Category Name='C'><Application Name='A' Image='AAAA' Default='No'\nInstallLocation='%x%\\y'>"
            "<Entity Name='E' Default='n' Whitelist='yes'/></Application></Category>"),
     "2:42 no picture that Windows can draw: left out\n"
     "2:55 'No' does not switch it off; write 0 or 1\n"
     "3:1 nothing defines %x%: never installed\n"
     "3:25 no item in it: dropped\n"
     "3:54 'yes' does not switch it on; write 1 or 0"},
    {Rooted("<Category Name='C'><Application Name='A'><Entity Name='E'>" + std::string(kItem) +
            "</Entity>\n<Entity Name='E'>x</Entity></Application><Application Name='A \"B\"'/></Category>"),
     "3:1 no item in it: dropped\n"
     "3:9 the same name stands at a.xml:2: the user's choice for this one is not kept\n"
     "3:18 text is not read here\n"
     "3:42 no Entity in it: dropped\n"
     "3:55 a double quote in a name: the user's choice is not kept"},
    {Rooted("<Category Name='a &lt; b'/>"),
     "2:1 no Application in it: dropped\n2:11 '&lt;' is not decoded here; write the character itself"},
    {Variable("Name='a' Type='SYS' Location='%b%\\' ValueName=''"), "2:58 nothing above defines %b%"},
    {Variable("Name='a' Type='REG' Location='HKCU\\%user_sid%' ValueName='v'"),
     "2:58 of REG, variables are not replaced: not defined"},
    // What the variable holds is not known here.
    {Framed(R"(<i Type='RegKey' Location='%reg%\x' Action='All'/>)"), ""},
    // Places in the text as its author sees it.
    {"\xEF\xBB\xBF<xclean_def version='&quot;1' date='&quot;'\r\n a='&quot;\xC3\xA4' b=''/>",
     "1:13 no number: reads as 0\n2:2 a is not read here\n2:14 b is not read here"},
    {std::string("<xclean_def version='1' date='d'/>\n\0<", 37), "2:1 a zero byte: the text ends here"},
    {"<xclean_def version='1' date='\xFF'/>", "1:31 not UTF-8"},
};

class Check : public ::testing::Test {
  protected:
    Check() {
        const Gdiplus::GdiplusStartupInput input;
        EXPECT_EQ(Gdiplus::GdiplusStartup(&m_token, &input, nullptr), Gdiplus::Ok);
    }
    ~Check() override { Gdiplus::GdiplusShutdown(m_token); }

  private:
    ULONG_PTR m_token = 0;
};

TEST_F(Check, TellsWhereADocumentIsOfNoUse) {
    for (const CheckCase& c : kDocuments) EXPECT_EQ(Findings({c.text}), c.findings) << c.text;
}

TEST_F(Check, TakesAllSourcesTogether) {
    const std::string entity = "<Entity Name='E'>" + std::string(kItem) + "</Entity>";
    const std::string first = Rooted(
        "<LocationVariables><LocationVariable Name='v' Type='SYS' Location='C:\\v' "
        "ValueName=''/></LocationVariables><Category Name='C' Help='h'><Application "
        "Name='A'>" +
        entity + "</Application></Category>");
    const std::string second =
        "<xclean_def date='e'><LocationVariables><LocationVariable Name='V' Type='SYS' "
        "Location='C:\\w' ValueName=''/></LocationVariables>\n<Category Name='C' Help='i'>"
        "<Application Name='A'><Entity Name='E'><i Type='File' Location='%v%\\a' "
        "Action='All'/></Entity></Application></Category></xclean_def>";
    EXPECT_EQ(Findings({first, second}),
              "b.xml 1:1 another date, 'd', is in an earlier file\n"
              "b.xml 1:59 %v% is defined at a.xml:2, and that stays\n"
              "b.xml 2:20 Help is another one at a.xml:2\n"
              "b.xml 2:42 the same name stands at a.xml:2: the user's choice for this one is not kept");
}

}  // namespace
