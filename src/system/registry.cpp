#include "system/registry.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "system/registry_security.h"

namespace {

// The answer of the A calls to a path of more than 260 characters, which the registry itself has no trouble
// with: such a path takes the way of the wide calls.
constexpr LSTATUS kPathTooLong = ERROR_MORE_DATA;

std::wstring WidePath(const char* path) {
    std::wstring wide(std::strlen(path) + 1, L'\0');
    ::MultiByteToWideChar(CP_ACP, 0, path, -1, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

LSTATUS CreateKey(HKEY root, const char* path, UniqueKey& key) {
    HKEY raw = nullptr;
    LSTATUS status =
        ::RegCreateKeyExA(root, path, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_WRITE, nullptr, &raw, nullptr);
    if (status == kPathTooLong) {
        status = ::RegCreateKeyExW(root, WidePath(path).c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                   KEY_WRITE, nullptr, &raw, nullptr);
    }
    key.reset(raw);
    return status;
}

LSTATUS DeleteKey(HKEY root, const char* path) {
    const LSTATUS status = ::RegDeleteKeyA(root, path);
    return status == kPathTooLong ? ::RegDeleteKeyW(root, WidePath(path).c_str()) : status;
}

bool WriteValue(HKEY root, const char* key, const char* name, DWORD type, const void* data, DWORD size) {
    UniqueKey owner;
    if (CreateKey(root, key, owner) != ERROR_SUCCESS) return false;
    return ::RegSetValueExA(owner.get(), name, 0, type, static_cast<const BYTE*>(data), size) ==
           ERROR_SUCCESS;
}

bool IsMissing(LSTATUS status) {
    return status == ERROR_FILE_NOT_FOUND || status == ERROR_PATH_NOT_FOUND;
}

bool IsText(DWORD type) {
    return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ;
}

// The strings of a block that ends in a null, up to the empty one, with ", " between them.
std::string JoinStrings(const char* strings) {
    std::string joined;
    for (const char* text = strings; *text != '\0'; text += std::strlen(text) + 1) {
        if (!joined.empty()) joined += ", ";
        joined += text;
    }
    return joined;
}

}  // namespace

LSTATUS OpenKey(HKEY root, const char* path, REGSAM access, UniqueKey& key, DWORD options) {
    key.reset();
    if (root == nullptr || path == nullptr) return ERROR_INVALID_PARAMETER;
    HKEY raw = nullptr;
    LSTATUS status = ::RegOpenKeyExA(root, path, options, access, &raw);
    if (status == kPathTooLong) {
        status = ::RegOpenKeyExW(root, WidePath(path).c_str(), options, access, &raw);
    }
    key.reset(raw);
    return status;
}

bool RegWriteBinary(HKEY root, const char* key, const char* name, const void* data, DWORD size) {
    if (root == nullptr || key == nullptr || name == nullptr || data == nullptr) return false;
    return WriteValue(root, key, name, REG_BINARY, data, size);
}

bool RegWriteString(HKEY root, const char* key, const char* name, const char* text) {
    if (root == nullptr || key == nullptr || name == nullptr || text == nullptr) return false;
    return WriteValue(root, key, name, REG_SZ, text, static_cast<DWORD>(std::strlen(text) + 1));
}

DWORD RegReadDword(HKEY root, const char* key, const char* name, DWORD fallback, REGSAM extraAccess) {
    UniqueKey owner;
    if (name == nullptr || OpenKey(root, key, KEY_QUERY_VALUE | extraAccess, owner) != ERROR_SUCCESS) {
        return fallback;
    }
    // A value of fewer than four bytes fills only the low ones.
    DWORD number = fallback;
    DWORD size = sizeof number;
    const LSTATUS status =
        ::RegQueryValueExA(owner.get(), name, nullptr, nullptr, reinterpret_cast<BYTE*>(&number), &size);
    return status == ERROR_SUCCESS ? number : fallback;
}

DWORD RegValueSize(HKEY root, const char* key, const char* name) {
    UniqueKey owner;
    if (name == nullptr || OpenKey(root, key, KEY_QUERY_VALUE, owner) != ERROR_SUCCESS) return 0;
    DWORD size = 0;
    const LSTATUS status = ::RegQueryValueExA(owner.get(), name, nullptr, nullptr, nullptr, &size);
    return status == ERROR_SUCCESS ? size : 0;
}

DWORD RegValueType(HKEY root, const char* key, const char* name, REGSAM extraAccess) {
    UniqueKey owner;
    if (name == nullptr || OpenKey(root, key, KEY_QUERY_VALUE | extraAccess, owner) != ERROR_SUCCESS) {
        return kNoRegValue;
    }
    DWORD type = REG_NONE;
    const LSTATUS status = ::RegQueryValueExA(owner.get(), name, nullptr, &type, nullptr, nullptr);
    return status == ERROR_SUCCESS ? type : kNoRegValue;
}

bool RegKeyReachable(HKEY root, const char* key) {
    UniqueKey owner;
    const LSTATUS status = OpenKey(root, key, KEY_QUERY_VALUE, owner);
    return status == ERROR_SUCCESS || status == ERROR_ACCESS_DENIED;
}

std::string RegReadText(HKEY root, const char* key, const char* name, const char* fallback,
                        REGSAM extraAccess) {
    const char* const otherwise = fallback != nullptr ? fallback : "";
    UniqueKey owner;
    if (name == nullptr || OpenKey(root, key, KEY_QUERY_VALUE | extraAccess, owner) != ERROR_SUCCESS) {
        return otherwise;
    }
    DWORD type = REG_NONE;
    DWORD size = 0;
    LSTATUS status = ::RegQueryValueExA(owner.get(), name, nullptr, &type, nullptr, &size);
    if (status != ERROR_SUCCESS || !IsText(type)) return otherwise;

    // Two bytes of zero beyond what is read end the text, and a list too whose writer left out its end.
    std::vector<char> block(static_cast<std::size_t>(size) + 2);
    status =
        ::RegQueryValueExA(owner.get(), name, nullptr, &type, reinterpret_cast<BYTE*>(block.data()), &size);
    // The value may have been written anew between the two calls.
    if (status != ERROR_SUCCESS || !IsText(type)) return otherwise;
    return type == REG_MULTI_SZ ? JoinStrings(block.data()) : std::string(block.data());
}

bool RegDeleteKeyGranted(HKEY root, const char* key) {
    if (root == nullptr || key == nullptr) return false;
    const LSTATUS status = DeleteKey(root, key);
    if (status == ERROR_SUCCESS || IsMissing(status)) return true;
    if (status != ERROR_ACCESS_DENIED) return false;

    const TemporaryGrant grant(root, key);
    return grant.Applied() && DeleteKey(root, key) == ERROR_SUCCESS;
}

bool RegDeleteValueGranted(HKEY root, const char* key, const char* name) {
    if (root == nullptr || key == nullptr || name == nullptr) return false;
    UniqueKey owner;
    LSTATUS status = OpenKey(root, key, KEY_READ | KEY_WRITE, owner);
    if (status == ERROR_ACCESS_DENIED) {
        // kept: the open under the grant is the whole success, the value is not deleted.
        const TemporaryGrant grant(root, key);
        return grant.Applied() && OpenKey(root, key, KEY_READ | KEY_WRITE, owner) == ERROR_SUCCESS;
    }
    if (status == ERROR_SUCCESS) status = ::RegDeleteValueA(owner.get(), name);
    return status == ERROR_SUCCESS || IsMissing(status);
}

const char* RegRootShortName(HKEY root) {
    if (root == HKEY_CLASSES_ROOT) return "HKCR";
    if (root == HKEY_CURRENT_USER) return "HKCU";
    if (root == HKEY_LOCAL_MACHINE) return "HKLM";
    if (root == HKEY_USERS) return "HKU";
    return "";
}

const char* RootKeyName(HKEY root) {
    if (root == HKEY_CLASSES_ROOT) return "HKEY_CLASSES_ROOT";
    if (root == HKEY_CURRENT_USER) return "HKEY_CURRENT_USER";
    if (root == HKEY_LOCAL_MACHINE) return "HKEY_LOCAL_MACHINE";
    return nullptr;
}
