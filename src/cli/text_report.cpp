#include "cli/text_report.h"

#include <algorithm>

#include "cli/failure_reason.h"
#include "system/console.h"

namespace {

// Of more traces a person reads the number.
constexpr std::size_t kTracesShown = 10;

std::string Line(int indent, const std::string& text) {
    return std::string(static_cast<std::size_t>(indent) * 2, ' ') + OneLine(Utf8Text(text)) + "\n";
}

const char* Box(bool enabled) {
    return enabled ? "[x] " : "[ ] ";
}

std::size_t CountOf(const ReportEntity& entity, Fate fate) {
    return static_cast<std::size_t>(std::ranges::count(entity.results, fate, &ReportResult::fate));
}

std::string TracesText(const ReportEntity& entity) {
    std::string text;
    const std::size_t shown = std::min(entity.results.size(), kTracesShown);
    for (std::size_t i = 0; i < shown; ++i) {
        const ReportResult& result = entity.results[i];
        // The text of a folder is only its name.
        const std::string trace = result.kind == ResultType::Directory ? PathOf(result) : result.text;
        text += Line(3, trace + (result.enabled ? "" : "  (kept: on the whitelist)"));
    }
    const std::size_t rest = entity.results.size() - shown;
    if (rest > 0) text += Line(3, "... and " + std::to_string(rest) + " more, all of them with --json");
    return text;
}

// Builds a text of the three levels that has a line for a node only where something stands below it.
template <class EntityText>
std::string HierarchyText(const Report& report, EntityText entityText) {
    std::string text;
    for (const ReportCategory& category : report.categories) {
        std::string categoryText;
        for (const ReportApplication& application : category.applications) {
            std::string applicationText;
            for (const ReportEntity& entity : application.entities) applicationText += entityText(entity);
            if (!applicationText.empty()) categoryText += Line(1, application.name) + applicationText;
        }
        if (!categoryText.empty()) text += Line(0, category.name) + categoryText;
    }
    return text;
}

std::string OutcomeOf(const ReportEntity& entity) {
    std::string text = entity.name + ": " + std::to_string(CountOf(entity, Fate::Removed)) + " removed";
    const std::pair<Fate, const char*> others[] = {{Fate::WaitsForRestart, " for the restart"},
                                                   {Fate::Failed, " failed"},
                                                   {Fate::Found, " not reached"},
                                                   {Fate::Kept, " kept"}};
    for (const auto& [fate, word] : others) {
        if (const std::size_t count = CountOf(entity, fate)) text += ", " + std::to_string(count) + word;
    }
    return text;
}

std::string StayedText(const ReportEntity& entity) {
    std::string text;
    for (const ReportResult& result : entity.results) {
        if (result.fate == Fate::Kept || result.fate == Fate::Removed || result.fate == Fate::Found) continue;
        const std::string trace = result.kind == ResultType::Directory ? PathOf(result) : result.text;
        text += Line(1, trace);
        text += Line(2, result.fate == Fate::WaitsForRestart
                            ? WhyItStayed(result) + "; it goes with the next restart"
                            : WhyItStayed(result));
    }
    return text;
}

}  // namespace

std::string Counted(std::size_t count, const char* noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string TreeText(const Report& report) {
    std::string text =
        Line(0, "Definitions " + std::to_string(report.version) + (report.date ? " of " + *report.date : ""));
    for (const ReportCategory& category : report.categories) {
        text += Line(0, Box(category.enabled) + category.name);
        for (const ReportApplication& application : category.applications) {
            text += Line(1, Box(application.enabled) + application.name +
                                (application.present ? "" : "  (not on this machine)"));
            for (const ReportEntity& entity : application.entities) {
                text += Line(2, Box(entity.enabled) + entity.name);
            }
        }
    }
    return text;
}

std::string FoundText(const Report& report) {
    std::string text = HierarchyText(report, [](const ReportEntity& entity) {
        if (entity.results.empty()) return std::string();
        return Line(2, entity.name + ": " + std::to_string(entity.results.size())) + TracesText(entity);
    });
    text += Line(0, "Found " + Counted(report.found, "trace") +
                        (report.whitelisted > 0
                             ? ", of which " + std::to_string(report.whitelisted) + " on the whitelist"
                             : "") +
                        (report.stopped ? "; the scan was stopped" : "") + ".");
    return text;
}

std::string CleanedText(const Report& report) {
    std::string text = HierarchyText(report, [](const ReportEntity& entity) {
        return entity.results.empty() ? std::string() : Line(2, OutcomeOf(entity));
    });
    std::string stayed;
    for (const ReportCategory& category : report.categories) {
        for (const ReportApplication& application : category.applications) {
            for (const ReportEntity& entity : application.entities) stayed += StayedText(entity);
        }
    }
    if (!stayed.empty()) text += Line(0, "Still there:") + stayed;
    text += Line(0, "Removed " + Counted(report.cleaned, "trace") +
                        (report.failed > 0 ? ", " + std::to_string(report.failed) + " still there" : "") +
                        (report.waiting.empty()
                             ? ""
                             : ", of which " + std::to_string(report.waiting.size()) + " for the restart") +
                        (report.stopped ? "; the run was stopped" : "") + ".");
    return text;
}
