#include <windows.h>

#include <cstdint>
#include <string>

#include "benches.h"
#include "engine_run.h"
#include "system/handles.h"
#include "system/registry.h"

namespace {

constexpr char kBenchKey[] = "Software\\VelvaneBench";
constexpr int kBranches = 100;
constexpr int kLeavesInBranch = 99;
constexpr int kValues = 5;
constexpr std::uint32_t kResults = kBranches * (1 + kLeavesInBranch) * (1 + kValues);

// 10,000 keys of five values below the program's key. They live in memory alone, so that the system does not
// write them out in the middle of a run; an open handle to the key keeps nothing, the deletion removes them.
class KeyFixture {
  public:
    KeyFixture() {
        ::RegDeleteTreeA(HKEY_CURRENT_USER, kBenchKey);
        UniqueKey root = Create(HKEY_CURRENT_USER, kBenchKey);
        for (int i = 0; i < kBranches; ++i) {
            const UniqueKey branch = CreateFilled(root.get(), "Vendor " + std::to_string(i));
            for (int j = 0; j < kLeavesInBranch; ++j) {
                CreateFilled(branch.get(), "Recent File List " + std::to_string(j));
            }
        }
    }
    ~KeyFixture() { ::RegDeleteTreeA(HKEY_CURRENT_USER, kBenchKey); }
    KeyFixture(const KeyFixture&) = delete;
    KeyFixture& operator=(const KeyFixture&) = delete;

  private:
    static UniqueKey Create(HKEY parent, const std::string& name) {
        HKEY key = nullptr;
        ::RegCreateKeyExA(parent, name.c_str(), 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS, nullptr,
                          &key, nullptr);
        Require(key != nullptr, "the keys of the fixture");
        return UniqueKey(key);
    }

    static UniqueKey CreateFilled(HKEY parent, const std::string& name) {
        UniqueKey key = Create(parent, name);
        for (int i = 0; i < kValues; ++i) {
            const std::string data = "C:\\Users\\someone\\Documents\\letter " + std::to_string(i) + ".doc";
            ::RegSetValueExA(key.get(), ("File" + std::to_string(i)).c_str(), 0, REG_SZ,
                             reinterpret_cast<const BYTE*>(data.c_str()),
                             static_cast<DWORD>(data.size() + 1));
        }
        return key;
    }
};

// The bare loop with the calls of the engine: each key is opened by its whole path.
class BareWalk {
  public:
    explicit BareWalk(HWND window) : m_window(window) {}

    void Run() {
        UniqueKey reachable;
        OpenKey(HKEY_CURRENT_USER, kBenchKey, KEY_QUERY_VALUE, reachable);
        reachable.reset();
        Walk(kBenchKey, 0);
    }

    std::uint32_t Count() const { return m_count; }

  private:
    void Walk(const std::string& path, DWORD options) {
        UniqueKey key;
        if (OpenKey(HKEY_CURRENT_USER, path.c_str(), KEY_QUERY_VALUE | KEY_ENUMERATE_SUB_KEYS, key,
                    options) != 0)
            return;
        DWORD keys = 0;
        DWORD values = 0;
        ::RegQueryInfoKeyA(key.get(), nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr,
                           nullptr, nullptr, nullptr);
        for (DWORD i = 0; i < keys; ++i) {
            char name[255 * 3 + 1];
            DWORD length = sizeof name;
            ::RegEnumKeyExA(key.get(), i, name, &length, nullptr, nullptr, nullptr, nullptr);
            Walk(path + "\\" + name + "\\", REG_OPTION_OPEN_LINK);
            Tell(name);
        }
        for (DWORD i = 0; i < values; ++i) {
            DWORD length = sizeof m_value;
            ::RegEnumValueA(key.get(), i, m_value, &length, nullptr, nullptr, nullptr, nullptr);
            Tell(m_value);
        }
    }

    void Tell(const char* name) {
        ::SendMessageA(m_window, WM_ENGINE_NODE, 1, reinterpret_cast<LPARAM>(name));
        ++m_count;
    }

    HWND m_window;
    std::uint32_t m_count = 0;
    char m_value[16383 * 3 + 1];
};

}  // namespace

void BenchRegistry(const BenchOptions& options, AnsweringWindow& window, Report& report) {
    const KeyFixture fixture;
    LoadedEngine engine(window, OneItemDefinitions("<Item Type=\"RegKey\" Location=\"HKCU\\" +
                                                   std::string(kBenchKey) + "\" Action=\"All\"/>"));
    const auto checked = [&](double seconds, std::uint32_t count) {
        Require(count == kResults, "all keys and values");
        return seconds;
    };
    const auto bare = [&] {
        BareWalk walk(nullptr);
        const double seconds = window.TimeWorker([&](HWND target) {
            walk = BareWalk(target);
            walk.Run();
        });
        return checked(seconds, walk.Count());
    };
    // In two steps: of the arguments of one call the last may be evaluated first.
    const auto scan = [&] {
        const double seconds = engine.Scan();
        return checked(seconds, engine.Engine().GetItemsFound());
    };
    report.Add("registry, 10,000 keys of 5 values", TakeTurns(options.rounds, bare, scan), 1.2);

    const auto bareUntold = [&] {
        BareWalk walk(nullptr);
        const double begin = Now();
        walk.Run();
        const double seconds = Now() - begin;
        return checked(seconds, walk.Count());
    };
    const auto untold = [&] {
        const double seconds = engine.ScanUntold();
        return checked(seconds, engine.Engine().GetItemsFound());
    };
    report.Add("registry, nobody told", TakeTurns(2 * options.rounds, bareUntold, untold), kNoLimit);
}
