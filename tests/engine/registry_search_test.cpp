#include "engine/registry_search.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

#include "engine/recording_sink.h"
#include "support/api_hook.h"
#include "support/sandbox.h"
#include "system/handles.h"
#include "system/registry.h"

namespace {

using Lines = std::vector<std::string>;

Lines Search(const TestKey& key) {
    RecordingSink sink;
    const std::uint32_t count = ScanRegKey(key.Root(), key.Path(), sink);
    EXPECT_EQ(count, sink.traces.size());
    return sink.Lines(key.Path());
}

// Deletes what was found, in its order, as a clean does.
void Delete(HKEY root, const RecordingSink& sink) {
    for (const RecordingSink::Trace& trace : sink.traces) {
        if (trace.type == ResultType::RegKey) {
            EXPECT_TRUE(RegDeleteKeyGranted(root, (*trace.path + "\\" + *trace.name).c_str())) << *trace.name;
        } else {
            EXPECT_TRUE(RegDeleteValueGranted(root, trace.path->c_str(), trace.name->c_str())) << *trace.name;
        }
    }
}

// A chain of keys under `key`, each made through its parent: no path is too long for it.
UniqueKey MakeChain(const TestKey& key, const std::string& name, int depth) {
    UniqueKey open;
    EXPECT_EQ(OpenKey(key.Root(), key.c_str(), KEY_ALL_ACCESS, open), ERROR_SUCCESS);
    for (int i = 0; i < depth; ++i) {
        HKEY next = nullptr;
        EXPECT_EQ(::RegCreateKeyExA(open.get(), name.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &next,
                                    nullptr),
                  ERROR_SUCCESS);
        open.reset(next);
    }
    return open;
}

TEST(KeySearch, FindsChildrenBeforeTheirKeyAndAllOfItCanBeDeleted) {
    const TestKey key;
    key.SetText("top", "x");
    key.SetText("", "the default value");
    key.SetText("one", "x", "a");
    key.SetText("two", "x", "a\\b");
    key.SetText("three", "x", "a\\b\\c");
    key.SetText("four", "", "a\\b\\c\\d");
    key.MakeKey("e");
    RecordingSink sink;
    EXPECT_EQ(ScanRegKey(key.Root(), key.Path(), sink), 11u);
    // The path of a deeper key ends in a backslash, and gets another one before the next name.
    EXPECT_EQ(sink.Lines(key.Path()),
              (Lines{"value \\a\\\\b\\\\c\\\\d\\|four", "key \\a\\\\b\\\\c\\|d",
                     "value \\a\\\\b\\\\c\\|three", "key \\a\\\\b\\|c", "value \\a\\\\b\\|two", "key \\a\\|b",
                     "value \\a\\|one", "key |a", "key |e", "value |", "value |top"}));
    Delete(key.Root(), sink);
    EXPECT_EQ(Search(key), Lines());
    EXPECT_TRUE(KeyExists(key.Root(), key.Path())) << "the key of the location stays";
    EXPECT_FALSE(KeyExists(key.Root(), key.At("a")));
}

TEST(KeySearch, AKeyThatDeniesUsIsReadUnderTheGrantAndHasItsOldSecurityBack) {
    const TestKey key;
    key.SetText("secret", "x", "locked\\below");
    key.SetText("value", "x", "locked");
    key.SetText("value", "x", "open");
    DenyEveryone(key.Root(), key.At("locked\\below"));
    DenyEveryone(key.Root(), key.At("locked"));
    const auto outer = DaclBytes(key.Root(), key.At("locked"));
    const auto inner = DaclBytes(key.Root(), key.At("locked\\below"));
    const Lines all = {"value \\locked\\\\below\\|secret",
                       "key \\locked\\|below",
                       "value \\locked\\|value",
                       "key |locked",
                       "value \\open\\|value",
                       "key |open"};
    EXPECT_EQ(Search(key), all);
    EXPECT_EQ(DaclBytes(key.Root(), key.At("locked")), outer);
    EXPECT_EQ(DaclBytes(key.Root(), key.At("locked\\below")), inner);
    EXPECT_FALSE(ValueExists(key.Root(), key.At("locked"), "value")) << "it is open to us";

    // The location itself may be locked, too.
    RecordingSink sink;
    EXPECT_EQ(ScanRegKey(key.Root(), key.At("locked"), sink), 3u);
    EXPECT_EQ(DaclBytes(key.Root(), key.At("locked")), outer);
}

TEST(KeySearch, DeepKeysAndLongNamesAreFoundAndCanBeDeleted) {
    const TestKey key;
    {
        const UniqueKey bottom = MakeChain(key, "k", 500);
        ASSERT_EQ(::RegSetValueExA(bottom.get(), "deep", 0, REG_SZ, nullptr, 0), ERROR_SUCCESS);
        const UniqueKey longest = MakeChain(key, std::string(255, 'n'), 2);
        // The longest name there is, 16383 characters, and one whose bytes are more than that.
        for (const std::string& name :
             {std::string(255, 'v'), std::string(16382, 'v'), std::string(16383, 'v')}) {
            ASSERT_EQ(::RegSetValueExA(longest.get(), name.c_str(), 0, REG_SZ, nullptr, 0), ERROR_SUCCESS);
        }
        ASSERT_EQ(
            ::RegSetValueExW(longest.get(), std::wstring(6000, L'\u6f22').c_str(), 0, REG_SZ, nullptr, 0),
            ERROR_SUCCESS);
        HKEY han = nullptr;
        ASSERT_EQ(::RegCreateKeyExW(longest.get(), std::wstring(255, L'\u6f22').c_str(), 0, nullptr, 0,
                                    KEY_ALL_ACCESS, nullptr, &han, nullptr),
                  ERROR_SUCCESS);
        const UniqueKey hanOwner(han);
    }
    RecordingSink sink;
    EXPECT_EQ(ScanRegKey(key.Root(), key.Path(), sink), 501u + 2u + 4u + 1u);
    Delete(key.Root(), sink);
    EXPECT_EQ(Search(key), Lines());
}

TEST(KeySearch, ALinkInTheRegistryIsNeitherEnteredNorListed) {
    const TestKey key;
    const TestKey elsewhere;
    elsewhere.SetText("precious", "x");
    UniqueKey link;
    {
        HKEY raw = nullptr;
        ASSERT_EQ(::RegCreateKeyExA(key.Root(), key.At("link").c_str(), 0, nullptr,
                                    REG_OPTION_CREATE_LINK | REG_OPTION_VOLATILE,
                                    KEY_ALL_ACCESS | KEY_CREATE_LINK, nullptr, &raw, nullptr),
                  ERROR_SUCCESS);
        link.reset(raw);
    }
    HKEY target = nullptr;
    ASSERT_EQ(::RegOpenKeyExA(elsewhere.Root(), elsewhere.c_str(), 0, KEY_READ, &target), ERROR_SUCCESS);
    const UniqueKey targetOwner(target);
    using QueryKey = LONG(WINAPI*)(HANDLE, int, void*, ULONG, ULONG*);
    const auto queryKey = reinterpret_cast<QueryKey>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleA("ntdll"), "NtQueryKey")));
    struct {
        ULONG size;
        wchar_t text[512];
    } name = {};
    ULONG length = 0;
    ASSERT_EQ(queryKey(target, 3, &name, sizeof name, &length), 0);
    ASSERT_EQ(::RegSetValueExW(link.get(), L"SymbolicLinkValue", 0, REG_LINK,
                               reinterpret_cast<const BYTE*>(name.text), name.size),
              ERROR_SUCCESS);
    ASSERT_TRUE(ValueExists(key.Root(), key.At("link"), "precious")) << "the link does not work";
    EXPECT_EQ(Search(key), Lines());
    // An ordinary value of that name makes no link.
    key.SetText("SymbolicLinkValue", "x", "plain");
    EXPECT_EQ(Search(key), (Lines{"value \\plain\\|SymbolicLinkValue", "key |plain"}));
    using DeleteKey = LONG(WINAPI*)(HANDLE);
    const auto deleteKey = reinterpret_cast<DeleteKey>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleA("ntdll"), "NtDeleteKey")));
    EXPECT_EQ(deleteKey(link.get()), 0);
}

