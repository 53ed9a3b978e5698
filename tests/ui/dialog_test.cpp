#include <gtest/gtest.h>

#include <vector>

#include "ui/dialog_ids.h"
#include "ui/window/controls.h"
#include "ui/window/dialog_impl.h"
#include "ui/window/dialog_resize.h"

namespace {

constexpr UINT kAsk = WM_APP + 1;

LONG WidthOf(const RECT& rect) {
    return rect.right - rect.left;
}
LONG HeightOf(const RECT& rect) {
    return rect.bottom - rect.top;
}

// --- modal ---

// A dialog that opens itself again inside of itself, `depth` times, and ends with what came of it.
class CNestedDialog : public CDialogImpl<CNestedDialog> {
  public:
    enum { IDD = IDD_TEST };
    BEGIN_MSG_MAP(CNestedDialog)
        MESSAGE_HANDLER(WM_INITDIALOG, OnInitDialog)
        MESSAGE_HANDLER(kAsk, OnGoOn)
        COMMAND_ID_HANDLER(IDOK, OnOk)
    END_MSG_MAP()

    bool m_hadControls = false;
    bool m_ownerWasDisabled = true;

  private:
    LRESULT OnInitDialog(UINT, WPARAM, LPARAM depth, BOOL&) {
        m_depth = depth;
        m_inner = 0;
        m_hadControls = GetDlgItem(IDC_TEST_EDIT).IsWindow();
        Post(kAsk);
        return TRUE;
    }
    LRESULT OnGoOn(UINT, WPARAM, LPARAM, BOOL&) {
        const HWND owner = ::GetWindow(m_hWnd, GW_OWNER);
        m_ownerWasDisabled = owner == nullptr || !::IsWindowEnabled(owner);
        if (m_depth > 0) {
            CNestedDialog inner;
            m_inner = inner.DoModal(m_hWnd, m_depth - 1);
            m_ownerWasDisabled = m_ownerWasDisabled && inner.m_ownerWasDisabled;
            EXPECT_EQ(inner.m_hWnd, nullptr);
        }
        GetDlgItem(IDOK).Send(BM_CLICK);
        return 0;
    }
    LRESULT OnOk(WORD, WORD, HWND, BOOL&) {
        EndDialog(m_inner * 10 + m_depth + 1);
        return 0;
    }
    LPARAM m_depth = 0;
    INT_PTR m_inner = 0;
};

TEST(Dialogs, ModalWithinModalWithinModal) {
    CNestedDialog dialog;
    EXPECT_EQ(dialog.DoModal(nullptr, 2), 123);
    EXPECT_EQ(dialog.m_hWnd, nullptr);
    EXPECT_TRUE(dialog.m_hadControls);
    EXPECT_TRUE(dialog.m_ownerWasDisabled);
    EXPECT_EQ(dialog.DoModal(nullptr, 0), 1) << "the object serves again";
}

class CNoSuchDialog : public CDialogImpl<CNoSuchDialog> {
  public:
    enum { IDD = 9999 };
    BEGIN_MSG_MAP(CNoSuchDialog)
    END_MSG_MAP()
};

TEST(Dialogs, MissingTemplateLeavesNothingBehind) {
    CNoSuchDialog dialog;
    EXPECT_EQ(dialog.Create(nullptr), nullptr);
    EXPECT_EQ(dialog.DoModal(nullptr), -1);
    EXPECT_EQ(dialog.m_hWnd, nullptr);
}

// --- modeless, with a page and rules for its size ---

class CPage : public CDialogImpl<CPage> {
  public:
    enum { IDD = IDD_TEST_PAGE };
    BEGIN_MSG_MAP(CPage)
        MESSAGE_HANDLER(WM_CTLCOLORSTATIC, OnColor)
        MESSAGE_HANDLER(kAsk, OnAsk)
    END_MSG_MAP()
    bool* m_deleted = nullptr;  // if set, the object is of the heap and deletes itself at the end

