#include "engine/registry_search.h"

#include <memory>
#include <optional>
#include <utility>

#include "engine/trace.h"
#include "system/redirection_table.h"
#include "system/registry.h"
#include "system/registry_security.h"

namespace {

// The longest names of the registry, whose characters take three bytes each at most, with their terminators.
constexpr DWORD kKeyNameCapacity = 255 * 3 + 1;
constexpr DWORD kValueNameCapacity = 16383 * 3 + 1;

// The registry itself nests no deeper.
constexpr int kMaxDepth = 512;

// True if `key`, opened as itself, leads to another key.
bool IsRegistryLink(HKEY key) {
    DWORD type = REG_NONE;
    return ::RegQueryValueExA(key, "SymbolicLinkValue", nullptr, &type, nullptr, nullptr) == ERROR_SUCCESS &&
           type == REG_LINK;
}

// True if the name of a listed value names it again. What the code page lacks comes as a "?" or as U+FFFD,
// which a name may also really hold.
bool NamesValue(HKEY key, const std::string& name) {
    if (name.find('\0') != std::string::npos) return false;
    if (name.find('?') == std::string::npos && name.find("\xEF\xBF\xBD") == std::string::npos) return true;
    return ::RegQueryValueExA(key, name.c_str(), nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
}

class KeyWalk {
  public:
    KeyWalk(HKEY hive, ScanSink& sink) : m_hive(hive), m_sink(sink) {}

    // The count of what is below `key`; nothing if a sub-key is not to be touched: it leads elsewhere, or is
    // not found by the name it was listed with.
    std::optional<std::uint32_t> Scan(const std::string& key, int depth) {
        if (depth > kMaxDepth) return 0;
        std::optional<TemporaryGrant> grant;
        UniqueKey open;
        constexpr REGSAM kAccess = KEY_QUERY_VALUE | KEY_ENUMERATE_SUB_KEYS;
        const DWORD options = depth > 0 ? REG_OPTION_OPEN_LINK : 0;
        LSTATUS status = OpenKey(m_hive, key.c_str(), kAccess, open, options);
        if (status == ERROR_ACCESS_DENIED) {
            grant.emplace(m_hive, key.c_str());
            if (grant->Applied()) {
                ENGINE_TRACE("Permissions for registry key increased: '%s'.", key.c_str());
                status = OpenKey(m_hive, key.c_str(), kAccess, open, options);
            }
        }
        std::optional<std::uint32_t> count;
        if (status == ERROR_SUCCESS) {
            count = ScanOpenKey(open.get(), key, depth);
        } else if (status != ERROR_FILE_NOT_FOUND) {
            count = 0;
        }
        open.reset();
        if (grant) {
            grant.reset();
            ENGINE_TRACE("Permissions for registry key reverted: '%s'.", key.c_str());
        }
        return count;
    }

  private:
    std::optional<std::uint32_t> ScanOpenKey(HKEY open, const std::string& key, int depth) {
        DWORD keys = 0;
        DWORD values = 0;
        ::RegQueryInfoKeyA(open, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr,
                           nullptr, nullptr, nullptr);
        if (depth > 0 && keys == 0 && values == 1 && IsRegistryLink(open)) return std::nullopt;
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
            DWORD length = kKeyNameCapacity;
            if (::RegEnumKeyExA(open, i, m_name.get(), &length, nullptr, nullptr, nullptr, nullptr) !=
                ERROR_SUCCESS) {
                continue;
            }
            const std::string name(m_name.get(), length);
            if (name.find('\0') != std::string::npos) continue;
            // kept: the backslash behind it is part of the path that the deeper results store.
            const auto below = Scan(*path + "\\" + name + "\\", depth + 1);
            if (!below) continue;
            m_sink.Add(ResultType::RegKey, path, name);
            count += *below + 1;
        }
        return count;
    }

    std::uint32_t ScanValues(HKEY open, DWORD values, const std::shared_ptr<const std::string>& path) {
        std::uint32_t count = 0;
        for (DWORD i = 0; i < values; ++i) {
            DWORD length = kValueNameCapacity;
            if (::RegEnumValueA(open, i, m_name.get(), &length, nullptr, nullptr, nullptr, nullptr) !=
                ERROR_SUCCESS) {
                continue;
            }
            std::string name(m_name.get(), length);
            if (!NamesValue(open, name)) continue;
            m_sink.Add(ResultType::RegValue, path, std::move(name));
            ++count;
        }
        return count;
    }

    HKEY m_hive;
    ScanSink& m_sink;
    // One for the whole walk, on the heap: the recursion is deep, and the longest name is long.
    std::unique_ptr<char[]> m_name = std::make_unique<char[]>(kValueNameCapacity);
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
    return KeyWalk(hive, sink).Scan(key, 0).value_or(0);
}
