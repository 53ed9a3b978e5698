#include <gtest/gtest.h>
#include <windows.h>

#include "tree_window.h"

// What the mouse, the keys and the scroll bar do to a tree in a real window.

namespace {

using Told = std::vector<std::string>;

TEST(ScanTreeClicks, FirstSelectThenToggleAndTellBeforeCounting) {
    TreeWindow window;
    window.AddCards();
    DWORD countWhenTold = 0;
    window.onNotify = [&](const CScanTree::Notification& told) {
        if (told.hdr.code == TREEN_CHECKED) countWhenTold = window.Row("c0")->data->checkedCount;
    };
    window.Click(window.PartsOf(window.Row("c0e")).check);
    EXPECT_EQ(window.TakeTold(), (Told{"1 c0e 1 1 1", "3 c0e 1 1 0"}));
    EXPECT_EQ(countWhenTold, 2u);
    EXPECT_EQ(window.Row("c0")->data->checkedCount, 0u);
    EXPECT_EQ(window.Row("c0a")->data->checkedCount, 0u);
    EXPECT_EQ(window.Row("c0e")->data->checkedCount, 2u) << "a row's own count stays";
    EXPECT_EQ(window.Row("c0")->data->total, 2u);

    // Below an unchecked row a box is dead, but the row is selected.
    window.Click(window.PartsOf(window.Row("c0r")).check);
    EXPECT_EQ(window.TakeTold(), (Told{"1 c0r 1 1 1"}));
    EXPECT_TRUE(window.Row("c0r")->checked);

    window.Click(window.PartsOf(window.Row("c0e")).expander);
    EXPECT_EQ(window.TakeTold(), (Told{"1 c0e 1 1 0", "2 c0e 0 1 0"}));
    EXPECT_FALSE(IsShown(*window.Row("c0r")));
    window.Click(window.PartsOf(window.Row("c0e")).title, WM_LBUTTONDBLCLK);
    EXPECT_TRUE(window.TakeTold().empty()) << "the click before has opened or closed already";
    window.Click(window.PartsOf(window.Row("c0e")).title);
    window.Click(window.PartsOf(window.Row("c0e")).title, WM_LBUTTONDBLCLK);
    EXPECT_EQ(window.TakeTold(), (Told{"2 c0e 1 1 0"}));
    window.Click({10, 380, 1, 1});
    EXPECT_TRUE(window.TakeTold().empty());
    EXPECT_EQ(window.tree.GetSelected(), window.Row("c0e")) << "an empty place changes nothing";
}

TEST(ScanTreeClicks, MixedChecksComeBackAsTheyWere) {
    TreeWindow window;
    window.AddCards();
    const auto count = [&](const char* label) {
        const auto* const node = window.Row(label);
        return window.tree.CountText(*node, IsParentChecked(*node));
    };
    window.Click(window.PartsOf(window.Row("c0r")).check);
    EXPECT_EQ(count("c0"), "1 trace") << "one has a text of its own";
    window.Click(window.PartsOf(window.Row("c0")).check);
    EXPECT_EQ(count("c0"), "0 traces");
    EXPECT_EQ(count("c0e"), "0 traces");
    window.Click(window.PartsOf(window.Row("c0")).check);
    EXPECT_EQ(count("c0e"), "1 trace");
    EXPECT_FALSE(window.Row("c0r")->checked);
    EXPECT_TRUE(window.Row("c0s")->checked);

    // The other list counts entities, and tells how many there are.
    TreeWindow list(CScanTree::kDefinitions);
    list.AddCards();
    list.Click(list.PartsOf(list.Row("c0e")).check);
    EXPECT_EQ(list.tree.CountText(*list.Row("c0"), true), "0 of 1");
}

TEST(ScanTreeClicks, OwnerMayDeleteWhatItIsToldOf) {
    TreeWindow window;
    window.AddCards();
    window.onNotify = [&](const CScanTree::Notification& told) {
        if (told.hdr.code == TREEN_CHECKED) window.Delete(told.node, true);
    };
    window.Click(window.PartsOf(window.Row("c0e")).check);
    EXPECT_EQ(window.Row("c0e"), nullptr);
    EXPECT_EQ(window.Row("c0")->data->checkedCount, 2u) << "what goes stays counted";
    EXPECT_NE(window.tree.GetSelected(), nullptr) << "the selection stays, without a place";
    for (const WPARAM key : {VK_UP, VK_DOWN, VK_LEFT, VK_RIGHT}) window.Key(key);
    window.Click({10, 380, 1, 1}, WM_LBUTTONDBLCLK);
    window.onNotify = [&](const CScanTree::Notification&) { window.tree.DeleteAll(); };
    window.Click(window.PartsOf(window.Row("c1e")).check);
    EXPECT_EQ(window.tree.GetRoot()->FirstChild(), nullptr);
    EXPECT_EQ(window.tree.GetSelected(), nullptr);
}

TEST(ScanTreeKeys, MoveOpenCloseAndCheck) {
    struct Step {
        WPARAM key;
        const char* selected;
        bool expanded;
        bool checked;
    };
    TreeWindow window;
    window.AddCards();
    window.Key(VK_DOWN);
    EXPECT_EQ(window.tree.GetSelected(), nullptr) << "without a selection the arrows scroll";
    const Step steps[] = {
        {VK_SPACE, "c0", true, true},  {VK_UP, "c0", true, true},      {VK_RIGHT, "c0a", true, true},
        {VK_DOWN, "c0e", true, true},  {VK_LEFT, "c0e", false, true},  {VK_DOWN, "c1", true, true},
        {VK_UP, "c0e", false, true},   {VK_RIGHT, "c0e", true, true},  {VK_SPACE, "c0e", true, false},
        {VK_RIGHT, "c0r", true, true}, {VK_SPACE, "c0r", true, true},  {VK_RIGHT, "c0r", true, true},
        {VK_LEFT, "c0e", true, false}, {VK_LEFT, "c0e", false, false}, {VK_LEFT, "c0a", true, true},
        {VK_LEFT, "c0a", false, true}, {VK_LEFT, "c0", true, true},    {VK_LEFT, "c0", false, true},
        {VK_LEFT, "c0", false, true},  {VK_DOWN, "c1", true, true},
    };
    int number = 0;
    for (const Step& step : steps) {
        SCOPED_TRACE(++number);
        window.Key(step.key);
        auto* const selected = window.tree.GetSelected();
        ASSERT_NE(selected, nullptr);
        EXPECT_STREQ(selected->data->label, step.selected);
        EXPECT_EQ(selected->expanded, step.expanded);
        EXPECT_EQ(selected->checked, step.checked);
    }
    for (const std::string& line : window.TakeTold()) {
        EXPECT_TRUE(line[0] == '1' || line == "3 c0e 1 1 0") << line << ": keys open without telling";
    }
    EXPECT_EQ(window.tree.Send(WM_GETDLGCODE), DLGC_WANTARROWS);
}

// Two cards in 100 pixels of height. The numbers follow from the height of the rows.
TEST(ScanTreeScrolling, BarKeysAndWheel) {
    TreeWindow window;
    const auto wheel = [&](int delta) {
        window.tree.Send(WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(delta)));
    };
    EXPECT_FALSE(window.HasBar()) << "an empty tree has none";
    wheel(-WHEEL_DELTA);
    window.AddCards();
    EXPECT_FALSE(window.HasBar());
    window.Resize({600, 100});
    ASSERT_TRUE(window.HasBar());
    const int content = window.tree.GetContentHeight();
    const int end = content - 100 + 6;

