#include <gtest/gtest.h>
#include <windows.h>

#include <cstdlib>
#include <cwchar>
#include <map>
#include <memory>
#include <set>
#include <thread>

#include "app/logon_task.h"
#include "app/resources.h"
#include "app/scan_task.h"
#include "app/scheduler_com.h"
#include "app/task_scheduler.h"
#include "app/trigger_text.h"
#include "support/method_patch.h"
#include "system/system_facts.h"

namespace {

TASK_TRIGGER WeeklyAt(WORD hour) {
    TASK_TRIGGER trigger = WeeklyScanTrigger({2026, 11, 0, 22, 0, 0, 0, 0}, 0);
    trigger.wStartHour = hour;
    trigger.Type.Weekly.rgfDaysOfTheWeek = TASK_THURSDAY;
    return trigger;
}

TEST(ScanTrigger, StartsBetweenHalfPastTwoAndHalfPastThree) {
    std::set<int> minutes;
    for (const int random : {0, 29, 30, 59, 60 + 29, RAND_MAX}) {
        const TASK_TRIGGER trigger = WeeklyScanTrigger({2026, 2, 0, 28, 0, 0, 0, 0}, random);
        EXPECT_EQ(trigger.wStartMinute, random % 60);
        minutes.insert(trigger.wStartHour * 60 + trigger.wStartMinute);
        EXPECT_EQ(TriggerText(trigger).substr(9), "every Mon, Fri of every week, starting 2/28/2026");
    }
    EXPECT_EQ(*minutes.begin(), 2 * 60 + 30);
    EXPECT_EQ(*minutes.rbegin(), 3 * 60 + 29);
}

TEST(TriggerText, TellsEachKindAsWindowsDoes) {
    const auto text = [](TASK_TRIGGER_TYPE type, TRIGGER_TYPE_UNION parts) {
        TASK_TRIGGER trigger = WeeklyAt(5);
        trigger.TriggerType = type;
        trigger.Type = parts;
        return TriggerText(trigger);
    };
    EXPECT_EQ(text(TASK_TIME_TRIGGER_WEEKLY, {.Weekly = {2, TASK_SUNDAY | TASK_SATURDAY}}),
              "At 05:00 every Sun, Sat of every 2 weeks, starting 11/22/2026");
    EXPECT_EQ(text(TASK_TIME_TRIGGER_ONCE, {}), "At 05:00 on 11/22/2026");
    EXPECT_EQ(text(TASK_TIME_TRIGGER_DAILY, {.Daily = {1}}), "At 05:00 every day, starting 11/22/2026");
    EXPECT_EQ(
        text(TASK_TIME_TRIGGER_MONTHLYDATE, {.MonthlyDate = {0x40000001, TASK_JANUARY | TASK_DECEMBER}}),
        "At 05:00 on day 1, 31 of Jan, Dec, starting 11/22/2026");
    EXPECT_EQ(text(TASK_TIME_TRIGGER_MONTHLYDOW, {.MonthlyDOW = {TASK_LAST_WEEK, TASK_MONDAY, 0xFFF}}),
              "At 05:00 on the last Mon of every month, starting 11/22/2026");
    EXPECT_EQ(text(TASK_EVENT_TRIGGER_ON_IDLE, {}), "Run when idle");
    EXPECT_EQ(text(TASK_EVENT_TRIGGER_AT_SYSTEMSTART, {}), "Run at system startup");
    EXPECT_EQ(text(TASK_EVENT_TRIGGER_AT_LOGON, {}), "Run at user logon");
}

std::string Read(ITask& task, HRESULT (WINAPI ITask::*read)(LPWSTR*)) {
    wchar_t* text = nullptr;
    (task.*read)(&text);
    return TakeText(text);
}

// The system's own scheduler, with no job of ours in it before and after.
class Scheduler : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(LoadResources());
        DeleteAll();
    }
    void TearDown() override { DeleteAll(); }

    static std::vector<std::string> Jobs() {
        std::vector<std::string> jobs;
        EXPECT_TRUE(CTaskScheduler().EnumTasks("Velvane", jobs));
        return jobs;
    }
    // Now and then Wine holds on to a job for a moment, and does not delete it.
    static void DeleteAll() {
        for (int tries = 0; tries < 200 && !Jobs().empty(); ++tries) {
            DeleteTasks();
            ::SwitchToThread();
        }
        EXPECT_EQ(Jobs(), std::vector<std::string>());
    }
    UniqueReference<ITask> Open(const std::string& job) const {
        IUnknown* raw = nullptr;
        EXPECT_EQ(session->Activate(SchedulerText(job), IID_ITask, &raw), S_OK) << job;
        return TakeReference<ITask>(raw);
    }

    const SchedulerSession session;
};

