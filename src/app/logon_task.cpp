#include "app/logon_task.h"

#include <string>

#include "app/resources.h"
#include "app/task_scheduler.h"
#include "resources/ids.h"
#include "system/system_facts.h"

namespace {

void AddLogonTask(CTaskScheduler& scheduler, const std::string& product, const std::string& name) {
    const std::string program = ModulePath(nullptr);
    const std::string folder = program.substr(0, program.rfind('\\'));
    // kept: nothing reads the parameter.
    if (!scheduler.CreateTask(program, name, folder, "Runs " + product + " at startup.", "\\st")) return;
    TASK_TRIGGER trigger = {};
    trigger.cbTriggerSize = sizeof trigger;
    // Any day that has passed.
    trigger.wBeginYear = 2006;
    trigger.wBeginMonth = 1;
    trigger.wBeginDay = 1;
    trigger.TriggerType = TASK_EVENT_TRIGGER_AT_LOGON;
    scheduler.AddTrigger(&trigger, name);
}

}  // namespace

void SetLaunchOnLogon(bool on) {
    CTaskScheduler scheduler;
    const std::string product = ResourceText(IDS_PRODUCT);
    const std::string name = CTaskScheduler::LogonTaskName(product);
    const bool exists = scheduler.TaskExists(name);
    if (on && !exists) AddLogonTask(scheduler, product, name);
    if (!on && exists) scheduler.DeleteTask(name);
}

bool IsLaunchOnLogon() {
    return CTaskScheduler().TaskExists(CTaskScheduler::LogonTaskName(ResourceText(IDS_PRODUCT)));
}
