#include "ui/theme/theme.h"

#include <cmath>
#include <cstring>
#include <tuple>

CTheme g_Theme;

namespace {

constexpr const wchar_t* kFontFamily = L"Tahoma";

// No screen shows more of one text, and GDI+ measures each letter of what it is given.
constexpr std::size_t kLongestText = 4096;

// Regular text below this size is drawn for the screen's sub-pixels, all other in shades of grey.
constexpr int kClearTypeBelow = 14;

int SystemDpi() {
    const HDC screen = ::GetDC(nullptr);
    const int dpi = ::GetDeviceCaps(screen, LOGPIXELSY);
    ::ReleaseDC(nullptr, screen);
    return dpi > 0 ? dpi : 96;
}

Gdiplus::TextRenderingHint HintFor(int points, int fontStyle) {
    return fontStyle == Gdiplus::FontStyleRegular && points < kClearTypeBelow
               ? Gdiplus::TextRenderingHintClearTypeGridFit
               : Gdiplus::TextRenderingHintAntiAliasGridFit;
}

// Shortens a single line to what has room in `width`, with an ellipsis for the rest. The trimming of the
// format says the same, but not every GDI+ knows it; nor do all count the mark of a hotkey among the
// characters that fit, so the length is searched for by widths.
void TrimToWidth(const Gdiplus::Graphics& g, std::wstring& text, const Gdiplus::Font& font, float width,
                 const Gdiplus::StringFormat& format) {
    const auto fits = [&](const std::wstring& line) {
        Gdiplus::RectF bounds;
        g.MeasureString(line.c_str(), static_cast<int>(line.size()), &font, Gdiplus::PointF(0, 0), &format,
                        &bounds);
        return bounds.Width <= width;
    };
    // No font of ours has letters that are narrower than a pixel, so the tail need not be measured.
    const std::size_t most = static_cast<std::size_t>(width) + 2;
    if (text.size() <= most && fits(text)) return;
    const auto shortened = [&](std::size_t length) {
        std::wstring line = text.substr(0, length);
        // Half of a pair, a mark whose letter is gone and a gap would show.
        while (!line.empty() &&
               (IS_HIGH_SURROGATE(line.back()) || line.back() == L'&' || line.back() == L' '))
            line.pop_back();
        return line + L"...";
    };
    std::size_t low = 0, high = std::min(text.size(), most);
    while (low < high) {
        const std::size_t middle = (low + high + 1) / 2;
        if (fits(shortened(middle))) {
            low = middle;
        } else {
            high = middle - 1;
        }
    }
    text = shortened(low);
}

// A single line that is higher than its area reaches beyond it above and below alike: where GDI+ puts it then
// is its own affair.
Gdiplus::RectF RoomForLine(const Gdiplus::RectF& area, const TextStyle& style, float lineHeight) {
    Gdiplus::RectF room = area;
    const float missing = std::ceil(lineHeight) + 2 - area.Height;
    if (style.singleLine && missing > 0) room.Inflate(0, missing / 2);
    return room;
}

}  // namespace

bool CTheme::Start() {
    if (m_started) return active != 0;
    const Gdiplus::GdiplusStartupInput input;
    if (Gdiplus::GdiplusStartup(&m_token, &input, nullptr) == Gdiplus::Ok) active = 1;
    m_started = true;
    scale = static_cast<float>(LOWORD(::GetDialogBaseUnits())) / 8.0f;
    m_dpi = SystemDpi();
    MakeBrushes();
    MakeFonts();
    return active != 0;
}

void CTheme::Stop() {
    if (!m_started) return;
    DropFonts();
    for (Brush* const brush :
         {&textBrush, &whiteBrush, &disabledTextBrush, &midGreyBrush, &accentActiveBrush,
          &accentInactiveBrush, &backgroundBrush, &controlTextBrush, &disabledControlTextBrush, &blueBrush}) {
        brush->reset();
    }
    linePen.reset();
    if (backgroundGdiBrush != nullptr) ::DeleteObject(std::exchange(backgroundGdiBrush, nullptr));
    if (active) Gdiplus::GdiplusShutdown(m_token);
    m_started = false;
}

