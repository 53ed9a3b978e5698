#pragma once

#include <string>
#include <vector>

#include "ui/screens/nav_layout.h"
#include "ui/theme/picture.h"
#include "ui/theme/theme.h"
#include "ui/window/accessible.h"
#include "ui/window/message_map.h"
#include "ui/window/window.h"

// A page of the navigation.
struct NavEntry {
    std::string title;
    ThemeImage image;  // may be missing
    HWND window = nullptr;
    int page = 0;          // the number of the page's dialog; kept: nothing reads it
    int selectedSub = -1;  // of subEntries
    std::vector<NavEntry> subEntries;
};

// The frame of the main window: it draws the caption, the window pictures and the column of pages itself,
// says what the mouse hits in it, and shows one page at a time. The part of CThemeNavWnd that knows nothing
// of the dialog's class. Made while the theme is started. Main thread.
class CNavFrame : public CAccessibleParts {
  public:
    // The new entry's place, from 0. Its window is not owned and may come later.
    int AddEntry(NavEntry entry);
    // The window of an entry that has none yet; it takes the entry's title.
    void SetEntryWindow(int index, HWND window);

    // Shows a page in place of the one before and gives it the focus. -1 stands for the current entry or
    // sub-entry; an index that does not exist does nothing.
    void SelectPage(int index, int subIndex);
    int CurrentPage() const { return m_page; }

    // Whether a click on an entry does something, and whether one on the close picture does.
    void SetNavEnabled(bool enabled);
    void SetCloseAllowed(bool allowed);
    bool IsNavEnabled() const { return m_enabled; }
    bool IsCloseAllowed() const { return m_closeAllowed; }

    // CAccessibleParts, in nav_access.cpp: the entries, the current one's sub-entries, and the caption's
    // parts.
    LONG WindowRole() const override;
    LONG PartCount() const override;
    AccessiblePart DescribePart(LONG part) const override;
    LONG PartAt(POINT client) const override;
    LONG SelectedPart() const override { return m_page + 1; }
    void PressPart(LONG part) override;
    bool SelectPart(LONG part, bool focus) override;

  protected:
    CNavFrame();
    ~CNavFrame() = default;

    // The pictures that the constructor loads.
    static std::vector<std::string> CaptionPictures();

    virtual CWindow NavWindow() const = 0;
    // Before a page takes the place of the current one, which may be the same.
    virtual void OnPageSelect(int index, int subIndex, HWND window) = 0;

    // The window's text, set in WM_INITDIALOG.
    void SetNavTitle(std::string title) { m_title = std::move(title); }
    // The next or the last page, in a circle, if the entries can be clicked.
    void StepPage(int step);