TEST_F(Scheduler, TakesPathsAsTheyAre) {
    const std::string folder = "C:\\Pro & Co's 100%TEMP%\\\xC3\x84\xD0\x96\xE6\x97\xA5";
    const std::string name = "Velvane \xC3\x84";
    ASSERT_TRUE(CTaskScheduler().CreateTask(folder + "\\a b.exe", name, folder, "c", "--autoscan"));
    EXPECT_EQ(Jobs(), std::vector<std::string>{name + ".job"});
    const auto task = Open(name);
    EXPECT_EQ(Read(*task, &ITask::GetApplicationName), folder + "\\a b.exe");
    EXPECT_EQ(Read(*task, &ITask::GetWorkingDirectory), folder);
}

TEST_F(Scheduler, ChangesTriggersByTheirIndex) {
    CTaskScheduler scheduler;
    std::vector<std::string> texts{"old"};
    EXPECT_EQ(scheduler.GetTriggerCount("Velvane none"), -1);
    EXPECT_FALSE(scheduler.TaskExists({})) << "no job is the current one";
    ASSERT_EQ(EnsureOwnScanTask(scheduler), CTaskScheduler::kTaskCreated);
    EXPECT_EQ(scheduler.GetTriggerCount({}), 0);
    EXPECT_FALSE(scheduler.GetTriggerStrings({}, texts));
    EXPECT_TRUE(texts.empty());

    const TASK_TRIGGER early = WeeklyAt(5);
    const TASK_TRIGGER late = WeeklyAt(17);
    EXPECT_TRUE(scheduler.AddTrigger(&early, {}));
    EXPECT_TRUE(scheduler.AddTrigger(&late, scheduler.taskName + ".job"));
    TASK_TRIGGER read;
    EXPECT_FALSE(scheduler.GetTrigger(read, 2, {}));
    ASSERT_TRUE(scheduler.GetTrigger(read, 1, {}));
    EXPECT_EQ(read.wStartHour, 17);
    read.Type.Weekly.rgfDaysOfTheWeek = TASK_SUNDAY;
    EXPECT_TRUE(scheduler.SetTrigger(read, 0, {}));
    EXPECT_TRUE(scheduler.DeleteTrigger(1, {}));
    EXPECT_TRUE(scheduler.GetTriggerStrings({}, texts));
    EXPECT_EQ(texts, std::vector<std::string>{"At 17:00 every Sun of every week, starting 11/22/2026"});
    EXPECT_TRUE(scheduler.DeleteTrigger(0, {}));
    EXPECT_EQ(scheduler.GetTriggerCount({}), 0);
}

// Wine opens a job by methods that are to fail after it.
ITask* g_opened = nullptr;
HRESULT WINAPI GiveOpened(ITaskScheduler*, LPCWSTR, REFIID, IUnknown** task) {
    g_opened->AddRef();
    *task = g_opened;
    return S_OK;
}

