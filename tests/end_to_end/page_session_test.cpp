#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "app/scheduler_com.h"
#include "app/task_scheduler.h"
#include "app/trigger_text.h"
#include "end_to_end/session.h"
#include "resources/ids.h"
#include "system/handles.h"

// The pages of the settings, the schedule and what the program is: what they change counts in the next
// session, in the scheduler, and in what the scheduler starts.

namespace {

using Lines = std::vector<std::string>;

class PageSession : public Session {
  protected:
    PageSession() { EXPECT_TRUE(DeleteJobs()); }
    ~PageSession() override {
        run.reset();
        DeleteJobs();
    }

    static Lines Jobs() {
        Lines jobs;
        CTaskScheduler().EnumTasks("Velvane", jobs);
        return jobs;
    }
    // The scheduler of Wine now and then holds a job's file a moment longer.
    static bool DeleteJobs() {
        return Await([] {
            for (const std::string& job : Jobs()) CTaskScheduler().DeleteTask(job);
            return Jobs().empty();
        });
    }

    // Ready when the definitions are listed.
    bool OpenSettings() const { return hand->OpenPage(kSettingsPage, IDC_SETTINGS_RESET); }
    // The category of the files: the first stroke selects it, the second turns its mark.
    void TurnFirstRow() const {
        for (int stroke = 0; stroke < 2; ++stroke) Send(IDC_SETTINGS_TREE, WM_KEYDOWN, VK_SPACE, 1);
    }
    // From another page.
    void Scan() const {
        ASSERT_TRUE(hand->OpenPage(kScanPage, IDC_SCAN_START));
        ASSERT_TRUE(hand->Press(IDC_SCAN_START));
    }
    LRESULT Send(int control, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
        return ::SendMessageA(hand->Control(control), message, wParam, lParam);
    }
    bool IsTicked(int control) const { return Send(control, BM_GETCHECK) == BST_CHECKED; }
};

TEST_F(PageSession, WhatIsSetCountsInTheNextSession) {
    Start();
    ASSERT_TRUE(OpenSettings());
    TurnFirstRow();
    Send(IDC_SETTINGS_CLEANMODE, WM_KEYDOWN, VK_END, 1);
    Send(IDC_SETTINGS_AUTOCLEAN, BM_CLICK);
    EXPECT_EQ(Close(), 1u);

    Start();
    ASSERT_TRUE(OpenSettings());
    EXPECT_EQ(Send(IDC_SETTINGS_CLEANMODE, CB_GETCURSEL), 3);
    EXPECT_TRUE(IsTicked(IDC_SETTINGS_AUTOCLEAN));
    EXPECT_FALSE(IsTicked(IDC_SETTINGS_LOGON));
    ASSERT_NO_FATAL_FAILURE(Scan());
    ASSERT_NE(hand->Control(IDC_SCAN_FINISH), nullptr) << "it cleans by itself";
    EXPECT_EQ(FilesLeft(), 20);
    EXPECT_FALSE(ValueIsThere());
    // A row that is shown without its mark gets it.
    ASSERT_TRUE(OpenSettings());
    TurnFirstRow();
    ASSERT_NO_FATAL_FAILURE(Scan());
    ASSERT_NE(hand->Control(IDC_SCAN_FINISH), nullptr);
    EXPECT_EQ(FilesLeft(), 0);
    EXPECT_EQ(Close(), 1u);
}

TEST_F(PageSession, AResetBringsBackWhatItCameWith) {
    Start();
    ASSERT_TRUE(OpenSettings());
    TurnFirstRow();
    Send(IDC_SETTINGS_CLEANMODE, WM_KEYDOWN, VK_END, 1);
    Send(IDC_SETTINGS_AUTOCLEAN, BM_CLICK);
    ASSERT_TRUE(hand->Press(IDC_SETTINGS_RESET));
    ASSERT_TRUE(hand->Answer(IDOK));
    EXPECT_TRUE(Await([&] { return Send(IDC_SETTINGS_CLEANMODE, CB_GETCURSEL) == 0; }));
    EXPECT_TRUE(Await([&] { return IsTicked(IDC_SETTINGS_LOGON); }));
    EXPECT_FALSE(IsTicked(IDC_SETTINGS_AUTOCLEAN));
    const Lines jobs = Jobs();
    EXPECT_EQ(std::count(jobs.begin(), jobs.end(), "Velvane Startup.job"), 1);
    EXPECT_EQ(Close(), 1u);

    Start();
    ASSERT_TRUE(hand->Press(IDC_SCAN_START));
    ASSERT_TRUE(hand->Press(IDC_SCAN_CLEAN));
    ASSERT_TRUE(hand->Answer(IDYES)) << "it asks again";
    ASSERT_NE(hand->Control(IDC_SCAN_FINISH), nullptr);
    EXPECT_EQ(FilesLeft(), 0);
    EXPECT_FALSE(ValueIsThere());
    EXPECT_EQ(Close(), 1u);
}

// What the scheduler starts for a job.
struct Command {
    std::string program, parameters;
};

Command CommandOf(const std::string& job) {
    const SchedulerSession session;
    IUnknown* raw = nullptr;
    session->Activate(SchedulerText(job.substr(0, job.rfind('.'))), IID_ITask, &raw);
    const UniqueReference<ITask> task = TakeReference<ITask>(raw);
    wchar_t *program = nullptr, *parameters = nullptr;
    if (task == nullptr || FAILED(task->GetApplicationName(&program)) ||
        FAILED(task->GetParameters(&parameters))) {
        throw std::runtime_error("the scheduler does not tell of " + job);
    }
    return {TakeText(program), TakeText(parameters)};
}

class ScheduleSession : public PageSession {
  protected:
    Lines Shown() const { return hand->LinesOf(IDC_SCHEDULE_LIST); }
    // Presses a button, works its dialog and waits for this to be shown.
    void PressAndAnswer(int button, const std::function<void(HWND dialog)>& act, const std::string& shown) {
        ASSERT_TRUE(hand->Press(button));
        const HWND dialog = hand->Dialog();
        act(dialog);
        ASSERT_TRUE(::PostMessageA(::GetDlgItem(dialog, IDOK), BM_CLICK, 0, 0));
        EXPECT_TRUE(Await([&] { return Shown() == Lines{shown}; })) << shown;
    }
    static void Choose(HWND dialog, int box, WPARAM line) {
        ::SendMessageA(::GetDlgItem(dialog, box), CB_SETCURSEL, line, 0);
    }
};

TEST_F(ScheduleSession, WhatIsScheduledIsWhatTheSchedulerStarts) {
    Start();
    ASSERT_TRUE(hand->OpenPage(kSchedulePage, IDC_SCHEDULE_ADD));
    EXPECT_EQ(Shown(), Lines{"No scan is scheduled."});
    ASSERT_EQ(Jobs().size(), 1u);
    const std::string job = Jobs()[0];
    SYSTEMTIME now;
    ::GetLocalTime(&now);
    const std::string today =
        std::to_string(now.wMonth) + "/" + std::to_string(now.wDay) + "/" + std::to_string(now.wYear);
    ASSERT_NO_FATAL_FAILURE(PressAndAnswer(
        IDC_SCHEDULE_ADD, [](HWND dialog) { Choose(dialog, IDC_SCHEDULE_HOUR, 6); },
        "At 06:00 every Thu of every week, starting " + today));

    // Of another day now, which the dialog does not show.
    TASK_TRIGGER trigger = {};
    ASSERT_TRUE(CTaskScheduler().GetTrigger(trigger, 0, job));
    trigger.wBeginYear = 2020;
    trigger.wBeginMonth = 2;
    trigger.wBeginDay = 29;
    ASSERT_TRUE(CTaskScheduler().SetTrigger(trigger, 0, job));
    const auto edit = [](HWND dialog) {
        EXPECT_EQ(::SendMessageA(::GetDlgItem(dialog, IDC_SCHEDULE_HOUR), CB_GETCURSEL, 0, 0), 6);
        Choose(dialog, IDC_SCHEDULE_MINUTE, 45);
        ::SendMessageA(::GetDlgItem(dialog, IDC_SCHEDULE_SUNDAY), BM_CLICK, 0, 0);
    };
    const std::string edited = "At 06:45 every Sun, Thu of every week, starting 2/29/2020";
    ASSERT_NO_FATAL_FAILURE(PressAndAnswer(IDC_SCHEDULE_EDIT, edit, edited));
    ASSERT_TRUE(CTaskScheduler().GetTrigger(trigger, 0, job));
    EXPECT_EQ(TriggerText(trigger), edited) << "in the scheduler's own store";
    ASSERT_TRUE(hand->Press(IDC_SCHEDULE_DELETE));
    EXPECT_TRUE(Await([&] { return Shown() == Lines{"No scan is scheduled."}; }));
    Lines stored;
    CTaskScheduler().GetTriggerStrings(job, stored);
    EXPECT_EQ(stored, Lines());
    EXPECT_EQ(Close(), 1u);

    const Command command = CommandOf(job);
    EXPECT_EQ(command.program, BuiltProgram());
    Start(command.parameters, command.program);
    EXPECT_NE(hand->Control(IDC_SCAN_CLEAN), nullptr) << "it scans by itself";
    EXPECT_EQ(Close(), 1u);
}

TEST_F(PageSession, AboutTellsTheVersionsOfTheFiles) {
    char block[4096];
    VS_FIXEDFILEINFO* version = nullptr;
    UINT size = 0;
    ASSERT_TRUE(::GetFileVersionInfoA(BuiltProgram().c_str(), 0, sizeof block, block));
    ASSERT_TRUE(::VerQueryValueA(block, "\\", reinterpret_cast<void**>(&version), &size));
    Start();
    ASSERT_TRUE(hand->OpenPage(kAboutPage, IDC_ABOUT_UPDATE));
    EXPECT_EQ(hand->TextOf(IDC_ABOUT_VERSION), std::to_string(HIWORD(version->dwProductVersionMS)) + "." +
                                                   std::to_string(LOWORD(version->dwProductVersionMS)) + "." +
                                                   std::to_string(HIWORD(version->dwProductVersionLS)));
    EXPECT_EQ(hand->TextOf(IDC_ABOUT_DEFINITIONS), "7");
    EXPECT_EQ(Close(), 1u);
}

}  // namespace
