#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <memory>
#include <optional>
#include <string>

#include "end_to_end/program_run.h"
#include "end_to_end/user_hand.h"
#include "support/sandbox.h"

// Sessions of the real program, worked from outside.

// Writes a file whose folder is there.
void WriteFileAt(const std::string& path, const std::string& content);

// One start after another, on files of the product's that the test writes.
class ProgramSession : public ::testing::Test {
  protected:
    // Definitions and preferences, of whom they are, and the empty folder of what waits for a restart. What
    // is missing is no failure.
    static void RemoveProductFiles();
    // A file of the product's among those of all users.
    static void WriteProductFile(const std::string& name, const std::string& content);

    void Start(const std::string& line = "", const std::string& program = BuiltProgram());
    // Closes the window and gives the exit code; waits for nothing else.
    std::optional<DWORD> Close();
    std::optional<DWORD> AwaitEnd() { return run->Wait(); }

    std::unique_ptr<ProgramRun> run;
    std::unique_ptr<UserHand> hand;
};

// On definitions that know one folder and one registry value of the test.
class Session : public ProgramSession {
  protected:
    Session();
    ~Session() override;

    // So many traces that a scan takes a while.
    void MakeMany() const;

    // How many of the traces are there: files, and the value of the registry.
    int FilesLeft() const;
    bool ValueIsThere() const { return ValueExists(HKEY_CURRENT_USER, key.At("list"), "Last"); }

    const TestFolder folder;
    const TestKey key;
};
