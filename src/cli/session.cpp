#include "cli/session.h"

#include <shlobj.h>

#include <pugixml.hpp>
#include <string>

#include "base/db_container.h"
#include "base/xml_text.h"
#include "cli/selection.h"
#include "cli/text_report.h"
#include "system/files.h"
#include "system/handles.h"
#include "system/system_facts.h"

namespace {

constexpr char kProductFolder[] = "\\Quillmere\\Velvane";

// False, with the cause printed, when the file cannot be opened for reading.
bool IsReadable(const std::string& path) {
    const auto file = OwnHandle<UniqueHandle>(::CreateFileA(
        path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (file) return true;
    const DWORD error = ::GetLastError();
    PrintError(path, SystemMessage(error));
    return false;
}

// The engine takes a preferences file that it cannot read for none. One that the user names holds what must
// not be removed, so there it is an error.
bool HoldsPreferences(const std::string& path) {
    auto file = ReadWholeFile(path.c_str(), kMaxDbPayload);
    if (file) {
        std::string text = DbFileText(std::move(*file));
        pugi::xml_document document;
        if (ParseXmlText(document, text) && FindElement(document, "scan_item_states")) return true;
    }
    PrintError(path, "holds no preferences");
    return false;
}

void PrintNoDefinitions(const Options& options) {
    if (options.definitions) return PrintError(*options.definitions, "holds no definitions");
    std::string both;
    const std::string beside = ProgramFolder() + "cleaning.db";
    const std::string common =
        FolderPath(CSIDL_COMMON_APPDATA).value_or("") + kProductFolder + "\\cleaning.db";
    for (const std::string& path : {common, beside}) {
        if (!IsGone(path.c_str())) return PrintError(path, "holds no definitions");
    }
    PrintError(beside, "not found, nor " + common);
}

// The engine makes its folder for the restart below this one, which nobody else makes.
void MakeProductFolder() {
    const auto folder = FolderPath(CSIDL_APPDATA);
    if (!folder) return;
    ::CreateDirectoryA((*folder + "\\Quillmere").c_str(), nullptr);
    ::CreateDirectoryA((*folder + kProductFolder).c_str(), nullptr);
}

}  // namespace

bool Session::NamedFilesAreGood() const {
    if (options.definitions && !IsReadable(*options.definitions)) return false;
    if (!options.preferences) return true;
    return IsReadable(*options.preferences) && HoldsPreferences(*options.preferences);
}

bool Session::Select() {
    const auto plan = PlanSelection(engine.Categories(), options.only, options.except);
    if (const auto* unknown = std::get_if<UnknownName>(&plan)) {
        PrintError(unknown->option, "the definitions have no '" + unknown->name + "'");
        return false;
    }
    for (const auto& [handle, value] : std::get<SelectionPlan>(plan))
        engine.SetItemCheck(handle, value, true);
    return true;
}

std::optional<ExitCode> Session::Open(bool changes) {
    if (!NamedFilesAreGood()) return ExitCode::NoDefinitions;
    if (options.definitions) engine.SetDefinitionsFile(*options.definitions);
    if (options.preferences) engine.SetPreferencesFile(*options.preferences);
    engine.SetScanOnly(!changes);
    if (changes) MakeProductFolder();
    const EngineRun::Outcome outcome = run.Load();
    if (!outcome.started) return CannotStart();
    if (outcome.stopped) return ExitCode::Stopped;
    if (!outcome.loaded) {
        PrintNoDefinitions(options);
        return ExitCode::NoDefinitions;
    }
    const std::uint32_t finished = engine.GetItemsCleaned();
    if (changes && finished > 0 && !options.json && !options.quiet) {
        Print("Finished what waited for the restart: " + Counted(finished, "trace") + ".\n");
    }
    if (!Select()) return ExitCode::Usage;
    return std::nullopt;
}

std::optional<Report> Session::Scan() {
    const EngineRun::Outcome outcome = run.Scan();
    if (!outcome.started) {
        CannotStart();
        return std::nullopt;
    }
    Report report = MakeReport(engine);
    report.stopped = outcome.stopped;
    report.elapsed = outcome.elapsed;
    return report;
}

void Session::PrintReport(const std::string& json, const std::string& text) const {
    if (options.json) {
        Print(json);
    } else if (!options.quiet) {
        Print(text);
    }
}

ExitCode CannotStart() {
    PrintError("velvane-cli", "the system gives no thread or window for the work");
    return ExitCode::Failures;
}

bool CanAsk(const Options& options) {
    if (options.yes || options.dryRun || IsTerminal(STD_INPUT_HANDLE)) return true;
    PrintError("--yes", "is needed where standard input is no terminal, because nobody can be asked");
    return false;
}
