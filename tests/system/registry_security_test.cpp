#include "system/registry_security.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/api_hook.h"
#include "support/sandbox.h"
#include "system/registry.h"
#include "system/system_facts.h"

namespace {

const HKEY kUser = HKEY_CURRENT_USER;

TEST(Grant, GivesTheUserAndTheLocalSystemEverythingAndNobodyElse) {
    HeapSid user;
    ASSERT_TRUE(GetCurrentUserSid(user));
    SECURITY_DESCRIPTOR descriptor = {};
    HeapAcl acl;
    ASSERT_TRUE(BuildGrantDescriptor(user.get(), descriptor, acl));

    BOOL present = FALSE;
    BOOL defaulted = TRUE;
    ACL* dacl = nullptr;
    ASSERT_TRUE(::GetSecurityDescriptorDacl(&descriptor, &present, &dacl, &defaulted) && present);
    ASSERT_EQ(dacl->AceCount, 2);

    const BYTE localSystem[] = {1, 1, 0, 0, 0, 0, 0, 5, 18, 0, 0, 0};
    const void* const expected[] = {user.get(), localSystem};
    for (DWORD index = 0; index < 2; ++index) {
        void* raw = nullptr;
        ASSERT_TRUE(::GetAce(dacl, index, &raw));
        auto* const ace = static_cast<ACCESS_ALLOWED_ACE*>(raw);
        EXPECT_EQ(ace->Header.AceType, ACCESS_ALLOWED_ACE_TYPE);
        EXPECT_EQ(ace->Mask, DWORD{KEY_ALL_ACCESS});
        EXPECT_TRUE(::EqualSid(&ace->SidStart, const_cast<void*>(expected[index])));
    }
}

TEST(Grant, LastsAsLongAsItsObject) {
    const TestKey key;
    const std::string locked = key.MakeKey("locked");
    key.MakeKey("locked\\below");
    DenyEveryone(kUser, locked);
    const std::vector<BYTE> before = DaclBytes(kUser, locked);
    UniqueKey opened;
    EXPECT_EQ(OpenKey(kUser, locked.c_str(), KEY_READ, opened), ERROR_ACCESS_DENIED);
    {
        const TemporaryGrant grant(kUser, locked.c_str());
        EXPECT_TRUE(grant.Applied());
        EXPECT_EQ(OpenKey(kUser, locked.c_str(), KEY_ALL_ACCESS, opened), ERROR_SUCCESS);
        EXPECT_NE(DaclBytes(kUser, locked), before);
    }
    EXPECT_EQ(DaclBytes(kUser, locked), before);
    EXPECT_EQ(OpenKey(kUser, locked.c_str(), KEY_READ, opened), ERROR_ACCESS_DENIED);
}

TEST(Grant, ThatIsRefusedChangesNothing) {
    const TestKey key;
    const std::vector<BYTE> before = DaclBytes(kUser, key.Path());
    {
        // A descriptor that is not built to its end must not pass for one that lets everybody in.
        auto setDacl = API_HOOK(SetSecurityDescriptorDacl);
        setDacl.FailAlways(ERROR_INVALID_ACL);
        const TemporaryGrant grant(kUser, key.c_str());
        EXPECT_FALSE(grant.Applied());
        EXPECT_EQ(DaclBytes(kUser, key.Path()), before);
    }
    const TemporaryGrant ofNothing(kUser, key.At("missing").c_str());
    EXPECT_FALSE(ofNothing.Applied());
    EXPECT_EQ(DaclBytes(kUser, key.Path()), before);
}

}  // namespace
