#include "system/registry.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/api_hook.h"
#include "support/sandbox.h"
#include "system/registry_security.h"

using namespace std::string_literals;

namespace {

const HKEY kUser = HKEY_CURRENT_USER;

struct TextCase {
    const char* description;
    DWORD type;
    std::string bytes;
    const char* text;
};

const TextCase kTextCases[] = {
    {"a text", REG_SZ, "some text\0"s, "some text"},
    {"a text with more behind its end", REG_SZ, "some\0text\0"s, "some"},
    {"no bytes at all", REG_SZ, ""s, ""},
    {"variables are not expanded", REG_EXPAND_SZ, "%windir%\\x\0"s, "%windir%\\x"},
    {"a list is joined", REG_MULTI_SZ, "a\0b\0c\0\0"s, "a, b, c"},
    {"a list without its end", REG_MULTI_SZ, "a\0b"s, "a, b"},
    {"a list ends at an empty string", REG_MULTI_SZ, "a\0\0b\0\0"s, "a"},
    {"a number is no text", REG_DWORD, "\1\2\3\4"s, "fallback"},
};

TEST(RegistryTexts, AreReadByTheirType) {
    const TestKey key;
    for (const TextCase& row : kTextCases) {
        key.SetRaw("value", row.type, row.bytes);
        EXPECT_EQ(RegReadText(kUser, key.c_str(), "value", "fallback"), row.text) << row.description;
        EXPECT_EQ(RegValueType(kUser, key.c_str(), "value", 0), row.type) << row.description;
    }
    EXPECT_EQ(RegReadText(kUser, key.c_str(), "missing", "fallback"), "fallback");
    EXPECT_EQ(RegReadText(kUser, key.At("missing").c_str(), "value", "fallback"), "fallback");
    EXPECT_EQ(RegReadText(kUser, key.At("missing").c_str(), "value", nullptr), "");
}

TEST(RegistryFacts, TellMissingFromPresent) {
    const TestKey key;
    key.SetText("text", "1234");
    EXPECT_EQ(RegValueSize(kUser, key.c_str(), "text"), 5u);
    EXPECT_EQ(RegValueSize(kUser, key.c_str(), "missing"), 0u);
    EXPECT_EQ(RegValueType(kUser, key.c_str(), "missing", 0), kNoRegValue);
    EXPECT_EQ(RegValueType(kUser, key.At("missing").c_str(), "text", 0), kNoRegValue);

    DenyEveryone(kUser, key.MakeKey("locked"));
    EXPECT_TRUE(RegKeyReachable(kUser, key.c_str()));
    EXPECT_TRUE(RegKeyReachable(kUser, key.At("locked").c_str())) << "a locked key is worth a walk";
    EXPECT_FALSE(RegKeyReachable(kUser, key.At("missing").c_str()));
}

TEST(RegistryFacts, AreReadFromTheViewThatIsAskedFor) {
    const TestKey key(HKEY_LOCAL_MACHINE);
    HKEY raw = nullptr;
    ASSERT_EQ(::RegCreateKeyExA(HKEY_LOCAL_MACHINE, key.c_str(), 0, nullptr, 0, KEY_WRITE | KEY_WOW64_32KEY,
                                nullptr, &raw, nullptr),
              ERROR_SUCCESS);
    const UniqueKey other(raw);
    ::RegSetValueExA(other.get(), "text", 0, REG_EXPAND_SZ, reinterpret_cast<const BYTE*>("32"), 3);

    EXPECT_EQ(RegReadText(HKEY_LOCAL_MACHINE, key.c_str(), "text", "none", KEY_WOW64_64KEY), "none");
    EXPECT_EQ(RegReadText(HKEY_LOCAL_MACHINE, key.c_str(), "text", "none", KEY_WOW64_32KEY), "32");
    ::RegDeleteKeyExA(HKEY_LOCAL_MACHINE, key.c_str(), KEY_WOW64_32KEY, 0);
}

TEST(RegistryDeletes, MissingCountsAsGone) {
    const TestKey key;
    key.SetText("value", "x", "sub");
    const std::string sub = key.At("sub");
    const std::string missing = key.At("missing");
    EXPECT_TRUE(RegDeleteValueGranted(kUser, missing.c_str(), "value"));
    EXPECT_TRUE(RegDeleteValueGranted(kUser, sub.c_str(), "missing"));
    EXPECT_TRUE(RegDeleteValueGranted(kUser, sub.c_str(), "value"));
    EXPECT_FALSE(ValueExists(kUser, sub, "value"));

    EXPECT_TRUE(RegDeleteKeyGranted(kUser, missing.c_str()));
    EXPECT_TRUE(RegDeleteKeyGranted(kUser, sub.c_str()));
    EXPECT_FALSE(KeyExists(kUser, sub));
}

TEST(RegistryDeletes, AKeyWithSubKeysStaysWithItsSecurity) {
    const TestKey key;
    const std::string sub = key.MakeKey("sub");
    key.MakeKey("sub\\below");
    const std::vector<BYTE> before = DaclBytes(kUser, sub);
    auto setSecurity = API_HOOK(RegSetKeySecurity);
    EXPECT_FALSE(RegDeleteKeyGranted(kUser, sub.c_str()));
    EXPECT_EQ(setSecurity.Calls(), 2) << "the grant, and the way back";
    EXPECT_EQ(DaclBytes(kUser, sub), before);
    EXPECT_TRUE(KeyExists(kUser, key.At("sub\\below")));
}

TEST(RegistryDeletes, ALockedKeyIsDeletedUnderTheGrant) {
    const TestKey key;
    const std::string locked = key.MakeKey("locked");
    DenyEveryone(kUser, locked);
    auto deleteKey = API_HOOK(RegDeleteKeyA);
    deleteKey.FailAt(1, 0, LSTATUS{ERROR_ACCESS_DENIED});
    UniqueKey underGrant;
    deleteKey.Before(2, [&] {
        EXPECT_EQ(OpenKey(kUser, locked.c_str(), KEY_ALL_ACCESS, underGrant), ERROR_SUCCESS);
        underGrant.reset();
    });
    EXPECT_TRUE(RegDeleteKeyGranted(kUser, locked.c_str()));
    EXPECT_EQ(deleteKey.Calls(), 2);
    EXPECT_FALSE(KeyExists(kUser, locked));
}

TEST(RegistryDeletes, ALockedKeyThatCannotBeUnlockedStays) {
    const TestKey key;
    const std::string locked = key.MakeKey("locked");
    DenyEveryone(kUser, locked);
    const std::vector<BYTE> before = DaclBytes(kUser, locked);
    auto deleteKey = API_HOOK(RegDeleteKeyA);
    deleteKey.FailAlways(0, LSTATUS{ERROR_ACCESS_DENIED});
    auto setSecurity = API_HOOK(RegSetKeySecurity);
    setSecurity.FailAt(1, 0, LSTATUS{ERROR_ACCESS_DENIED});
    EXPECT_FALSE(RegDeleteKeyGranted(kUser, locked.c_str()));
    EXPECT_EQ(deleteKey.Calls(), 1) << "without a grant there is no second try";
    EXPECT_EQ(setSecurity.Calls(), 2) << "the old security is written back all the same";
    EXPECT_EQ(DaclBytes(kUser, locked), before);
}

TEST(RegistryDeletes, ALockedValueIsReportedGoneAndStays) {
    const TestKey key;
    key.SetText("value", "x", "locked");
    const std::string locked = key.At("locked");
    const std::vector<BYTE> open = DaclBytes(kUser, locked);
    DenyEveryone(kUser, locked);
    const std::vector<BYTE> before = DaclBytes(kUser, locked);
    ASSERT_NE(before, open);
    EXPECT_TRUE(RegDeleteValueGranted(kUser, locked.c_str(), "value"));
    EXPECT_EQ(DaclBytes(kUser, locked), before);
    {
        const TemporaryGrant grant(kUser, locked.c_str());
        EXPECT_TRUE(ValueExists(kUser, locked, "value"));
    }
    auto setSecurity = API_HOOK(RegSetKeySecurity);
    setSecurity.FailAlways(0, LSTATUS{ERROR_ACCESS_DENIED});
    EXPECT_FALSE(RegDeleteValueGranted(kUser, locked.c_str(), "value")) << "there was no grant";
}

}  // namespace
