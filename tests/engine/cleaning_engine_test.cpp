#include "engine/cleaning_engine.h"

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "engine/engine_fixture.h"
#include "support/api_hook.h"

namespace {

std::uintptr_t AsResult(HWND window) {
    return reinterpret_cast<std::uintptr_t>(window);
}

// A category with two applications, of which the second is not installed, and one entity that is switched
// off.
std::string SeveralNodes() {
    const std::string item = ItemXml("File", "%temp%\\no such file");
    return DefinitionsXml(
        ElementXml("Category", "Name='Browsers' Help='the web'",
                   ElementXml("Application", "Name='One'",
                              ElementXml("Entity", "Name='Cache' Help='pages'", item) +
                                  ElementXml("Entity", "Name='Cookies' Default='0'", item)) +
                       ElementXml("Application", "Name='Two' InstallLocation='C:\\no such place'",
                                  ElementXml("Entity", "Name='History'", item))) +
        ElementXml("Category", "Name='System'",
                   ElementXml("Application", "Name='Three' Default='no'",
                              ElementXml("Entity", "Name='Logs'", item + item))));
}

using ListDefinitions = EngineTest;

TEST_F(ListDefinitions, SendsTheThreeUpperLevelsInOrderWhetherInstalledOrNot) {
    ASSERT_TRUE(Load(SeveralNodes()));
    List();
    using Row = std::tuple<DWORD, std::string, std::string, bool, HSCANITEM>;
    const std::vector<Row> expected = {
        {1, "Browsers", "the web", true, HandleOf(Category("Browsers"))},
        {2, "One", "-", true, HandleOf(Application("Browsers", "One"))},
        {3, "Cache", "pages", true, HandleOf(Entity("Browsers", "One", "Cache"))},
        {3, "Cookies", "-", false, HandleOf(Entity("Browsers", "One", "Cookies"))},
        {2, "Two", "-", true, HandleOf(Application("Browsers", "Two"))},
        {3, "History", "-", true, HandleOf(Entity("Browsers", "Two", "History"))},
        {1, "System", "-", true, HandleOf(Category("System"))},
        {2, "Three", "-", false, HandleOf(Application("System", "Three"))},
        {3, "Logs", "-", true, HandleOf(Entity("System", "Three", "Logs"))},
    };
    std::vector<Row> rows;
    for (const RecordedMessage& message : window.Messages(WM_ENGINE_NODE)) {
        EXPECT_EQ(message.wParam, 0u);
        EXPECT_TRUE(message.sentByWorker);
        const RecordedNode& node = *message.node;
        EXPECT_FALSE(node.expanded || node.imageFile || node.filePath || node.image) << node.name;
        rows.emplace_back(node.level, node.name, node.help.value_or("-"), node.checked, node.handle);
    }
    EXPECT_EQ(rows, expected);
    EXPECT_FALSE(Application("Browsers", "Two").present);
    ASSERT_EQ(window.Messages().size(), expected.size() + 1);
    const RecordedMessage end = window.Messages().back();
    EXPECT_EQ(std::tuple(end.message, end.wParam, end.lParam, end.sentByWorker),
              std::tuple(WM_ENGINE_SHRED_DONE, WPARAM{0}, LPARAM{0}, true));
}

class Workers : public EngineTest {
  protected:
    // All five, each tried with a window of its own.
    std::vector<std::uintptr_t> StartEverything(HWND other) {
        return {engine->StartLoad(other), engine->StartList(other), engine->StartScan(other),
                engine->StartClean(other, 3), engine->StartShred(other, 5)};
    }
};

TEST_F(Workers, OneThatRunsAnswersEveryStartWithItsWindowAndGoesOn) {
    ASSERT_TRUE(Load(SeveralNodes()));
    RecordingWindow other;
    std::vector<std::uintptr_t> answers;
    window.OnMessage([&](const RecordedMessage& message) {
        if (message.message == WM_ENGINE_NODE && answers.empty()) answers = StartEverything(other.Handle());
        return window.DefaultAnswer(message);
    });
    List();
    EXPECT_EQ(answers, std::vector(5, AsResult(window.Handle())));
    EXPECT_EQ(window.Count(WM_ENGINE_NODE), 9u);
    EXPECT_EQ(window.Count(WM_ENGINE_SHRED_DONE), 1u);
    EXPECT_TRUE(other.Messages().empty());
}

TEST_F(Workers, AreWaitedForByTheDestructorWhichAnswersTheirMessages) {
    ASSERT_TRUE(Load(SeveralNodes()));
    window.Clear();
    engine->StartScan(window.Handle());
    engine.reset();
    EXPECT_EQ(window.Count(WM_ENGINE_SCAN_DONE), 1u);
}

class Cancel : public EngineTest {
  protected:
    // Loads three categories and cancels when the install location of the second is asked for.
    bool LoadWithACancel(const std::string& application) {
        std::string categories;
        for (const char* name : {"A", "B", "C"}) {
            categories += ElementXml(
                "Category", std::string("Name='") + name + "'",
                ElementXml("Application",
                           std::string("Name='") + name + "' InstallLocation='C:\\place of " + name + "'",
                           ElementXml("Entity", "Name='E'", ItemXml("File", "%temp%\\nothing"))));
        }
        auto attributes = API_HOOK(GetFileAttributesA);
        attributes.Replace([&](LPCSTR path) {
            if (path == "C:\\place of " + application) engine->CancelAction();
            return attributes.Real()(path);
        });
        return Load(DefinitionsXml(categories));
    }

    std::vector<std::string> CategoryNames() const {
        std::vector<std::string> names;
        for (const tagCLEAN_CATEGORY& category : engine->Categories()) names.push_back(category.name);
        return names;
    }
};

TEST_F(Cancel, EndsALoadWhichKeepsWhatItHas) {
    EXPECT_TRUE(LoadWithACancel("B"));
    EXPECT_EQ(CategoryNames(), std::vector<std::string>{"A"});
    EXPECT_EQ(engine->LoadedNodeCount(), 2u);
    EXPECT_FALSE(LoadWithACancel("A"));
    EXPECT_TRUE(CategoryNames().empty());
    // The next worker clears it.
    EXPECT_TRUE(LoadWithACancel("nobody"));
    EXPECT_EQ(CategoryNames().size(), 3u);
}

TEST_F(Cancel, CountsAsSoonAsTheRunIsStarted) {
    ASSERT_TRUE(Load(OneEntityXml(ItemXml("File", folder.MakeFile("found")))));
    const auto stopAtOnce = [this](std::uintptr_t started) {
        engine->CancelAction();
        return started;
    };
    Run([&] { return stopAtOnce(engine->StartScan(window.Handle())); }, WM_ENGINE_SCAN_DONE);
    EXPECT_EQ(engine->GetItemsFound(), 0u);
    Scan();
    ASSERT_EQ(engine->GetItemsFound(), 1u);
    Run([&] { return stopAtOnce(engine->StartClean(window.Handle(), 0)); }, WM_ENGINE_CLEAN_DONE);
    engine->AddShredFile(folder.At("found"));
    Run([&] { return stopAtOnce(engine->StartShred(window.Handle(), 0)); }, WM_ENGINE_SHRED_DONE);
    EXPECT_TRUE(Exists(folder.At("found")));
}

}  // namespace
