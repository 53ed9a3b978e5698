#include "app/administrator.h"

#include <gtest/gtest.h>

#include "support/api_hook.h"

// Who may use the program at all.

namespace {

struct Answer {
    DWORD status;
    bool administrator;
    bool operator==(const Answer&) const = default;
};

Answer Ask() {
    Answer answer{0, false};
    answer.status = IsUserAdministrator(answer.administrator);
    return answer;
}

void PrintTo(const Answer& answer, std::ostream* out) {
    *out << "status " << answer.status << (answer.administrator ? ", yes" : ", no");
}

// The groups of the token, replaced by one: the local Administrators or the local Users, with these
// attributes.
auto OneGroup(DWORD rid, DWORD attributes) {
    return [=](HANDLE, TOKEN_INFORMATION_CLASS, LPVOID buffer, DWORD size, PDWORD needed) -> BOOL {
        SID_IDENTIFIER_AUTHORITY authority = SECURITY_NT_AUTHORITY;
        *needed = sizeof(TOKEN_GROUPS) + SECURITY_MAX_SID_SIZE;
        if (size < *needed) return FALSE;
        auto* const groups = static_cast<TOKEN_GROUPS*>(buffer);
        groups->GroupCount = 1;
        groups->Groups[0] = {groups + 1, attributes};
        ::InitializeSid(groups + 1, &authority, 2);
        *::GetSidSubAuthority(groups + 1, 0) = SECURITY_BUILTIN_DOMAIN_RID;
        *::GetSidSubAuthority(groups + 1, 1) = rid;
        return TRUE;
    };
}

TEST(IsUserAdministrator, GoesByTheGroupsWhateverTheirAttributes) {
    auto information = API_HOOK(GetTokenInformation);
    information.Replace(OneGroup(DOMAIN_ALIAS_RID_ADMINS, SE_GROUP_ENABLED));
    EXPECT_EQ(Ask(), (Answer{0, true}));
    information.Replace(OneGroup(DOMAIN_ALIAS_RID_ADMINS, SE_GROUP_USE_FOR_DENY_ONLY));
    EXPECT_EQ(Ask(), (Answer{0, true}));
    information.Replace(OneGroup(DOMAIN_ALIAS_RID_USERS, SE_GROUP_ENABLED));
    EXPECT_EQ(Ask(), (Answer{0, false}));
}

TEST(IsUserAdministrator, IsFalseWhenTheTokenCannotBeRead) {
    auto open = API_HOOK(OpenProcessToken);
    open.FailAlways(ERROR_ACCESS_DENIED);
    EXPECT_EQ(Ask(), (Answer{ERROR_ACCESS_DENIED, false}));
}

// kept: so does one that the table of versions does not know.
TEST(IsUserAdministrator, IsTrueOnAWindowsWithoutUserRights) {
    auto version = API_HOOK(GetVersionExA);
    for (const DWORD minor : {10u, 77u}) {
        version.Replace([&](LPOSVERSIONINFOA info) {
            info->dwPlatformId = VER_PLATFORM_WIN32_WINDOWS;
            info->dwMajorVersion = 4;
            info->dwMinorVersion = minor;
            return TRUE;
        });
        EXPECT_EQ(Ask(), (Answer{0, true})) << minor;
    }
}

}  // namespace
