#include <windows.h>

#include <commctrl.h>
#include <objbase.h>

#include <memory>
#include <string>

#include "app/administrator.h"
#include "app/command_line.h"
#include "app/install_time.h"
#include "app/logon_task.h"
#include "app/message_box.h"
#include "app/resources.h"
#include "app/scan_task.h"
#include "app/single_instance.h"
#include "app/survey_report.h"
#include "resources/ids.h"
#include "system/library_search.h"
#include "system/redirection_table.h"
#include "system/registry.h"
#include "system/system_facts.h"
#include "ui/screens/main_dlg.h"
#include "ui/theme/pictures_ahead.h"
#include "ui/theme/theme.h"
#include "ui/window/app_module.h"
#include "ui/window/message_loop.h"

// The entry of the program: a one-shot action without a window, a hand-over to the copy that runs already, or
// the normal run. The order of the steps counts; the exit code of every short path is 0.

namespace {

void RunAction(Action action) {
    switch (action) {
        case Action::None:
            return;
        case Action::AddTask:
            AddScanTask();
            return;
        case Action::DeleteTasks:
            DeleteTasks();
            return;
        case Action::LaunchOnLogon:
            SetLaunchOnLogon(true);
            return;
        case Action::Report:
            SendSurvey(false);
            return;
        case Action::Install:
            WriteInstallTime();
            return;
        case Action::Uninstall:
            SendSurvey(true);
            return;
    }
}

// Shows the window and runs until it is closed: what WM_QUIT brought; 0 when there is no window.
int RunWindow(CMainDlg& window, CMessageLoop& loop, const std::string& line) {
    if (window.Create(nullptr) == nullptr) return 0;
    if (HasOption(line, kOptionAutoScan)) {
        window.SetAutoScan();
    } else if (HasOption(line, kOptionScanOnly)) {  // kept: no dry run beside an automatic scan
        window.SetSimulation(true);
    }
    window.ShowWindow(SW_SHOW);
    return loop.Run();
}

// Starts what a session needs, in this order, and stops it in the order at the end. The pictures of the first
// sight are decoded meanwhile.
int RunSession(HINSTANCE instance, const std::string& line) {
    auto pictures = std::make_unique<CPicturesAhead>(CMainDlg::StartPictures());
    // None of these is asked for its result: what is missing shows where it is used.
    ::CoInitialize(nullptr);
    ::DefWindowProcA(nullptr, 0, 0, 0);
    const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_BAR_CLASSES};
    ::InitCommonControlsEx(&controls);
    AppModule().Init(instance);
    const HMODULE richEdit = LoadSystemLibrary("RICHED20.DLL");
    g_Theme.Start();  // and GDI+ with it
    auto loop = std::make_unique<CMessageLoop>();
    AppModule().AddMessageLoop(loop.get());
    InitRegRedirectionTable();
    auto window = std::make_unique<CMainDlg>();

    const int exitCode = RunWindow(*window, *loop, line);

    window->EndWorker();  // it may be asking the redirection table
    AppModule().RemoveMessageLoop();
    FreeRegRedirectionTable();
    window.reset();
    loop.reset();
    pictures.reset();
    g_Theme.Stop();
    if (richEdit != nullptr) ::FreeLibrary(richEdit);
    AppModule().Term();
    ::CoUninitialize();
    return exitCode;
}

int Run(HINSTANCE instance, const std::string& line) {
    if (!LoadResources()) return 0;
    RestrictLibrarySearch(LibrarySearch::SystemAlone);  // the only one of ours
    AppModule().SetResourceInstance(ResourceModule());
    bool administrator = false;
    IsUserAdministrator(administrator);
    if (!administrator) {
        // Nobody sits before a scheduled start.
        if (!HasOption(line, kOptionAutoScan))
            AppMessageBox(nullptr, IDS_NO_ADMINISTRATOR, MB_ICONEXCLAMATION | MB_OK);
        return 0;
    }
    // Pictures are found relative to this.
    const std::string folder = ProgramFolder();
    ::SetCurrentDirectoryA(folder.substr(0, folder.size() - 1).c_str());
    if (const Action action = ActionOf(line); action != Action::None) {
        RunAction(action);
        return 0;
    }
    const SingleInstance instanceMark(ResourceText(IDS_PRODUCT));
    const bool shutdown = HasOption(line, kOptionShutdown);
    if (!instanceMark.IsFirst()) {
        if (shutdown) CloseRunningCopy();
        return 0;
    }
    if (shutdown) return 0;
    // It has brought the program back after a restart and is used up now.
    RegDeleteValueGranted(HKEY_CURRENT_USER, "Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce",
                          "Velvane");
    return RunSession(instance, line);
}

}  // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR commandLine, int) {
    RestrictLibrarySearch(LibrarySearch::ProgramAndSystem);
    return Run(instance, commandLine);
}
