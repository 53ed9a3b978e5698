#pragma once

#include <windows.h>
// mstask.h takes windows.h for granted.
#include <mstask.h>

#include <string>
#include <vector>

// The jobs of the system's task scheduler, by which the program is started at set times. There are two kinds,
// told apart by name alone: a scan job for each account, "<product>_{identifier}", and the logon job,
// "<product> Startup".
//
// Each operation opens COM on the calling thread, does its work and closes COM again; any thread. Where a
// `name` may be empty, it stands for `taskName`. Job names may end in ".job", as the system lists them.
class CTaskScheduler {
  public:
    enum EnsureResult { kTaskFailed = 0, kTaskFound = 1, kTaskCreated = 2 };

    CTaskScheduler() = default;
    virtual ~CTaskScheduler();

    // Makes the account's scan job `taskName`; creates it, without triggers, if there is none. `taskName` is
    // set when it fails, too.
    EnsureResult EnsureScanTask(const std::string& name, const std::string& user, const std::string& domain,
                                const std::string& program, const std::string& directory,
                                const std::string& comment, const std::string& parameters);

    // Finds the scan job of an account. False only if the scheduler cannot be asked; `job` is empty if there
    // is none.
    bool FindScanTask(const std::string& name, const std::string& user, const std::string& domain,
                      std::string& job);

    // Saves a job that runs `program` (a bare path, without quotes) while the current user is logged on.
    // False if a job of this name exists.
    bool CreateTask(const std::string& program, const std::string& name, const std::string& directory,
                    const std::string& comment, const std::string& parameters);

    bool DeleteTask(const std::string& name);
    bool TaskExists(const std::string& name);

    // Lists the jobs with `name` anywhere in theirs. False if the scheduler cannot be asked.
    bool EnumTasks(const std::string& name, std::vector<std::string>& jobs);

    // -1 on failure.
    int GetTriggerCount(const std::string& name);

    // A description of each trigger, in the order of their indexes. False if the job cannot be opened or has
    // no trigger. kept: COM stays open on the thread.
    bool GetTriggerStrings(const std::string& name, std::vector<std::string>& texts);

    bool GetTrigger(TASK_TRIGGER& trigger, WORD index, const std::string& name);
    bool SetTrigger(const TASK_TRIGGER& trigger, WORD index, const std::string& name);
    // `trigger` may be null, which is a failure.
    bool AddTrigger(const TASK_TRIGGER* trigger, const std::string& name);
    bool DeleteTrigger(WORD index, const std::string& name);

    // The account of the calling thread, or else of the process. On failure nothing is written. No COM.
    static bool GetCurrentAccount(std::string& user, std::string& domain);

    // The name of the logon job of the product `name`.
    static std::string LogonTaskName(const std::string& name);

    // The latest COM step of CreateTask, DeleteTask, TaskExists or AddTrigger.
    HRESULT lastResult = S_OK;
    // The current job; empty until EnsureScanTask.
    std::string taskName;

  private:
    const std::string& NameOrCurrent(const std::string& name) const { return name.empty() ? taskName : name; }
};
