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
        ::GetClipBox(dc, &m_painted);
        const UniqueBrush paper(::CreateSolidBrush(kPaper));
        const RECT client = GetClientRect();
        ::FillRect(dc, &client, paper.get());
        ::SetPixel(dc, 20, 10, kInk);
    }
    RECT m_painted = {};
};

TEST(Painting, DoubleBufferPaintsInClientCoordinates) {
    const RECT place = {0, 0, 50, 40};
    CPaintedWindow window;
    ASSERT_NE(window.Create(nullptr, &place, nullptr, WS_POPUP | WS_VISIBLE), nullptr);
    window.UpdateWindow();
    const RECT part = {15, 5, 30, 25};
    window.InvalidateRect(part);
    window.UpdateWindow();
    EXPECT_TRUE(::EqualRect(&window.m_painted, &part)) << "what has to be painted is the clip box";
    EXPECT_EQ(window.Send(WM_ERASEBKGND), 1);

    const CClientDC screen(nullptr);
    const CMemoryDC picture(screen, place);
    ::PatBlt(picture, 0, 0, 50, 40, BLACKNESS);
    {
        const CMemoryDC inner(picture, part);
        ::PatBlt(inner, 0, 0, 50, 40, WHITENESS);
        ::SetViewportOrgEx(inner, 3, 3, nullptr);  // a painter that leaves the origin elsewhere
    }
    EXPECT_EQ(::GetPixel(picture, 29, 24), RGB(255, 255, 255)) << "the last pixel of the part";
    EXPECT_EQ(::GetPixel(picture, 30, 25), RGB(0, 0, 0)) << "the first one outside";
    window.Send(WM_PRINTCLIENT, reinterpret_cast<WPARAM>(picture.m_hDC), PRF_CLIENT);
    EXPECT_EQ(::GetPixel(picture, 20, 10), kInk);
    EXPECT_EQ(::GetPixel(picture, 49, 39), kPaper);
    window.DestroyWindow();
}

}  // namespace
