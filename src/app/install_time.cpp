#include "app/install_time.h"

#include <windows.h>

#include <ctime>

#include "app/product.h"
#include "app/resources.h"
#include "resources/ids.h"
#include "system/handles.h"
#include "system/registry.h"

namespace {

constexpr char kInstallTime[] = "InstallTime";

std::string ProductKey(const std::string& company, const std::string& product) {
    return "Software\\" + company + "\\" + product;
}

}  // namespace

void WriteInstallTime() {
    HKEY raw = nullptr;
    const LSTATUS status = ::RegCreateKeyExA(
        HKEY_LOCAL_MACHINE, ProductKey(kCompanyName, ResourceText(IDS_PRODUCT_FOLDER)).c_str(), 0, nullptr,
        REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS, nullptr, &raw, nullptr);
    if (status != ERROR_SUCCESS) return;
    const UniqueKey key(raw);
    FILETIME now = {};
    ::GetSystemTimeAsFileTime(&now);
    ::RegSetValueExA(key.get(), kInstallTime, 0, REG_QWORD, reinterpret_cast<const BYTE*>(&now), sizeof now);
}

std::string ReadInstallDate(const std::string& company, const std::string& product) {
    UniqueKey key;
    if (OpenKey(HKEY_LOCAL_MACHINE, ProductKey(company, product).c_str(), KEY_QUERY_VALUE, key) !=
        ERROR_SUCCESS) {
        return {};
    }
    std::uint64_t fileTime = 0;
    DWORD size = sizeof fileTime;
    const LSTATUS status = ::RegQueryValueExA(key.get(), kInstallTime, nullptr, nullptr,
                                              reinterpret_cast<BYTE*>(&fileTime), &size);
    return status == ERROR_SUCCESS && size == sizeof fileTime ? InstallDateText(fileTime) : std::string();
}

std::string InstallDateText(std::uint64_t fileTime) {
    constexpr std::uint64_t kUnitsPerSecond = 10000000;
    constexpr std::int64_t kSecondsFrom1601To1970 = 11644473600;
    const __time64_t seconds = static_cast<std::int64_t>(fileTime / kUnitsPerSecond) - kSecondsFrom1601To1970;
    const std::tm* const local = ::_localtime64(&seconds);
    if (local == nullptr) return {};
    char text[260];
    return std::string(text, std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", local));
}
