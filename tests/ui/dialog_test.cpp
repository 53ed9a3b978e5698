#include <gtest/gtest.h>

#include "ui/probe.h"
#include "ui/window/dialog_resize.h"

namespace {

LONG WidthOf(const RECT& rect) {
    return rect.right - rect.left;
}
LONG HeightOf(const RECT& rect) {
    return rect.bottom - rect.top;
}

// Opens a dialog that opens the next one inside of itself, `depth` times, and ends with what came of it.
INT_PTR RunNested(HWND owner, int depth, bool& owned) {
    CProbeDialog<IDD_TEST> dialog;
    INT_PTR inner = 0;
    dialog.m_handler = [&](UINT message, WPARAM wParam, LPARAM, LRESULT& result) {
        if (message == WM_INITDIALOG) result = dialog.Post(WM_APP);
        if (message == WM_APP) {
            owned = owned && (owner == nullptr || !::IsWindowEnabled(owner));
            if (depth > 0) inner = RunNested(dialog, depth - 1, owned);
            dialog.GetDlgItem(IDOK).Send(BM_CLICK);
        }
        if (message == WM_COMMAND && wParam == IDOK) dialog.EndDialog(inner * 10 + depth + 1);
        return message == WM_INITDIALOG;
    };
    const INT_PTR answer = dialog.DoModal(owner);
    EXPECT_EQ(dialog.m_hWnd, nullptr);
    return answer;
}

TEST(Dialogs, ModalWithinModalWithinModal) {
    bool owned = true;
    EXPECT_EQ(RunNested(nullptr, 2, owned), 123);
    EXPECT_TRUE(owned) << "each disables the one that it lies over";
    CProbeDialog<9999> missing;
    EXPECT_EQ(missing.DoModal(nullptr), -1);
    EXPECT_EQ(missing.Create(nullptr), nullptr);
}

TEST(Dialogs, PageAnswersLikeAnyWindowAndDiesWithItsParent) {
    CProbeDialog<IDD_TEST> dialog;
    ASSERT_NE(dialog.Create(nullptr), nullptr);
    dialog.m_handler = [&](UINT message, WPARAM, LPARAM, LRESULT& result) {
        if (message != WM_APP) return FALSE;
        dialog.DestroyWindow();
        result = 5;
        return TRUE;
    };
    bool deleted = false;
    auto* const page = new CProbeDialog<IDD_TEST_PAGE>;
    page->AnswerBy(0x12345);
    page->m_atEnd = [&] {
        deleted = true;
        delete page;
    };
    const HWND pageWindow = page->Create(dialog);
    EXPECT_EQ(::GetParent(pageWindow), dialog.m_hWnd);
    EXPECT_EQ(page->Send(WM_APP), 0x12345);
    EXPECT_EQ(dialog.Send(WM_APP), 5) << "destroyed by its own handler";
    EXPECT_EQ(dialog.m_hWnd, nullptr);
    EXPECT_TRUE(deleted);
    EXPECT_FALSE(::IsWindow(pageWindow));
}

class CResizingDialog : public CDialogImpl<CResizingDialog>, public CDialogResize<CResizingDialog> {
  public:
    enum { IDD = IDD_TEST };
    BEGIN_MSG_MAP(CResizingDialog)
        MESSAGE_HANDLER(WM_INITDIALOG, OnInitDialog)
        CHAIN_MSG_MAP(CDialogResize<CResizingDialog>)
    END_MSG_MAP()
    BEGIN_DLGRESIZE_MAP(CResizingDialog)
        DLGRESIZE_CONTROL(IDC_TEST_EDIT, DLSZ_SIZE_X | DLSZ_SIZE_Y | DLSZ_REPAINT)
        BEGIN_DLGRESIZE_GROUP()
            DLGRESIZE_CONTROL(IDOK, DLSZ_SIZE_X)
            DLGRESIZE_CONTROL(IDCANCEL, DLSZ_SIZE_X)
        END_DLGRESIZE_GROUP()
    END_DLGRESIZE_MAP()

    bool m_gripper = true;

  private:
    LRESULT OnInitDialog(UINT, WPARAM, LPARAM, BOOL&) {
        DlgResize_Init(m_gripper, m_gripper);
        return TRUE;
    }
};

TEST(Resizing, ControlsFollowTheDialogThereAndBack) {
    CResizingDialog dialog;
    ASSERT_NE(dialog.Create(nullptr), nullptr);
    const RECT whole = dialog.GetWindowRect();
    const auto minimum = [&] {
        MINMAXINFO limits = {};
        dialog.Send(WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&limits));
        return limits.ptMinTrackSize.x;
    };
    EXPECT_EQ(minimum(), WidthOf(whole));
    EXPECT_NE(::FindWindowExA(dialog, nullptr, "SCROLLBAR", nullptr), nullptr);
    const auto place = [&](int id) { return dialog.GetRectOf(dialog.GetDlgItem(id)); };
    const RECT edit = place(IDC_TEST_EDIT);
    const RECT ok = place(IDOK);
    const RECT cancel = place(IDCANCEL);
    const auto resize = [&](LONG x, LONG y) {
        dialog.SetWindowPos(nullptr, 0, 0, WidthOf(whole) + x, HeightOf(whole) + y,
                            SWP_NOMOVE | SWP_NOZORDER);
    };
    resize(90, 60);
    EXPECT_EQ(WidthOf(place(IDC_TEST_EDIT)), WidthOf(edit) + 90);
    EXPECT_EQ(HeightOf(place(IDC_TEST_EDIT)), HeightOf(edit) + 60);
    EXPECT_EQ(place(IDOK).left, ok.left);
    EXPECT_GT(WidthOf(place(IDOK)), WidthOf(ok));
    EXPECT_EQ(place(IDCANCEL).right, cancel.right + 90) << "the two share all of it";
    resize(-33, -17);
    resize(0, 0);
    const RECT back = place(IDC_TEST_EDIT);
    EXPECT_TRUE(::EqualRect(&back, &edit));
    dialog.DestroyWindow();

    dialog.m_gripper = false;
    ASSERT_NE(dialog.Create(nullptr), nullptr);
    EXPECT_EQ(minimum(), 0);
    EXPECT_EQ(::FindWindowExA(dialog, nullptr, "SCROLLBAR", nullptr), nullptr);
    dialog.DestroyWindow();
}

}  // namespace
