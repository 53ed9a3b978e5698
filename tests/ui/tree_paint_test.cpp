#include <gtest/gtest.h>

#include <algorithm>

#include "tree_window.h"

// What a tree looks like, in as far as a program can tell.

namespace {

TEST(ScanTreePainting, EveryStateShows) {
    struct Case {
        const char* name;
        void (*change)(TreeWindow& window);
    };
    const Case cases[] = {
        {"selected", [](TreeWindow& window) { window.Click(window.PartsOf(window.Row("c0r")).title); }},
        {"disabled", [](TreeWindow& window) { window.tree.SetNodeEnabled(window.Row("c0s"), false); }},
        {"unchecked", [](TreeWindow& window) { window.Click(window.PartsOf(window.Row("c0r")).check); }},
        {"inserted", [](TreeWindow& window) { window.Add(window.Row("c0e"), ROW_RESULT, "new"); }},
        {"deleted", [](TreeWindow& window) { window.Delete(window.Row("c0s"), false); }},
        {"dead below", [](TreeWindow& window) { window.Click(window.PartsOf(window.Row("c0a")).check); }},
        {"closed", [](TreeWindow& window) { window.Click(window.PartsOf(window.Row("c0e")).expander); }},
        {"running", [](TreeWindow& window) { window.tree.SetRunning(true); }},
        {"coloured", [](TreeWindow& window) { window.tree.SetColors(0xFF, 0xFF00, 0xFF0000); }},
        {"emptied", [](TreeWindow& window) { window.tree.DeleteAll(); }},
    };
    TreeWindow window;
    window.AddCards();
    std::vector<DWORD> before = window.Picture();
    for (const Case& step : cases) {
        step.change(window);
        std::vector<DWORD> after = window.Picture();
        EXPECT_NE(after, before) << step.name;
        before = std::move(after);
    }
    EXPECT_EQ(std::count(before.begin(), before.end(), DWORD{0xF0F0F0}),
              static_cast<std::ptrdiff_t>(before.size()))
        << "an empty tree is its background";
}

TEST(ScanTreePainting, StripsMakeTheSamePictureAsTheWhole) {
    TreeWindow window;
    window.AddCards();
    window.Click(window.PartsOf(window.Row("c0a")).check);
    const std::vector<DWORD> whole = window.Picture();
    for (int y = 0; y < 400; y += 7) {
        window.tree.InvalidateRect({0, y, 600, y + 7});
        window.tree.UpdateWindow();
    }
    EXPECT_EQ(window.Picture(), whole);
}

TEST(ScanTreePainting, AnyLabelAndAnySize) {
    const std::string longest(64 * 1024, 'w');
    TreeWindow window;
    auto* const category = window.Add(nullptr, ROW_CATEGORY, longest.c_str());
    for (const char* label : {longest.c_str(), "x", "", "two\r\nlines\n\n\n", "\xd7\xa2\xd7\x91 \xd8\xb9",
                              "\xff\xfe\x80 broken", "%s%n%d", "&a &"}) {
        window.Add(category, ROW_RESULT, label);
    }
    CScanTree::Insertion nothing = {category, 1, 1, 1, nullptr};
    EXPECT_NE(window.tree.Send(WM_TREE_INSERT, reinterpret_cast<WPARAM>(&nothing)), 0)
        << "a row without data";
    window.Add(window.Add(category, 7, "a level of no kind"), 0, nullptr);
    const int height = window.tree.GetContentHeight();
    for (const SIZE size : {SIZE{0, 0}, SIZE{1, 1}, SIZE{40, 3}, SIZE{20000, 20000}, SIZE{600, 400}}) {
        SCOPED_TRACE(size.cx);
        window.Resize(size);
        window.tree.Send(WM_MOUSEMOVE, 0, MAKELPARAM(size.cx / 2, size.cy / 2));
        window.tree.Send(WM_LBUTTONDOWN, 0, MAKELPARAM(size.cx / 2, size.cy / 2));
        EXPECT_EQ(window.tree.GetContentHeight(), height);
        // Into another context, as large as the window itself.
        const CClientDC screen(nullptr);
        const HDC memory = ::CreateCompatibleDC(screen);
        window.tree.Send(WM_PRINTCLIENT, reinterpret_cast<WPARAM>(memory), PRF_CLIENT);
        ::DeleteDC(memory);
    }
    EXPECT_GT(std::ranges::count(window.Picture(), DWORD{0xFFFFFF}), 1000);
}

}  // namespace
