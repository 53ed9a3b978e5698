#include <cstdio>
#include <string>

#include "app/resources.h"
#include "support/window_picture.h"
#include "system/system_facts.h"
#include "ui/scan_screen.h"
#include "ui/screens/dlg_confirm.h"
#include "ui/screens/dlg_restart.h"
#include "ui/screens/message_box_with_check.h"
#include "ui/theme/theme.h"

// velvane-scan-pictures FOLDER: writes the scan screen in each of its states, at several sizes, and its
// dialogs as PNG files. The scale is the system's; to see another, the prefix needs other dots per inch:
//   scripts/contained-wine reg add 'HKCU\Control Panel\Desktop' /v LogPixels /t REG_DWORD /d 144 /f

namespace {

std::string g_folder;
int g_failures = 0;

void Save(HWND window, const std::string& name) {
    if (SaveWindowPicture(window, g_folder + "\\" + name + ".png")) return;
    std::fprintf(stderr, "%s could not be written\n", name.c_str());
    ++g_failures;
}

void SendSample(ScanScreen& screen, const std::string& picture) {
    screen.common.found = 1264;
    screen.common.whitelisted = 2;
    screen.SendNode(1, 1, "Internet browsers", nullptr, true, true,
                    "Pages, searches, forms and files of your browsers");
    screen.SendNode(2, 2, "Web browser", nullptr, true, true);
    screen.SendNode(3, 3, "History", nullptr, true, true, "Addresses of the pages that were visited");
    screen.SendNode(4, 4, "places.sqlite",
                    "C:\\Users\\Somebody\\AppData\\Roaming\\Browser\\Profiles\\places.sqlite");
    screen.SendNode(4, 5, "url1");
    screen.SendNode(4, 6, "url2", nullptr, false);
    screen.SendNode(3, 7, "Cache", nullptr, true, false, "Copies of what pages are made of");
    screen.SendNode(4, 8, "holiday.png", picture.c_str());
    screen.SendNode(1, 9, "Windows", nullptr, true, true, "What Windows itself remembers of you");
    screen.SendNode(2, 10, "Start menu", nullptr, true, true);
    screen.SendNode(3, 11, "Recently opened documents", nullptr, true, true);
    for (int row = 0; row < 12; ++row)
        screen.SendNode(4, 20 + row, ("Letter to {Aunt} No. " + std::to_string(row)).c_str());
    screen.SendNode(1, 40, "Office programs", nullptr, true, false, "Lists of documents in office programs");
    screen.SendNode(2, 41, "Writer", nullptr, true, true);
    screen.SendNode(3, 42, "Recent files", nullptr, true, true);
    screen.SendNode(4, 43, "Caf\xC3\xA9 menu.doc");
}

void SaveStates(const std::string& name, SIZE size, const std::string& picture) {
    ScanScreen screen(size);
    PumpMessages(100);
    Save(screen, name + "-0-intro");
    screen.dialog.SetState(SCAN_SCANNING);
    SendSample(screen, picture);
    screen.SendEngine(WM_ENGINE_SCAN_PROGRESS, 0, 42);
    screen.dialog.KillTimer(101);
    screen.Tick(2);
    Save(screen, name + "-1-scanning");
    screen.SendEngine(WM_ENGINE_SCAN_DONE, 1000, 0);
    PumpMessages(100);
    Save(screen, name + "-2-results");
    screen.dialog.SetState(SCAN_CLEANING);
    for (const int done : {8, 7, 4, 5, 3, 2, 1}) {
        screen.SendEngine(WM_ENGINE_CLEAN_PROGRESS, reinterpret_cast<WPARAM>(ScanScreen::Handle(done)), 30);
    }
    screen.common.cleanedBelow = {
        {ScanScreen::Handle(1), 1200}, {ScanScreen::Handle(9), 12}, {ScanScreen::Handle(40), 1}};
    screen.Tick(4);
    PumpMessages(50);
    screen.dialog.KillTimer(101);
    Save(screen, name + "-3-cleaning");
    screen.common.cleaned = 1260;
    screen.common.failed = 2;
    screen.SendEngine(WM_ENGINE_CLEAN_DONE, 1000, 0);
    PumpMessages(100);
    Save(screen, name + "-4-cleaned");
}

void SaveRebootPass(const std::string& name, SIZE size) {
    ScanScreen screen(size);
    screen.dialog.SetState(SCAN_REBOOT_SHRED);
    screen.SendNode(3, 1, "Files to finish", nullptr, true, true);
    for (int row = 0; row < 4; ++row)
        screen.SendNode(4, 20 + row, ("locked" + std::to_string(row) + ".dat").c_str());
    screen.SendEngine(WM_ENGINE_CLEAN_PROGRESS, reinterpret_cast<WPARAM>(ScanScreen::Handle(20)), 60);
    screen.Tick(2);
    PumpMessages(50);
    screen.dialog.KillTimer(101);
    Save(screen, name + "-5-reboot");
}

// Saves the dialog that is up and ends it.
std::string g_dialogName;
void CALLBACK SaveAndEnd(HWND, UINT, UINT_PTR timer, DWORD) {
    const HWND dialog = ::GetActiveWindow();
    char name[16] = "";
    ::GetClassNameA(dialog, name, sizeof name);
    if (std::string(name) != "#32770") return;
    ::KillTimer(nullptr, timer);
    Save(dialog, g_dialogName);
    ::PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
    ::PostMessageA(dialog, WM_COMMAND, IDNO, 0);
}

void SaveDialogs(const std::string& name) {
    ScanScreen screen;
    g_dialogName = name + "-confirm";
    ::SetTimer(nullptr, 0, 300, SaveAndEnd);
    CDlgConfirm(IDS_CONFIRM_RESTRICTED).DoModal(screen);
    g_dialogName = name + "-restart";
    ::SetTimer(nullptr, 0, 300, SaveAndEnd);
    CDlgRestart().DoModal(screen);
    g_dialogName = name + "-question";
    screen.ScanTo([&screen] { SendSample(screen, ""); });
    ::SetTimer(nullptr, 0, 300, SaveAndEnd);
    screen.Press(IDC_SCAN_CLEAN);
    g_dialogName = name + "-question-long";
    ::SetTimer(nullptr, 0, 300, SaveAndEnd);
    tagCHECKED_MESSAGE record;
    record.checked = 1;
    std::snprintf(record.label, sizeof record.label,
                  "A label that is a good deal longer than the &question which it belongs to");
    MessageBoxWithCheck(screen, "Go on?", "Velvane", MB_YESNO, record);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    g_folder = argv[1];
    ::CoInitialize(nullptr);
    {
        const ScanScreen first;  // starts the theme
    }
    // Letters and lengths of the dialogs come from the system; the theme takes the same dots per inch.
    const HDC screen = ::GetDC(nullptr);
    const float scale = static_cast<float>(::GetDeviceCaps(screen, LOGPIXELSX)) / 96;
    ::ReleaseDC(nullptr, screen);
    std::printf("dialog base units %ld, theme's scale %g, dots per inch / 96 %g\n",
                ::GetDialogBaseUnits() & 0xFFFF, static_cast<double>(g_Theme.scale),
                static_cast<double>(scale));
    g_Theme.SetScale(scale);
    char name[16];
    std::snprintf(name, sizeof name, "%g", static_cast<double>(scale));
    const std::string picture = ProgramFolder() + "images\\Intro.png";
    // The page in a window of 800 by 580: the navigation grows with the scale, the window does not.
    const SIZE page = {800 - 6 * 3 - 6 * 2 - static_cast<int>(130 * scale) - 26,
                       525 - 24 - 30 - static_cast<int>(25 * scale) - 6};
    SaveStates(std::string(name) + "-page", page, picture);
    SaveRebootPass(std::string(name) + "-page", page);
    SaveDialogs(name);
    const SIZE large = {::GetSystemMetrics(SM_CXSCREEN), ::GetSystemMetrics(SM_CYSCREEN)};
    SaveStates(std::string(name) + "-large", large, picture);
    SaveRebootPass(std::string(name) + "-large", large);
    if (scale == 1) SaveStates("1-small", {480, 380}, picture);
    return g_failures;
}
