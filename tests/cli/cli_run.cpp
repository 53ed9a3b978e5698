#include "cli/cli_run.h"

#include <algorithm>
#include <atomic>
#include <stdexcept>

#include "system/files.h"
#include "system/system_facts.h"

namespace {

constexpr DWORD kRunLimit = 120000;  // ms
constexpr ULONGLONG kAwaitLimit = 60000;

// One argument as the C library of the program takes it apart again.
std::string Quoted(const std::string& text) {
    std::string quoted = "\"";
    std::size_t backslashes = 0;
    for (const char c : text) {
        if (c == '"') quoted.append(backslashes + 1, '\\');
        backslashes = c == '\\' ? backslashes + 1 : 0;
        quoted += c;
    }
    return quoted + std::string(backslashes, '\\') + "\"";
}

UniqueHandle OpenInherited(const std::string& path, DWORD access, DWORD creation) {
    SECURITY_ATTRIBUTES inherit = {sizeof inherit, nullptr, TRUE};
    return OwnHandle<UniqueHandle>(::CreateFileA(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                                 &inherit, creation, 0, nullptr));
}

void AddTree(const std::string& folder, std::vector<std::string>& tree) {
    for (const std::string& name : NamesIn(folder)) {
        const std::string path = folder + name;
        const auto content = FileContent(path);
        tree.push_back(path + (content ? "=" + *content : "\\"));
        if (!content) AddTree(path + "\\", tree);
    }
}

}  // namespace

CliProcess::CliProcess(const TestFolder& folder, const std::vector<std::string>& arguments, bool onConsole) {
    static std::atomic<int> number{0};
    const std::string tag = std::to_string(++number);
    m_outFile = folder.At("out" + tag);
    m_errFile = folder.At("err" + tag);
    std::string line = Quoted(ProgramFolder() + "velvane-cli.exe");
    for (const std::string& argument : arguments) line += " " + Quoted(argument);

    const UniqueHandle in = onConsole ? OpenInherited("CONIN$", GENERIC_READ | GENERIC_WRITE, OPEN_EXISTING)
                                      : OpenInherited("NUL", GENERIC_READ, OPEN_EXISTING);
    const UniqueHandle out = OpenInherited(m_outFile, GENERIC_WRITE, CREATE_ALWAYS);
    const UniqueHandle err = OpenInherited(m_errFile, GENERIC_WRITE, CREATE_ALWAYS);
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = in.get();
    startup.hStdOutput = out.get();
    startup.hStdError = err.get();
    PROCESS_INFORMATION process = {};
    if (!::CreateProcessA(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                          &process)) {
        throw std::runtime_error("velvane-cli.exe cannot be started");
    }
    ::CloseHandle(process.hThread);
    m_process.reset(process.hProcess);
}

CliResult CliProcess::Wait() {
    if (::WaitForSingleObject(m_process.get(), kRunLimit) != WAIT_OBJECT_0) {
        ADD_FAILURE() << "velvane-cli.exe does not end";
        ::TerminateProcess(m_process.get(), 99);
        ::WaitForSingleObject(m_process.get(), kRunLimit);
    }
    DWORD code = 0;
    ::GetExitCodeProcess(m_process.get(), &code);
    CliResult result = {static_cast<int>(code), FileContent(m_outFile).value_or(""),
                        FileContent(m_errFile).value_or("")};
    std::erase(result.out, '\r');
    std::erase(result.err, '\r');
    return result;
}

CliResult CliEndToEnd::Run(std::vector<std::string> arguments) const {
    arguments.insert(arguments.end(), {"--definitions", definitions});
    return CliProcess(folder, arguments).Wait();
}

nlohmann::ordered_json CliEndToEnd::RunJson(std::vector<std::string> arguments, int exitCode) const {
    arguments.push_back("--json");
    const CliResult result = Run(std::move(arguments));
    EXPECT_EQ(result.exitCode, exitCode) << result.err;
    auto json = nlohmann::ordered_json::parse(result.out, nullptr, false);
    EXPECT_TRUE(json.is_object()) << result.out << result.err;
    return json;
}

std::vector<std::string> CliEndToEnd::Tree() const {
    std::vector<std::string> tree;
    AddTree(data, tree);
    return tree;
}

bool CliEndToEnd::Await(const std::function<bool()>& condition) {
    const ULONGLONG end = ::GetTickCount64() + kAwaitLimit;
    while (!condition()) {
        if (::GetTickCount64() > end) return false;
        ::Sleep(1);
    }
    return true;
}

std::vector<std::string> KeysOf(const nlohmann::ordered_json& object) {
    std::vector<std::string> keys;
    for (const auto& member : object.items()) keys.push_back(member.key());
    return keys;
}

::testing::AssertionResult IsOneErrorLine(const std::string& err, const std::string& text) {
    const bool good = err.starts_with("velvane-cli: ") && err.find(text) != std::string::npos &&
                      std::ranges::count(err, '\n') == 1 && err.ends_with('\n');
    if (good) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "'" << err << "' is not one line with '" << text << "'";
}
