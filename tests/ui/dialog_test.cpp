#include <gtest/gtest.h>

#include "ui/probe.h"

namespace {

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

}  // namespace