    LRESULT OnNavEraseBackground(UINT, WPARAM, LPARAM, BOOL&) { return 1; }
    LRESULT OnNavPaint(UINT, WPARAM, LPARAM, BOOL&);
    LRESULT OnNavSize(UINT, WPARAM wParam, LPARAM lParam, BOOL&);
    LRESULT OnNavLButtonDown(UINT, WPARAM, LPARAM lParam, BOOL&);
    LRESULT OnNavLButtonUp(UINT, WPARAM, LPARAM lParam, BOOL&);
    LRESULT OnNavHitTest(UINT, WPARAM, LPARAM lParam, BOOL&);
    LRESULT OnNavInitDialog(UINT, WPARAM, LPARAM, BOOL&);
    LRESULT OnNavGetMinMaxInfo(UINT, WPARAM, LPARAM lParam, BOOL&);
    LRESULT OnNavCalcSize(UINT, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnNavNcPaint(UINT, WPARAM, LPARAM, BOOL&) { return 0; }
    LRESULT OnNavNcActivate(UINT, WPARAM, LPARAM, BOOL&) { return TRUE; }
    LRESULT OnNavMouseMove(UINT, WPARAM, LPARAM lParam, BOOL& handled);
    LRESULT OnNavMouseLeave(UINT message, WPARAM, LPARAM, BOOL& handled);
    LRESULT OnNavNcMouseMove(UINT, WPARAM wParam, LPARAM, BOOL& handled);
    LRESULT OnNavSetCursor(UINT, WPARAM, LPARAM lParam, BOOL& handled);
    LRESULT OnNavDisplayChange(UINT, WPARAM, LPARAM, BOOL& handled);

  private:
    // What is under the mouse: an entry, or one of the caption's parts by its hit-test code.
    struct Hot {
        int entry = -1;
        int subEntry = -1;
        LRESULT caption = HTNOWHERE;
        bool operator==(const Hot&) const = default;
    };

    // nav_wnd.cpp
    SIZE ClientSize() const;
    SIZE FrameSize() const;
    bool HasFrame() const;
    void Layout();
    void LoadPictures();
    void ApplyRegion() const;
    const NavEntry* Current() const;
    int EntryCount() const { return static_cast<int>(m_entries.size()); }
    int SubEntryCount() const;
    LRESULT HitTestAt(POINT client) const;
    Hot HotAt(POINT client) const;
    void SetHot(const Hot& hot, DWORD track);

    // nav_access.cpp
    AccessiblePart DescribeEntry(const NavEntry& entry, const RECT& place, bool selected) const;
    AccessiblePart DescribeCaption(int index) const;
    RECT CaptionPlace(int index) const;
    void TellReaders(DWORD event, LONG part) const;
    void TellEntriesChanged() const;
    void TellCloseChanged() const;

    // nav_paint.cpp
    // Once, before the first paint; again after a change of the display.
    void LoadBackground();
    void Paint(HDC dc, const RECT& dirty) const;
    void PaintBackground(HDC dc, const RECT& dirty) const;
    void PaintCaption(Gdiplus::Graphics& g) const;
    void PaintWindowPicture(Gdiplus::Graphics& g, Gdiplus::Bitmap* image, const RECT& place, LRESULT code,
                            float opacity) const;
    void PaintEntry(Gdiplus::Graphics& g, const NavEntry& entry, const RECT& place, bool selected, bool hot,
                    int icon) const;
    void PaintPanels(Gdiplus::Graphics& g) const;
    void PaintHeader(Gdiplus::Graphics& g) const;
    Gdiplus::Color OnBackground() const;

    NavMetrics m_metrics;
    NavLayout m_layout = {};
    NavCaption m_caption = {};
    std::string m_title;
    std::vector<NavEntry> m_entries;
    int m_page = -1;
    bool m_enabled = true;
    bool m_closeAllowed = true;
    POINT m_pressed = {-1, -1};
    Hot m_hot;
    SIZE m_minimumTrack = {};
    DWORD m_systemMajor = 0;  // of the version of Windows

    bool m_backgroundLoaded = false;
    UniqueBitmap m_background;  // as much of the picture as any screen shows
    SIZE m_backgroundSize = {};
    UniqueBrush m_backgroundRest;  // what the picture ends in
    ThemeImage m_titleImage;
    ThemeImage m_closeImage;
    ThemeImage m_maximiseImage;
    ThemeImage m_minimiseImage;
    std::string m_helpText;
    int m_helpPoints = 10;
    SIZE m_helpSize = {};
};

// The frame as a part of the dialog T, which derives from it besides CDialogImpl<T>, implements OnPageSelect
// and ends its map by CHAIN_MSG_MAP(CThemeNavWnd<T>).
template <class T>
class CThemeNavWnd : public CNavFrame {
  public:
    BEGIN_MSG_MAP(CThemeNavWnd)
        MESSAGE_HANDLER(WM_ERASEBKGND, OnNavEraseBackground)
        MESSAGE_HANDLER(WM_PAINT, OnNavPaint)
        MESSAGE_HANDLER(WM_SIZE, OnNavSize)
        MESSAGE_HANDLER(WM_LBUTTONDOWN, OnNavLButtonDown)
        MESSAGE_HANDLER(WM_LBUTTONUP, OnNavLButtonUp)
        MESSAGE_HANDLER(WM_NCHITTEST, OnNavHitTest)
        MESSAGE_HANDLER(WM_INITDIALOG, OnNavInitDialog)
        MESSAGE_HANDLER(WM_GETMINMAXINFO, OnNavGetMinMaxInfo)
        // What keeps the system from drawing a frame, and shows what the mouse is over.
        MESSAGE_HANDLER(WM_NCCALCSIZE, OnNavCalcSize)
        MESSAGE_HANDLER(WM_NCPAINT, OnNavNcPaint)
        MESSAGE_HANDLER(WM_NCACTIVATE, OnNavNcActivate)
        MESSAGE_HANDLER(WM_MOUSEMOVE, OnNavMouseMove)
        MESSAGE_HANDLER(WM_MOUSELEAVE, OnNavMouseLeave)
        MESSAGE_HANDLER(WM_NCMOUSEMOVE, OnNavNcMouseMove)
        MESSAGE_HANDLER(WM_NCMOUSELEAVE, OnNavMouseLeave)
        MESSAGE_HANDLER(WM_SETCURSOR, OnNavSetCursor)
        MESSAGE_HANDLER(WM_DISPLAYCHANGE, OnNavDisplayChange)
        CHAIN_MSG_MAP(CAccessibleParts)
    END_MSG_MAP()

  protected:
    ~CThemeNavWnd() = default;

  private:
    CWindow NavWindow() const override { return CWindow(static_cast<const T*>(this)->m_hWnd); }
};
