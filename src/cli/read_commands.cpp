#include "cli/json_report.h"
#include "cli/session.h"
#include "cli/text_report.h"

// The commands that change nothing.

ExitCode RunList(const Options& options) {
    Session session(options);
    if (const auto end = session.Open(false)) return *end;
    const Report report = MakeReport(session.engine);
    Print(options.json ? TreeJson(report) : TreeText(report));
    return ExitCode::Done;
}

ExitCode RunScan(const Options& options) {
    Session session(options);
    if (const auto end = session.Open(false)) return *end;
    const auto report = session.Scan();
    if (!report) return ExitCode::Failures;
    session.PrintReport(RunJson(*report, false), FoundText(*report));
    return report->stopped ? ExitCode::Stopped : ExitCode::Done;
}

ExitCode RunExpand(const Options& options) {
    Session session(options);
    if (const auto end = session.Open(false)) return *end;
    const std::string& text = options.arguments.front();
    const std::string expanded = session.engine.ExpandLocation(text);
    Print(options.json ? ExpandJson(text, expanded) : Utf8Text(expanded) + "\n");
    return ExitCode::Done;
}

// The paths go to the tests as they are written: they differ in how they take a backslash at the end.
ExitCode RunRestricted(const Options& options) {
    Session session(options);
    if (const auto end = session.Open(false)) return *end;
    std::vector<RestrictedAnswer> answers;
    for (const std::string& path : options.arguments) {
        answers.push_back({path, session.engine.IsRestrictedLocation(path),
                           session.engine.IsRestrictedPath(path.c_str()),
                           session.engine.IsInWindowsFolder(path.c_str())});
    }
    if (options.json) {
        Print(RestrictedJson(answers));
        return ExitCode::Done;
    }
    const auto word = [](bool yes) { return yes ? "yes\n" : "no\n"; };
    for (const RestrictedAnswer& answer : answers) {
        Print(OneLine(Utf8Text(answer.path)) + "\n");
        Print(std::string("  protected from the definitions: ") + word(answer.asLocation));
        Print(std::string("  protected from the shredder:    ") + word(answer.asPath));
        Print(std::string("  in the Windows folder:          ") + word(answer.inWindowsFolder));
    }
    return ExitCode::Done;
}