TEST(KeySearch, NamesThatDoNotNameTheEntryArePassedOver) {
    const TestKey key;
    key.SetText("what?", "x");
    key.SetText("other", "x", "sub");
    key.MakeKey("sub?");
    key.MakeKey("s");
    auto values = API_HOOK(RegEnumValueA);
    values.Replace([&](HKEY open, DWORD index, LPSTR name, LPDWORD length, LPDWORD reserved, LPDWORD type,
                       LPBYTE data, LPDWORD size) {
        const LSTATUS status = values.Real()(open, index, name, length, reserved, type, data, size);
        if (status == ERROR_SUCCESS && name[0] == 'o') name[0] = '?';
        return status;
    });
    auto keys = API_HOOK(RegEnumKeyExA);
    EXPECT_EQ(Search(key), (Lines{"key |s", "key |sub", "key |sub?", "value |what?"}));
    keys.Replace([&](HKEY open, DWORD index, LPSTR name, LPDWORD length, LPDWORD reserved, LPSTR type,
                     LPDWORD typeLength, FILETIME* time) {
        const LSTATUS status = keys.Real()(open, index, name, length, reserved, type, typeLength, time);
        if (status == ERROR_SUCCESS && *length == 3) name[1] = '?';
        if (status == ERROR_SUCCESS && *length == 4) name[1] = '\0';  // which would name its neighbour
        return status;
    });
    EXPECT_EQ(Search(key), (Lines{"key |s", "value |what?"}));
}

TEST(ValueSearch, FindsAValueWhateverItHolds) {
    const TestKey key;
    key.SetRaw("empty", REG_NONE, "");
    key.SetText("", "default");
    const auto found = [&](const std::string& path, const std::string& name) {
        RecordingSink sink;
        const std::uint32_t count = ScanRegValue(key.Root(), path, name, sink);
        EXPECT_EQ(count, sink.traces.size());
        return sink.Lines(key.Path());
    };
    EXPECT_EQ(found(key.Path(), "empty"), Lines{"value |empty"});
    EXPECT_EQ(found(key.Path(), ""), Lines{"value |"});
    EXPECT_EQ(found(key.Path(), "missing"), Lines());
    EXPECT_EQ(found(key.At("missing"), ""), Lines());
}

}  // namespace
