#include <windows.h>
// After windows.h, which it needs.
#include <shlobj.h>

#include <set>
#include <string>

#include "cli/failure_reason.h"
#include "cli/json_report.h"
#include "cli/session.h"
#include "cli/shred_plan.h"
#include "cli/text_report.h"
#include "system/redirection_off.h"
#include "system/system_facts.h"

// The commands that remove.

namespace {

ExitCode OutcomeCode(bool stopped, bool failures, bool waiting) {
    if (stopped) return ExitCode::Stopped;
    if (failures) return ExitCode::Failures;
    return waiting ? ExitCode::NeedsRestart : ExitCode::Done;
}

// Nothing when the work is to begin, otherwise how the command ends.
std::optional<ExitCode> AskWhether(const Session& session, const std::string& what) {
    if (session.options.yes) return std::nullopt;
    const Answer answer = Ask(what + " Continue? [y/N] ");
    if (answer == Answer::Yes && !session.stop.IsMade()) return std::nullopt;
    PrintError("velvane-cli", "nothing was removed");
    return answer == Answer::Stopped || session.stop.IsMade() ? ExitCode::Stopped : ExitCode::Done;
}

// What `look` answers, with the files seen that the shred run works on: without redirection.
template <class Look>
auto WithoutRedirection(Look look) {
    const RedirectionOff redirection(IsWow64());
    return look();
}

// Runs the engine's clean and notes in the report what became of each result. False when it cannot start.
bool Clean(Session& session, Report& report, const std::vector<ReportResult*>& results) {
    std::size_t next = 0;
    const EngineRun::Outcome outcome = session.run.Clean(session.options.passes, [&](bool gone) {
        if (next < results.size()) results[next++]->fate = gone ? Fate::Removed : Fate::Failed;
    });
    if (!outcome.started) return false;
    report.stopped = outcome.stopped;
    report.elapsed += outcome.elapsed;
    TakeCleanOutcome(report, session.engine);
    return true;
}

// Why the shredder keeps its hands off a true path; empty when it need not.
// True for \\server\share$\..., by which a drive of a machine is reached past the spelling of its own
// folders.
bool IsAdministrativeShare(const std::string& path) {
    if (!path.starts_with("\\\\")) return false;
    const std::size_t share = path.find('\\', 2);
    if (share == std::string::npos) return false;
    const std::string name = path.substr(share + 1, path.find('\\', share + 1) - share - 1);
    return name.ends_with('$');
}

std::string ProtectionOf(const CCleaningEngine& engine, const std::string& path) {
    if (path.empty()) return "cannot be told from a protected path; --force overrides";
    if (engine.IsRestrictedPath(path.c_str()) || engine.IsRestrictedLocation(path)) {
        return "is protected, because the system or the user's data stands on it; --force overrides";
    }
    if (IsAdministrativeShare(path)) return "lies on an administrative share; --force overrides";
    // The engine compares with case, and the system itself spells its folder in several ways.
    const std::string windows = FolderPath(CSIDL_WINDOWS).value_or("");
    std::string spelt = path;
    if (!windows.empty() && LowerText(path).starts_with(LowerText(windows))) {
        spelt = windows + path.substr(windows.size());
    }
    if (engine.IsInWindowsFolder(spelt.c_str())) return "lies in the Windows folder; --force overrides";
    return "";
}

Fate FateOf(bool gone, const std::string& path, const std::set<std::string>& waiting) {
    if (gone) return Fate::Removed;
    return waiting.contains(path) ? Fate::WaitsForRestart : Fate::Failed;
}

std::size_t CountOf(const ShredReport& report, Fate fate) {
    std::size_t count = 0;
    for (const auto& entry : report.paths) count += entry.second == fate;
    return count;
}

std::string ShredText(const ShredReport& report) {
    std::string text;
    for (const auto& [path, fate] : report.paths) {
        if (fate == Fate::Removed || fate == Fate::Found) continue;
        text += OneLine(Utf8Text(path)) + "\n  " + OneLine(Utf8Text(WhyPathStayed(path))) +
                (fate == Fate::WaitsForRestart ? "; it goes with the next restart\n" : "\n");
    }
    text += "Shredded " + std::to_string(CountOf(report, Fate::Removed)) + " of " +
            Counted(report.paths.size(), "file or folder");
    return text + (report.stopped ? "; the run was stopped.\n" : ".\n");
}

// What a dry run prints.
std::string ShredListText(const ShredReport& report) {
    std::string text;
    for (const auto& entry : report.paths) text += OneLine(Utf8Text(entry.first)) + "\n";
    return text + "Would shred " + std::to_string(report.paths.size()) + ".\n";
}

std::optional<ShredReport> Shred(Session& session, const ShredPlan& plan) {
    for (const std::string& path : plan.paths) session.engine.AddShredFile(path);
    std::vector<bool> gone;
    const EngineRun::Outcome outcome =
        session.run.Shred(session.options.passes, [&](bool isGone) { gone.push_back(isGone); });
    if (!outcome.started) return std::nullopt;
    ShredReport report;
    report.waiting = session.engine.FilesWaitingForRestart();
    report.stopped = outcome.stopped;
    report.elapsed = outcome.elapsed;
    const std::set<std::string> waiting(report.waiting.begin(), report.waiting.end());
    for (std::size_t i = 0; i < plan.paths.size(); ++i) {
        const std::string& path = plan.paths[i];
        report.paths.emplace_back(path, i < gone.size() ? FateOf(gone[i], path, waiting) : Fate::Found);
    }
    return report;
}

}  // namespace

