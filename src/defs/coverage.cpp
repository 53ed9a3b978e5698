#include <algorithm>
#include <iterator>

#include "defs/definitions_text.h"

namespace {

// A text that Markdown shows as it is written.
std::string Escaped(std::string_view text) {
    std::string escaped;
    for (const char c : text) {
        if (std::string_view("\\`*_<[|#").find(c) != std::string_view::npos) escaped += '\\';
        escaped += c;
    }
    return escaped;
}

std::size_t EntityCount(const tagCLEAN_CATEGORY& category, bool onlyEnabled) {
    std::size_t count = 0;
    for (const tagCLEAN_APPLICATION& application : category.applications) {
        for (const tagCLEAN_ENTITY& entity : application.entities) {
            count += !onlyEnabled || (application.enabled && entity.enabled);
        }
    }
    return count;
}

std::string Counted(std::size_t count, const char* one, const char* many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

std::string OverviewText(const CCleaningEngine& engine) {
    std::string rows =
        "| category | applications | entries | on by default |\n| --- | ---: | ---: | ---: |\n";
    std::size_t applications = 0;
    std::size_t entities = 0;
    std::size_t items = 0;
    for (const tagCLEAN_CATEGORY& category : engine.Categories()) {
        applications += category.applicationCount;
        entities += EntityCount(category, false);
        for (const tagCLEAN_APPLICATION& application : category.applications) {
            for (const tagCLEAN_ENTITY& entity : application.entities) {
                items += static_cast<std::size_t>(std::distance(entity.items.begin(), entity.items.end()));
            }
        }
        rows += "| " + Escaped(category.name) + " | " + std::to_string(category.applicationCount) + " | " +
                std::to_string(EntityCount(category, false)) + " | " +
                std::to_string(EntityCount(category, true)) + " |\n";
    }
    return "Definitions " + std::to_string(engine.GetDefinitionsVersion()) +
           (engine.GetDefinitionsDate() ? " of " + Escaped(*engine.GetDefinitionsDate()) : "") + ": " +
           Counted(applications, "application", "applications") + ", " +
           Counted(entities, "entry", "entries") + " that can be switched on and off, " +
           Counted(items, "place", "places") + " to look at.\n\n" + rows;
}

std::string ApplicationText(const tagCLEAN_APPLICATION& application) {
    std::string text = "\n### " + Escaped(application.name) + "\n\n";
    if (!application.enabled) text += "Off as a whole until it is switched on.\n\n";
    text += "| entry | default | what it is |\n| --- | --- | --- |\n";
    for (const tagCLEAN_ENTITY& entity : application.entities) {
        text += "| " + Escaped(entity.name) + " | " + (entity.enabled ? "on" : "off") + " | " +
                Escaped(entity.help.OrEmpty()) + " |\n";
    }
    return text;
}

}  // namespace

std::string CoverageText(const CCleaningEngine& engine) {
    std::string text =
        "# What the definitions cover\n\nThis page is written by `velvane-defs coverage`, not by hand.\n\n" +
        OverviewText(engine);
    for (const tagCLEAN_CATEGORY& category : engine.Categories()) {
        text += "\n## " + Escaped(category.name) + "\n";
        if (category.help && !category.help->empty()) text += "\n" + Escaped(*category.help) + "\n";
        for (const tagCLEAN_APPLICATION& application : category.applications)
            text += ApplicationText(application);
    }
    return text;
}
