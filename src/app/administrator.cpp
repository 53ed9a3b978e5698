#include "app/administrator.h"

#include <algorithm>
#include <memory>
#include <new>
#include <string>

#include "system/handles.h"
#include "system/system_facts.h"

namespace {

struct SidFreer {
    void operator()(void* sid) const { ::FreeSid(sid); }
};

DWORD ReadGroups(std::unique_ptr<BYTE[]>& buffer) {
    HANDLE raw = nullptr;
    if (!::OpenProcessToken(::GetCurrentProcess(), TOKEN_READ, &raw)) return ::GetLastError();
    const UniqueHandle token(raw);
    DWORD needed = 0;
    ::GetTokenInformation(token.get(), TokenGroups, nullptr, 0, &needed);
    // Groups may be added between the two questions.
    const DWORD size = std::max<DWORD>(needed * 2, 1024);
    buffer.reset(new (std::nothrow) BYTE[size]);
    if (buffer == nullptr) return ERROR_OUTOFMEMORY;
    if (!::GetTokenInformation(token.get(), TokenGroups, buffer.get(), size, &needed))
        return ::GetLastError();
    return ERROR_SUCCESS;
}

}  // namespace

DWORD IsUserAdministrator(bool& administrator) {
    std::string name;
    int version = 0;
    GetWindowsVersionName(name, version);
    administrator = version <= 99;
    if (administrator) return ERROR_SUCCESS;

    std::unique_ptr<BYTE[]> buffer;
    const DWORD status = ReadGroups(buffer);
    if (status != ERROR_SUCCESS) return status;

    SID_IDENTIFIER_AUTHORITY authority = SECURITY_NT_AUTHORITY;
    PSID raw = nullptr;
    if (!::AllocateAndInitializeSid(&authority, 2, SECURITY_BUILTIN_DOMAIN_RID, DOMAIN_ALIAS_RID_ADMINS, 0, 0,
                                    0, 0, 0, 0, &raw)) {
        return ::GetLastError();
    }
    const std::unique_ptr<void, SidFreer> administrators(raw);
    const auto* const groups = reinterpret_cast<const TOKEN_GROUPS*>(buffer.get());
    administrator = std::any_of(groups->Groups, groups->Groups + groups->GroupCount,
                                [&](const SID_AND_ATTRIBUTES& group) {
                                    return ::EqualSid(group.Sid, administrators.get()) != FALSE;
                                });
    return ERROR_SUCCESS;
}
