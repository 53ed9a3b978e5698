#include "defs/commands.h"

#include <cstdio>

#include "base/db_container.h"
#include "defs/checker.h"
#include "defs/definitions_text.h"
#include "defs/join.h"
#include "system/console.h"

namespace {

constexpr char kNeverFile[] = "never.txt";

void PrintFinding(const Finding& finding) {
    const std::string line = OneLine(Utf8Text(FindingText(finding))) + "\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
}

void PrintFailure(const std::string& file, const char* cause) {
    PrintError(file, cause);
}

ExitCode Unreadable(const std::string& file, const char* cause) {
    PrintError(file, cause);
    return ExitCode::Unreadable;
}

ExitCode Written(const std::string& path, const std::string& bytes) {
    if (WriteFileBytes(path, bytes)) return ExitCode::Done;
    PrintError(path, "cannot be written");
    return ExitCode::Findings;
}

// A line for each finding, and the number of them at the end.
ExitCode Tell(const CheckResult& result) {
    for (const Finding& finding : result.findings) PrintFinding(finding);
    if (!result.findings.empty()) {
        std::fflush(stderr);
        Print("Findings: " + std::to_string(result.findings.size()) + ".\n");
        return ExitCode::Findings;
    }
    Print("Clean. Applications: " + std::to_string(result.applications) + ", entities: " +
          std::to_string(result.entities) + ", items: " + std::to_string(result.items) + ".\n");
    return ExitCode::Done;
}

}  // namespace

ExitCode RunPack(const Options& options) {
    std::vector<std::string> sources = options.files;
    const std::string database = sources.back();
    sources.pop_back();
    switch (PackFiles(sources, database, {PrintFinding, PrintFailure})) {
        case PackOutcome::Packed:
            return ExitCode::Done;
        case PackOutcome::Unreadable:
            return ExitCode::Unreadable;
        case PackOutcome::Findings:
        case PackOutcome::NotWritten:
            break;
    }
    return ExitCode::Findings;
}

ExitCode RunUnpack(const Options& options) {
    const auto bytes = ReadFileBytes(options.files[0]);
    if (!bytes) return Unreadable(options.files[0], "cannot be read");
    const std::string text = DbFileText({bytes->begin(), bytes->end()});
    if (SourceDocument(options.files[0], text).Fault())
        return Unreadable(options.files[0], "holds no definitions");
    return Written(options.files[1], text);
}

ExitCode RunCheck(const Options& options) {
    const std::string neverFile = options.never.value_or(PathBeside(options.files[0], kNeverFile));
    const auto neverText = ReadFileBytes(neverFile);
    if (!neverText) return Unreadable(neverFile, "cannot be read; another one is named with --never");
    std::vector<Finding> findings;
    const NeverList never(neverFile, *neverText, findings);
    for (const Finding& finding : findings) PrintFinding(finding);
    if (!findings.empty()) return ExitCode::Unreadable;
    Sources sources;
    for (const std::string& path : options.files) {
        auto bytes = ReadFileBytes(path);
        if (!bytes) return Unreadable(path, "cannot be read");
        sources.push_back(std::make_unique<SourceDocument>(path, SourceText(std::move(*bytes))));
    }
    return Tell(CheckSources(sources, never));
}

ExitCode RunExplain(const Options& options) {
    CCleaningEngine engine;
    if (!LoadWithoutChoices(engine, options.files[0]))
        return Unreadable(options.files[0], "holds no definitions");
    for (const std::string& name : options.only) {
        if (!ExplainText(engine, {name}).empty()) continue;
        PrintError("--only", "the definitions have no '" + name + "'");
        return ExitCode::Usage;
    }
    Print(Utf8Text(ExplainText(engine, options.only)));
    return ExitCode::Done;
}

ExitCode RunCoverage(const Options& options) {
    CCleaningEngine engine;
    if (!LoadWithoutChoices(engine, options.files[0]))
        return Unreadable(options.files[0], "holds no definitions");
    return Written(options.files[1], Utf8Text(CoverageText(engine)));
}
