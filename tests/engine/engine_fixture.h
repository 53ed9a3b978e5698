#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/cleaning_engine.h"
#include "support/recording_window.h"
#include "support/sandbox.h"

// What the tests of the engine share: definitions from XML text, an engine that reads them, its workers run
// to their end under a recording window, and the records by their names.

// The bytes of a .db file that holds `text`.
std::string PackDb(std::string_view text);

// The XML text of one item; without `valueName` it has no such attribute.
std::string ItemXml(std::string_view type, std::string_view location, std::string_view action = "Delete",
                    std::optional<std::string_view> valueName = std::nullopt);

// An element of this name around `content`; `attributes` as they stand in XML, Name='...' included.
std::string ElementXml(std::string_view element, std::string_view attributes, std::string_view content);

// A whole document around categories.
std::string DefinitionsXml(std::string_view categories);

// A whole document with `items` in one entity "Entity" of an application "Application" of a category
// "Category". `entityAttributes` is added to the entity.
std::string OneEntityXml(std::string_view items, std::string_view entityAttributes = "");

// An engine with a definitions file, a preferences file and a window of its own. The files lie in `folder`
// and are missing at first. No name of a record here is looked for in vain: what is not there throws, which
// fails the test.
class EngineTest : public ::testing::Test {
  protected:
    EngineTest();
    ~EngineTest() override;

    // An engine as the next start of the program makes it, over the same files.
    void RestartEngine();

    // Packs `xml` into the definitions file.
    void WriteDefinitions(std::string_view xml) const;

    // Runs a worker and waits for its end; the window then holds the messages of this run alone. False, with
    // a failure of the test, if the worker is not started or does not end.
    bool Run(const std::function<std::uintptr_t()>& start, UINT endMessage);

    // Each runs its worker. Load gives the load's own answer; the others fail the test when they do not end.
    bool Load();
    bool Load(std::string_view xml);
    void List();
    void Scan();
    // Refuses, by an exception, to clean anything that is neither in the folder nor below a TestKey.
    void Clean(int passes = 0);
    void Shred(int passes);

    tagCLEAN_CATEGORY& Category(std::string_view category = "Category") const;
    tagCLEAN_APPLICATION& Application(std::string_view category = "Category",
                                      std::string_view application = "Application") const;
    tagCLEAN_ENTITY& Entity(std::string_view category = "Category",
                            std::string_view application = "Application",
                            std::string_view entity = "Entity") const;
    // The items of an entity and the results of all of them, in order.
    static std::vector<tagCLEAN_ITEM*> Items(const tagCLEAN_ENTITY& entity);
    static std::vector<tagCLEAN_RESULT*> Results(const tagCLEAN_ENTITY& entity);
    // Each result as its path followed by its name.
    static std::vector<std::string> Found(const tagCLEAN_ENTITY& entity);

    // GetItemString into a buffer that is large enough.
    std::string ItemString(HSCANITEM handle) const;

    TestFolder folder;
    RecordingWindow window;
    const std::string definitionsFile = folder.At("cleaning.db");
    const std::string preferencesFile = folder.At("CleanPreferences.db");
    std::optional<CCleaningEngine> engine;

  private:
    void RequireInside() const;
};
