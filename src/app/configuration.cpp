#include "app/configuration.h"

#include <shlobj.h>

#include <cstdio>
#include <string_view>
#include <utility>

#include "app/config_keys.h"
#include "app/deployment.h"
#include "app/xml_file.h"
#include "base/decimal.h"
#include "base/xml_text.h"
#include "system/files.h"
#include "system/handles.h"
#include "system/system_facts.h"
#include "system/trusted_path.h"

namespace {

void ReadPlacement(const pugi::xml_node& element, WINDOWPLACEMENT& placement) {
    const auto number = [&](const char* name) { return DecimalValue(AttributeOrNull(element, name)); };
    static_assert(sizeof placement == 44);
    placement.length = sizeof placement;
    placement.flags = static_cast<UINT>(number("flags"));
    placement.ptMinPosition = {number("minposx"), number("minposy")};
    placement.ptMaxPosition = {number("maxposx"), number("maxposy")};
    placement.rcNormalPosition = {number("left"), number("top"), number("right"), number("bottom")};
    placement.showCmd = static_cast<UINT>(number("showcmd"));
    if (placement.showCmd == SW_MINIMIZE || placement.showCmd == SW_SHOWMINIMIZED) {
        placement.showCmd = SW_SHOWNORMAL;
    }
}

std::string PlacementLine(HWND window) {
    WINDOWPLACEMENT placement = {};
    placement.length = sizeof placement;
    ::GetWindowPlacement(window, &placement);
    const POINT& minimised = placement.ptMinPosition;
    const POINT& maximised = placement.ptMaxPosition;
    const RECT& normal = placement.rcNormalPosition;
    const auto number = [](auto value) { return static_cast<int>(value); };
    char line[512];  // ten numbers of eleven characters leave it half empty
    // kept: this line alone ends in a bare line feed.
    std::snprintf(
        line, sizeof line,
        "\t<windowplacement flags=\"%d\" minposx=\"%d\" minposy=\"%d\" maxposx=\"%d\" maxposy=\"%d\"\r\n"
        "\t\tleft=\"%d\" top=\"%d\" right=\"%d\" bottom=\"%d\" showcmd=\"%d\"/>\n",
        number(placement.flags), number(minimised.x), number(minimised.y), number(maximised.x),
        number(maximised.y), number(normal.left), number(normal.top), number(normal.right),
        number(normal.bottom), number(placement.showCmd));
    return line;
}

void WriteText(HANDLE file, std::string_view text) {
    DWORD written = 0;
    ::WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

}  // namespace

CAppConfig::CAppConfig(HINSTANCE instanceHandle, std::string company, std::string product, unsigned int id)
    : companyName(std::move(company)),
      productName(std::move(product)),
      productId(id),
      instance(instanceHandle) {
    registryKeyPath = "Software\\" + companyName + "\\" + companyName + " " + productName;
    CreateFolders(CSIDL_APPDATA, [](const char* path) { ::CreateDirectoryA(path, nullptr); });
    CreateFolders(CSIDL_COMMON_APPDATA, MakeProtectedFolder);
    appDirectory = ModuleFolder(instance);
    helpFilePath = appDirectory + "Quillmere Velvane.chm";
    links = BuildLinks(kRedirectHost, productId, ReadAffiliate());
}

void CAppConfig::CreateFolders(int csidl, void (*make)(const char* path)) const {
    const auto folder = FolderPath(csidl);
    if (!folder) return;
    const std::string companyFolder = *folder + "\\" + companyName + "\\";
    make(companyFolder.c_str());
    make((companyFolder + productName + "\\").c_str());
}

std::optional<std::string> CAppConfig::PreferencesPath() const {
    const auto folder = FolderPath(CSIDL_COMMON_APPDATA);
    if (!folder) return std::nullopt;
    return JoinPath(*folder + "\\" + companyName + "\\" + productName + "\\", "AppPreferences.dat");
}

void CAppConfig::Load(WINDOWPLACEMENT* placement) {
    LoadPreferences(placement);
    LoadSettings();
}

void CAppConfig::LoadPreferences(WINDOWPLACEMENT* placement) {
    const auto path = PreferencesPath();
    XmlFile file;
    if (!path || !IsTrusted(path->c_str()) || !LoadXmlFile(*path, file)) return;
    for (const pugi::xml_node& element : FindElement(file.document, "config").children()) {
        ReadElement(element, placement);
    }
}

void CAppConfig::ReadElement(const pugi::xml_node& element, WINDOWPLACEMENT* placement) {
    const std::string_view name = element.name();
    const char* const value = TextOrNull(element);
    if (name == "windowplacement" && placement != nullptr) {
        ReadPlacement(element, *placement);
    } else if (name == "firstrun") {
        firstRun = false;  // whatever its text says
    } else if (name == "lastupdatecheck") {
        lastUpdateCheck = DecimalValue(value);
    } else if (name == "autocheckupdates") {
        autoCheckUpdates = DecimalValue(value) == 1;
    } else if (name == "askbeforedownload") {
        askBeforeDownload = DecimalValue(value) == 1;
    } else {
        ReadExtraElement(element.name(), value);
    }
}

void CAppConfig::LoadSettings() {
    // Without its folder the name would mean a file of the current directory, which may be anybody's.
    if (appDirectory.empty()) return;
    XmlFile file;
    if (LoadXmlFile(appDirectory + "settings.xml", file)) OverrideLinks(file.document, links);
}

void CAppConfig::Save(HWND window) const {
    const auto path = PreferencesPath();
    // A link in the place of the folder would lead the write to whatever file somebody has in mind.
    if (!path || !IsTrusted(path->substr(0, path->rfind('\\')).c_str())) return;
    // kept: written in place; whoever reads half a file falls back on the defaults.
    const UniqueHandle file = OwnHandle<UniqueHandle>(::CreateFileA(
        path->c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (file == nullptr) return;

    // kept: what is read as lastupdatecheck, autocheckupdates and askbeforedownload is never written.
    WriteText(file.get(), "<config>\r\n");
    WriteText(file.get(), PlacementLine(window));
    // kept: the line is written without its last byte, the line feed.
    constexpr std::string_view kFirstRunLine = "\t<firstrun>no</firstrun>\r\n";
    WriteText(file.get(), kFirstRunLine.substr(0, 25));
    std::string extra;
    GetExtraXml(extra);
    if (!extra.empty()) WriteText(file.get(), extra);
    WriteText(file.get(), "</config>\r\n");
}

int CAppConfig::GetInt(int key) const {
    switch (key) {
        case KEY_FIRSTRUN:
            return firstRun;
        case KEY_AUTOCHECKUPDATES:
            return autoCheckUpdates;
        case KEY_ASKBEFOREDOWNLOAD:
            return askBeforeDownload;
        default:
            return GetExtraInt(key);
    }
}

void CAppConfig::SetInt(int key, int value) {
    // kept: KEY_AUTOCHECKUPDATES can be read and not set.
    if (key == KEY_ASKBEFOREDOWNLOAD) {
        askBeforeDownload = value == 1;
    } else {
        SetExtraInt(key, value);
    }
}

const char* CAppConfig::GetString(int key) const {
    switch (key) {
        case KEY_APPDIR:
            return appDirectory.c_str();
        case KEY_HELPFILE:
            return helpFilePath.c_str();
        case KEY_URLSUPPORT:
            return links.urlSupport.c_str();
        case KEY_URLCOMPANY:
            return links.urlCompany.c_str();
        case KEY_URLHELP:
            return links.urlHelp.c_str();
        case KEY_URLSUFFIX:
            return links.urlSuffix.c_str();
        default:
            return GetExtraString(key);
    }
}

void CAppConfig::SetString(int key, const char* value) {
    SetExtraString(key, value);
}
