#include "cli/json_report.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "system/console.h"

namespace {

using Json = nlohmann::ordered_json;

std::string Written(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

Json TextOrNull(const std::optional<std::string>& text) {
    return text ? Json(Utf8Text(*text)) : Json(nullptr);
}

Json Texts(const std::vector<std::string>& texts) {
    Json json = Json::array();
    for (const std::string& text : texts) json.push_back(Utf8Text(text));
    return json;
}

const char* KindName(ResultType kind) {
    switch (kind) {
        case ResultType::RegValue:
        case ResultType::NativeRegValue:
            return "regvalue";
        case ResultType::RegKey:
        case ResultType::NativeRegKey:
            return "regkey";
        case ResultType::File:
            return "file";
        case ResultType::Directory:
            return "folder";
        case ResultType::IniValue:
            return "ini";
    }
    return "";
}

const char* FateName(Fate fate) {
    switch (fate) {
        case Fate::Removed:
            return "shredded";
        case Fate::Failed:
            return "failed";
        case Fate::WaitsForRestart:
            return "waiting";
        case Fate::Found:
        case Fate::Kept:
            break;
    }
    return "untouched";
}

Json ResultJson(const ReportResult& result) {
    return {{"kind", KindName(result.kind)},
            {"path", Utf8Text(*result.path)},
            {"name", TextOrNull(result.name)},
            {"enabled", result.enabled},
            {"text", Utf8Text(result.text)}};
}

Json EntityJson(const ReportEntity& entity, bool withResults) {
    Json json = {{"name", Utf8Text(entity.name)},
                 {"enabled", entity.enabled},
                 {"whitelistable", entity.whitelistable},
                 {"found", entity.found}};
    if (!withResults) return json;
    Json& results = json["results"] = Json::array();
    for (const ReportResult& result : entity.results) results.push_back(ResultJson(result));
    return json;
}

Json CategoriesJson(const Report& report, bool withResults, bool clean) {
    Json categories = Json::array();
    for (const ReportCategory& category : report.categories) {
        Json applications = Json::array();
        for (const ReportApplication& application : category.applications) {
            Json entities = Json::array();
            for (const ReportEntity& entity : application.entities) {
                entities.push_back(EntityJson(entity, withResults));
            }
            applications.push_back({{"name", Utf8Text(application.name)},
                                    {"enabled", application.enabled},
                                    {"present", application.present},
                                    {"found", application.found},
                                    {"entities", std::move(entities)}});
        }
        Json json = {
            {"name", Utf8Text(category.name)}, {"enabled", category.enabled}, {"found", category.found}};
        if (clean) json["cleaned"] = category.cleaned;
        json["applications"] = std::move(applications);
        categories.push_back(std::move(json));
    }
    return categories;
}

Json DefinitionsJson(const Report& report) {
    return {{"version", report.version}, {"date", TextOrNull(report.date)}};
}

}  // namespace

std::string TreeJson(const Report& report) {
    return Written(
        {{"definitions", DefinitionsJson(report)}, {"categories", CategoriesJson(report, false, false)}});
}

std::string RunJson(const Report& report, bool clean) {
    Json json = {{"definitions", DefinitionsJson(report)},
                 {"found", report.found},
                 {"whitelisted", report.whitelisted},
                 {"stopped", report.stopped},
                 {"elapsed_ms", report.elapsed}};
    if (clean) {
        json["cleaned"] = report.cleaned;
        json["failed"] = report.failed;
        json["waiting_for_restart"] = Texts(report.waiting);
    }
    json["categories"] = CategoriesJson(report, true, clean);
    return Written(json);
}

std::string ShredJson(const ShredReport& report) {
    const auto count = [&](Fate fate) {
        return std::ranges::count(report.paths, fate, [](const auto& path) { return path.second; });
    };
    Json paths = Json::array();
    for (const auto& [path, fate] : report.paths) {
        paths.push_back({{"path", Utf8Text(path)}, {"state", FateName(fate)}});
    }
    return Written({{"shredded", count(Fate::Removed)},
                    {"failed", count(Fate::Failed) + count(Fate::WaitsForRestart)},
                    {"waiting_for_restart", Texts(report.waiting)},
                    {"stopped", report.stopped},
                    {"elapsed_ms", report.elapsed},
                    {"paths", std::move(paths)}});
}

std::string ExpandJson(const std::string& text, const std::string& expanded) {
    return Written({{"text", Utf8Text(text)}, {"expanded", Utf8Text(expanded)}});
}

std::string RestrictedJson(const std::vector<RestrictedAnswer>& answers) {
    Json json = Json::array();
    for (const RestrictedAnswer& answer : answers) {
        json.push_back({{"path", Utf8Text(answer.path)},
                        {"restricted_location", answer.asLocation},
                        {"restricted_path", answer.asPath},
                        {"in_windows_folder", answer.inWindowsFolder}});
    }
    Json report = Json::object();
    report["paths"] = std::move(json);
    return Written(report);
}