    const auto scroll = [&](int code, int place = 0, LPARAM control = 0) {
        window.tree.Send(WM_VSCROLL, MAKEWPARAM(code, place), control);
    };
    const auto expectAt = [&](int position, const char* what) {
        EXPECT_EQ(window.tree.GetScrollPos(), position) << what;
    };
    scroll(SB_LINEDOWN);
    expectAt(32, "a line");
    scroll(SB_LINEDOWN, 0, reinterpret_cast<LPARAM>(window.m_hWnd));
    expectAt(32, "a message of a scroll bar control");
    window.Key(VK_NEXT);
    expectAt(132, "a page");
    window.Key(VK_END);
    expectAt(end, "the end");
    EXPECT_EQ(window.Bar().nPos, content - 100 + 1) << "kept: the bar stops some pixels earlier";
    window.Key(VK_HOME);
    window.Key(VK_DOWN);
    expectAt(32, "an arrow without a selection");
    wheel(WHEEL_DELTA);
    expectAt(0, "the wheel back");
    wheel(-WHEEL_DELTA / 3);
    expectAt(32, "a third of a notch");

    // A row that is selected comes into view.
    scroll(SB_TOP);
    window.Key(VK_SPACE);
    window.Key(VK_DOWN);
    EXPECT_EQ(window.tree.GetScrollPos(), window.Row("c0")->height);
    scroll(SB_BOTTOM);
    window.Key(VK_SPACE);  // checks what is out of view
    EXPECT_FALSE(window.Row("c0a")->checked);
    window.Key(VK_LEFT);  // closes it: all that is left fits nearly
    window.Key(VK_LEFT);
    window.Pump();
    EXPECT_EQ(window.RectOf(window.Row("c0")).y, -6) << "kept: 6 pixels above the edge";
    window.Resize({600, 1000});
    EXPECT_FALSE(window.HasBar());
    window.Key(VK_END);
    EXPECT_EQ(window.tree.GetScrollPos(), 0);
}