void CTheme::MakeBrushes() {
    textBrush.emplace(text);
    whiteBrush.emplace(white);
    disabledTextBrush.emplace(disabledText);
    linePen.emplace(linePenColor, 1.0f);
    midGreyBrush.emplace(midGrey);
    accentActiveBrush.emplace(accentActive);
    accentInactiveBrush.emplace(accentInactive);
    backgroundBrush.emplace(background);
    backgroundGdiBrush = ::CreateSolidBrush(background.ToCOLORREF());
    controlTextBrush.emplace(controlText);
    disabledControlTextBrush.emplace(disabledControlText);
    blueBrush.emplace(blue);
}

// Fonts are made in pixels from the theme's dots per inch and not in points, which each graphics would turn
// into pixels with its own.
void CTheme::MakeFonts() {
    const auto make = [this](Font& font, int points) {
        font.emplace(kFontFamily, static_cast<float>(points * m_dpi) / 72.0f, Gdiplus::FontStyleRegular,
                     Gdiplus::UnitPixel);
    };
    make(font18, 18);
    make(font12, 12);
    make(font10, 10);
    make(font8, 8);
}

void CTheme::DropFonts() {
    m_fonts.clear();
    for (Font* const font : {&font18, &font12, &font10, &font8}) font->reset();
}

void CTheme::SetScale(float newScale) {
    scale = newScale;
    m_dpi = static_cast<int>(std::lround(96.0f * newScale));
    DropFonts();
    MakeFonts();
}

const Gdiplus::Font& CTheme::FontOf(int points, int fontStyle) {
    if (fontStyle == Gdiplus::FontStyleRegular) {
        switch (points) {
            case 18:
                return *font18;
            case 12:
                return *font12;
            case 10:
                return *font10;
            case 8:
                return *font8;
            default:
                break;
        }
    }
    const auto found =
        m_fonts.try_emplace({points, fontStyle}, kFontFamily, static_cast<float>(points * m_dpi) / 72.0f,
                            fontStyle, Gdiplus::UnitPixel);
    return found.first->second;
}

UniqueFont CTheme::MakeFont(int points, bool bold, bool italic, bool underline) const {
    NONCLIENTMETRICSA metrics = {};
    metrics.cbSize = sizeof metrics;
    if (!::SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0)) {
        // Windows before Vista knows the structure without its last member.
        metrics.cbSize = sizeof metrics - sizeof metrics.iPaddedBorderWidth;
        ::SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0);
    }
    LOGFONTA& font = metrics.lfMessageFont;
    const int systemDpi = SystemDpi();
    if (points != -1) {
        font.lfHeight = -::MulDiv(points, m_dpi, 72);
    } else if (m_dpi != systemDpi) {
        font.lfHeight = ::MulDiv(font.lfHeight, m_dpi, systemDpi);
    }
    font.lfWidth = 0;
    font.lfWeight = bold ? FW_BOLD : FW_NORMAL;
    font.lfItalic = italic;
    font.lfUnderline = underline;
    return UniqueFont(::CreateFontIndirectA(&font));
}

// Where a second line has no room, a text that could break would be cut off behind a whole word, without a
// sign.
std::wstring CTheme::PrepareText(Gdiplus::Graphics& g, std::string_view content, const Gdiplus::RectF& area,
                                 const TextStyle& style, Gdiplus::StringFormat& format) {
    const Gdiplus::Font& font = FontOf(style.points, style.fontStyle);
    const bool oneLine = style.singleLine || area.Height < 2 * font.GetHeight(static_cast<float>(m_dpi));
    if (oneLine) content = content.substr(0, content.find_first_of("\r\n"));
    format.SetTrimming(Gdiplus::StringTrimmingEllipsisCharacter);
    // A line that is a little higher than a control shall show all the same.
    format.SetFormatFlags((style.singleLine ? 0 : Gdiplus::StringFormatFlagsLineLimit) |
                          (oneLine ? Gdiplus::StringFormatFlagsNoWrap : 0));
    format.SetAlignment(style.horizontal);
    format.SetLineAlignment(style.vertical);
    format.SetHotkeyPrefix(style.hotkey);
    g.SetTextRenderingHint(HintFor(style.points, style.fontStyle));
    std::wstring wide = WideText(content, kLongestText);
    if (oneLine) TrimToWidth(g, wide, font, area.Width, format);
    return wide;
}

