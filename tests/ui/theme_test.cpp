#include "ui/theme/theme.h"

#include <gtest/gtest.h>

#include <string>

#include "ui/painted.h"
#include "ui/theme/glass_button.h"
#include "ui/theme/image_tooltip.h"
#include "ui/theme/qm_dialog_frame.h"
#include "ui/theme/theme_group.h"

// Where things go, and what the theme draws with.

bool operator==(const RECT& a, const RECT& b) {
    return ::EqualRect(&a, &b) != FALSE;
}
std::ostream& operator<<(std::ostream& out, const RECT& rect) {
    return out << '(' << rect.left << ' ' << rect.top << ' ' << rect.right << ' ' << rect.bottom << ')';
}

namespace {

class Theme : public ::testing::Test {
  protected:
    Theme() { g_Theme.Start(); }
    ~Theme() override { g_Theme.Stop(); }
};

// --- places ---

TEST(ThemePlaces, PlaceAtCentresOnAPoint) {
    const struct {
        const char* what;
        RECT outer, item;
        double fy, fx;
        bool isEdges;
        RECT placed;
    } rows[] = {
        {"the middle", {0, 0, 100, 50}, {0, 0, 20, 10}, 0.5, 0.5, true, {40, 20, 60, 30}},
        {"a size in place of edges", {0, 0, 100, 50}, {7, 7, 20, 10}, 0.5, 0.5, false, {40, 20, 20, 10}},
        {"an outer that begins elsewhere",
         {10, 20, 110, 70},
         {0, 0, 20, 10},
         0.5,
         0.5,
         true,
         {50, 40, 70, 50}},
        {"a negative fraction leaves x", {0, 0, 100, 50}, {7, 0, 27, 10}, 0.5, -1, true, {7, 20, 27, 30}},
        {"a negative fraction leaves y", {0, 0, 100, 50}, {0, 7, 20, 17}, -1, 0.5, true, {40, 7, 60, 17}},
        {"halves are cut off", {0, 0, 101, 51}, {0, 0, 20, 10}, 0.25, 0.5, true, {40, 7, 60, 17}},
    };
    for (const auto& row : rows) {
        RECT item = row.item;
        PlaceAt(row.outer, item, row.fy, row.fx, row.isEdges);
        EXPECT_EQ(item, row.placed) << row.what;
    }
}

TEST(ThemePlaces, LengthsAreTruncatedAfterScaling) {
    EXPECT_EQ(Scaled(34, 1.25f), 42);
    EXPECT_EQ(Scaled(5, 1.5f), 7);
    EXPECT_EQ(Scaled(60, 2), 120);
}

TEST(ThemePlaces, AButtonsTextMakesRoomForItsPicture) {
    const RECT item = {10, 10, 110, 40};
    const GlassButtonLayout plain = LayoutGlassButton(item, {0, 0}, false);
    EXPECT_TRUE(plain.body.Equals({10, 10, 99, 29}));
    EXPECT_TRUE(plain.text.Equals({10, 11, 99, 28}));
    EXPECT_TRUE(plain.image.IsEmptyArea());
    const GlassButtonLayout pressed = LayoutGlassButton(item, {16, 17}, true);
    EXPECT_TRUE(pressed.text.Equals({47, 12, 62, 27}));
    EXPECT_TRUE(pressed.image.Equals({24, 16, 16, 17}));
}

TEST(ThemePlaces, AButtonGetsLighterUnderTheMouse) {
    const std::pair<Gdiplus::ARGB, Gdiplus::ARGB> rows[] = {
        {0xFF2F2F2F, 0xFF404040}, {0xFFBE3700, 0xFFCF4811}, {0xFFEEEEEE, 0xFFFFFFFF},
        {0xFFEEEEEF, 0xFFDDDDDE}, {0xFFFFFFFF, 0xFFEEEEEE}, {0xFF00FF00, 0xFF121011},
    };
    for (const auto& [rest, hot] : rows) {
        EXPECT_EQ(GlassButtonColor(Gdiplus::Color(rest), true).GetValue(), hot) << std::hex << rest;
        EXPECT_EQ(GlassButtonColor(Gdiplus::Color(rest), false).GetValue(), rest);
    }
}

TEST(ThemePlaces, AGroupsCaptionStandsInItsTopLine) {
    const SIZE client = {200, 100};
    const auto left = LayoutThemeGroup(client, {50, 13}, {0, 0}, BS_LEFT, false);
    EXPECT_TRUE(left.caption.Equals({5, 0, 50, 17}));
    EXPECT_TRUE(left.frame.Equals({0, 8, 199, 91}));
    EXPECT_EQ(LayoutThemeGroup(client, {50, 13}, {0, 0}, BS_RIGHT, false).caption.X, 145);
    EXPECT_EQ(LayoutThemeGroup(client, {50, 13}, {0, 0}, BS_CENTER, false).caption.X, 75);
    const auto high = LayoutThemeGroup(client, {500, 30}, {0, 0}, BS_LEFT, true);
    EXPECT_TRUE(high.caption.Equals({5, 0, 190, 30}));
    EXPECT_TRUE(high.bar.Equals({0, 30, 200, 2}));
    EXPECT_TRUE(high.frame.IsEmptyArea());
    const auto picture = LayoutThemeGroup(client, {50, 13}, {32, 16}, BS_LEFT, false);
    EXPECT_TRUE(picture.frame.Equals({8, 12, 191, 87}));
    EXPECT_TRUE(picture.caption.Equals({37, 4, 50, 17}));
    EXPECT_TRUE(LayoutThemeGroup({8, 4}, {50, 13}, {0, 0}, BS_LEFT, false).caption.IsEmptyArea());
}

TEST(ThemePlaces, ADialogStartsWithinTheScreen) {
    const auto place = [](const RECT& outer, SIZE size) {
        const POINT point = CenterOver(outer, size);
        return RECT{point.x, point.y, point.x + size.cx, point.y + size.cy};
    };
    EXPECT_EQ(place({100, 100, 300, 200}, {100, 50}), (RECT{150, 125, 250, 175}));
    EXPECT_EQ(place({-50, 100, 150, 200}, {200, 50}), (RECT{0, 125, 200, 175}));
    EXPECT_EQ(place({0, 0, 100, 100}, {300, 300}), (RECT{0, 0, 300, 300}));
    EXPECT_EQ(RegionEllipse(20, 1), 21);
    EXPECT_EQ(RegionEllipse(20, 2), 22);
    EXPECT_EQ(TitleHeight(32, 20), 36);
    EXPECT_EQ(TitleHeight(0, 20), 24);
}

TEST(ThemePlaces, ATipTakesThePicturesSize) {
    const struct {
        SIZE picture, shown;
    } tips[] = {{{300, 187}, {300, 187}}, {{5, 10}, {10, 20}}, {{16, 16}, {20, 20}},
                {{3, 7}, {8, 20}},        {{5, 20}, {5, 20}},  {{0, 0}, {0, 0}}};
    for (const auto& row : tips) {
        const SIZE shown = TipPictureSize(row.picture);
        EXPECT_TRUE(shown.cx == row.shown.cx && shown.cy == row.shown.cy) << row.picture.cx;
    }
}

// --- shapes ---

TEST_F(Theme, EachBitOfTheMaskRoundsItsCorner) {
    const struct {
        unsigned corner;
        int x, y;
    } corners[] = {{1, 5, 5}, {2, 44, 5}, {4, 5, 44}, {8, 44, 44}};
    for (unsigned mask = 0; mask < 16; ++mask) {
        const Painted filled(50, 50, [mask](HDC dc) {
            Gdiplus::Graphics g(dc);
            FillRoundRect(g, {5, 5, 40, 40}, g_Theme.text, 20, mask);
        });
        EXPECT_EQ(filled.BoundsOfInk(), (RECT{5, 5, 45, 45})) << mask;
        for (const auto& [corner, x, y] : corners) {
            EXPECT_EQ(filled.At(x, y) == Painted::kGround, (mask & corner) != 0)
                << mask << " at " << x << ' ' << y;
        }
    }
}

TEST_F(Theme, OnlyASquareOutlineShrinks) {
    const auto outline = [](float radius, unsigned corners) {
        return Painted(50, 50, [=](HDC dc) {
            Gdiplus::Graphics g(dc);
            // What the tree works with must not blur it.
            g.SetPixelOffsetMode(Gdiplus::PixelOffsetModeHighQuality);
            DrawRoundRect(g, {5, 5, 40, 40}, g_Theme.text, 1, radius, corners);
        });
    };
    EXPECT_EQ(outline(20, CORNERS_ALL).BoundsOfInk(), (RECT{5, 5, 46, 46}));
    for (const Painted& square : {outline(0, CORNERS_ALL), outline(20, 0), outline(-3, CORNERS_ALL)}) {
        EXPECT_EQ(square.BoundsOfInk(), (RECT{5, 5, 45, 45}));
        EXPECT_EQ(square.At(5, 5), RGB(0x2F, 0x2F, 0x2F));
        EXPECT_EQ(square.At(6, 6), Painted::kGround);
    }
}

// --- text and fonts ---

const std::string kLetters64K(65536, 'w');

struct TextCase {
    const char* what;
    std::string text;
    bool shows;
};
const TextCase kTextCases[] = {
    {"64 KB of one word", kLetters64K, true},
    {"64 KB of line feeds", std::string(65536, '\n'), false},
    {"one letter", "x", true},
    {"none", "", false},
    {"lines", "one\r\ntwo\nthree\rfour\n\n\nlast", true},
    {"right to left", "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D \xD8\xB3\xD9\x84\xD8\xA7\xD9\x85", true},
    {"broken bytes", "a\xFF\xC3\x28\xE2\x82\xF0\x9F\x98", true},
    {"a zero within", std::string("a\0b", 3), true},
    {"pairs only",
     [] {
         std::string text;
         for (int i = 0; i < 500; ++i) text += "\xF0\x9F\x98\x80";
         return text;
     }(),
     true},
};

TEST_F(Theme, TextStaysInItsArea) {
    const RECT area = {20, 20, 120, 60};
    for (const TextCase& row : kTextCases) {
        for (const bool single : {false, true}) {
            for (const int points : {8, 18}) {
                TextStyle style;
                style.points = points;
                style.singleLine = single;
                const Painted painted(140, 80, [&](HDC dc) {
                    Gdiplus::Graphics g(dc);
                    g_Theme.DrawText(g, row.text, ToRectF(area), style);
                });
                EXPECT_TRUE(LiesIn(painted.BoundsOfInk(), area)) << row.what << painted.BoundsOfInk();
                EXPECT_EQ(painted.BoundsOfInk() == RECT{}, !row.shows) << row.what;
                const SIZE size = g_Theme.MeasureText(row.text, points);
                EXPECT_TRUE(size.cx >= 0 && size.cy >= 0) << row.what;
            }
        }
    }
}

TEST_F(Theme, WhatDoesNotFitEndsInAnEllipsis) {
    const auto paint = [](const char* text) {
        return Painted(120, 24, [text](HDC dc) {
            Gdiplus::Graphics g(dc);
            g_Theme.DrawText(g, text, {0, 0, 110, 20}, {});
        });
    };
    const Painted cut = paint("C:\\Users\\somebody\\Documents\\letter.txt");
    bool found = false;
    std::string start = "C:\\Users\\somebody\\Documents\\letter.txt";
    while (!found && start.size() > 5) {
        start.pop_back();
        found = paint((start + "...").c_str()) == cut;
    }
    EXPECT_TRUE(found);
    EXPECT_GT(cut.BoundsOfInk().right, 85) << "more is cut off than has to be";
    EXPECT_TRUE(paint("short") == paint("short\nsecond")) << "one line has room for the first";
}

TEST_F(Theme, AGdiFontIsThatOfMessageBoxes) {
    NONCLIENTMETRICSA metrics = {};
    metrics.cbSize = sizeof metrics;
    ASSERT_TRUE(::SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0));
    LOGFONTA font = {};
    ASSERT_NE(::GetObjectA(g_Theme.MakeFont(12, true, true, true).get(), sizeof font, &font), 0);
    EXPECT_EQ(font.lfHeight, -::MulDiv(12, g_Theme.Dpi(), 72));
    EXPECT_EQ(font.lfWeight, 700);
    EXPECT_TRUE(font.lfItalic && font.lfUnderline);
    EXPECT_STREQ(font.lfFaceName, metrics.lfMessageFont.lfFaceName);
    ASSERT_NE(::GetObjectA(g_Theme.MakeFont(-1, false).get(), sizeof font, &font), 0);
    EXPECT_EQ(font.lfHeight, metrics.lfMessageFont.lfHeight);
    EXPECT_EQ(font.lfWeight, 400);
    EXPECT_FALSE(font.lfItalic || font.lfUnderline);
}

TEST_F(Theme, TextGrowsWithTheScale) {
    EXPECT_EQ(g_Theme.scale, static_cast<float>(LOWORD(::GetDialogBaseUnits())) / 8);
    const SIZE once = g_Theme.MeasureText("A text of some length", 12);
    g_Theme.SetScale(2);
    const SIZE twice = g_Theme.MeasureText("A text of some length", 12);
    EXPECT_NEAR(twice.cx, 2 * once.cx, once.cx / 5);
    EXPECT_NEAR(twice.cy, 2 * once.cy, once.cy / 5);
    EXPECT_EQ(g_Theme.Scale(130), 260);
}

// A one-shot start never starts the theme, and a second start in one process must work.
TEST(ThemeLife, StopsAndStartsAgain) {
    for (int round = 0; round < 2; ++round) {
        EXPECT_FALSE(g_Theme.textBrush.has_value());
        EXPECT_TRUE(g_Theme.Start());
        EXPECT_EQ(g_Theme.active, 1);
        EXPECT_EQ(g_Theme.Accent().GetValue(), 0xFFBE3700);
        g_Theme.Stop();
    }
}

}  // namespace
