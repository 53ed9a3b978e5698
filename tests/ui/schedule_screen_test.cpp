#include <gtest/gtest.h>

#include "support/api_hook.h"
#include "ui/screen_host.h"
#include "ui/screens/dlg_schedule.h"
#include "ui/screens/dlg_schedule_options.h"

namespace {

using Lines = std::vector<std::string>;

TASK_TRIGGER TriggerOf(WORD days, WORD hour) {
    TASK_TRIGGER trigger = NewTrigger({2020, 2, 0, 29, 0, 0, 0, 0});
    trigger.TriggerType = TASK_TIME_TRIGGER_WEEKLY;
    trigger.Type.Weekly = {1, days};
    trigger.wStartHour = hour;
    trigger.MinutesDuration = 60;
    trigger.MinutesInterval = 10;
    return trigger;
}

TEST(ScheduleRules, DaysAreBitsAndTheSelectionStaysInTheList) {
    for (int day = 0; day < 7; ++day) {
        WeekDays days = {};
        days[static_cast<std::size_t>(day)] = true;
        EXPECT_EQ(BitsOf(days), 1 << day);
        EXPECT_EQ(DaysOf(static_cast<WORD>(1 << day)), days);
    }
    EXPECT_EQ(SelectionAfterDelete(0, 3), 0);
    EXPECT_EQ(SelectionAfterDelete(2, 3), 1);
    EXPECT_EQ(SelectionAfterDelete(0, 1), -1);
}

class Schedule : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(Jobs().size(), 1u) << "opening the page makes the job";
        m_job = Jobs()[0];
    }
    // What the scheduler itself holds.
    Lines Stored() const {
        Lines texts;
        CTaskScheduler().GetTriggerStrings(m_job, texts);
        return texts;
    }
    void Store(const TASK_TRIGGER& trigger) { EXPECT_TRUE(CTaskScheduler().AddTrigger(&trigger, m_job)); }
    Lines Shown() const {
        Lines lines;
        const CListBox list(host.Item(IDC_SCHEDULE_LIST));
        for (int index = 0; index < list.GetCount(); ++index) lines.push_back(list.Line(index));
        return lines;
    }
    // The selected line; -1 without one, when nothing can be edited or deleted.
    int Selected() const {
        const int index = CListBox(host.Item(IDC_SCHEDULE_LIST)).GetCurSel();
        for (const int id : {IDC_SCHEDULE_EDIT, IDC_SCHEDULE_DELETE})
            EXPECT_EQ(host.Item(id).IsWindowEnabled(), index >= 0);
        return index;
    }
    // Presses a button and answers its dialog, with another hour.
    void PressAndAnswer(int id, int hour, int answer = IDOK) {
        host.OnNextDialog([hour, answer](CWindow dialog) {
            CComboBox(dialog.GetDlgItem(IDC_SCHEDULE_HOUR)).SetCurSel(hour);
            Press(dialog, answer);
        });
        Press(host.page, id);
    }

    ScreenHost<CDlgSchedule> host;
    std::string m_job;
};