TEST(ScanTreeScrolling, PlacesBeyondTheHalfThatAMessageTakes) {
    TreeWindow window(CScanTree::kResults, {600, 100});
    auto* const category = window.Add(nullptr, ROW_CATEGORY, "c");
    for (int i = 0; i < 5000; ++i) window.Add(category, ROW_RESULT, "r");
    const auto [row, top] = RowAt(*window.tree.GetRoot(), 100000);
    window.tree.Send(WM_VSCROLL, SB_BOTTOM);
    window.Click(window.RectOf(static_cast<TreeWindow::Node*>(RowAt(*window.tree.GetRoot(), 120000).row)));
    const int before = window.tree.GetScrollPos();
    window.Key(VK_UP);
    EXPECT_EQ(window.tree.GetScrollPos(), before - row->height);
    (void)top;
}

TEST(ScanTreeRows, AreFoundByTheirHandles) {
    TreeWindow window;
    const auto handle = [](std::size_t number) { return reinterpret_cast<HSCANITEM>(number * 96 + 4096); };
    auto* const category = window.Add(nullptr, ROW_CATEGORY, "c", true, true, false, handle(0));
    std::vector<TreeWindow::Node*> nodes;
    for (std::size_t i = 1; i < 3000; ++i) {
        nodes.push_back(window.Add(category, ROW_RESULT, "r", true, true, false, handle(i)));
    }
    auto* const first = window.Add(nullptr, ROW_CATEGORY, "c2", true, true, false, handle(5000));
    window.Add(category, ROW_RESULT, "r", true, true, false, handle(5000));
    EXPECT_NE(window.tree.FindNode(handle(5000)), first) << "the one that stands before the other";
    for (std::size_t i = 1; i < 3000; i += 2) window.Delete(nodes[i - 1], false);
    for (std::size_t i = 1; i < 3000; ++i) {
        ASSERT_EQ(window.tree.FindNode(handle(i)), i % 2 == 0 ? nodes[i - 1] : nullptr) << i;
    }
    EXPECT_EQ(window.tree.FindNode(nullptr), nullptr);
    window.tree.DeleteAll();
    EXPECT_EQ(window.tree.FindNode(handle(2)), nullptr);
    CScanTree::Insertion orphan = {nullptr, 1, 1, 1, NewNodeData(ROW_RESULT, handle(1), "r", nullptr)};
    EXPECT_EQ(window.tree.Send(WM_TREE_INSERT, reinterpret_cast<WPARAM>(&orphan)), 0);
}

TEST(ScanTreeTips, ResultsShowTheirLabelsAndOthersTheirHelp) {
    TreeWindow window;
    window.AddCards();
    const auto tipAt = [&](const RowRect& part) {
        const char* const tip = window.tree.TipAt({part.x + part.width / 2, part.y + part.height / 2});
        return std::string(tip != nullptr ? tip : "none");
    };
    EXPECT_EQ(tipAt(window.PartsOf(window.Row("c0r")).title), "c0r");
    EXPECT_EQ(tipAt(window.PartsOf(window.Row("c0a")).title), "help");
    EXPECT_EQ(tipAt({window.RectOf(window.Row("c0r")).x + 3, window.RectOf(window.Row("c0r")).y + 5, 2, 2}),
              "none");
    EXPECT_EQ(tipAt({300, 390, 1, 1}), "none");
    window.tree.Send(WM_MOUSEMOVE, 0, MAKELPARAM(200, 20));
    EXPECT_EQ(::GetFocus(), window.tree.m_hWnd) << "the wheel goes to what the mouse is over";
}

}  // namespace
