#include "cli/cli_run.h"

// What needs a console: the question, and the keys that end a run early.

namespace {

using nlohmann::ordered_json;

class CliTerminal : public CliEndToEnd {
  protected:
    // A program that was started from no console has one only in name. The new one stays for the tests that
    // follow: without one, each start would get its own.
    static void SetUpTestSuite() {
        ::FreeConsole();
        ASSERT_TRUE(::AllocConsole());
        ::SetConsoleCtrlHandler(Ignore, TRUE);
    }

    static BOOL WINAPI Ignore(DWORD) { return TRUE; }

    static UniqueHandle OpenConsoleInput() {
        return OwnHandle<UniqueHandle>(::CreateFileA("CONIN$", GENERIC_READ | GENERIC_WRITE,
                                                     FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                                     OPEN_EXISTING, 0, nullptr));
    }

    // Types a line at the console.
    static void Type(const std::string& text) {
        const UniqueHandle in = OpenConsoleInput();
        for (const char c : text + "\r") {
            INPUT_RECORD record = {};
            record.EventType = KEY_EVENT;
            record.Event.KeyEvent.bKeyDown = TRUE;
            record.Event.KeyEvent.wRepeatCount = 1;
            record.Event.KeyEvent.wVirtualKeyCode =
                c == '\r' ? VK_RETURN : static_cast<WORD>(::VkKeyScanA(c) & 0xFF);
            record.Event.KeyEvent.uChar.AsciiChar = c;
            DWORD written = 0;
            ASSERT_TRUE(::WriteConsoleInputA(in.get(), &record, 1, &written));
        }
    }

    void DefineCache() { WriteDefinitions(OneEntityXml(ItemXml("Folder", data, "All"))); }
};

TEST_F(CliTerminal, AsksBeforeItRemoves) {
    DefineCache();
    const struct {
        const char* answer;
        bool removed;
    } rows[] = {{"", false}, {"yessir", false}, {"Y", true}};
    for (const auto& row : rows) {
        folder.MakeFile("data\\a");
        folder.MakeFile("data\\b");
        CliProcess process(folder, {"clean", "--definitions", definitions}, true);
        Type(row.answer);
        const CliResult result = process.Wait();
        EXPECT_EQ(result.exitCode, 0) << row.answer;
        EXPECT_NE(result.err.find("2 traces will be removed. Continue? [y/N] "), std::string::npos)
            << result.err;
        EXPECT_EQ(Exists(data + "a"), !row.removed) << row.answer;
    }
}

// The key reaches every program of the console, this one too, which does not care.
TEST_F(CliTerminal, CtrlCStopsACleanAndWhatWasDoneIsTold) {
    DefineCache();
    constexpr int kFolders = 40;
    constexpr int kFiles = 50;
    for (int i = 0; i < kFolders * kFiles; ++i) {
        folder.MakeFile("data\\" + std::to_string(i / kFiles) + "\\" + std::to_string(i), "");
    }
    const std::size_t whole = Tree().size();
    const std::string first = NamesIn(data).front();
    CliProcess process(folder, {"clean", "--yes", "--json", "--definitions", definitions}, true);
    ASSERT_TRUE(Await([&] { return NamesIn(data + first).size() < kFiles; }));
    ASSERT_TRUE(::GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0)) << ::GetLastError();
    const CliResult result = process.Wait();
    EXPECT_EQ(result.exitCode, 130) << result.err;
    const auto json = ordered_json::parse(result.out, nullptr, false);
    ASSERT_TRUE(json.is_object()) << result.out << result.err;
    EXPECT_EQ(json["stopped"], true);
    const std::size_t cleaned = json["cleaned"].get<std::size_t>();
    EXPECT_GT(cleaned, 0u);
    EXPECT_LT(cleaned, whole);
    const std::size_t left = Tree().size();
    EXPECT_GE(left + cleaned + 1, whole) << "at most the trace that was under way is gone and not told";
    EXPECT_LE(left + cleaned, whole);
}

}  // namespace
