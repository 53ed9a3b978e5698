#include "ui/main_window_fixture.h"
#include "ui/reader.h"

namespace {

// What a screen reader learns of the frame, and what it can do there.
struct NavReader : MainWindow {
    static constexpr LONG kMinimise = 7, kClose = 9;
    std::vector<std::string> Parts(const Reader& reader) const {
        std::vector<std::string> lines;
        for (LONG part = 1; part <= kClose; ++part) lines.push_back(reader.What(part));
        return lines;
    }
};

using Lines = std::vector<std::string>;

TEST_F(NavReader, IsToldTheEntriesAndTheCaption) {
    ASSERT_NO_FATAL_FAILURE(Open());
    window->ShowWindow(SW_SHOW);
    const Reader reader(*window);
    EXPECT_EQ(Parts(reader), (Lines{"Scan|tab|selected off", "Settings|tab|off", "Schedule|tab|off",
                                    "Shredder|tab|off", "About|tab|off", "Help|link|", "Minimize|button|",
                                    "Maximize|button|", "Close|button|off"}));
    for (const LONG part : {LONG{3}, kClose}) {
        EXPECT_EQ(reader->accDoDefaultAction(Reader::Id(part)), DISP_E_MEMBERNOTFOUND) << part;
    }
    EXPECT_EQ(ShownPage(), 0);
    ASSERT_TRUE(PumpUntil([this] { return IsListed(); }));
    EXPECT_EQ(Parts(reader),
              (Lines{"Scan|tab|selected", "Settings|tab|", "Schedule|tab|", "Shredder|tab|", "About|tab|",
                     "Help|link|", "Minimize|button|", "Maximize|button|", "Close|button|"}));

    // Behind them stand the pages, which are windows.
    EXPECT_EQ(reader.Children(), (std::vector<LONG>{1, 2, 3, 4, 5, 6, 7, 8, 9, -2, -2, -2, -2, -2}));
    EXPECT_EQ(reader.Beside(kClose, NAVDIR_NEXT), -2);
    EXPECT_EQ(reader.Beside(14, NAVDIR_PREVIOUS), -2);
    EXPECT_EQ(reader.Beside(14, NAVDIR_NEXT), -1);
    POINT entry = EntryPoint(3);
    window->ClientToScreen(entry);
    EXPECT_EQ(reader.At(entry), 4);
    for (const LONG part : {LONG{1}, kMinimise, kClose}) {
        const RECT place = reader.Place(part);
        EXPECT_EQ(reader.At({place.left, place.top}), part);
    }
    RECT page = {};
    ::GetWindowRect(Page(0), &page);
    EXPECT_EQ(reader.At({page.left + 1, page.top + 1}), -2);
}

TEST_F(NavReader, TurnsThePagesAndClosesTheWindow) {
    ASSERT_NO_FATAL_FAILURE(OpenListed());
    const Reader reader(*window);
    EXPECT_EQ(reader->accDoDefaultAction(Reader::Id(3)), S_OK);
    EXPECT_EQ(ShownPage(), 2);
    EXPECT_EQ(reader.Selection(), 3);
    EXPECT_EQ(reader.What(1), "Scan|tab|");
    EXPECT_EQ(reader->accSelect(SELFLAG_TAKESELECTION, Reader::Id(1)), S_OK);
    EXPECT_EQ(ShownPage(), 0);
    EXPECT_EQ(reader->accSelect(SELFLAG_TAKESELECTION, Reader::Id(1)), S_OK);
    EXPECT_TRUE(IsListed()) << "to select the scan's page once more starts no scan";
    EXPECT_EQ(reader->accSelect(SELFLAG_TAKEFOCUS, Reader::Id(2)), DISP_E_MEMBERNOTFOUND);

    EXPECT_EQ(reader->accDoDefaultAction(Reader::Id(kMinimise)), S_OK);
    PumpWaiting();
    EXPECT_TRUE(window->IsIconic());
    window->ShowWindow(SW_RESTORE);
    EXPECT_EQ(reader->accDoDefaultAction(Reader::Id(kClose)), S_OK);
    PumpWaiting();
    EXPECT_FALSE(window->IsWindow());
    LONG count = 0;
    EXPECT_EQ(reader->get_accChildCount(&count), CO_E_OBJNOTCONNECTED);
    Close();
    EXPECT_EQ(reader->get_accChildCount(&count), CO_E_OBJNOTCONNECTED);
}

}  // namespace