ExitCode RunClean(const Options& options) {
    if (!CanAsk(options)) return ExitCode::Usage;
    Session session(options);
    if (const auto end = session.Open(!options.dryRun)) return *end;
    auto report = session.Scan();
    if (!report) return ExitCode::Failures;
    const std::vector<ReportResult*> results = ResultsToRemove(*report, session.engine);
    const bool nothingToDo = report->stopped || options.dryRun || results.empty();
    // Who is asked has to see what about; who is not reads all of it at the end.
    if (!options.json && !options.quiet && (nothingToDo || !options.yes)) Print(FoundText(*report));
    if (!nothingToDo) {
        if (const auto end = AskWhether(session, Counted(results.size(), "trace") + " will be removed.")) {
            return *end;
        }
        if (!Clean(session, *report, results)) return CannotStart();
    }
    const std::string wouldRemove = "Would remove " + Counted(results.size(), "trace") + ".\n";
    session.PrintReport(RunJson(*report, true), options.dryRun ? wouldRemove : CleanedText(*report));
    return OutcomeCode(report->stopped, HasFailures(*report), !report->waiting.empty());
}

ExitCode RunShred(const Options& options) {
    if (!CanAsk(options)) return ExitCode::Usage;
    const auto paths = WithoutRedirection([&] { return FullPaths(options.arguments); });
    if (const auto* problem = std::get_if<PathProblem>(&paths)) {
        PrintError(problem->path, problem->cause);
        return ExitCode::Usage;
    }
    Session session(options);
    if (const auto end = session.Open(!options.dryRun)) return *end;
    const auto planned = WithoutRedirection([&] {
        return PlanShred(
            std::get<std::vector<std::string>>(paths),
            [&](const std::string& path) {
                return options.force ? std::string() : ProtectionOf(session.engine, path);
            },
            [&] { return session.stop.IsMade(); });
    });
    if (const auto* problem = std::get_if<PathProblem>(&planned)) {
        PrintError(problem->path, problem->cause);
        return ExitCode::Usage;
    }
    const auto& plan = std::get<ShredPlan>(planned);
    for (const PathProblem& problem : plan.passedOver) PrintError(problem.path, problem.cause);
    if (session.stop.IsMade()) return ExitCode::Stopped;
    ShredReport report;
    if (options.dryRun) {
        for (const std::string& path : plan.paths) report.paths.emplace_back(path, Fate::Found);
        session.PrintReport(ShredJson(report), ShredListText(report));
        return ExitCode::Done;
    }
    if (const auto end = AskWhether(session, Counted(plan.paths.size() - plan.folders, "file") + " and " +
                                                 Counted(plan.folders, "folder") + " will be shredded.")) {
        return *end;
    }
    auto outcome = Shred(session, plan);
    if (!outcome) return CannotStart();
    report = std::move(*outcome);
    WithoutRedirection([&] { session.PrintReport(ShredJson(report), ShredText(report)); });
    const bool failures = CountOf(report, Fate::Failed) > 0 || !plan.passedOver.empty();
    return OutcomeCode(report.stopped, failures, !report.waiting.empty());
}