void CTheme::DrawText(Gdiplus::Graphics& g, std::string_view content, const Gdiplus::RectF& area,
                      const TextStyle& style) {
    if (content.empty() || area.Width <= 0 || area.Height <= 0) return;
    Gdiplus::StringFormat format;
    const std::wstring wide = PrepareText(g, content, area, style, format);
    const Gdiplus::SolidBrush brush(style.color);
    const Gdiplus::Font& font = FontOf(style.points, style.fontStyle);
    const Gdiplus::RectF room = RoomForLine(area, style, font.GetHeight(static_cast<float>(m_dpi)));
    g.DrawString(wide.c_str(), static_cast<int>(wide.size()), &font, room, &format, &brush);
}

void CTheme::DrawOutlinedText(Gdiplus::Graphics& g, std::string_view content, const Gdiplus::RectF& area,
                              const TextStyle& style, const Gdiplus::Color& outline, float width) {
    if (content.empty() || area.Width <= 0 || area.Height <= 0) return;
    Gdiplus::StringFormat format;
    const std::wstring wide = PrepareText(g, content, area, style, format);
    const Gdiplus::FontFamily family(kFontFamily);
    Gdiplus::GraphicsPath path;
    const float size = static_cast<float>(style.points * m_dpi) / 72.0f;
    const Gdiplus::Font& font = FontOf(style.points, style.fontStyle);
    const Gdiplus::RectF room = RoomForLine(area, style, font.GetHeight(static_cast<float>(m_dpi)));
    path.AddString(wide.c_str(), static_cast<int>(wide.size()), &family, style.fontStyle, size, room,
                   &format);
    Gdiplus::Pen pen(outline, width);
    // The points of letters would stick out as needles.
    pen.SetLineJoin(Gdiplus::LineJoinRound);
    g.DrawPath(&pen, &path);
    const Gdiplus::SolidBrush brush(style.color);
    g.FillPath(&brush, &path);
}

SIZE CTheme::MeasureText(std::string_view content, int points, int fontStyle, int width) {
    const std::wstring wide = WideText(content, kLongestText);
    const HDC screen = ::GetDC(nullptr);
    Gdiplus::RectF bounds;
    {
        Gdiplus::Graphics g(screen);
        g.SetTextRenderingHint(HintFor(points, fontStyle));
        const Gdiplus::StringFormat format;
        // A layout size of 0 is one without a bound.
        const Gdiplus::SizeF limit(static_cast<float>(width), 0);
        Gdiplus::SizeF size;
        if (g.MeasureString(wide.c_str(), static_cast<int>(wide.size()), &FontOf(points, fontStyle), limit,
                            &format, &size) == Gdiplus::Ok) {
            bounds.Width = size.Width;
            bounds.Height = size.Height;
        }
    }
    ::ReleaseDC(nullptr, screen);
    return {static_cast<LONG>(std::ceil(bounds.Width)), static_cast<LONG>(std::ceil(bounds.Height))};
}

std::wstring WideText(std::string_view text, std::size_t limit) {
    // No encoding has more than four bytes for what is one character here.
    if (limit < text.size() / 4) text = text.substr(0, limit * 4);
    const int length = static_cast<int>(text.size());
    if (length <= 0) return {};
    std::wstring wide(text.size(), L'\0');
    const int wideLength = ::MultiByteToWideChar(CP_ACP, 0, text.data(), length, wide.data(), length);
    wide.resize(std::min(static_cast<std::size_t>(std::max(wideLength, 0)), limit));
    return wide;
}
