#include "support/sandbox.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <stdexcept>

namespace {

// A name that no other object of any test program has at the same time.
std::string UniqueName() {
    static std::atomic<unsigned> counter{0};
    return std::to_string(::GetCurrentProcessId()) + "-" + std::to_string(++counter);
}

[[noreturn]] void Fail(const std::string& what, const std::string& where, DWORD error) {
    throw std::runtime_error(what + " '" + where + "' failed, error " + std::to_string(error));
}

void RequireInside(std::string_view name) {
    if (name.empty() || name.front() == '\\' || name.find(':') != std::string_view::npos ||
        name.find('/') != std::string_view::npos || name.find("..") != std::string_view::npos) {
        throw std::invalid_argument("not a name within the sandbox: " + std::string(name));
    }
}

void EnsureFolder(const std::string& path) {
    if (::CreateDirectoryA(path.c_str(), nullptr)) return;
    const DWORD error = ::GetLastError();
    if (error != ERROR_ALREADY_EXISTS) Fail("making the folder", path, error);
}

// Makes the folders in `path` that lie below its first `rootLength` characters.
void EnsureParents(const std::string& path, std::size_t rootLength) {
    for (std::size_t end = path.find('\\', rootLength); end != std::string::npos;
         end = path.find('\\', end + 1)) {
        EnsureFolder(path.substr(0, end));
    }
}

std::wstring LongForm(const std::string& path) {
    std::wstring wide(path.size(), L'\0');
    const int length = static_cast<int>(path.size());
    wide.resize(
        static_cast<std::size_t>(::MultiByteToWideChar(CP_ACP, 0, path.data(), length, wide.data(), length)));
    return L"\\\\?\\" + wide;
}

// Removes a folder without its trailing backslash. In wide characters and in the form that knows no longest
// path: a test may have made names that cannot be told otherwise. True if nothing is left.
bool RemoveTree(const std::wstring& folder) {
    WIN32_FIND_DATAW entry;
    const HANDLE search = ::FindFirstFileW((folder + L"\\*").c_str(), &entry);
    if (search != INVALID_HANDLE_VALUE) {
        do {
            const std::wstring name = entry.cFileName;
            if (name == L"." || name == L"..") continue;
            // What Wine deletes at a link is what the link leads to.
            if ((entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) continue;
            const std::wstring path = folder + L"\\" + name;
            ::SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
            if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
                RemoveTree(path);
            } else {
                ::DeleteFileW(path.c_str());
            }
        } while (::FindNextFileW(search, &entry));
        ::FindClose(search);
    }
    ::RemoveDirectoryW(folder.c_str());
    return ::GetFileAttributesW(folder.c_str()) == INVALID_FILE_ATTRIBUTES;
}

// The folder of all test folders, with its trailing backslash.
std::string FolderOfFolders() {
    char temp[MAX_PATH] = {};
    if (::GetTempPathA(sizeof temp, temp) == 0) Fail("finding", "the temp folder", ::GetLastError());
    const std::string folder = std::string(temp) + "VelvaneTests";
    EnsureFolder(folder);
    if (!FinalPathOf(folder.c_str()).starts_with("\\\\?\\C:\\")) {
        throw std::runtime_error("the temp folder leads out of the prefix");
    }
    return folder + "\\";
}

constexpr const char* kKeyOfKeys = "Software\\VelvaneTests";

HKEY CreateKey(HKEY root, const std::string& path) {
    HKEY key = nullptr;
    const LSTATUS status = ::RegCreateKeyExA(root, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                             KEY_READ | KEY_WRITE, nullptr, &key, nullptr);
    if (status != ERROR_SUCCESS) Fail("making the key", path, static_cast<DWORD>(status));
    return key;
}

// Gives the key a DACL that lets everybody do everything, or nobody anything.
void SetDacl(HKEY root, const std::string& path, bool allow) {
    SID_IDENTIFIER_AUTHORITY world = SECURITY_WORLD_SID_AUTHORITY;
    BYTE everyone[SECURITY_MAX_SID_SIZE];
    ::InitializeSid(everyone, &world, 1);
    *::GetSidSubAuthority(everyone, 0) = SECURITY_WORLD_RID;

    alignas(ACL) BYTE block[256];
    ACL* const acl = reinterpret_cast<ACL*>(block);
    SECURITY_DESCRIPTOR descriptor;
    const bool built =
        ::InitializeAcl(acl, sizeof block, ACL_REVISION) &&
        (allow
             ? ::AddAccessAllowedAceEx(acl, ACL_REVISION, CONTAINER_INHERIT_ACE, KEY_ALL_ACCESS, everyone)
             : ::AddAccessDeniedAceEx(acl, ACL_REVISION, CONTAINER_INHERIT_ACE, KEY_ALL_ACCESS, everyone)) &&
        ::InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION) &&
        ::SetSecurityDescriptorDacl(&descriptor, TRUE, acl, FALSE);
    if (!built) Fail("building a DACL for", path, ::GetLastError());

