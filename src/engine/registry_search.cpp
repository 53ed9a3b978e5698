#include "engine/registry_search.h"

#include <memory>
#include <optional>

#include "engine/trace.h"
#include "system/redirection_table.h"
#include "system/registry.h"
#include "system/registry_security.h"

namespace {

constexpr DWORD kKeyNameCapacity = 260;
constexpr DWORD kValueNameCapacity = 16383;

// The registry itself nests no deeper.
constexpr int kMaxDepth = 512;

class KeyWalk {
  public:
    KeyWalk(HKEY hive, ScanSink& sink) : m_hive(hive), m_sink(sink) {}

    std::uint32_t Scan(const std::string& key, int depth) {
        if (depth > kMaxDepth) return 0;
        std::optional<TemporaryGrant> grant;
        UniqueKey open;
        constexpr REGSAM kAccess = KEY_QUERY_VALUE | KEY_ENUMERATE_SUB_KEYS;
        if (OpenKey(m_hive, key.c_str(), kAccess, open) == ERROR_ACCESS_DENIED) {
            grant.emplace(m_hive, key.c_str());
            if (grant->Applied()) {
                ENGINE_TRACE("Permissions for registry key increased: '%s'.", key.c_str());
                OpenKey(m_hive, key.c_str(), kAccess, open);
            }
        }
        std::uint32_t count = 0;
        if (open) count = ScanOpenKey(open.get(), key, depth);
        open.reset();
        if (grant) {
            grant.reset();
            ENGINE_TRACE("Permissions for registry key reverted: '%s'.", key.c_str());
        }
        return count;
    }

  private:
    std::uint32_t ScanOpenKey(HKEY open, const std::string& key, int depth) {
        DWORD keys = 0;
        DWORD values = 0;
        ::RegQueryInfoKeyA(open, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr,
                           nullptr, nullptr, nullptr);
        const auto path = std::make_shared<const std::string>(key);
        std::uint32_t count = 0;
        // A stop is heeded before the entries of a list, not between them.
        if (!m_sink.Cancelled()) count += ScanSubKeys(open, keys, path, depth);
        if (!m_sink.Cancelled()) count += ScanValues(open, values, path);
        return count;
    }

    std::uint32_t ScanSubKeys(HKEY open, DWORD keys, const std::shared_ptr<const std::string>& path,
                              int depth) {
        std::uint32_t count = 0;
        for (DWORD i = 0; i < keys; ++i) {
            char name[kKeyNameCapacity];
            DWORD length = sizeof name;
            if (::RegEnumKeyExA(open, i, name, &length, nullptr, nullptr, nullptr, nullptr) !=
                ERROR_SUCCESS) {
                continue;
            }
            // kept: the backslash behind it is part of the path that the deeper results store.
            count += Scan(*path + "\\" + name + "\\", depth + 1);
            m_sink.Add(ResultType::RegKey, path, std::string(name, length));
            ++count;
        }
        return count;
    }

    std::uint32_t ScanValues(HKEY open, DWORD values, const std::shared_ptr<const std::string>& path) {
        std::uint32_t count = 0;
        for (DWORD i = 0; i < values; ++i) {
            DWORD length = kValueNameCapacity;
            if (::RegEnumValueA(open, i, m_valueName.get(), &length, nullptr, nullptr, nullptr, nullptr) !=
                ERROR_SUCCESS) {
                continue;
            }
            m_sink.Add(ResultType::RegValue, path, std::string(m_valueName.get(), length));
            ++count;
        }
        return count;
    }

    HKEY m_hive;
    ScanSink& m_sink;
    // One for the whole walk: the values of a key are read when its sub-keys are done.
    std::unique_ptr<char[]> m_valueName = std::make_unique<char[]>(kValueNameCapacity);
};

}  // namespace

std::uint32_t ScanRegValue(HKEY hive, const std::string& key, const std::string& name, ScanSink& sink) {
    if (RegValueType(hive, key.c_str(), name.c_str(), 0) == kNoRegValue) return 0;
    sink.Add(ResultType::RegValue, std::make_shared<const std::string>(key), name);
    return 1;
}

std::uint32_t ScanNativeRegValue(HKEY hive, const std::string& key, const std::string& name, ScanSink& sink) {
    const char* root = RootKeyName(hive);
    const std::string whole = std::string(root ? root : "") + "\\" + key;
    const REGSAM view = RegViewNeeds64Key(whole.c_str()) ? KEY_WOW64_64KEY : 0;
    if (RegValueType(hive, key.c_str(), name.c_str(), view) == kNoRegValue) return 0;
    sink.Add(ResultType::RegValue, std::make_shared<const std::string>(key), name);
    return 1;
}

std::uint32_t ScanRegKey(HKEY hive, const std::string& key, ScanSink& sink) {
    if (!RegKeyReachable(hive, key.c_str())) return 0;
    return KeyWalk(hive, sink).Scan(key, 0);
}
