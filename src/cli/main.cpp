#include <windows.h>

#include <objbase.h>

#include <string>
#include <vector>

#include "cli/exit_code.h"
#include "cli/help.h"
#include "cli/options.h"
#include "cli/session.h"
#include "system/console.h"
#include "system/files.h"
#include "system/library_search.h"
#include "system/redirection_table.h"

// No pattern in a path is taken apart by the C library: what is shredded is what was written.
extern "C" {
int _dowildcard = 0;
}

namespace {

ExitCode RunCommand(const Options& options) {
    switch (options.command) {
        case Command::List:
            return RunList(options);
        case Command::Scan:
            return RunScan(options);
        case Command::Clean:
            return RunClean(options);
        case Command::Shred:
            return RunShred(options);
        case Command::Expand:
            return RunExpand(options);
        case Command::Restricted:
            return RunRestricted(options);
        case Command::Help:
        case Command::Version:
            break;
    }
    return ExitCode::Usage;
}

ExitCode Run(const std::vector<std::string>& arguments) {
    const auto parsed = ParseOptions(arguments);
    if (const auto* error = std::get_if<UsageError>(&parsed)) {
        PrintError("velvane-cli", error->message);
        return ExitCode::Usage;
    }
    const auto& options = std::get<Options>(parsed);
    if (options.command == Command::Help || options.command == Command::Version) {
        Print(options.command == Command::Help ? HelpText() : VersionText());
        return ExitCode::Done;
    }
    // The shell's folders, of which the recycle bin is one, are COM objects.
    ::CoInitialize(nullptr);
    InitRegRedirectionTable();
    const ExitCode code = RunCommand(options);
    FreeRegRedirectionTable();
    ::CoUninitialize();
    return code;
}

}  // namespace

int main(int argc, char** argv) {
    RestrictLibrarySearch(LibrarySearch::SystemAlone);
    SetProgramName("velvane-cli");
    const ConsoleCodePage codePage;
    // With a character changed a path would be that of another file.
    if (!ExactText(::GetCommandLineW())) {
        PrintError("the command line", "has characters that this system's code page lacks");
        return static_cast<int>(ExitCode::Usage);
    }
    const ExitCode code = Run(std::vector<std::string>(argv + 1, argv + argc));
    if (OutputArrived()) return static_cast<int>(code);
    PrintError("standard output", "cannot be written");
    return static_cast<int>(code == ExitCode::Done ? ExitCode::Failures : code);
}
