#pragma once

#include "ui/theme/gdiplus.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "ui/theme/shapes.h"
#include "ui/window/gdi.h"

// How a text is drawn. Without a colour in the theme's own for enabled static text.
struct TextStyle {
    int points = 8;
    int fontStyle = Gdiplus::FontStyleRegular;
    Gdiplus::Color color = Gdiplus::Color(0xFF000000);
    Gdiplus::StringAlignment horizontal = Gdiplus::StringAlignmentNear;
    Gdiplus::StringAlignment vertical = Gdiplus::StringAlignmentNear;
    // What becomes of "&": a letter like others, or the mark of the next one, underlined or not.
    Gdiplus::HotkeyPrefix hotkey = Gdiplus::HotkeyPrefixNone;
    // Never broken: what is too wide, or behind a line feed, is cut off. So is it wherever two lines have no
    // room.
    bool singleLine = false;
};

// What all windows paint with: colours by role, their brushes, fonts and the scale. One object, g_Theme,
// which has to be started before the first window and stopped after the last. Main thread.
//
// A colour is alpha, red, green, blue. Brushes and fonts exist between Start and Stop; if GDI+ does not work
// they exist as well and draw nothing.
class CTheme {
  public:
    using Brush = std::optional<Gdiplus::SolidBrush>;
    using Font = std::optional<Gdiplus::Font>;

    CTheme() = default;
    ~CTheme() { Stop(); }
    CTheme(const CTheme&) = delete;
    CTheme& operator=(const CTheme&) = delete;

    // Starts GDI+, makes the brushes and, at the system's scale, the fonts. False if GDI+ does not start. A
    // second call does nothing.
    bool Start();
    void Stop();

    // Set once GDI+ is started, and stays: picks the first of the accents and the first set of window images.
    BYTE active = 0;
    Gdiplus::Color text = Gdiplus::Color(0xFF2F2F2F);  // normal text and button bodies
    Brush textBrush;
    Gdiplus::Color greyText = Gdiplus::Color(0xFFA9A9A9);
    Gdiplus::Color white = Gdiplus::Color(0xFFFFFFFF);  // text of enabled buttons
    Brush whiteBrush;
    Gdiplus::Color disabledText = Gdiplus::Color(0xFFBBBBBB);  // text of disabled buttons
    Brush disabledTextBrush;
    Gdiplus::Color linePenColor = Gdiplus::Color(0xC8C8C8C8);
    std::optional<Gdiplus::Pen> linePen;  // 1 wide
    Gdiplus::Color midGrey = Gdiplus::Color(0xFF919191);
    Brush midGreyBrush;
    Gdiplus::Color black = Gdiplus::Color(0xFF000000);
    Gdiplus::Color accentActive = Gdiplus::Color(0xFFBE3700);
    Brush accentActiveBrush;
    Gdiplus::Color accentInactive = Gdiplus::Color(0xFF4A6492);
    Brush accentInactiveBrush;
    Gdiplus::Color background = Gdiplus::Color(0xFFF5F5F5);  // of windows
    Brush backgroundBrush;
    HBRUSH backgroundGdiBrush = nullptr;                      // the same for GDI, WM_CTLCOLOR answers
    Gdiplus::Color panelLine = Gdiplus::Color(0xFFDDDDDD);    // outline of a panel
    Gdiplus::Color controlText = Gdiplus::Color(0xFF000000);  // enabled static text
    Brush controlTextBrush;
    Gdiplus::Color disabledControlText = Gdiplus::Color(0xFFA9A9A9);
    Brush disabledControlTextBrush;
    Gdiplus::Color blue = Gdiplus::Color(0xFF0000FF);
    Brush blueBrush;
    Gdiplus::Color panel = Gdiplus::Color(0xFFFFFFFF);  // fill of a panel
    // Tahoma, regular, by their points.
    Font font18;
    Font font12;
    Font font10;
    Font font8;
    // 1 at 96 dots per inch. What is told with it multiplies by it and truncates.
    float scale = 1;

    const Gdiplus::Color& Accent() const { return active ? accentActive : accentInactive; }
    const Gdiplus::SolidBrush& AccentBrush() const {
        return active ? *accentActiveBrush : *accentInactiveBrush;
    }
    int Scale(int length) const { return Scaled(length, scale); }

    // Another scale than the system's, fonts included: for pictures of what a screen looks like elsewhere.
    // Windows that exist keep what they have measured.
    void SetScale(float newScale);

    // Dots per inch that points are turned into pixels with.
    int Dpi() const { return m_dpi; }
    // Tahoma of any size and Gdiplus::FontStyle; made once, kept until Stop or SetScale.
    const Gdiplus::Font& FontOf(int points, int fontStyle);

    // A GDI font like that of the system's message boxes. `points` -1 keeps its size.
    UniqueFont MakeFont(int points, bool bold, bool italic = false, bool underline = false) const;

    // Draws `content` in the process's code page into `area`, cut off with an ellipsis where it does not fit;
    // lines that do not fit whole are left out. A text of more than some thousand letters is cut to that many
    // before.
    void DrawText(Gdiplus::Graphics& g, std::string_view content, const Gdiplus::RectF& area,
                  const TextStyle& style);

    // The same as a shape in the middle of a line `width` wide, which is drawn first.
    void DrawOutlinedText(Gdiplus::Graphics& g, std::string_view content, const Gdiplus::RectF& area,
                          const TextStyle& style, const Gdiplus::Color& outline, float width);

    // The size in pixels, rounded up, of `content` in as many lines as it has, or at most `width` wide.
    SIZE MeasureText(std::string_view content, int points, int fontStyle = Gdiplus::FontStyleRegular,
                     int width = 0);

  private:
    std::wstring PrepareText(Gdiplus::Graphics& g, std::string_view content, const Gdiplus::RectF& area,
                             const TextStyle& style, Gdiplus::StringFormat& format);
    void MakeBrushes();
    void MakeFonts();
    void DropFonts();

    ULONG_PTR m_token = 0;
    bool m_started = false;
    int m_dpi = 96;
    std::map<std::pair<int, int>, Gdiplus::Font> m_fonts;  // by points and style
};

extern CTheme g_Theme;

// `text` for GDI+ and COM; bytes that are no text become replacement characters. At most `limit` characters.
std::wstring WideText(std::string_view text, std::size_t limit = std::wstring::npos);
