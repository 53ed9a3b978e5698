#include "system/registry_security.h"

#include <cstring>

#include "system/registry.h"

namespace {

struct SidFree {
    void operator()(void* sid) const { ::FreeSid(sid); }
};
using UniqueSid = std::unique_ptr<void, SidFree>;

UniqueSid LocalSystemSid() {
    SID_IDENTIFIER_AUTHORITY authority = {{0, 0, 0, 0, 0, 5}};  // NT
    PSID sid = nullptr;
    if (!::AllocateAndInitializeSid(&authority, 1, SECURITY_LOCAL_SYSTEM_RID, 0, 0, 0, 0, 0, 0, 0, &sid)) {
        return nullptr;
    }
    return UniqueSid(sid);
}

// What an access allowed entry takes without its SID.
constexpr DWORD kAceHead = FIELD_OFFSET(ACCESS_ALLOWED_ACE, SidStart);
static_assert(kAceHead == 8);
static_assert(sizeof(ACL) == 8);

// Adds an entry at the end of `acl` that allows `sid` everything on a key and on what is made below it.
bool AddFullAccess(ACL& acl, PSID sid) {
    const DWORD sidSize = ::GetLengthSid(sid);
    std::vector<BYTE> block(kAceHead + sidSize);
    const ACE_HEADER header = {ACCESS_ALLOWED_ACE_TYPE, OBJECT_INHERIT_ACE | CONTAINER_INHERIT_ACE,
                               static_cast<WORD>(block.size())};
    const ACCESS_MASK mask = KEY_ALL_ACCESS;
    std::memcpy(block.data(), &header, sizeof header);
    std::memcpy(block.data() + sizeof header, &mask, sizeof mask);
    if (!::CopySid(sidSize, block.data() + kAceHead, sid)) return false;
    return ::AddAce(&acl, ACL_REVISION, MAXDWORD, block.data(), static_cast<DWORD>(block.size())) != FALSE;
}

// Writes the DACL to all keys below `key`, as far as they can be reached.
void SetSecurityBelow(HKEY root, const char* key, PSECURITY_DESCRIPTOR descriptor) {
    UniqueKey owner;
    if (OpenKey(root, key, KEY_READ, owner) != ERROR_SUCCESS) return;
    DWORD count = 0;
    if (::RegQueryInfoKeyA(owner.get(), nullptr, nullptr, nullptr, &count, nullptr, nullptr, nullptr, nullptr,
                           nullptr, nullptr, nullptr) != ERROR_SUCCESS) {
        return;
    }
    char name[260];
    for (DWORD index = 0; index < count; ++index) {
        const LSTATUS status = ::RegEnumKeyA(owner.get(), index, name, sizeof name);
        if (status == ERROR_NO_MORE_ITEMS) break;
        if (status == ERROR_SUCCESS) RegSetSecurity(owner.get(), name, descriptor, true);
    }
}

}  // namespace

bool RegGetSecurity(HKEY root, const char* key, SecurityBytes& descriptor) {
    descriptor.clear();
    UniqueKey owner;
    if (OpenKey(root, key, READ_CONTROL, owner) != ERROR_SUCCESS) return false;
    DWORD size = 0;
    LSTATUS status = ::RegGetKeySecurity(owner.get(), DACL_SECURITY_INFORMATION, nullptr, &size);
    if (status != ERROR_INSUFFICIENT_BUFFER) return status == ERROR_SUCCESS;
    descriptor.resize(size);
    status = ::RegGetKeySecurity(owner.get(), DACL_SECURITY_INFORMATION, descriptor.data(), &size);
    if (status != ERROR_SUCCESS) descriptor.clear();
    return status == ERROR_SUCCESS;
}

bool RegSetSecurity(HKEY root, const char* key, PSECURITY_DESCRIPTOR descriptor, bool recursive) {
    if (descriptor == nullptr) return false;
    bool written = false;
    {
        UniqueKey owner;
        if (OpenKey(root, key, WRITE_DAC, owner) == ERROR_SUCCESS) {
            written =
                ::RegSetKeySecurity(owner.get(), DACL_SECURITY_INFORMATION, descriptor) == ERROR_SUCCESS;
        }
    }
    if (recursive) SetSecurityBelow(root, key, descriptor);
    return written;
}

bool GetCurrentUserSid(HeapSid& sid) {
    sid.reset();
    HANDLE raw = nullptr;
    if (!::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, &raw)) return false;
    const UniqueHandle token(raw);

    DWORD size = 0;
    if (::GetTokenInformation(token.get(), TokenUser, nullptr, 0, &size)) return false;
    if (::GetLastError() != ERROR_INSUFFICIENT_BUFFER) return false;
    std::vector<BYTE> user(size);
    if (!::GetTokenInformation(token.get(), TokenUser, user.data(), size, &size)) return false;

    const PSID source = reinterpret_cast<const TOKEN_USER*>(user.data())->User.Sid;
    const DWORD length = ::GetLengthSid(source);
    HeapSid copy(::HeapAlloc(::GetProcessHeap(), 0, length));
    if (copy == nullptr || !::CopySid(length, copy.get(), source)) return false;
    sid = std::move(copy);
    return true;
}

bool BuildGrantDescriptor(PSID userSid, SECURITY_DESCRIPTOR& descriptor, HeapAcl& acl) {
    acl.reset();
    if (userSid == nullptr) return false;
    const UniqueSid system = LocalSystemSid();
    if (system == nullptr) return false;

    const DWORD sidSizes = ::GetLengthSid(userSid) + ::GetLengthSid(system.get());
    const DWORD size = DWORD{sizeof(ACL)} + 2 * kAceHead + sidSizes;
    acl.reset(static_cast<ACL*>(::HeapAlloc(::GetProcessHeap(), 0, size)));
    if (acl == nullptr || !::InitializeAcl(acl.get(), size, ACL_REVISION)) return false;
    if (!AddFullAccess(*acl, userSid) || !AddFullAccess(*acl, system.get())) return false;
    if (::InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION) &&
        ::SetSecurityDescriptorDacl(&descriptor, TRUE, acl.get(), FALSE)) {
        return true;
    }
    descriptor = {};  // one without a DACL would let everybody in
    return false;
}

TemporaryGrant::TemporaryGrant(HKEY root, const char* key) : m_root(root), m_key(key) {
    RegGetSecurity(root, key, m_oldSecurity);
    HeapSid user;
    if (!GetCurrentUserSid(user)) return;
    // Zeroed, which the system refuses, unless it is built to its end.
    SECURITY_DESCRIPTOR descriptor = {};
    HeapAcl acl;
    BuildGrantDescriptor(user.get(), descriptor, acl);
    m_applied = RegSetSecurity(root, key, &descriptor, false);
}

TemporaryGrant::~TemporaryGrant() {
    // Fails where the key itself has been deleted, which is no matter.
    if (!m_oldSecurity.empty()) RegSetSecurity(m_root, m_key, m_oldSecurity.data(), false);
}
