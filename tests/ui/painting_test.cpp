#include <gtest/gtest.h>

#include "ui/window/painting.h"
#include "ui/window/window_impl.h"

namespace {

constexpr COLORREF kInk = RGB(10, 200, 30);
constexpr COLORREF kPaper = RGB(1, 2, 3);

// Paints its paper and one pixel of ink at (20, 10), in client coordinates.
class CPaintedWindow : public CWindowImpl<CPaintedWindow>, public CDoubleBufferImpl<CPaintedWindow> {
  public:
    BEGIN_MSG_MAP(CPaintedWindow)
        CHAIN_MSG_MAP(CDoubleBufferImpl<CPaintedWindow>)
    END_MSG_MAP()

    void DoPaint(HDC dc) {
        ++m_paints;
        ::GetClipBox(dc, &m_painted);
        const UniqueBrush paper(::CreateSolidBrush(kPaper));
        const RECT client = GetClientRect();
        ::FillRect(dc, &client, paper.get());
        ::SetPixel(dc, 20, 10, kInk);
    }
    int m_paints = 0;
    RECT m_painted = {};
};

TEST(Painting, DoubleBufferPaintsInClientCoordinates) {
    const RECT place = {0, 0, 50, 40};
    CPaintedWindow window;
    ASSERT_NE(window.Create(nullptr, &place, nullptr, WS_POPUP | WS_VISIBLE), nullptr);
    window.UpdateWindow();
    EXPECT_GT(window.m_paints, 0);
    const RECT part = {15, 5, 30, 25};
    window.InvalidateRect(part);
    window.UpdateWindow();
    EXPECT_TRUE(::EqualRect(&window.m_painted, &part)) << "what has to be painted is the clip box";
    EXPECT_FALSE(::GetUpdateRect(window, nullptr, FALSE));
    EXPECT_EQ(window.Send(WM_ERASEBKGND), 1);

    const CClientDC screen(nullptr);
    CMemoryDC picture(screen, place);
    window.Send(WM_PRINTCLIENT, reinterpret_cast<WPARAM>(picture.m_hDC), PRF_CLIENT);
    EXPECT_EQ(::GetPixel(picture, 20, 10), kInk);
    EXPECT_EQ(::GetPixel(picture, 49, 39), kPaper);
    window.DestroyWindow();
}

TEST(Painting, MemoryContextPutsItsAreaInPlace) {
    const CClientDC screen(nullptr);
    const RECT all = {0, 0, 30, 30};
    CMemoryDC target(screen, all);
    ::PatBlt(target, 0, 0, 30, 30, BLACKNESS);
    {
        const CMemoryDC part(target, RECT{10, 10, 20, 20});
        ::PatBlt(part, 0, 0, 30, 30, WHITENESS);
        ::SetPixel(part, 12, 13, kInk);
        ::SetViewportOrgEx(part, 3, 3, nullptr);  // a painter that leaves the origin elsewhere
    }
    EXPECT_EQ(::GetPixel(target, 12, 13), kInk);
    EXPECT_EQ(::GetPixel(target, 19, 19), RGB(255, 255, 255));
    EXPECT_EQ(::GetPixel(target, 9, 10), RGB(0, 0, 0));
    EXPECT_EQ(::GetPixel(target, 20, 20), RGB(0, 0, 0));
}

}  // namespace
