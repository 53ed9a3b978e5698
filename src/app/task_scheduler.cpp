#include "app/task_scheduler.h"

#include <rpc.h>

#include <cstdio>
#include <memory>
#include <string_view>

#include "app/scheduler_com.h"
#include "app/trigger_text.h"

static_assert(sizeof(TASK_TRIGGER) == 48, "the records that the scheduler stores");

namespace {

// Jobs are listed by their files' names. Windows opens them by either name, Wine only without the ending.
std::string OpenName(const std::string& job) {
    constexpr std::string_view kEnding = ".job";
    if (job.size() <= kEnding.size()) return job;
    const std::size_t stem = job.size() - kEnding.size();
    return ::_stricmp(job.c_str() + stem, kEnding.data()) == 0 ? job.substr(0, stem) : job;
}

HRESULT OpenJob(const SchedulerSession& session, const std::string& name, UniqueReference<ITask>& task) {
    IUnknown* raw = nullptr;
    const HRESULT result = session->Activate(SchedulerText(OpenName(name)), IID_ITask, &raw);
    task = TakeReference<ITask>(raw);
    return result;
}

// For the operations that do not ask why: the job, or null.
UniqueReference<ITask> OpenJob(const SchedulerSession& session, const std::string& name) {
    UniqueReference<ITask> task;
    if (session.IsOpen() && FAILED(OpenJob(session, name, task))) task.reset();
    return task;
}

UniqueReference<ITaskTrigger> OpenTrigger(ITask& task, WORD index) {
    ITaskTrigger* raw = nullptr;
    const HRESULT result = task.GetTrigger(index, &raw);
    UniqueReference<ITaskTrigger> trigger(raw);
    if (FAILED(result)) trigger.reset();
    return trigger;
}

// Wine gives a job that was saved without triggers a disabled one, and has no descriptions of triggers, which
// every Windows has.
bool IsPlaceholder(ITaskTrigger& trigger) {
    wchar_t* text = nullptr;
    const HRESULT described = trigger.GetTriggerString(&text);
    TakeText(text);
    TASK_TRIGGER record = {};
    record.cbTriggerSize = sizeof record;
    return described == E_NOTIMPL && SUCCEEDED(trigger.GetTrigger(&record)) &&
           (record.rgFlags & TASK_TRIGGER_FLAG_DISABLED) != 0;
}

// The scheduler's numbers of the job's triggers, in the order of ours, which differ by the placeholders.
HRESULT ListTriggers(ITask& task, std::vector<WORD>& numbers) {
    WORD count = 0;
    const HRESULT result = task.GetTriggerCount(&count);
    for (WORD number = 0; SUCCEEDED(result) && number < count; ++number) {
        const UniqueReference<ITaskTrigger> trigger = OpenTrigger(task, number);
        if (trigger == nullptr || !IsPlaceholder(*trigger)) numbers.push_back(number);
    }
    return result;
}

// The system's own text of a trigger, or ours where it has none.
std::string Describe(ITaskTrigger& trigger) {
    wchar_t* raw = nullptr;
    const HRESULT described = trigger.GetTriggerString(&raw);
    const std::string text = TakeText(raw);
    if (SUCCEEDED(described)) return text;
    TASK_TRIGGER record = {};
    record.cbTriggerSize = sizeof record;
    return SUCCEEDED(trigger.GetTrigger(&record)) ? TriggerText(record) : std::string();
}

// Turns our index of a trigger into the scheduler's number. False if there is no such trigger.
bool FindTrigger(ITask& task, WORD& index) {
    std::vector<WORD> numbers;
    if (FAILED(ListTriggers(task, numbers)) || index >= numbers.size()) return false;
    index = numbers[index];
    return true;
}

// Makes the changes of a job permanent. `failed` is the step that ended it.
enum class SaveStep { kQuery, kSave };
HRESULT SaveJob(ITask& task, SaveStep& failed) {
    void* raw = nullptr;
    failed = SaveStep::kQuery;
    const HRESULT result = task.QueryInterface(IID_IPersistFile, &raw);
    const UniqueReference<IPersistFile> file(static_cast<IPersistFile*>(raw));
    if (FAILED(result)) return result;
    failed = SaveStep::kSave;
    return file->Save(nullptr, TRUE);
}

bool SaveJob(ITask& task) {
    SaveStep failed;
    return SUCCEEDED(SaveJob(task, failed));
}

// Calls `visit` with the name of each job until it returns false. False if they cannot be listed.
template <class Visit>
bool ForEachJob(const SchedulerSession& session, Visit visit) {
    if (!session.IsOpen()) return false;
    IEnumWorkItems* raw = nullptr;
    const HRESULT result = session->Enum(&raw);
    const UniqueReference<IEnumWorkItems> jobs(raw);
    if (FAILED(result) || jobs == nullptr) return false;
    for (bool goesOn = true; goesOn;) {
        LPWSTR* names = nullptr;
        ULONG count = 0;
        const HRESULT next = jobs->Next(1, &names, &count);
        const std::unique_ptr<LPWSTR, TaskMemoryFree> owner(names);
        if (FAILED(next) || count == 0 || names == nullptr) break;
        goesOn = visit(TakeText(names[0]));
    }
    return true;
}

bool Contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

std::string AccountOf(ITask& task) {
    wchar_t* account = nullptr;
    const HRESULT result = task.GetAccountInformation(&account);
    const std::string text = TakeText(account);
    return SUCCEEDED(result) ? text : std::string();
}

// Texts like "{5C3A1B6E-...}", unlike each other.
std::string NewIdentifier() {
    UUID identifier = {};
    ::UuidCreateSequential(&identifier);
    wchar_t text[40] = {};
    const int length = ::StringFromGUID2(identifier, text, static_cast<int>(sizeof text / sizeof text[0]));
    // Hexadecimal digits, braces and dashes, and a terminator that is counted.
    return length > 0 ? std::string(text, text + length - 1) : std::string();
}

std::string CurrentUserName() {
    char name[256] = {};
    DWORD size = sizeof name;
    return ::GetUserNameA(name, &size) ? name : std::string();
}

void PrintFailure(const char* format, HRESULT result) {
    std::printf(format, static_cast<unsigned int>(result));
}

}  // namespace

