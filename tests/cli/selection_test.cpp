#include "cli/selection.h"

#include <gtest/gtest.h>

#include <map>

#include "engine/definition_memory.h"

namespace {

// A hierarchy with names that hold slashes, and the same name twice.
class CliSelection : public ::testing::Test {
  protected:
    CliSelection() {
        auto browsers = memory.New<tagCLEAN_CATEGORY>();
        browsers->name = "Browsers";
        AddApplication(*browsers, "Web", {"Cache", "Cookies"});
        AddApplication(*browsers, "Off", {"Cache"}).enabled = false;
        AddApplication(*browsers, "Web", {"Cache"});
        categories.Append(std::move(browsers));
        auto slashes = memory.New<tagCLEAN_CATEGORY>();
        slashes->name = "A/B";
        AddApplication(*slashes, "C", {"D/E"});
        categories.Append(std::move(slashes));
        auto shorter = memory.New<tagCLEAN_CATEGORY>();
        shorter->name = "A";
        AddApplication(*shorter, "B", {"D"});
        AddApplication(*shorter, "B/C", {"D"});
        categories.Append(std::move(shorter));
    }

    tagCLEAN_APPLICATION& AddApplication(tagCLEAN_CATEGORY& category, const char* name,
                                         const std::vector<const char*>& entities) {
        auto application = memory.New<tagCLEAN_APPLICATION>();
        application->name = name;
        for (const char* entityName : entities) {
            auto entity = memory.New<tagCLEAN_ENTITY>();
            entity->name = entityName;
            entity->enabled = std::string_view(entityName) != "Cookies";
            application->entities.Append(std::move(entity));
        }
        tagCLEAN_APPLICATION& added = *application;
        category.applications.Append(std::move(application));
        return added;
    }

    // The entities that a scan would visit after the plan, each as its whole name with its number in the
    // tree.
    std::vector<std::string> Searched(const std::vector<std::string>& only,
                                      const std::vector<std::string>& except) {
        const auto planned = PlanSelection(categories, only, except);
        if (const auto* unknown = std::get_if<UnknownName>(&planned)) {
            return {std::string("unknown ") + unknown->option + " " + unknown->name};
        }
        std::map<HSCANITEM, bool> state;
        for (const auto& [handle, value] : std::get<SelectionPlan>(planned)) state[handle] = value;
        const auto isOn = [&](const auto& record) {
            const auto change = state.find(HandleOf(record));
            return change == state.end() ? record.enabled : change->second;
        };
        std::vector<std::string> names;
        int number = 0;
        for (const tagCLEAN_CATEGORY& category : categories) {
            for (const tagCLEAN_APPLICATION& application : category.applications) {
                for (const tagCLEAN_ENTITY& entity : application.entities) {
                    ++number;
                    if (!isOn(category) || !isOn(application) || !isOn(entity)) continue;
                    names.push_back(std::to_string(number) + " " + category.name + "|" + application.name +
                                    "|" + entity.name);
                }
            }
        }
        return names;
    }

    DefinitionMemory memory;
    RecordList<tagCLEAN_CATEGORY> categories;
};

using Names = std::vector<std::string>;

TEST_F(CliSelection, NothingSaidChangesNothing) {
    EXPECT_EQ(Searched({}, {}),
              (Names{"1 Browsers|Web|Cache", "4 Browsers|Web|Cache", "5 A/B|C|D/E", "6 A|B|D", "7 A|B/C|D"}));
}

TEST_F(CliSelection, WhatStandsBelowANamedNodeKeepsItsState) {
    EXPECT_EQ(Searched({"Browsers"}, {}), (Names{"1 Browsers|Web|Cache", "4 Browsers|Web|Cache"}));
    EXPECT_EQ(Searched({"Browsers/Off"}, {}), Names{"3 Browsers|Off|Cache"}) << "but the node itself is on";
}

TEST_F(CliSelection, SeveralNamesAddUpAndExceptTakesAway) {
    EXPECT_EQ(Searched({"A/B", "Browsers/Off"}, {}), (Names{"3 Browsers|Off|Cache", "5 A/B|C|D/E"}));
    EXPECT_EQ(Searched({}, {"Browsers", "A/B/C"}), (Names{"6 A|B|D", "7 A|B/C|D"}));
    EXPECT_EQ(Searched({"Browsers"}, {"Browsers/Web/Cache"}), Names{});
    EXPECT_EQ(Searched({"Browsers/Web"}, {"Browsers/Off"}),
              (Names{"1 Browsers|Web|Cache", "4 Browsers|Web|Cache"}))
        << "of two nodes with the same name both are meant";
}

TEST_F(CliSelection, TheLongestNameThatLeadsSomewhereIsMeant) {
    const struct {
        const char* name;
        const char* found;
    } rows[] = {
        {"A/B/C", "5 A/B|C|D/E"},      // not A and its application B/C
        {"A/B/C/D/E", "5 A/B|C|D/E"},  // the slash of the entity
        {"A/B/D", "6 A|B|D"},          // A/B has no D, so it is A after all
        {"A/B/C/D", "7 A|B/C|D"},
    };
    for (const auto& row : rows) EXPECT_EQ(Searched({row.name}, {}), Names{row.found}) << row.name;
}

TEST_F(CliSelection, ANameThatNobodyBearsIsTold) {
    for (const char* name : {"browsers", "Browsers/", "Browsers/Web/Cache/", "Web", "", "/", "A/B/C/D/E/F"}) {
        EXPECT_EQ(Searched({"Browsers", name}, {}), Names{std::string("unknown --only ") + name});
        EXPECT_EQ(Searched({}, {name}), Names{std::string("unknown --except ") + name});
    }
}

}  // namespace
