#include <gtest/gtest.h>
#include <windows.h>

#include "support/api_hook.h"
#include "tree_window.h"
#include "ui/reader.h"

// What a screen reader learns of a tree, and what it can do there.

namespace {

using Lines = std::vector<std::string>;

Lines AllOf(const Reader& reader) {
    Lines lines;
    for (const LONG child : reader.Children())
        lines.push_back(reader.What(child) + " " + reader.Value(child));
    return lines;
}

TEST(TreeReader, IsToldTheRowsOnShow) {
    TreeWindow window;
    window.AddCards();
    window.Click(window.PartsOf(window.Row("c1e")).expander);
    window.Click(window.PartsOf(window.Row("c0e")).check);
    const Reader reader(window.tree);
    EXPECT_EQ(reader.What(CHILDID_SELF).substr(0, 14), "Traces|outline");
    ::SetFocus(window);
    EXPECT_EQ(AllOf(reader), (Lines{"c0|check|checked expanded 0", "c0a|check|checked expanded 1",
                                    "c0e|check|expanded selected 2", "c0r|check|checked off 3",
                                    "c0s|check|checked off 3", "c1|check|checked expanded 0",
                                    "c1a|check|checked expanded 1", "c1e|check|checked closed 2"}));
    EXPECT_EQ(reader.Description(6), window.tree.CountText(*window.Row("c1"), true) + ". help");
    EXPECT_EQ(reader.Action(3), "Check");
    EXPECT_EQ(reader.Action(4), "");
    EXPECT_EQ(reader.Selection(), 3);

    for (const LONG row : {1, 5, 8}) {
        const RECT place = reader.Place(row);
        EXPECT_EQ(reader.At({place.left + 5, place.top}), row);
        EXPECT_EQ(reader.At({place.left + 5, place.bottom - 1}), row);
    }
    const RECT last = reader.Place(8);
    EXPECT_EQ(reader.At({last.left + 5, last.bottom}), CHILDID_SELF) << "below the last row";
    EXPECT_EQ(reader.Beside(CHILDID_SELF, NAVDIR_LASTCHILD), 8);
    EXPECT_EQ(reader.Beside(5, NAVDIR_NEXT), 6);
    EXPECT_EQ(reader.Beside(8, NAVDIR_NEXT), -1);
    EXPECT_EQ(reader.Beside(5, NAVDIR_LEFT), 3) << "the row above it in the tree";
    EXPECT_EQ(reader.Beside(8, NAVDIR_RIGHT), -1) << "it is closed";
    VARIANT role = {};
    for (const LONG none : {9, -1}) EXPECT_EQ(reader->get_accRole(Reader::Id(none), &role), E_INVALIDARG);

    window.Resize({600, 100});
    EXPECT_EQ(reader.What(8), "c1e|check|checked closed offscreen");
    window.tree.ShowWindow(SW_HIDE);
    EXPECT_EQ(reader.What(2), "c0a|check|checked expanded off invisible");
}

TEST(TreeReader, ChecksAndSelectsAsTheMouseDoes) {
    TreeWindow window;
    window.AddCards();
    const Reader reader(window.tree);
    EXPECT_EQ(reader->accDoDefaultAction(Reader::Id(3)), S_OK);
    EXPECT_EQ(window.TakeTold(), (Lines{"1 c0e 1 1 1", "3 c0e 1 1 0"}));
    EXPECT_EQ(window.Row("c0")->data->checkedCount, 0u);
    EXPECT_EQ(reader->accDoDefaultAction(Reader::Id(4)), DISP_E_MEMBERNOTFOUND) << "its box is dead";
    EXPECT_EQ(reader->accSelect(SELFLAG_TAKEFOCUS | SELFLAG_TAKESELECTION, Reader::Id(7)), S_OK);
    EXPECT_EQ(window.TakeTold(), Lines{"1 c1a 1 1 1"});
    EXPECT_EQ(reader.Focus(), 7);
    EXPECT_EQ(reader.What(7), "c1a|check|checked expanded selected focused");
    EXPECT_EQ(reader->accSelect(SELFLAG_ADDSELECTION, Reader::Id(1)), E_INVALIDARG);

    // Neither while the tree is off, nor behind a question.
    for (const CWindow& off : {CWindow(window.tree.m_hWnd), CWindow(window.m_hWnd)}) {
        off.EnableWindow(FALSE);
        EXPECT_NE(reader.What(1).find(" off"), std::string::npos);
        EXPECT_EQ(reader->accDoDefaultAction(Reader::Id(1)), DISP_E_MEMBERNOTFOUND);
        EXPECT_EQ(reader->accSelect(SELFLAG_TAKESELECTION, Reader::Id(1)), DISP_E_MEMBERNOTFOUND);
        off.EnableWindow(TRUE);
    }
    EXPECT_TRUE(window.TakeTold().empty());

    // Who is told may delete all rows.
    window.onNotify = [&](const CScanTree::Notification&) { window.tree.DeleteAll(); };
    EXPECT_EQ(reader->accDoDefaultAction(Reader::Id(1)), S_OK);
    EXPECT_TRUE(reader.Children().empty());
    window.tree.SetFocus();
    EXPECT_EQ(reader.Focus(), CHILDID_SELF);
}

TEST(TreeReader, HearsOfChangesButNotOfEachRow) {
    TreeWindow window;
    Lines told;
    auto events = API_HOOK(NotifyWinEvent);
    events.Replace([&](DWORD event, HWND, LONG, LONG child) {
        const char* const name = event == EVENT_OBJECT_FOCUS         ? "focus "
                                 : event == EVENT_OBJECT_SELECTION   ? "selection "
                                 : event == EVENT_OBJECT_STATECHANGE ? "state "
                                 : event == EVENT_OBJECT_REORDER     ? "rows "
                                                                     : "other ";
        told.push_back(name + std::to_string(child));
    });
    window.tree.EnableWindow(FALSE);
    window.AddCards();
    window.Delete(window.Row("c0r"), true);
    EXPECT_EQ(told, Lines{});
    window.tree.EnableWindow(TRUE);
    EXPECT_EQ(std::exchange(told, {}), Lines{"rows 0"});
    window.tree.SetFocus();
    EXPECT_EQ(told, Lines{}) << "the system tells of the tree";
    window.Key(VK_SPACE);
    window.Key(VK_SPACE);
    window.Key(VK_DOWN);
    window.Key(VK_LEFT);
    EXPECT_EQ(std::exchange(told, {}),
              (Lines{"focus 1", "selection 1", "state 1", "focus 2", "selection 2", "state 2"}));
    ::SetFocus(window);
    window.tree.SetFocus();
    EXPECT_EQ(told, Lines{"focus 2"});
}

TEST(TreeReader, KeepsAnObjectThatOutlivesTheWindow) {
    auto window = std::make_unique<TreeWindow>();
    window->AddCards();
    const Reader reader(window->tree);
    window->tree.DestroyWindow();
    VARIANT answer = {};
    LONG count = 0;
    BSTR text = nullptr;
    IDispatch* object = nullptr;
    const auto expectNothing = [&] {
        EXPECT_EQ(reader->get_accChildCount(&count), CO_E_OBJNOTCONNECTED);
        EXPECT_EQ(reader->get_accName(Reader::Id(1), &text), CO_E_OBJNOTCONNECTED);
        EXPECT_EQ(reader->get_accParent(&object), CO_E_OBJNOTCONNECTED);
        EXPECT_EQ(reader->accNavigate(NAVDIR_NEXT, Reader::Id(1), &answer), CO_E_OBJNOTCONNECTED);
        EXPECT_EQ(reader->accHitTest(10, 10, &answer), CO_E_OBJNOTCONNECTED);
        EXPECT_EQ(reader->get_accFocus(&answer), CO_E_OBJNOTCONNECTED);
        EXPECT_EQ(reader->accDoDefaultAction(Reader::Id(1)), CO_E_OBJNOTCONNECTED);
    };
    expectNothing();
    window.reset();
    expectNothing();
}

}  // namespace