CTaskScheduler::~CTaskScheduler() = default;

std::string CTaskScheduler::LogonTaskName(const std::string& name) {
    return name + " Startup";
}

CTaskScheduler::EnsureResult CTaskScheduler::EnsureScanTask(
    const std::string& name, const std::string& user, const std::string& domain, const std::string& program,
    const std::string& directory, const std::string& comment, const std::string& parameters) {
    std::string job;
    EnsureResult result = FindScanTask(name, user, domain, job) ? kTaskFound : kTaskFailed;
    if (job.empty()) {
        result = kTaskFailed;
        job = name + "_" + NewIdentifier();
        if (CreateTask(program, job, directory, comment, parameters)) result = kTaskCreated;
    }
    taskName = job;
    return result;
}

bool CTaskScheduler::FindScanTask(const std::string& name, const std::string& user, const std::string& domain,
                                  std::string& job) {
    const std::string account = domain + "\\" + user;
    const std::string logonJob = LogonTaskName(name);
    job.clear();
    const SchedulerSession session;
    return ForEachJob(session, [&](const std::string& candidate) {
        if (Contains(candidate, logonJob) || !Contains(candidate, name)) return true;
        const UniqueReference<ITask> task = OpenJob(session, candidate);
        if (task == nullptr || AccountOf(*task) != account) return true;
        job = candidate;
        return false;
    });
}

bool CTaskScheduler::CreateTask(const std::string& program, const std::string& name,
                                const std::string& directory, const std::string& comment,
                                const std::string& parameters) {
    const SchedulerSession session;
    lastResult = session.Result();
    if (!session.IsOpen()) return false;

    // An empty name would ask for the account of the system.
    const std::string user = CurrentUserName();
    if (user.empty()) return false;
    IUnknown* raw = nullptr;
    lastResult = session->NewWorkItem(SchedulerText(name), CLSID_CTask, IID_ITask, &raw);
    const UniqueReference<ITask> task = TakeReference<ITask>(raw);
    if (FAILED(lastResult)) return false;

    // kept: of these results only the last counts, whatever the others were.
    lastResult = task->SetApplicationName(SchedulerText(program));
    lastResult = task->SetWorkingDirectory(SchedulerText(directory));
    lastResult = task->SetParameters(SchedulerText(parameters));
    lastResult = task->SetFlags(TASK_FLAG_RUN_ONLY_IF_LOGGED_ON);
    lastResult = task->SetAccountInformation(SchedulerText(user), nullptr);
    lastResult = task->SetComment(SchedulerText(comment));
    if (FAILED(lastResult)) {
        // kept: the line names another step.
        PrintFailure("Failed calling NewWorkItem, error = 0x%x\n", lastResult);
        return false;
    }

    SaveStep failed;
    lastResult = SaveJob(*task, failed);
    if (FAILED(lastResult)) {
        PrintFailure(failed == SaveStep::kQuery ? "Failed calling QueryInterface, error = 0x%x\n"
                                                : "Failed calling Save, error = 0x%x\n",
                     lastResult);
    }
    return SUCCEEDED(lastResult);
}

bool CTaskScheduler::DeleteTask(const std::string& name) {
    const SchedulerSession session;
    lastResult = session.Result();
    if (!session.IsOpen()) return false;
    lastResult = session->Delete(SchedulerText(OpenName(NameOrCurrent(name))));
    return lastResult == S_OK;
}

