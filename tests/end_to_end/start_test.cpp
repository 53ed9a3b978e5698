#include <gtest/gtest.h>
#include <windows.h>

#include <optional>
#include <string>

#include "end_to_end/program_run.h"
#include "support/sandbox.h"
#include "system/registry.h"
#include "system/system_facts.h"

// The program as it is started by a user, an installer, the scheduler: its options, exit codes, second
// copies.

namespace {

constexpr char kProductKey[] = "Software\\Quillmere\\Velvane";
constexpr char kRunOnceKey[] = "Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce";

std::optional<DWORD> RunAndWait(const std::string& line) {
    return ProgramRun(BuiltProgram(), line).Wait();
}

// The jobs of ours in the scheduler's folder, without the product's name and the identifier behind it.
std::vector<std::string> Jobs() {
    char windows[MAX_PATH];
    ::GetWindowsDirectoryA(windows, sizeof windows);
    std::vector<std::string> jobs;
    for (std::string name : NamesIn(std::string(windows) + "\\Tasks\\")) {
        if (name.starts_with("Velvane_{")) name = "scan";
        if (name.starts_with("Velvane")) name = "logon";
        jobs.push_back(name);
    }
    return jobs;
}

// The scheduler of Wine now and then holds a job's file a moment longer.
bool DeleteAllJobs() {
    return Await([] {
        RunAndWait("-deletetask");
        return Jobs().empty();
    });
}

struct Jobless : ::testing::Test {
    Jobless() { EXPECT_TRUE(DeleteAllJobs()); }
    ~Jobless() override { DeleteAllJobs(); }
};

using Names = std::vector<std::string>;

TEST_F(Jobless, ActionsRegisterAndDeleteJobsInTheirOrder) {
    EXPECT_EQ(RunAndWait("-addtask -deletetask"), 0u);
    EXPECT_EQ(Jobs(), Names({"scan"}));
    EXPECT_EQ(RunAndWait("-launchonlogon --shutdown"), 0u);
    EXPECT_EQ(Jobs(), Names({"logon", "scan"}));
    EXPECT_EQ(RunAndWait("-launchonlogon"), 0u);
    EXPECT_EQ(Jobs(), Names({"logon", "scan"}));
    EXPECT_EQ(RunAndWait("-deletetask"), 0u);
    EXPECT_TRUE(DeleteAllJobs());
}

TEST(Start, InstallLeavesItsTimeAlsoInsideOfALongerWord) {
    for (const char* line : {"-install", "xx-installyy"}) {
        ::RegDeleteKeyA(HKEY_LOCAL_MACHINE, kProductKey);
        EXPECT_EQ(RunAndWait(line), 0u);
        FILETIME time{}, now{};
        DWORD size = sizeof time, type = 0;
        ASSERT_EQ(::RegGetValueA(HKEY_LOCAL_MACHINE, kProductKey, "InstallTime", RRF_RT_REG_QWORD, &type,
                                 &time, &size),
                  ERROR_SUCCESS);
        ::GetSystemTimeAsFileTime(&now);
        const auto ticks = [](const FILETIME& t) {
            return ULARGE_INTEGER{{t.dwLowDateTime, t.dwHighDateTime}}.QuadPart;
        };
        EXPECT_LE(ticks(time), ticks(now));
        EXPECT_LT(ticks(now) - ticks(time), 600'000'0000ull) << "more than a minute old";
    }
    // Words with other letters are no options.
    ::RegDeleteKeyA(HKEY_LOCAL_MACHINE, kProductKey);
    EXPECT_EQ(RunAndWait("-INSTALL --shutdown"), 0u);
    EXPECT_EQ(RegValueSize(HKEY_LOCAL_MACHINE, kProductKey, "InstallTime"), 0u);
}

TEST(Start, WithoutItsTextsItDoesNothing) {
    const TestFolder folder;
    const std::string current = folder.MakeFolder("current");
    ASSERT_TRUE(::CopyFileA(BuiltProgram().c_str(), folder.At("velvane.exe").c_str(), TRUE));
    // Texts in the current folder are not its own.
    ASSERT_TRUE(::CopyFileA((ProgramFolder() + "resources.dll").c_str(),
                            (current + "\\resources.dll").c_str(), TRUE));
    ::RegDeleteKeyA(HKEY_LOCAL_MACHINE, kProductKey);
    EXPECT_EQ(ProgramRun(folder.At("velvane.exe"), "-install", current).Wait(), 0u);
    EXPECT_EQ(RegValueSize(HKEY_LOCAL_MACHINE, kProductKey, "InstallTime"), 0u);
}

TEST(Start, ASecondCopyHandsOverAndShutdownClosesTheFirst) {
    EXPECT_EQ(RunAndWait("--shutdown"), 0u);
    UniqueKey runOnce;
    HKEY raw = nullptr;
    ASSERT_EQ(::RegCreateKeyExA(HKEY_CURRENT_USER, kRunOnceKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &raw,
                                nullptr),
              ERROR_SUCCESS);
    runOnce.reset(raw);
    ASSERT_EQ(::RegSetValueExA(raw, "Velvane", 0, REG_SZ, reinterpret_cast<const BYTE*>("x"), 2),
              ERROR_SUCCESS);

    ProgramRun first(BuiltProgram(), "");
    const HWND window = first.AwaitWindow("Velvane");
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(RegValueSize(HKEY_CURRENT_USER, kRunOnceKey, "Velvane"), 0u);

    ::ShowWindow(window, SW_MINIMIZE);
    EXPECT_EQ(RunAndWait(""), 0u);
    EXPECT_TRUE(Await([&] { return !::IsIconic(window); }))
        << "the second copy brings the first to the front";
    EXPECT_TRUE(first.IsRunning());

    EXPECT_EQ(RunAndWait("--shutdown"), 0u);
    EXPECT_EQ(first.Wait(), 1u);
}

// The box is the first that the load brings, so an automatic scan does not begin either.
TEST(Start, WithoutDefinitionsItSaysSoAndEnds) {
    const TestFolder folder;
    for (const char* file : {"velvane.exe", "resources.dll"}) {
        ASSERT_TRUE(::CopyFileA((ProgramFolder() + file).c_str(), folder.At(file).c_str(), TRUE)) << file;
    }
    for (const char* definitions : {"missing", "empty"}) {
        if (definitions == std::string("empty")) folder.MakeFile("cleaning.db", "");
        for (const char* line : {"", "--autoscan"}) {
            SCOPED_TRACE(std::string(definitions) + " " + line);
            ProgramRun run(folder.At("velvane.exe"), line);
            const HWND box = run.AwaitBox("Velvane");
            ASSERT_NE(box, nullptr);
            ::PostMessageA(box, WM_COMMAND, IDOK, 0);
            EXPECT_EQ(run.Wait(), 1u);
        }
        // Told to close while the box is up, it ends as well.
        ProgramRun run(folder.At("velvane.exe"), "");
        ASSERT_NE(run.AwaitBox("Velvane"), nullptr);
        ::PostMessageA(run.AwaitWindow("Velvane"), WM_CLOSE, 0, 0);
        EXPECT_EQ(run.Wait(), 1u);
    }
}

// Not version: Wine takes what its own shell32 needs from beside the program, as Windows does not.
const char* const kPlantedNames[] = {"comctl32", "cryptbase", "dwmapi",        "gdiplus",  "iertutil",
                                     "mpr",      "msimg32",   "mstask",        "netapi32", "profapi",
                                     "propsys",  "riched20",  "secur32",       "urlmon",   "userenv",
                                     "uxtheme",  "dbghelp",   "windowscodecs", "winmm",    "wininet"};

// Wine prefers its own libraries to others of their names, as Windows does not: not for this program.
void PreferPlanted(const char* program) {
    for (const char* name : kPlantedNames) {
        const std::string key = std::string("Software\\Wine\\AppDefaults\\") + program + "\\DllOverrides";
        constexpr char kOrder[] = "native,builtin";
        ASSERT_EQ(::RegSetKeyValueA(HKEY_CURRENT_USER, key.c_str(), name, REG_SZ, kOrder, sizeof kOrder),
                  ERROR_SUCCESS);
    }
}

// Whoever can write beside the program, or start it in a folder of his, must not run with its rights.
TEST(Start, NoLibraryIsLoadedFromBesideTheProgramOrItsCurrentFolder) {
    const TestFolder folder;
    const std::string program = folder.MakeFolder("program"), current = folder.MakeFolder("current");
    const auto copy = [](const std::string& file, const std::string& target) {
        ASSERT_TRUE(::CopyFileA((ProgramFolder() + file).c_str(), target.c_str(), TRUE)) << file;
    };
    for (const char* file :
         {"velvane.exe", "resources.dll", "velvane-cli.exe", "cleaning.db", "careless.exe"})
        copy(file, program + "\\" + file);
    for (const std::string& where : {program, current})
        for (const char* name : kPlantedNames) copy("planted_library.dll", where + "\\" + name + ".dll");
    // Each library that was loaded has left a file; they are taken away.
    const auto takeLoaded = [](const std::string& where) {
        Names found;
        for (const std::string& name : NamesIn(where + "\\")) {
            if (!name.ends_with(".loaded")) continue;
            found.push_back(name);
            ::DeleteFileA((where + "\\" + name).c_str());
        }
        return found;
    };
    for (const char* name : {"velvane.exe", "velvane-cli.exe", "careless.exe"}) PreferPlanted(name);
    std::string all;
    for (const char* name : kPlantedNames) all += std::string(name) + " ";
    EXPECT_EQ(ProgramRun(program + "\\careless.exe", all, current).Wait(), std::size(kPlantedNames));
    EXPECT_EQ(takeLoaded(program).size(), std::size(kPlantedNames)) << "the planted ones would be found";

    for (const char* line : {"-install", "-addtask", "-deletetask"})
        EXPECT_EQ(ProgramRun(program + "\\velvane.exe", line, current).Wait(), 0u) << line;
    // A shred tidies the URL cache at its end, with WinINet.
    EXPECT_EQ(ProgramRun(program + "\\velvane-cli.exe", "shred --yes " + folder.MakeFile("shredded"), current)
                  .Wait(),
              0u);
    ProgramRun session(program + "\\velvane.exe", "", current);
    const HWND window = session.AwaitWindow("Velvane");
    ASSERT_NE(window, nullptr);
    ::PostMessageA(window, WM_CLOSE, 0, 0);
    EXPECT_EQ(session.Wait(), 1u);
    EXPECT_EQ(takeLoaded(program), Names());
    EXPECT_EQ(takeLoaded(current), Names());
}

}  // namespace