// A step that fails leaves its result and a line, and nothing behind it is done.
TEST_F(Scheduler, EndsAtTheStepThatFails) {
    ASSERT_TRUE(CTaskScheduler().CreateTask("C:\\v.exe", "Velvane old", "C:", "c", "p"));
    CTaskScheduler scheduler;
    const TASK_TRIGGER weekly = WeeklyAt(5);
    const auto add = [&] { return scheduler.AddTrigger(&weekly, "Velvane old"); };
    const auto create = [&] { return scheduler.CreateTask("C:\\v.exe", "Velvane new", "C:", "c", "p"); };
    const auto line = [&](auto operation, auto* object, auto method) {
        const MethodPatch patch(object, method, &FailMethod<E_ACCESSDENIED>);
        testing::internal::CaptureStdout();
        EXPECT_FALSE(operation());
        EXPECT_EQ(scheduler.lastResult, E_ACCESSDENIED);
        return testing::internal::GetCapturedStdout();
    };
    const auto task = Open("Velvane old");
    const std::string denied = "error = 0x80070005\n";
    ITaskScheduler* const system = session.operator->();
    EXPECT_EQ(line(add, system, &ITaskScheduler::Activate),
              "Failed calling ITaskScheduler::Activate: " + denied);
    EXPECT_EQ(line(create, task.get(), &ITask::SetComment), "Failed calling NewWorkItem, " + denied)
        << "kept: the line names another step";
    EXPECT_EQ(Jobs(), std::vector<std::string>{"Velvane old.job"});
    g_opened = task.get();
    const MethodPatch opens(system, &ITaskScheduler::Activate, &GiveOpened);
    EXPECT_EQ(line(add, task.get(), &ITask::CreateTrigger), "Failed calling ITask::CreatTrigger: " + denied)
        << "kept: the letter that is missing";
    const MethodPatch patch(task.get(), &ITask::SetParameters, &FailMethod<E_ACCESSDENIED>);
    EXPECT_TRUE(create()) << "kept: of the settings only the comment counts";
}

TEST_F(Scheduler, LeavesComOpenAfterTheTriggerTexts) {
    HRESULT opened = E_FAIL;
    std::thread([&] {
        std::vector<std::string> texts;
        CTaskScheduler().GetTriggerStrings("none", texts);
        opened = ::CoInitialize(nullptr);
    }).join();
    EXPECT_EQ(opened, S_FALSE) << "kept";
}

// By the names of the jobs' files. Windows keeps them, Wine does not.
std::map<std::string, std::wstring> g_accounts;

std::wstring& AccountOf(IScheduledWorkItem* task) {
    void* file = nullptr;
    task->QueryInterface(IID_IPersistFile, &file);
    const UniqueReference<IPersistFile> owner(static_cast<IPersistFile*>(file));
    wchar_t* path = nullptr;
    owner->GetCurFile(&path);
    const std::string text = TakeText(path);
    return g_accounts[text.substr(text.rfind('\\') + 1)];
}

HRESULT WINAPI SetAccount(IScheduledWorkItem* task, LPCWSTR name, LPCWSTR password) {
    AccountOf(task) = std::wstring(L"PC\\") + name;
    return password == nullptr ? S_OK : E_INVALIDARG;
}

HRESULT WINAPI GetAccount(IScheduledWorkItem* task, LPWSTR* name) {
    const std::wstring& account = AccountOf(task);
    *name = static_cast<wchar_t*>(::CoTaskMemAlloc((account.size() + 1) * sizeof(wchar_t)));
    std::wcscpy(*name, account.c_str());
    return S_OK;
}

class Accounts : public Scheduler {
  protected:
    void SetUp() override {
        Scheduler::SetUp();
        g_accounts.clear();
        IUnknown* raw = nullptr;
        ASSERT_EQ(session->NewWorkItem(L"never saved", CLSID_CTask, IID_ITask, &raw), S_OK);
        m_task = TakeReference<ITask>(raw);
        m_set = std::make_unique<MethodPatch>(m_task.get(), &ITask::SetAccountInformation, &SetAccount);
        m_get = std::make_unique<MethodPatch>(m_task.get(), &ITask::GetAccountInformation, &GetAccount);
    }
    static void MakeJob(const std::string& name, const wchar_t* account) {
        EXPECT_TRUE(CTaskScheduler().CreateTask("C:\\v.exe", name, "C:", "c", "p"));
        g_accounts[name + ".job"] = account;
    }

  private:
    UniqueReference<ITask> m_task;
    std::unique_ptr<MethodPatch> m_set, m_get;
};

