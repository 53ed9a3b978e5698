#include "app/scan_task.h"

#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

#include "app/resources.h"
#include "resources/ids.h"
#include "system/system_facts.h"

CTaskScheduler::EnsureResult EnsureOwnScanTask(CTaskScheduler& scheduler) {
    std::string user;
    std::string domain;
    CTaskScheduler::GetCurrentAccount(user, domain);
    const std::string product = ResourceText(IDS_PRODUCT);
    const std::string program = ModulePath(nullptr);
    const std::string folder = program.substr(0, program.rfind('\\'));
    return scheduler.EnsureScanTask(product, user, domain, program, folder, product, "--autoscan");
}

void AddScanTask() {
    CTaskScheduler scheduler;
    if (EnsureOwnScanTask(scheduler) != CTaskScheduler::kTaskCreated) return;
    SYSTEMTIME today;
    ::GetLocalTime(&today);
    std::srand(static_cast<unsigned int>(std::time(nullptr)));
    const TASK_TRIGGER trigger = WeeklyScanTrigger(today, std::rand());
    scheduler.AddTrigger(&trigger, {});
}

TASK_TRIGGER WeeklyScanTrigger(const SYSTEMTIME& date, int random) {
    TASK_TRIGGER trigger = {};
    trigger.cbTriggerSize = sizeof trigger;
    trigger.wBeginYear = date.wYear;
    trigger.wBeginMonth = date.wMonth;
    trigger.wBeginDay = date.wDay;
    trigger.wStartMinute = static_cast<WORD>(random % 60);
    trigger.wStartHour = trigger.wStartMinute < 30 ? 3 : 2;
    trigger.TriggerType = TASK_TIME_TRIGGER_WEEKLY;
    trigger.Type.Weekly.WeeksInterval = 1;
    trigger.Type.Weekly.rgfDaysOfTheWeek = TASK_MONDAY | TASK_FRIDAY;
    return trigger;
}

void DeleteTasks() {
    CTaskScheduler scheduler;
    std::vector<std::string> jobs;
    scheduler.EnumTasks(ResourceText(IDS_PRODUCT), jobs);
    for (const std::string& job : jobs) scheduler.DeleteTask(job);
}
