#include "system/redirection_table.h"

#include <algorithm>
#include <cstdint>

#include "system/registry.h"
#include "system/system_facts.h"

namespace {

RegRedirectionRows g_table;

#define HKLM_SOFTWARE "HKEY_LOCAL_MACHINE\\SOFTWARE"
#define HKLM_MICROSOFT HKLM_SOFTWARE "\\Microsoft\\"
#define HKLM_WINDOWS HKLM_MICROSOFT "Windows\\CurrentVersion\\"
#define HKLM_WINDOWS_NT HKLM_MICROSOFT "Windows NT\\CurrentVersion\\"

enum class Since : std::uint8_t { Version60, Version61 };

struct SharedRow {
    Since since;
    const char* key;
};

// Keys with one view, in the order of the table of version 6.1; 6.0 has those of its own only.
constexpr SharedRow kSharedRows[] = {
    {Since::Version60, "HKEY_CLASSES_ROOT"},
    {Since::Version60, "HKEY_CURRENT_USER"},
    {Since::Version60, "HKEY_USERS"},
    {Since::Version60, "HKEY_LOCAL_MACHINE"},
    {Since::Version60, HKLM_SOFTWARE "\\Classes"},
    {Since::Version61, HKLM_SOFTWARE "\\Clients"},
    {Since::Version60, HKLM_MICROSOFT "COM3"},
    {Since::Version60, HKLM_MICROSOFT "Cryptography\\Calais\\Current"},
    {Since::Version60, HKLM_MICROSOFT "Cryptography\\Calais\\Readers"},
    {Since::Version60, HKLM_MICROSOFT "Cryptography\\Services"},
    {Since::Version60, HKLM_MICROSOFT "CTF\\SystemShared"},
    {Since::Version60, HKLM_MICROSOFT "CTF\\TIP"},
    {Since::Version60, HKLM_MICROSOFT "DFS"},
    {Since::Version60, HKLM_MICROSOFT "Driver Signing"},
    {Since::Version60, HKLM_MICROSOFT "EnterpriseCertificates"},
    {Since::Version60, HKLM_MICROSOFT "EventSystem"},
    {Since::Version60, HKLM_MICROSOFT "MSMQ"},
    {Since::Version60, HKLM_MICROSOFT "Non-Driver Signing"},
    {Since::Version61, HKLM_MICROSOFT "Notepad\\DefaultFonts"},
    {Since::Version60, HKLM_MICROSOFT "OLE"},
    {Since::Version60, HKLM_MICROSOFT "RAS"},
    {Since::Version60, HKLM_MICROSOFT "RPC"},
    // kept: the path is doubled in this row.
    {Since::Version60, HKLM_MICROSOFT "SOFTWARE\\Microsoft\\Shared Tools\\MSInfo"},
    {Since::Version60, HKLM_MICROSOFT "SystemCertificates"},
    {Since::Version60, HKLM_MICROSOFT "TermServLicensing"},
    {Since::Version60, HKLM_MICROSOFT "TransactionServer"},
    {Since::Version61, HKLM_WINDOWS "App Paths"},
    {Since::Version60, HKLM_WINDOWS "Control Panel\\Cursors\\Schemes"},
    {Since::Version61, HKLM_WINDOWS "Explorer\\AutoplayHandlers"},
    {Since::Version61, HKLM_WINDOWS "Explorer\\DriveIcons"},
    {Since::Version61, HKLM_WINDOWS "Explorer\\KindMap"},
    {Since::Version60, HKLM_WINDOWS "Group Policy"},
    {Since::Version60, HKLM_WINDOWS "Policies"},
    {Since::Version61, HKLM_WINDOWS "PreviewHandlers"},
    {Since::Version60, HKLM_WINDOWS "Setup"},
    {Since::Version60, HKLM_WINDOWS "Telephony\\Locations"},
    {Since::Version61, HKLM_WINDOWS_NT "Console"},
    {Since::Version60, HKLM_WINDOWS_NT "FontDpi"},
    {Since::Version61, HKLM_WINDOWS_NT "FontLink"},
    {Since::Version60, HKLM_WINDOWS_NT "FontMapper"},
    {Since::Version60, HKLM_WINDOWS_NT "Fonts"},
    {Since::Version60, HKLM_WINDOWS_NT "FontSubstitutes"},
    {Since::Version61, HKLM_WINDOWS_NT "Gre_Initialize"},
    {Since::Version61, HKLM_WINDOWS_NT "Image File Execution Options"},
    {Since::Version61, HKLM_WINDOWS_NT "Language Pack"},
    {Since::Version60, HKLM_WINDOWS_NT "NetworkCards"},
    {Since::Version60, HKLM_WINDOWS_NT "Perflib"},
    {Since::Version60, HKLM_WINDOWS_NT "Ports"},
    {Since::Version60, HKLM_WINDOWS_NT "Print"},
    {Since::Version60, HKLM_WINDOWS_NT "ProfileList"},
    {Since::Version60, HKLM_WINDOWS_NT "Time Zones"},
    {Since::Version60, HKLM_SOFTWARE "\\Policies"},
    {Since::Version60, HKLM_SOFTWARE "\\RegisteredApplications"},
};

// The keys below a Classes key that have two views in version 6.1.
constexpr const char* kRedirectedClasses[] = {"CLSID", "DirectShow", "Interface", "Media Type",
                                              "MediaFoundation"};

#undef HKLM_SOFTWARE
#undef HKLM_MICROSOFT
#undef HKLM_WINDOWS
#undef HKLM_WINDOWS_NT

bool Opens(HKEY root, const std::string& path) {
    UniqueKey key;
    return OpenKey(root, path.c_str(), KEY_READ, key) == ERROR_SUCCESS;
}

// The names of a key's sub-keys, as far as the enumeration goes.
std::vector<std::string> SubKeyNames(HKEY root, const char* path) {
    std::vector<std::string> names;
    UniqueKey key;
    if (OpenKey(root, path, KEY_READ, key) != ERROR_SUCCESS) return names;
    char name[1024];
    for (DWORD index = 0; ::RegEnumKeyA(key.get(), index, name, sizeof name) == ERROR_SUCCESS; ++index) {
        names.emplace_back(name);
    }
    return names;
}

void AddSharedRows(Since version, RegRedirectionRows& rows) {
    for (const SharedRow& row : kSharedRows) {
        if (row.since <= version) rows.shared.emplace_back(row.key);
    }
}

void AddRedirectedClasses(const std::string& classes, RegRedirectionRows& rows) {
    for (const char* name : kRedirectedClasses) rows.redirected.push_back(classes + name);
}

void AddRowsOf60(RegRedirectionRows& rows) {
    const std::string classes = "SOFTWARE\\Classes\\CLSID";
    for (const std::string& name : SubKeyNames(HKEY_LOCAL_MACHINE, classes.c_str())) {
        const std::string path = classes + "\\" + name;
        if (Opens(HKEY_LOCAL_MACHINE, path + "\\InprocServer32")) continue;
        if (Opens(HKEY_LOCAL_MACHINE, path + "\\InprocHandler32")) continue;
        // Without an in-process server there is nothing that would differ between the views.
        rows.shared.push_back("HKEY_LOCAL_MACHINE\\" + path);
        rows.shared.push_back("HKEY_CLASSES_ROOT\\CLSID\\" + name);
    }
    rows.redirected = {"HKEY_LOCAL_MACHINE\\SOFTWARE", "HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\CLSID",
                       "HKEY_CLASSES_ROOT\\CLSID"};
    AddSharedRows(Since::Version60, rows);
}

void AddRowsOf61(RegRedirectionRows& rows) {
    rows.redirected.emplace_back("HKEY_LOCAL_MACHINE\\SOFTWARE");
    AddRedirectedClasses("HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\", rows);
    AddRedirectedClasses("HKEY_CURRENT_USER\\SOFTWARE\\Classes\\", rows);
    AddRedirectedClasses("HKEY_CLASSES_ROOT\\", rows);
    for (const std::string& account : SubKeyNames(HKEY_USERS, "")) {
        // kept: no backslash between the two, so that this opens for no account.
        if (!Opens(HKEY_USERS, account + "SOFTWARE\\Classes")) continue;
        AddRedirectedClasses("HKEY_USERS\\" + account + "\\SOFTWARE\\Classes\\", rows);
    }
    AddSharedRows(Since::Version61, rows);
}

std::vector<std::string> LowerRows(const std::vector<std::string>& rows) {
    std::vector<std::string> lower;
    lower.reserve(rows.size());
    for (const std::string& row : rows) lower.push_back(LowerText(row));
    return lower;
}

// The length of the longest row that occurs anywhere in `text`.
// kept: no test that a name ends where the row does.
std::size_t LongestMatch(const std::vector<std::string>& rows, const std::string& text) {
    std::size_t longest = 0;
    for (const std::string& row : rows) {
        if (text.find(row) != std::string::npos) longest = std::max(longest, row.size());
    }
    return longest;
}

}  // namespace

RegRedirectionRows BuildRegRedirectionRows(DWORD majorVersion, DWORD minorVersion, bool isWow64) {
    RegRedirectionRows rows;
    if (!isWow64 || majorVersion != 6 || minorVersion > 1) return rows;
    if (minorVersion == 0) {
        AddRowsOf60(rows);
    } else {
        AddRowsOf61(rows);
    }
    rows.inForce = true;
    rows.redirectedLower = LowerRows(rows.redirected);
    rows.sharedLower = LowerRows(rows.shared);
    return rows;
}

bool NeedsNativeView(const RegRedirectionRows& rows, std::string_view keyPath) {
    if (!rows.inForce) return false;
    const std::string text = LowerText(std::string(keyPath));
    return LongestMatch(rows.redirectedLower, text) <= LongestMatch(rows.sharedLower, text);
}

void InitRegRedirectionTable() {
    OSVERSIONINFOA version = {};
    version.dwOSVersionInfoSize = sizeof version;
    if (!::GetVersionExA(&version)) version.dwMajorVersion = 0;
    g_table = BuildRegRedirectionRows(version.dwMajorVersion, version.dwMinorVersion, IsWow64());
}

void FreeRegRedirectionTable() {
    g_table = {};
}

bool IsRegTableInForce() {
    return g_table.inForce;
}

bool RegViewNeeds64Key(const char* keyPath) {
    return keyPath != nullptr && NeedsNativeView(g_table, keyPath);
}
