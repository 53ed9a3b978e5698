#pragma once

#include <windows.h>

#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "engine/engine_fixture.h"
#include "support/sandbox.h"
#include "system/handles.h"

// Starts of the real velvane-cli.exe, which lies beside the test program, on fixtures in a test's own folder
// and key.

struct CliResult {
    int exitCode = -1;
    std::string out;  // without carriage returns
    std::string err;
};

// A start that may go on while the test looks at it or acts on it.
class CliProcess {
  public:
    // Input is empty, or with `onConsole` the console of the test program; the outputs are files in `folder`.
    CliProcess(const TestFolder& folder, const std::vector<std::string>& arguments, bool onConsole = false);

    // Waits for the end. A start that hangs is ended, and that fails the test.
    CliResult Wait();

  private:
    std::string m_outFile;
    std::string m_errFile;
    UniqueHandle m_process;
};

// Definitions, a folder and a key of the test's own, and the program started on them.
class CliEndToEnd : public ::testing::Test {
  protected:
    void WriteDefinitions(std::string_view xml) { folder.MakeFile("defs.db", PackDb(xml)); }

    // Runs the program with --definitions and these arguments.
    CliResult Run(std::vector<std::string> arguments) const;
    // The same with --json; the output is to be one JSON object.
    nlohmann::ordered_json RunJson(std::vector<std::string> arguments, int exitCode) const;

    // What is in the test's data folder: each path with its content, in order.
    std::vector<std::string> Tree() const;

    // Polls until the condition holds; false after some seconds.
    static bool Await(const std::function<bool()>& condition);

    TestFolder folder;
    TestKey key;
    // What is searched and cleaned, with its trailing backslash.
    const std::string data = folder.MakeFolder("data") + "\\";
    const std::string definitions = folder.At("defs.db");
};

// The names of an object's members, in order.
std::vector<std::string> KeysOf(const nlohmann::ordered_json& object);

// One line that starts with the program's name and holds `text`.
::testing::AssertionResult IsOneErrorLine(const std::string& err, const std::string& text);