    HKEY key = nullptr;
    LSTATUS status = ::RegOpenKeyExA(root, path.c_str(), 0, WRITE_DAC, &key);
    if (status != ERROR_SUCCESS) Fail("opening the DACL of", path, static_cast<DWORD>(status));
    status = ::RegSetKeySecurity(key, DACL_SECURITY_INFORMATION, &descriptor);
    ::RegCloseKey(key);
    if (status != ERROR_SUCCESS) Fail("writing the DACL of", path, static_cast<DWORD>(status));
}

// Unlocks a key and all below it, and deletes them.
void RemoveKeyTree(HKEY root, const std::string& path) {
    SetDacl(root, path, true);
    HKEY key = nullptr;
    if (::RegOpenKeyExA(root, path.c_str(), 0, KEY_READ, &key) == ERROR_SUCCESS) {
        char name[260];
        while (::RegEnumKeyA(key, 0, name, sizeof name) == ERROR_SUCCESS) {
            RemoveKeyTree(root, path + "\\" + name);
            if (KeyExists(root, path + "\\" + name)) break;
        }
        ::RegCloseKey(key);
    }
    ::RegDeleteKeyA(root, path.c_str());
}

}  // namespace

TestFolder::TestFolder() : m_path(FolderOfFolders() + UniqueName() + "\\") {
    const std::string folder = m_path.substr(0, m_path.size() - 1);
    // A run that was cut off may have left one under the same process id.
    if (Exists(folder)) RemoveTree(LongForm(folder));
    if (!::CreateDirectoryA(folder.c_str(), nullptr)) Fail("making the folder", folder, ::GetLastError());
}

TestFolder::~TestFolder() {
    const std::string folder = m_path.substr(0, m_path.size() - 1);
    if (!RemoveTree(LongForm(folder))) ADD_FAILURE() << "something is left in the test folder " << folder;
}

std::string TestFolder::At(std::string_view name) const {
    RequireInside(name);
    return m_path + std::string(name);
}

std::string TestFolder::MakeFile(std::string_view name, std::string_view content, DWORD attributes) const {
    const std::string path = At(name);
    EnsureParents(path, m_path.size());
    ::SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    const HANDLE file =
        ::CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) Fail("making the file", path, ::GetLastError());
    DWORD written = 0;
    const BOOL success =
        ::WriteFile(file, content.data(), static_cast<DWORD>(content.size()), &written, nullptr);
    ::CloseHandle(file);
    if (!success || written != content.size()) Fail("writing the file", path, ERROR_WRITE_FAULT);
    if (attributes != FILE_ATTRIBUTE_NORMAL && !::SetFileAttributesA(path.c_str(), attributes)) {
        Fail("setting the attributes of", path, ::GetLastError());
    }
    return path;
}

std::string TestFolder::MakeFolder(std::string_view name) const {
    std::string path = At(name);
    if (path.ends_with('\\')) path.pop_back();
    EnsureParents(path, m_path.size());
    EnsureFolder(path);
    return path;
}

std::optional<std::string> FileContent(const std::string& path) {
    const HANDLE file =
        ::CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                      nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return std::nullopt;
    std::string content(::GetFileSize(file, nullptr), '\0');
    DWORD read = 0;
    const BOOL success = ::ReadFile(file, content.data(), static_cast<DWORD>(content.size()), &read, nullptr);
    ::CloseHandle(file);
    if (!success || read != content.size()) return std::nullopt;
    return content;
}

