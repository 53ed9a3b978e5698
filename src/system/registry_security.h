#pragma once

#include <windows.h>

#include <memory>
#include <vector>

// A key's DACL: reading and writing it, and the temporary grant by which a locked key is opened for the
// moment. Ownership is neither read nor taken. Null arguments fail without a call. Any thread; a grant is
// visible to the whole system while it lasts.

struct ProcessHeapFree {
    void operator()(void* block) const { ::HeapFree(::GetProcessHeap(), 0, block); }
};
// The user's SID or an ACL, on the process heap.
using HeapSid = std::unique_ptr<void, ProcessHeapFree>;
using HeapAcl = std::unique_ptr<ACL, ProcessHeapFree>;

// A self-relative security descriptor; empty where none was read.
using SecurityBytes = std::vector<BYTE>;

// Reads the key's DACL. False leaves `descriptor` empty; it may be empty on success too, when the key has
// nothing to tell.
bool RegGetSecurity(HKEY root, const char* key, SecurityBytes& descriptor);

// Writes the DACL of `descriptor` to the key and, if `recursive`, to all keys below. True if the key itself
// took it.
bool RegSetSecurity(HKEY root, const char* key, PSECURITY_DESCRIPTOR descriptor, bool recursive);

// A copy of the SID of the user who runs the process.
bool GetCurrentUserSid(HeapSid& sid);

// Makes in `descriptor` (absolute, caller's storage, points into `acl`) a DACL that gives full access to
// `userSid` and to the local system, and to nobody else. On failure `descriptor` is not one that the system
// takes.
bool BuildGrantDescriptor(PSID userSid, SECURITY_DESCRIPTOR& descriptor, HeapAcl& acl);

// Full access to one key for the current user for as long as the object lives; then the key's old DACL is
// back, if it could be read, whether the grant was taken or not.
class TemporaryGrant {
  public:
    // Remembers the key's security and applies the grant. `key` must outlive the object.
    TemporaryGrant(HKEY root, const char* key);
    ~TemporaryGrant();
    TemporaryGrant(const TemporaryGrant&) = delete;
    TemporaryGrant& operator=(const TemporaryGrant&) = delete;

    bool Applied() const { return m_applied; }

  private:
    HKEY m_root;
    const char* m_key;
    SecurityBytes m_oldSecurity;
    bool m_applied = false;
};