bool CTaskScheduler::TaskExists(const std::string& name) {
    const SchedulerSession session;
    lastResult = session.Result();
    if (!session.IsOpen()) return false;
    UniqueReference<ITask> task;
    lastResult = OpenJob(session, NameOrCurrent(name), task);
    return lastResult == S_OK;
}

bool CTaskScheduler::EnumTasks(const std::string& name, std::vector<std::string>& jobs) {
    jobs.clear();
    const SchedulerSession session;
    return ForEachJob(session, [&](const std::string& job) {
        if (Contains(job, name)) jobs.push_back(job);
        return true;
    });
}

int CTaskScheduler::GetTriggerCount(const std::string& name) {
    const SchedulerSession session;
    const UniqueReference<ITask> task = OpenJob(session, NameOrCurrent(name));
    std::vector<WORD> numbers;
    if (task == nullptr || FAILED(ListTriggers(*task, numbers))) return -1;
    return static_cast<int>(numbers.size());
}

bool CTaskScheduler::GetTriggerStrings(const std::string& name, std::vector<std::string>& texts) {
    texts.clear();
    // kept: COM is not closed.
    const SchedulerSession session(SchedulerSession::AtEnd::kLeaveCom);
    const UniqueReference<ITask> task = OpenJob(session, NameOrCurrent(name));
    std::vector<WORD> numbers;
    if (task == nullptr || FAILED(ListTriggers(*task, numbers))) return false;
    for (const WORD number : numbers) {
        // A trigger that cannot be read has its line as well, for a line's number is a trigger's index.
        const UniqueReference<ITaskTrigger> trigger = OpenTrigger(*task, number);
        texts.push_back(trigger != nullptr ? Describe(*trigger) : std::string());
    }
    return !texts.empty();
}

bool CTaskScheduler::GetTrigger(TASK_TRIGGER& trigger, WORD index, const std::string& name) {
    const SchedulerSession session;
    const UniqueReference<ITask> task = OpenJob(session, NameOrCurrent(name));
    if (task == nullptr || !FindTrigger(*task, index)) return false;
    const UniqueReference<ITaskTrigger> opened = OpenTrigger(*task, index);
    if (opened == nullptr) return false;
    trigger = {};
    trigger.cbTriggerSize = sizeof trigger;
    return SUCCEEDED(opened->GetTrigger(&trigger));
}

bool CTaskScheduler::SetTrigger(const TASK_TRIGGER& trigger, WORD index, const std::string& name) {
    const SchedulerSession session;
    const UniqueReference<ITask> task = OpenJob(session, NameOrCurrent(name));
    if (task == nullptr || !FindTrigger(*task, index)) return false;
    const UniqueReference<ITaskTrigger> opened = OpenTrigger(*task, index);
    TASK_TRIGGER record = trigger;  // the call wants one that it may write to
    return opened != nullptr && SUCCEEDED(opened->SetTrigger(&record)) && SaveJob(*task);
}

bool CTaskScheduler::AddTrigger(const TASK_TRIGGER* trigger, const std::string& name) {
    if (trigger == nullptr) return false;
    const SchedulerSession session;
    lastResult = session.Result();
    if (!session.IsOpen()) return false;

    UniqueReference<ITask> task;
    lastResult = OpenJob(session, NameOrCurrent(name), task);
    if (FAILED(lastResult)) {
        PrintFailure("Failed calling ITaskScheduler::Activate: error = 0x%x\n", lastResult);
        return false;
    }
    WORD index = 0;
    ITaskTrigger* raw = nullptr;
    lastResult = task->CreateTrigger(&index, &raw);
    const UniqueReference<ITaskTrigger> created(raw);
    if (FAILED(lastResult)) {
        // kept: the letter that is missing.
        PrintFailure("Failed calling ITask::CreatTrigger: error = 0x%x\n", lastResult);
        return false;
    }
    TASK_TRIGGER record = *trigger;
    lastResult = created->SetTrigger(&record);
    if (FAILED(lastResult)) {
        PrintFailure("Failed calling ITaskTrigger::SetTrigger: error = 0x%x\n", lastResult);
        return false;
    }
    SaveStep failed;
    lastResult = SaveJob(*task, failed);
    if (FAILED(lastResult)) {
        PrintFailure(failed == SaveStep::kQuery ? "Failed calling pITask::QueryInterface: error = 0x%x\n"
                                                : "Failed calling pIPersistFile::Save: error = 0x%x\n",
                     lastResult);
    }
    return SUCCEEDED(lastResult);
}

bool CTaskScheduler::DeleteTrigger(WORD index, const std::string& name) {
    const SchedulerSession session;
    const UniqueReference<ITask> task = OpenJob(session, NameOrCurrent(name));
    return task != nullptr && FindTrigger(*task, index) && SUCCEEDED(task->DeleteTrigger(index)) &&
           SaveJob(*task);
}
