#include "sample_definitions.h"

#include <cstdint>
#include <iterator>
#include <string_view>

namespace {

// The entities that applications have. @ stands for the vendor's name, $ for the program's, # for a number.
constexpr std::string_view kEntities[] = {
    R"(<Entity Name="Cache" Help="Copies of pages and pictures that $ keeps to show them faster.">
<Item Type="Folder" Location="%localappdata%\@\$\User Data\Default\Cache\" Action="All"/>
<Item Type="Folder" Location="%localappdata%\@\$\User Data\Default\Code Cache\*.bin" Action="Delete"/>
<Item Type="File" Location="%Appdata%\@\$\Profiles\Default\thumbnails*.dat" Action="Delete"/>
</Entity>
)",
    R"(<Entity Name="Recent documents" Help="The files that were opened last, as the menu shows them." Whitelist="1">
<Item Type="RegKey" Location="HKCU\Software\@\$\#.0\Recent File List" Action="All"/>
<Item Type="RegKey" Location="HKCU\Software\@\$\Settings\MRU" Action="All"/>
<Item Type="RegValue" Location="HKCU\Software\@\$\Settings" ValueName="LastOpenedFolder" Action="Delete"/>
<Item Type="RegValue" Location="HKCU\Software\@\$\Settings" ValueName="LastSavedFile#" Action="Delete"/>
</Entity>
)",
    R"(<Entity Name="History" Help="Addresses &amp; searches that were typed into $.">
<Item Type="File" Location="%userprofile%\Local Settings\@\$\history#.dat" Action="Delete"/>
<Item Type="RegKey" Location="HKCU\Software\@\$\TypedURLs" Action="All"/>
<Item Type="RegValue" Location="HKLM\Software\@\$" ValueName="LastUser" Action="Delete"/>
</Entity>
)",
    R"(<Entity Name="Window and file positions" Help="Where the windows of $ stood." Default="no">
<Item Type="IniValue" Location="%windir%\$.ini" ValueName="[Recent]File#" Action="Delete"/>
<Item Type="IniValue" Location="%Appdata%\@\settings.ini" ValueName="[Main]LastOpened" Action="Delete"/>
</Entity>
)",
    R"(<Entity Name="Temporary files" Help="Files that $ leaves behind when it does not end well.">
<Item Type="File" Location="%temp%\$*.tmp" Action="Delete"/>
<Item Type="Folder" Location="%temp%\@.#\" Action="All"/>
<Item Type="File" Location="C:\ProgramData\@\$\state.bak" Action="Delete"/>
</Entity>
)",
    R"(<Entity Name="Cookies" Help="What sites stored about the user of $." Whitelist="1">
<Item Type="File" Location="%Appdata%\@\$\Profiles\Default\cookies.sqlite" Action="Delete"/>
<Item Type="Folder" Location="%localappdata%\@\$\User Data\Local Storage\*.localstorage" Action="Delete"/>
</Entity>
)",
    R"(<Entity Name="Logs" Help="Records of what $ did and when.">
<Item Type="File" Location="%mydocuments%\$ Logs\*.log" Action="Delete"/>
<Item Type="File" Location="%programfiles%\@\$ #\debug.log" Action="Delete"/>
<Item Type="Folder" Location="%commonappdata%\@\Diagnostics\" Action="All"/>
</Entity>
)",
    R"(<Entity Name="Search terms" Help="Words that were looked for in $ #.">
<Item Type="RegKey" Location="HKCU\Software\@\$\Find\History" Action="All"/>
<Item Type="RegValue" Location="HKCU\Software\@\$\Find" ValueName="ReplaceWith" Action="Delete"/>
<Item Type="RegValue" Location="HKCU\Software\@\$\Find" ValueName="FindWhat" Action="Delete"/>
</Entity>
)",
};
constexpr std::string_view kVariables = R"(<LocationVariables>
<LocationVariable Name="games" Type="SYS" Location="C:\Games" ValueName=""/>
<LocationVariable Name="%mail%" Type="REG" Location="HKCU\Software\Mail" ValueName="Store"/>
<LocationVariable Name="player" Type="INI" Location="%windir%\player.ini" Section="Main" ValueName="Lists"/>
</LocationVariables>
)";
constexpr std::uint32_t kFewestEntities = 2;
constexpr std::uint32_t kMostEntities = 6;
constexpr int kApplicationsInCategory = 200;

constexpr std::string_view kSyllables[] = {"ka",  "ro",  "lim", "ven", "tas", "qui", "dor",
                                           "mel", "phi", "so",  "ber", "nax", "ti",  "gu",
                                           "zen", "wor", "ply", "cy",  "hal", "fen"};

// A stream of numbers that is the same in each run.
class Numbers {
  public:
    std::uint32_t Below(std::uint32_t end) {
        m_state = m_state * 1664525u + 1013904223u;
        return (m_state >> 16) % end;
    }

  private:
    std::uint32_t m_state = 1;
};

std::string InventedName(Numbers& numbers) {
    std::string name;
    for (std::uint32_t left = 2 + numbers.Below(3); left > 0; --left) {
        name += kSyllables[numbers.Below(std::size(kSyllables))];
    }
    name[0] = static_cast<char>(name[0] - 'a' + 'A');
    return name;
}

void AppendApplication(std::string& text, Numbers& numbers) {
    const std::string vendor = InventedName(numbers);
    const std::string program = InventedName(numbers);
    const std::string number = std::to_string(numbers.Below(20));
    const auto append = [&](std::string_view pattern) {
        for (const char c : pattern) {
            if (c == '@') {
                text += vendor;
            } else if (c == '$') {
                text += program;
            } else if (c == '#') {
                text += number;
            } else {
                text += c;
            }
        }
    };
    append("<Application Name=\"@ $ #\" Default=\"yes\">\n");
    std::uint32_t left = kFewestEntities + numbers.Below(kMostEntities - kFewestEntities + 1);
    for (std::uint32_t i = numbers.Below(std::size(kEntities)); left > 0; ++i, --left) {
        append(kEntities[i % std::size(kEntities)]);
    }
    text += "</Application>\n";
}

}  // namespace

std::string SampleDefinitions(std::size_t size) {
    Numbers numbers;
    std::string text =
        "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<xclean_def version=\"42\" date=\"2024-05-01\">\n";
    text += kVariables;
    for (int application = 0; text.size() < size; ++application) {
        if (application % kApplicationsInCategory == 0) {
            if (application > 0) text += "</Category>\n";
            text += "<Category Name=\"Programs " + std::to_string(application / kApplicationsInCategory) +
                    "\" Help=\"Traces that programs leave.\">\n";
        }
        AppendApplication(text, numbers);
    }
    return text + "</Category>\n</xclean_def>\n";
}