bool Exists(const std::string& path) {
    return ::GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

std::vector<std::string> NamesIn(const std::string& folder) {
    std::vector<std::string> names;
    const std::string mask = folder + (folder.ends_with('\\') ? "*" : "\\*");
    WIN32_FIND_DATAA entry;
    const HANDLE search = ::FindFirstFileA(mask.c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE) return names;
    do {
        const std::string name = entry.cFileName;
        if (name != "." && name != "..") names.push_back(name);
    } while (::FindNextFileA(search, &entry));
    ::FindClose(search);
    std::sort(names.begin(), names.end());
    return names;
}

std::string FinalPathOf(const char* path) {
    const HANDLE handle = ::CreateFileA(path, 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                        nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (handle == INVALID_HANDLE_VALUE) return {};
    char where[1024] = {};
    const DWORD length = ::GetFinalPathNameByHandleA(handle, where, sizeof where, 0);
    ::CloseHandle(handle);
    return length < sizeof where ? where : std::string();
}

TestKey::TestKey(HKEY root) : m_root(root), m_path(std::string(kKeyOfKeys) + "\\" + UniqueName()) {
    if (root != HKEY_CURRENT_USER && root != HKEY_LOCAL_MACHINE) {
        throw std::invalid_argument("a test key lies below HKEY_CURRENT_USER or HKEY_LOCAL_MACHINE");
    }
    // A run that was cut off may have left one under the same process id.
    if (KeyExists(root, m_path)) RemoveKeyTree(root, m_path);
    ::RegCloseKey(CreateKey(root, m_path));
}

TestKey::~TestKey() {
    try {
        if (KeyExists(m_root, m_path)) RemoveKeyTree(m_root, m_path);
    } catch (const std::runtime_error& error) {
        ADD_FAILURE() << error.what();
    }
    if (KeyExists(m_root, m_path)) ADD_FAILURE() << "the test key is still there: " << m_path;
    ::RegDeleteKeyA(m_root, kKeyOfKeys);  // fails while others have theirs in it
}

std::string TestKey::At(std::string_view name) const {
    return m_path + "\\" + std::string(name);
}

std::string TestKey::MakeKey(std::string_view name) const {
    const std::string path = At(name);
    ::RegCloseKey(CreateKey(m_root, path));
    return path;
}

void TestKey::SetText(const char* name, std::string_view text, const char* subKey) const {
    SetRaw(name, REG_SZ, std::string(text) + '\0', subKey);
}

void TestKey::SetNumber(const char* name, DWORD number, const char* subKey) const {
    SetRaw(name, REG_DWORD, std::string_view(reinterpret_cast<const char*>(&number), sizeof number), subKey);
}

void TestKey::SetRaw(const char* name, DWORD type, std::string_view bytes, const char* subKey) const {
    const HKEY key = CreateKey(m_root, *subKey == '\0' ? m_path : At(subKey));
    const LSTATUS status = ::RegSetValueExA(key, name, 0, type, reinterpret_cast<const BYTE*>(bytes.data()),
                                            static_cast<DWORD>(bytes.size()));
    ::RegCloseKey(key);
    if (status != ERROR_SUCCESS) Fail("writing the value", name, static_cast<DWORD>(status));
}

bool KeyExists(HKEY root, const std::string& key) {
    HKEY opened = nullptr;
    const LSTATUS status = ::RegOpenKeyExA(root, key.c_str(), 0, KEY_QUERY_VALUE, &opened);
    if (status == ERROR_SUCCESS) ::RegCloseKey(opened);
    return status == ERROR_SUCCESS || status == ERROR_ACCESS_DENIED;
}

bool ValueExists(HKEY root, const std::string& key, const char* name) {
    return ValueBytes(root, key, name).has_value();
}

std::optional<std::string> ValueBytes(HKEY root, const std::string& key, const char* name) {
    HKEY opened = nullptr;
    if (::RegOpenKeyExA(root, key.c_str(), 0, KEY_QUERY_VALUE, &opened) != ERROR_SUCCESS) return std::nullopt;
    DWORD size = 0;
    LSTATUS status = ::RegQueryValueExA(opened, name, nullptr, nullptr, nullptr, &size);
    std::string bytes(size, '\0');
    if (status == ERROR_SUCCESS && size != 0) {
        status =
            ::RegQueryValueExA(opened, name, nullptr, nullptr, reinterpret_cast<BYTE*>(bytes.data()), &size);
    }
    ::RegCloseKey(opened);
    if (status != ERROR_SUCCESS) return std::nullopt;
    bytes.resize(size);
    return bytes;
}

void DenyEveryone(HKEY root, const std::string& key) {
    SetDacl(root, key, false);
}

std::vector<BYTE> DaclBytes(HKEY root, const std::string& key) {
    HKEY opened = nullptr;
    LSTATUS status = ::RegOpenKeyExA(root, key.c_str(), 0, READ_CONTROL, &opened);
    if (status != ERROR_SUCCESS) Fail("opening the DACL of", key, static_cast<DWORD>(status));
    DWORD size = 0;
    ::RegGetKeySecurity(opened, DACL_SECURITY_INFORMATION, nullptr, &size);
    std::vector<BYTE> bytes(size);
    status = ::RegGetKeySecurity(opened, DACL_SECURITY_INFORMATION, bytes.data(), &size);
    ::RegCloseKey(opened);
    if (status != ERROR_SUCCESS) Fail("reading the DACL of", key, static_cast<DWORD>(status));
    return bytes;
}
