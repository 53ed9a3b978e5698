#include "system/trusted_path.h"

#include <windows.h>

#include <aclapi.h>
#include <sddl.h>

#include <memory>

#include "system/files.h"
#include "system/handles.h"
#include "system/system_facts.h"

namespace {

struct LocalFreer {
    void operator()(void* block) const { ::LocalFree(block); }
};
using LocalBlock = std::unique_ptr<void, LocalFreer>;

std::string SidText(PSID sid) {
    char* raw = nullptr;
    if (!::ConvertSidToStringSidA(sid, &raw)) return {};
    const LocalBlock text(raw);
    return raw;
}

bool IsTrustedOwner(const std::string& owner) {
    // The local system, the administrators, and the service that installs Windows' own files.
    static constexpr const char* kOwners[] = {
        "S-1-5-18", "S-1-5-32-544", "S-1-5-80-956008885-3418522649-1831038044-1853292631-2271478464"};
    for (const char* trusted : kOwners)
        if (owner == trusted) return true;
    return !owner.empty() && owner == GetCurrentUserSidString();
}

std::string OwnerText(PSID owner, PSECURITY_DESCRIPTOR descriptor, DWORD status) {
    const LocalBlock freer(descriptor);
    return status == ERROR_SUCCESS ? SidText(owner) : "";
}

// Of the link itself, not of what it leads to.
std::string LinkOwner(const char* link) {
    const auto handle = OwnHandle<UniqueHandle>(
        ::CreateFileA(link, READ_CONTROL, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                      OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    if (!handle) return {};
    PSID owner = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    const DWORD status = ::GetSecurityInfo(handle.get(), SE_FILE_OBJECT, OWNER_SECURITY_INFORMATION, &owner,
                                           nullptr, nullptr, nullptr, &descriptor);
    return OwnerText(owner, descriptor, status);
}

}  // namespace

bool IsTrustedLink(const char* link) {
    return IsTrustedOwner(LinkOwner(link));
}

bool IsTrusted(const char* path) {
    if (IsLink(path)) return false;
    PSID owner = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    const DWORD status = ::GetNamedSecurityInfoA(path, SE_FILE_OBJECT, OWNER_SECURITY_INFORMATION, &owner,
                                                 nullptr, nullptr, nullptr, &descriptor);
    return IsTrustedOwner(OwnerText(owner, descriptor, status));
}

void MakeProtectedFolder(const char* path) {
    PSECURITY_DESCRIPTOR raw = nullptr;
    // Protected from what the parent hands down: full access for the system and the administrators, reading
    // for users.
    if (!::ConvertStringSecurityDescriptorToSecurityDescriptorA(
            "D:P(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)(A;OICI;GRGX;;;BU)", SDDL_REVISION_1, &raw, nullptr)) {
        return;
    }
    const LocalBlock descriptor(raw);
    SECURITY_ATTRIBUTES attributes = {sizeof attributes, raw, FALSE};
    ::CreateDirectoryA(path, &attributes);
}
