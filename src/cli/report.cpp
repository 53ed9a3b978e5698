#include "cli/report.h"

#include <algorithm>
#include <set>

namespace {

// More than any text that fits a line a person reads, and enough for a long path.
constexpr std::size_t kTextCapacity = 4096;

std::string TextOf(const CCleaningEngine& engine, HSCANITEM handle) {
    char buffer[kTextCapacity] = "";
    DWORD kind = 0;
    engine.GetItemString(handle, buffer, sizeof buffer, &kind);
    return buffer;
}

ReportEntity CopyEntity(const CCleaningEngine& engine, const tagCLEAN_ENTITY& record) {
    ReportEntity entity = {record.name, record.enabled, record.whitelistable, record.foundCount, {}};
    for (const tagCLEAN_ITEM& item : record.items) {
        for (const tagCLEAN_RESULT* result : item.results) {
            entity.results.push_back({result->type, result->path, result->name, result->enabled,
                                      TextOf(engine, HandleOf(*result)), &item, Fate::Kept});
        }
    }
    return entity;
}

template <class AReport, class Visit>
void ForEachResult(AReport& report, Visit visit) {
    for (auto& category : report.categories) {
        for (auto& application : category.applications) {
            for (auto& entity : application.entities) {
                for (auto& result : entity.results) visit(result);
            }
        }
    }
}

}  // namespace

Report MakeReport(const CCleaningEngine& engine) {
    Report report;
    report.version = engine.GetDefinitionsVersion();
    report.date = engine.GetDefinitionsDate();
    report.found = engine.GetItemsFound();
    report.whitelisted = engine.GetItemsWhitelisted();
    for (const tagCLEAN_CATEGORY& record : engine.Categories()) {
        ReportCategory category = {record.name, HandleOf(record), record.enabled, record.foundCount, 0, {}};
        for (const tagCLEAN_APPLICATION& applicationRecord : record.applications) {
            ReportApplication application = {applicationRecord.name,
                                             applicationRecord.enabled,
                                             applicationRecord.present,
                                             applicationRecord.foundCount,
                                             {}};
            for (const tagCLEAN_ENTITY& entity : applicationRecord.entities) {
                application.entities.push_back(CopyEntity(engine, entity));
            }
            category.applications.push_back(std::move(application));
        }
        report.categories.push_back(std::move(category));
    }
    return report;
}

// The report has the engine's order, so the two are walked side by side.
std::vector<ReportResult*> ResultsToRemove(Report& report, const CCleaningEngine& engine) {
    std::vector<ReportResult*> results;
    auto category = report.categories.begin();
    for (const tagCLEAN_CATEGORY& categoryRecord : engine.Categories()) {
        auto application = (category++)->applications.begin();
        for (const tagCLEAN_APPLICATION& applicationRecord : categoryRecord.applications) {
            auto entity = (application++)->entities.begin();
            for (const tagCLEAN_ENTITY& entityRecord : applicationRecord.entities) {
                ReportEntity& reported = *entity++;
                if (!categoryRecord.selected || !applicationRecord.selected || !applicationRecord.present ||
                    !entityRecord.selected) {
                    continue;
                }
                for (ReportResult& result : reported.results) {
                    if (!result.enabled) continue;
                    result.fate = Fate::Found;
                    results.push_back(&result);
                }
            }
        }
    }
    return results;
}

void TakeCleanOutcome(Report& report, const CCleaningEngine& engine) {
    report.cleaned = engine.GetItemsCleaned();
    report.failed = engine.GetItemsFailed();
    report.waiting = engine.FilesWaitingForRestart();
    for (ReportCategory& category : report.categories) {
        category.cleaned =
            static_cast<std::uint32_t>(std::max(0, engine.GetCategoryCleaned(category.handle)));
    }
    const std::set<std::string> waiting(report.waiting.begin(), report.waiting.end());
    ForEachResult(report, [&](ReportResult& result) {
        if (result.fate == Fate::Failed && waiting.contains(PathOf(result))) {
            result.fate = Fate::WaitsForRestart;
        }
    });
}

bool HasFailures(const Report& report) {
    bool failed = false;
    ForEachResult(report, [&](const ReportResult& result) { failed |= result.fate == Fate::Failed; });
    return failed;
}

std::string PathOf(const ReportResult& result) {
    switch (result.kind) {
        case ResultType::File:
        case ResultType::Directory:
            return *result.path + result.name.value_or("");
        case ResultType::RegKey:
        case ResultType::NativeRegKey:
            return *result.path + (result.path->ends_with('\\') ? "" : "\\") + result.name.value_or("");
        case ResultType::RegValue:
        case ResultType::NativeRegValue:
        case ResultType::IniValue:
            break;
    }
    return *result.path;
}
