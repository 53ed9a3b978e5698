#include <windows.h>

#include <memory>

#include "app/task_scheduler.h"
#include "system/handles.h"
#include "system/registry_security.h"

namespace {

UniqueHandle CurrentToken() {
    HANDLE token = nullptr;
    if (::OpenThreadToken(::GetCurrentThread(), TOKEN_QUERY, TRUE, &token)) return UniqueHandle(token);
    // Unless the thread acts for somebody else it has none of its own.
    if (::GetLastError() != ERROR_NO_TOKEN) return nullptr;
    if (!::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, &token)) return nullptr;
    return UniqueHandle(token);
}

}  // namespace

bool CTaskScheduler::GetCurrentAccount(std::string& user, std::string& domain) {
    const UniqueHandle token = CurrentToken();
    if (token == nullptr) return false;
    DWORD size = 0;
    if (::GetTokenInformation(token.get(), TokenUser, nullptr, 0, &size)) return false;
    if (::GetLastError() != ERROR_INSUFFICIENT_BUFFER) return false;
    const std::unique_ptr<void, ProcessHeapFree> buffer(::HeapAlloc(::GetProcessHeap(), 0, size));
    if (buffer == nullptr) return false;
    if (!::GetTokenInformation(token.get(), TokenUser, buffer.get(), size, &size)) return false;

    char userName[1023];
    char domainName[1023];
    DWORD userSize = sizeof userName;
    DWORD domainSize = sizeof domainName;
    SID_NAME_USE use;
    if (!::LookupAccountSidA(nullptr, static_cast<TOKEN_USER*>(buffer.get())->User.Sid, userName, &userSize,
                             domainName, &domainSize, &use)) {
        return false;
    }
    user = userName;
    domain = domainName;
    return true;
}