  private:
    LRESULT OnColor(UINT, WPARAM, LPARAM, BOOL&) { return 4711; }
    LRESULT OnAsk(UINT, WPARAM, LPARAM, BOOL&) { return 0x12345; }
    void OnFinalMessage(HWND) override {
        if (m_deleted == nullptr) return;
        *m_deleted = true;
        delete this;
    }
};

class CResizingDialog : public CDialogImpl<CResizingDialog>, public CDialogResize<CResizingDialog> {
  public:
    enum { IDD = IDD_TEST };
    BEGIN_MSG_MAP(CResizingDialog)
        MESSAGE_HANDLER(WM_INITDIALOG, OnInitDialog)
        MESSAGE_HANDLER(kAsk, OnDestroy)
        CHAIN_MSG_MAP(CDialogResize<CResizingDialog>)
    END_MSG_MAP()
    BEGIN_DLGRESIZE_MAP(CResizingDialog)
        DLGRESIZE_CONTROL(IDC_TEST_EDIT, DLSZ_SIZE_X | DLSZ_SIZE_Y | DLSZ_REPAINT)
        BEGIN_DLGRESIZE_GROUP()
            DLGRESIZE_CONTROL(IDOK, DLSZ_SIZE_X)
            DLGRESIZE_CONTROL(IDCANCEL, DLSZ_SIZE_X)
        END_DLGRESIZE_GROUP()
        DLGRESIZE_CONTROL(4711, DLSZ_MOVE_X)
    END_DLGRESIZE_MAP()

    explicit CResizingDialog(bool gripper) : m_gripper(gripper) {}