TEST_F(Accounts, EachHasAScanJobOfItsOwn) {
    MakeJob("Velvane Startup", L"PC\\ann");
    MakeJob("Velvane_{1}", L"PC\\Ann");
    MakeJob("Velvane_{2}", L"PC\\bob");
    CTaskScheduler scheduler;
    const auto ensure = [&](const char* user) {
        return int{scheduler.EnsureScanTask("Velvane", user, "PC", "C:\\v.exe", "C:", "c", "--x")};
    };
    EXPECT_EQ(ensure("bob"), 1);
    EXPECT_EQ(scheduler.taskName, "Velvane_{2}.job");
    EXPECT_TRUE(scheduler.TaskExists({}));
    EXPECT_EQ(Jobs().size(), 3u);
    EXPECT_EQ(ensure("ann"), 2) << "neither the logon job nor another's";
    const std::string created = scheduler.taskName;
    EXPECT_EQ(created.substr(0, 9), "Velvane_{");
    EXPECT_EQ(ensure("carl"), 2);
    EXPECT_NE(scheduler.taskName, created);
    EXPECT_EQ(Jobs().size(), 5u);
    const MethodPatch patch(session.operator->(), &ITaskScheduler::Enum, &FailMethod<E_ACCESSDENIED>);
    EXPECT_EQ(ensure("bob"), 2) << "what cannot be looked for is made";
    const MethodPatch second(session.operator->(), &ITaskScheduler::NewWorkItem, &FailMethod<E_ACCESSDENIED>);
    EXPECT_EQ(ensure("bob"), 0);
    EXPECT_FALSE(scheduler.TaskExists({})) << "the name that was tried";
}

TEST_F(Accounts, ScheduleOnceAndDeleteJobsOfBothKinds) {
    std::string user;
    std::string domain;
    ASSERT_TRUE(CTaskScheduler::GetCurrentAccount(user, domain));
    AddScanTask();
    ASSERT_EQ(Jobs().size(), 1u);
    const std::string job = Jobs()[0];
    EXPECT_EQ(g_accounts[job].substr(3), std::wstring(user.begin(), user.end()));
    g_accounts[job].replace(0, 2, std::wstring(domain.begin(), domain.end()));
    AddScanTask();
    EXPECT_EQ(Jobs(), std::vector<std::string>{job});
    CTaskScheduler scheduler;
    std::vector<std::string> texts;
    EXPECT_TRUE(scheduler.GetTriggerStrings(job, texts));
    ASSERT_EQ(texts.size(), 1u);
    EXPECT_NE(texts[0].find("every Mon, Fri of every week"), std::string::npos) << texts[0];
    const auto scan = Open(job.substr(0, job.size() - 4));
    EXPECT_EQ(Read(*scan, &ITask::GetApplicationName), ProgramFolder() + "scheduler_tests.exe");
    EXPECT_EQ(Read(*scan, &ITask::GetWorkingDirectory) + "\\", ProgramFolder());
    EXPECT_EQ(Read(*scan, &ITask::GetParameters), "--autoscan");
    EXPECT_EQ(Read(*scan, &ITask::GetComment), "Velvane");
    DWORD flags = 0;
    scan->GetFlags(&flags);
    EXPECT_EQ(flags & TASK_FLAG_RUN_ONLY_IF_LOGGED_ON, DWORD{TASK_FLAG_RUN_ONLY_IF_LOGGED_ON});

    EXPECT_FALSE(IsLaunchOnLogon());
    SetLaunchOnLogon(true);
    SetLaunchOnLogon(true);
    EXPECT_TRUE(IsLaunchOnLogon());
    EXPECT_TRUE(scheduler.GetTriggerStrings("Velvane Startup", texts));
    EXPECT_EQ(texts, std::vector<std::string>{"Run at user logon"});
    const auto logon = Open("Velvane Startup");
    EXPECT_EQ(Read(*logon, &ITask::GetParameters), "\\st");
    EXPECT_EQ(Read(*logon, &ITask::GetComment), "Runs Velvane at startup.");
    DeleteAll();
    EXPECT_FALSE(IsLaunchOnLogon());
}

}  // namespace