TEST_F(Schedule, AddsEditsAndDeletesInTheSchedulersStore) {
    const Lines none = {"No scan is scheduled."};
    EXPECT_EQ(Shown(), none);
    CListBox(host.Item(IDC_SCHEDULE_LIST)).SetCurSel(0);
    host.page.Send(WM_COMMAND, MAKEWPARAM(IDC_SCHEDULE_LIST, LBN_SELCHANGE));
    EXPECT_EQ(Selected(), -1) << "that line is none to select";
    PressAndAnswer(IDC_SCHEDULE_ADD, 6, IDCANCEL);
    EXPECT_EQ(Stored(), Lines{});
    PressAndAnswer(IDC_SCHEDULE_ADD, 6);
    SYSTEMTIME now;
    ::GetLocalTime(&now);
    const Lines first = {"At 06:00 every Thu of every week, starting " + std::to_string(now.wMonth) + "/" +
                         std::to_string(now.wDay) + "/" + std::to_string(now.wYear)};
    EXPECT_EQ(Stored(), first);
    EXPECT_EQ(Shown(), first);
    EXPECT_EQ(Selected(), 0);

    Store(TriggerOf(TASK_SUNDAY | TASK_SATURDAY, 8));
    PressAndAnswer(IDC_SCHEDULE_ADD, 7);
    EXPECT_EQ(Selected(), 1) << "kept: the count before, though another has come from elsewhere";
    PressAndAnswer(IDC_SCHEDULE_EDIT, 23);
    EXPECT_EQ(Stored()[1], "At 23:00 every Sun, Sat of every week, starting 2/29/2020");
    EXPECT_EQ(Selected(), 1);
    TASK_TRIGGER edited = {};
    EXPECT_TRUE(CTaskScheduler().GetTrigger(edited, 1, m_job));
    EXPECT_EQ(edited.MinutesInterval, 10u) << "all else of it stays";

    Press(host.page, IDC_SCHEDULE_DELETE);
    EXPECT_EQ(Selected(), 1);
    host.Item(IDC_SCHEDULE_DELETE).SetFocus();
    Press(host.page, IDC_SCHEDULE_DELETE);
    EXPECT_EQ(Selected(), 0);
    EXPECT_EQ(Stored(), first);
    Press(host.page, IDC_SCHEDULE_DELETE);
    EXPECT_EQ(Stored(), Lines{});
    EXPECT_EQ(Shown(), none);
    EXPECT_EQ(Selected(), -1);
    EXPECT_EQ(::GetFocus(), host.Item(IDC_SCHEDULE_ADD).m_hWnd) << "the keyboard is not lost";
}

TEST_F(Schedule, TakesNoMoreThanTen) {
    for (int count = 0; count < 9; ++count) Store(TriggerOf(TASK_MONDAY, 1));
    std::string told;
    auto box = API_HOOK(MessageBoxA);
    box.Replace([&](HWND, LPCSTR message, LPCSTR, UINT) {
        told += message;
        return IDOK;
    });
    PressAndAnswer(IDC_SCHEDULE_ADD, 6);
    EXPECT_EQ(Stored().size(), 10u);
    EXPECT_EQ(told, "");
    Press(host.page, IDC_SCHEDULE_ADD);
    EXPECT_EQ(told, "No more than ten times can be scheduled. Delete one first.");
}

TEST_F(Schedule, OptionsShowATriggerAndRefuseNoDay) {
    CDlgScheduleOptions options;
    options.FillFrom(TriggerOf(TASK_SUNDAY, 24));
    host.OnNextDialog([](CWindow dialog) {
        EXPECT_EQ(dialog.GetDlgItem(IDC_SCHEDULE_HOUR).Text(), "00") << "there is no such hour";
        EXPECT_EQ(CComboBox(dialog.GetDlgItem(IDC_SCHEDULE_MINUTE)).GetCount(), 60);
        Press(dialog, IDC_SCHEDULE_SUNDAY);
        EXPECT_FALSE(dialog.GetDlgItem(IDOK).IsWindowEnabled());
        dialog.Send(WM_COMMAND, IDOK);
        EXPECT_TRUE(dialog.IsWindowVisible()) << "no trigger without a day";
        Press(dialog, IDC_SCHEDULE_SATURDAY);
        EXPECT_TRUE(dialog.GetDlgItem(IDOK).IsWindowEnabled());
        // Enter presses the button that has the keyboard.
        dialog.GetDlgItem(IDCANCEL).SetFocus();
        MSG enter = {dialog.GetDlgItem(IDCANCEL), WM_KEYDOWN, VK_RETURN, 0, 0, {}};
        ::IsDialogMessageA(dialog, &enter);
    });
    EXPECT_EQ(options.DoModal(host), IDCANCEL);
}

}  // namespace