  private:
    LRESULT OnInitDialog(UINT, WPARAM, LPARAM, BOOL&) {
        DlgResize_Init(m_gripper, m_gripper);
        return TRUE;
    }
    LRESULT OnDestroy(UINT, WPARAM, LPARAM, BOOL&) {
        DestroyWindow();
        return 5;
    }
    bool m_gripper;
};

TEST(Dialogs, PageAnswersLikeAnyWindowAndDiesInEitherOrder) {
    CResizingDialog dialog(false);
    ASSERT_NE(dialog.Create(nullptr), nullptr);
    bool deleted = false;
    auto* const page = new CPage;
    page->m_deleted = &deleted;
    const HWND pageWindow = page->Create(dialog);
    EXPECT_EQ(::GetParent(pageWindow), dialog.m_hWnd);
    EXPECT_EQ(page->Create(dialog), nullptr) << "it has a window";
    EXPECT_EQ(page->Send(kAsk), 0x12345);
    EXPECT_EQ(page->Send(WM_CTLCOLORSTATIC), 4711);
    HWND orphan = nullptr;
    {
        CPage shortLived;
        orphan = shortLived.Create(dialog);
    }
    EXPECT_TRUE(::IsWindow(orphan));
    EXPECT_EQ(::SendMessageA(orphan, kAsk, 0, 0), 0);

    EXPECT_EQ(dialog.Send(kAsk), 5) << "destroyed by its own handler";
    EXPECT_EQ(dialog.m_hWnd, nullptr);
    EXPECT_TRUE(deleted);
    EXPECT_FALSE(::IsWindow(pageWindow));
    EXPECT_FALSE(::IsWindow(orphan));
}

TEST(Resizing, RulesOfOneControl) {
    const RECT start = {10, 20, 50, 40};
    const RECT group = {10, 20, 110, 120};
    const struct {
        const char* name;
        DWORD flags;
        SIZE growth;
        const RECT* group;
        RECT place;
    } kCases[] = {
        {"without a rule it stays", 0, {30, 40}, nullptr, {10, 20, 50, 40}},
        {"it grows in width", DLSZ_SIZE_X, {30, 40}, nullptr, {10, 20, 80, 40}},
        {"it keeps to the bottom right", DLSZ_MOVE_X | DLSZ_MOVE_Y, {30, 40}, nullptr, {40, 60, 80, 80}},
        {"the two directions mix", DLSZ_SIZE_X | DLSZ_MOVE_Y, {30, 40}, nullptr, {10, 60, 80, 80}},
        {"a smaller dialog takes it along", DLSZ_MOVE_X | DLSZ_SIZE_Y, {-5, -8}, nullptr, {5, 20, 45, 32}},
        {"in a group it takes its share", DLSZ_SIZE_X, {50, 0}, &group, {10, 20, 70, 40}},
        {"in a group it moves by its place", DLSZ_MOVE_Y, {0, 50}, &group, {10, 20, 50, 40}},
    };
    for (const auto& row : kCases) {
        const RECT place = ResizedControl(start, row.flags, row.growth, row.group);
        EXPECT_TRUE(::EqualRect(&place, &row.place)) << row.name << ": " << place.left << ' ' << place.top
                                                     << ' ' << place.right << ' ' << place.bottom;
    }
    const RECT second = {60, 70, 110, 120};
    const RECT moved = ResizedControl(second, DLSZ_MOVE_X | DLSZ_SIZE_Y, SIZE{50, 50}, &group);
    const RECT expected = {85, 95, 135, 170};
    EXPECT_TRUE(::EqualRect(&moved, &expected));
}

TEST(Resizing, ControlsFollowTheDialogThereAndBack) {
    CResizingDialog dialog(false);
    ASSERT_NE(dialog.Create(nullptr), nullptr);
    EXPECT_TRUE((dialog.GetStyle() & WS_CLIPCHILDREN) != 0);
    const RECT whole = dialog.GetWindowRect();
    const RECT edit = dialog.GetRectOf(dialog.GetDlgItem(IDC_TEST_EDIT));
    const RECT ok = dialog.GetRectOf(dialog.GetDlgItem(IDOK));
    const RECT cancel = dialog.GetRectOf(dialog.GetDlgItem(IDCANCEL));
    const auto resize = [&](LONG x, LONG y) {
        dialog.SetWindowPos(nullptr, 0, 0, WidthOf(whole) + x, HeightOf(whole) + y,
                            SWP_NOMOVE | SWP_NOZORDER);
    };
    resize(90, 60);
    const RECT wideEdit = dialog.GetRectOf(dialog.GetDlgItem(IDC_TEST_EDIT));
    EXPECT_EQ(WidthOf(wideEdit), WidthOf(edit) + 90);
    EXPECT_EQ(HeightOf(wideEdit), HeightOf(edit) + 60);
    const RECT wideOk = dialog.GetRectOf(dialog.GetDlgItem(IDOK));
    const RECT wideCancel = dialog.GetRectOf(dialog.GetDlgItem(IDCANCEL));
    EXPECT_EQ(wideOk.left, ok.left);
    EXPECT_GT(WidthOf(wideOk), WidthOf(ok));
    EXPECT_EQ(wideCancel.right, cancel.right + 90) << "the two share all of it";
    EXPECT_EQ(wideOk.top, ok.top);
    resize(-33, -17);
    resize(0, 0);
    const RECT back = dialog.GetRectOf(dialog.GetDlgItem(IDC_TEST_EDIT));
    EXPECT_TRUE(::EqualRect(&back, &edit));
    dialog.DestroyWindow();
}

TEST(Resizing, GripperAndMinimumSizeAreAsked) {
    for (const bool asked : {false, true}) {
        CResizingDialog dialog(asked);
        ASSERT_NE(dialog.Create(nullptr), nullptr);
        MINMAXINFO limits = {};
        dialog.Send(WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&limits));
        EXPECT_EQ(limits.ptMinTrackSize.x, asked ? WidthOf(dialog.GetWindowRect()) : 0);
        const HWND gripper = ::FindWindowExA(dialog, nullptr, "SCROLLBAR", nullptr);
        EXPECT_EQ(gripper != nullptr, asked);
        if (gripper != nullptr) {
            EXPECT_EQ(dialog.GetRectOf(gripper).right, dialog.GetClientRect().right);
        }
        dialog.DestroyWindow();
    }
}

}  // namespace
