#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

using std::max;
using std::min;
#include <objidl.h>

#include <gdiplus.h>

#include "defs/commands.h"
#include "defs/help.h"
#include "system/console.h"
#include "system/library_search.h"

// The shell of Windows hands patterns on as they are written, and sources are many.
extern "C" {
int _dowildcard = -1;
}

namespace {

ExitCode RunCheckWithPictures(const Options& options) {
    ULONG_PTR token = 0;
    const Gdiplus::GdiplusStartupInput input;
    if (Gdiplus::GdiplusStartup(&token, &input, nullptr) != Gdiplus::Ok) {
        PrintError("velvane-defs", "the system does not draw pictures");
        return ExitCode::Findings;
    }
    const ExitCode code = RunCheck(options);
    Gdiplus::GdiplusShutdown(token);
    return code;
}

ExitCode Run(const std::vector<std::string>& arguments) {
    const auto parsed = ParseOptions(arguments);
    if (const auto* error = std::get_if<UsageError>(&parsed)) {
        PrintError(error->subject, error->cause);
        return ExitCode::Usage;
    }
    const auto& options = std::get<Options>(parsed);
    switch (options.command) {
        case Command::Pack:
            return RunPack(options);
        case Command::Unpack:
            return RunUnpack(options);
        case Command::Check:
            return RunCheckWithPictures(options);
        case Command::Explain:
            return RunExplain(options);
        case Command::Coverage:
            return RunCoverage(options);
        case Command::Help:
            Print(HelpText());
            break;
        case Command::Version:
            Print(VersionText());
            break;
    }
    return ExitCode::Done;
}

}  // namespace

int main(int argc, char** argv) {
    RestrictLibrarySearch(LibrarySearch::SystemAlone);
    SetProgramName("velvane-defs");
    const ConsoleCodePage codePage;
    const ExitCode code = Run(std::vector<std::string>(argv + 1, argv + argc));
    if (OutputArrived()) return static_cast<int>(code);
    PrintError("standard output", "cannot be written");
    return static_cast<int>(code == ExitCode::Done ? ExitCode::Findings : code);
}
