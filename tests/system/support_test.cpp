#include <gtest/gtest.h>
#include <windows.h>

#include <atomic>
#include <stdexcept>
#include <thread>

#include "support/api_hook.h"
#include "support/recording_window.h"
#include "support/sandbox.h"
#include "system/entry_point.h"

// The stand-ins of the tests are tested here once, so that a test which uses them can be believed.

namespace {

TEST(ApiHook, FailsTheCallItIsToldAndNoOther) {
    const TestFolder folder;
    const std::string first = folder.MakeFile("1");
    const std::string second = folder.MakeFile("2");
    {
        auto hook = API_HOOK(DeleteFileA);
        hook.FailAt(1, ERROR_SHARING_VIOLATION);
        const BOOL deleted = ::DeleteFileA(first.c_str());
        const DWORD error = ::GetLastError();
        EXPECT_FALSE(deleted);
        EXPECT_EQ(error, DWORD{ERROR_SHARING_VIOLATION});
        EXPECT_TRUE(::DeleteFileA(second.c_str()));
    }
    EXPECT_EQ(NamesIn(folder.Path()), std::vector<std::string>{"1"});
    EXPECT_TRUE(::DeleteFileA(first.c_str())) << "the hook is gone";
}

TEST(ApiHook, NestsAndHooksSeveralFunctionsOfOneType) {
    auto outer = API_HOOK(DeleteFileA);
    outer.FailAlways(1);
    auto other = API_HOOK(RemoveDirectoryA);  // of the same type
    other.FailAlways(3);
    const auto lastErrorOf = [](auto call) {
        call();
        return ::GetLastError();
    };
    const auto deleteFile = [] { ::DeleteFileA("C:\\missing"); };
    {
        auto inner = API_HOOK(DeleteFileA);
        inner.FailAt(1, 2);
        EXPECT_EQ(lastErrorOf(deleteFile), 2u);
        EXPECT_EQ(lastErrorOf(deleteFile), 1u) << "the second call goes on to the outer hook";
    }
    EXPECT_EQ(lastErrorOf(deleteFile), 1u);
    EXPECT_EQ(lastErrorOf([] { ::RemoveDirectoryA("C:\\missing"); }), 3u);
    EXPECT_EQ(outer.Calls(), 2);
    EXPECT_EQ(other.Calls(), 1);
}

TEST(ApiHook, ThrowsForWhatTheProgramDoesNotImport) {
    EXPECT_THROW(API_HOOK(AddAtomA), std::runtime_error);
}

TEST(ApiHook, StandsInForWhatIsLookedUpByName) {
    using Function = decltype(&::GetTickCount64);
    const auto lookUp = [] { return FindEntryPoint<Function>("kernel32", "GetTickCount64"); };
    {
        auto hook = LATE_BOUND_HOOK(GetTickCount64);
        hook.ReplaceAt(1, [] { return ULONGLONG{5}; });
        EXPECT_EQ(lookUp()(), 5u);
        EXPECT_GT(lookUp()(), 5u) << "the real one";
        const MissingEntryPoint missing("GetTickCount64");
        EXPECT_EQ(lookUp(), nullptr);
        EXPECT_NE(FindEntryPoint<void*>("kernel32", "GetVersion"), nullptr);
    }
    ASSERT_NE(lookUp(), nullptr);
    EXPECT_GT(lookUp()(), 5u);
}

TEST(RecordingWindow, LogsAWorkersMessagesInOrderAndCopiesWhatTheyShow) {
    RecordingWindow window;
    const HWND handle = window.Handle();
    LRESULT firstNode = 0;
    LRESULT secondNode = 0;
    std::thread worker([&] {
        std::string name = "Name";
        tagSCAN_NODE_INFO info = {};
        info.level = 2;
        info.name = name.c_str();
        info.checked = 1;
        firstNode = ::SendMessageA(handle, WM_ENGINE_NODE, 1, reinterpret_cast<LPARAM>(&info));
        name = "XXXX";
        info.level = 3;
        secondNode = ::SendMessageA(handle, WM_ENGINE_NODE, 1, reinterpret_cast<LPARAM>(&info));
        std::string path = "C:\\file";
        ::SendMessageA(handle, WM_ENGINE_SHRED_PROGRESS, reinterpret_cast<WPARAM>(path.c_str()), 50);
        path = "overwritten";
        ::PostMessageA(handle, WM_ENGINE_LOADED, 0, 1);
    });
    EXPECT_TRUE(window.PumpUntil(WM_ENGINE_LOADED));
    worker.join();

    ASSERT_EQ(window.Messages().size(), 4u);
    const std::vector<RecordedNode> nodes = window.Nodes();
    ASSERT_EQ(nodes.size(), 2u);
    EXPECT_EQ(nodes[0].name, "Name");
    EXPECT_EQ(nodes[0].level, 2u);
    EXPECT_TRUE(nodes[0].checked);
    EXPECT_FALSE(nodes[0].help);
    EXPECT_EQ(nodes[1].name, "XXXX");
    EXPECT_EQ(firstNode, 1);
    EXPECT_EQ(secondNode, 2);
    EXPECT_EQ(window.Messages()[2].shreddedPath, "C:\\file");
    EXPECT_TRUE(window.Messages()[2].sentByWorker);
    EXPECT_FALSE(window.Messages()[3].sentByWorker) << "it was posted";
    EXPECT_EQ(window.Count(WM_ENGINE_NODE), 2u);
}

TEST(Sandbox, RefusesNamesThatLeadOutOfIt) {
    const TestFolder folder;
    for (const char* name : {"..\\a", "C:\\a", "\\a", "a\\..\\..\\b", "a/../../b", ""}) {
        EXPECT_THROW(folder.At(name), std::invalid_argument) << name;
    }
    EXPECT_THROW(TestKey(HKEY_CLASSES_ROOT), std::invalid_argument);
}

TEST(Sandbox, LeavesNothingBehind) {
    std::string folderPath;
    std::string keyPath;
    {
        const TestFolder folder;
        folder.MakeFile("deep\\er\\a.txt", "text", FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN);
        folderPath = folder.Path();
        const TestKey key;
        keyPath = key.Path();
        DenyEveryone(HKEY_CURRENT_USER, key.MakeKey("locked\\below"));
        DenyEveryone(HKEY_CURRENT_USER, key.At("locked"));
        EXPECT_FALSE(ValueExists(HKEY_CURRENT_USER, key.At("locked"), ""));
    }
    EXPECT_FALSE(Exists(folderPath));
    EXPECT_FALSE(KeyExists(HKEY_CURRENT_USER, keyPath));
    EXPECT_FALSE(KeyExists(HKEY_CURRENT_USER, "Software\\VelvaneTests"));
}

// Runs this program anew, to have its tests listed; its exit code.
DWORD ExitCodeOfAnotherRun() {
    char program[MAX_PATH] = {};
    ::GetModuleFileNameA(nullptr, program, sizeof program);
    std::string command = std::string("\"") + program + "\" --gtest_list_tests --gtest_filter=-*";
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;  // and none given: what it prints is not ours
    PROCESS_INFORMATION process = {};
    if (!::CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                          &process)) {
        return MAXDWORD;
    }
    ::WaitForSingleObject(process.hProcess, 30000);
    DWORD code = MAXDWORD;
    ::GetExitCodeProcess(process.hProcess, &code);
    ::CloseHandle(process.hThread);
    ::CloseHandle(process.hProcess);
    return code;
}

TEST(TestMain, RefusesToStartWhereAShellFolderLeadsOutOfThePrefix) {
    constexpr const char* key = "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders";
    const auto pointTo = [&](const std::string& folder) {
        ASSERT_EQ(::RegSetKeyValueA(HKEY_CURRENT_USER, key, "Favorites", REG_EXPAND_SZ, folder.c_str(),
                                    static_cast<DWORD>(folder.size() + 1)),
                  ERROR_SUCCESS);
    };
    const auto before = ValueBytes(HKEY_CURRENT_USER, key, "Favorites");
    pointTo("O:\\");  // the drive for results lies beside the prefix
    EXPECT_EQ(ExitCodeOfAnotherRun(), 125u);
    pointTo(before ? before->c_str() : "C:\\");
    EXPECT_EQ(ExitCodeOfAnotherRun(), 0u);
}

TEST(TestMainDeathTest, EndsAfterACrashWithALine) {
    EXPECT_EXIT(::RaiseException(EXCEPTION_ACCESS_VIOLATION, EXCEPTION_NONCONTINUABLE, 0, nullptr),
                ::testing::ExitedWithCode(99), "Crashed: exception 0xc0000005");
}

}  // namespace
