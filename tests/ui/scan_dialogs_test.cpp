#include <gtest/gtest.h>

#include <cstring>
#include <functional>

#include "app/resources.h"
#include "ui/scan_screen.h"
#include "ui/screens/dlg_confirm.h"
#include "ui/screens/message_box_with_check.h"

namespace {

// What the user does with the next dialog that comes up.
std::function<void(HWND)> g_act;

void CALLBACK Act(HWND, UINT, UINT_PTR timer, DWORD) {
    const HWND dialog = ::GetActiveWindow();
    char name[16] = "";
    ::GetClassNameA(dialog, name, sizeof name);
    if (std::strcmp(name, "#32770") != 0) return;  // it is not up yet
    ::KillTimer(nullptr, timer);
    std::exchange(g_act, nullptr)(dialog);
}

void WithNextDialog(std::function<void(HWND)> act) {
    g_act = std::move(act);
    ::SetTimer(nullptr, 0, 10, Act);
}

void Press(HWND dialog, int id) {
    ::SendMessageA(::GetDlgItem(dialog, id), BM_CLICK, 0, 0);
}

constexpr int kCheckBox = 3001;

// --- the word

TEST(ConfirmDialog, WantsTheWordLetterByLetter) {
    const ScanScreen screen;
    const std::string word = ResourceText(IDS_CONFIRM_WORD);
    std::string cutText, message;
    std::vector<bool> enabled;
    HWND focus = nullptr, field = nullptr;
    WithNextDialog([&](HWND dialog) {
        const CWindow ok(::GetDlgItem(dialog, IDOK));
        field = ::GetDlgItem(dialog, IDC_CONFIRM_WORD);
        focus = ::GetFocus();
        message = CWindow(::GetDlgItem(dialog, IDC_CONFIRM_MESSAGE)).Text();
        enabled.push_back(ok.IsWindowEnabled());
        for (const std::string& text : {std::string("delete"), word, word.substr(1)}) {
            ::SetWindowTextA(field, text.c_str());
            enabled.push_back(ok.IsWindowEnabled());
        }
        ::SetWindowTextA(field, "");
        for (const char letter : word + "X") ::SendMessageA(field, WM_CHAR, letter, 0);
        cutText = CWindow(field).Text();
        Press(dialog, IDOK);
    });
    EXPECT_EQ(CDlgConfirm(IDS_CONFIRM_RESTRICTED).DoModal(screen), IDOK);
    EXPECT_EQ(enabled, (std::vector<bool>{false, false, true, false}));
    EXPECT_EQ(cutText, word) << "the field takes no more letters than the word has";
    EXPECT_EQ(message, ResourceText(IDS_CONFIRM_RESTRICTED));
    EXPECT_EQ(focus, field);

    WithNextDialog([](HWND dialog) {
        ::SendMessageA(dialog, WM_COMMAND, IDOK, 0);  // Enter, before the word is there
        Press(dialog, IDCANCEL);
    });
    EXPECT_EQ(CDlgConfirm(IDS_CONFIRM_RESTRICTED).DoModal(screen), IDCANCEL);
}

// --- the question that can be silenced

int AskYesNo(HWND owner, tagCHECKED_MESSAGE& record, const char* label, std::function<void(HWND)> act) {
    std::strcpy(record.label, label);
    WithNextDialog(std::move(act));
    return MessageBoxWithCheck(owner, "Go on?", "Question", MB_YESNO, record);
}

TEST(QuestionWithCheck, KeepsTheTickWhateverTheAnswer) {
    const ScanScreen screen;
    tagCHECKED_MESSAGE record;
    EXPECT_EQ(AskYesNo(screen, record, "&Never again",
                       [](HWND box) {
                           Press(box, kCheckBox);
                           Press(box, IDNO);
                       }),
              IDNO);
    EXPECT_EQ(record.checked, 1);
    EXPECT_EQ(AskYesNo(screen, record, "&Never again",
                       [](HWND box) {
                           EXPECT_EQ(::SendDlgItemMessageA(box, kCheckBox, BM_GETCHECK, 0, 0), BST_CHECKED);
                           Press(box, kCheckBox);
                           Press(box, IDYES);
                       }),
              IDYES);
    EXPECT_EQ(record.checked, 0);
}

}  // namespace
