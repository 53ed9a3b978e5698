#include "ui/theme/theme.h"

#include <gtest/gtest.h>

#include <string>

#include "ui/painted.h"
#include "ui/theme/glass_button.h"

// What the theme draws with.

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

// kept: a part that is full carries into the next.
TEST(GlassButtonColors, GetLighterUnderTheMouse) {
    const std::pair<Gdiplus::ARGB, Gdiplus::ARGB> rows[] = {
        {0xFF2F2F2F, 0xFF404040}, {0xFFBE3700, 0xFFCF4811}, {0xFF00FF00, 0xFF121011}};
    for (const auto& [rest, hot] : rows) {
        EXPECT_EQ(GlassButtonColor(Gdiplus::Color(rest), true).GetValue(), hot) << std::hex << rest;
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

// --- text and fonts ---

const std::string kLetters64K(65536, 'w');

struct TextCase {
    const char* what;
    std::string text;
    bool shows;
};
const TextCase kTextCases[] = {
    {"64 KB of one word", kLetters64K, true},
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
