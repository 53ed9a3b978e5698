#include "system/registry_native.h"

#include <shellapi.h>

#include <cstring>
#include <string>

#include "system/entry_point.h"
#include "system/handles.h"
#include "system/system_facts.h"

namespace {

// ERROR_ERRORS_ENCOUNTERED, which the compiler's headers leave out.
constexpr LSTATUS kErrorsEncountered = 774;

// How long the helper may take to write one value.
constexpr DWORD kHelperMilliseconds = 2000;

std::string EscapeQuotes(const char* text) {
    std::string escaped;
    for (; *text != '\0'; ++text) {
        if (*text == '"') escaped += '\\';
        escaped += *text;
    }
    return escaped;
}

bool VariableExists(const std::string& name) {
    return ::GetEnvironmentVariableA(name.c_str(), nullptr, 0) != 0;
}

// Puts quotes around the name in each %name% of an existing variable, so that it arrives as text and is not
// expanded on the way.
std::string GuardVariables(std::string text) {
    std::size_t position = 0;
    for (;;) {
        const std::size_t first = text.find('%', position);
        if (first == std::string::npos) return text;
        const std::size_t second = text.find('%', first + 1);
        if (second == std::string::npos) return text;
        if (VariableExists(text.substr(first + 1, second - first - 1))) {
            text.insert(second, 1, '"');
            text.insert(first + 1, 1, '"');
            position = second + 3;
        } else {
            // kept: the character behind the pair is passed over, too.
            position = second + 2;
        }
    }
}

}  // namespace

LSTATUS DeleteRegKeyEx(HKEY root, const char* key, REGSAM access, DWORD reserved) {
    if (root == nullptr || key == nullptr) return ERROR_INVALID_PARAMETER;
    using DeleteKeyEx = LSTATUS(WINAPI*)(HKEY, LPCSTR, REGSAM, DWORD);
    const auto deleteKeyEx = FindEntryPoint<DeleteKeyEx>("Advapi32", "RegDeleteKeyExA");
    if (deleteKeyEx == nullptr) return ::RegDeleteKeyA(root, key);
    return deleteKeyEx(root, key, access, reserved);
}

LSTATUS SetRegStringCompat(HKEY key, const char* rootText, const char* subKey, const char* name,
                           const char* data, bool viaHelper) {
    if (key == nullptr || rootText == nullptr || subKey == nullptr || name == nullptr || data == nullptr) {
        return ERROR_INVALID_PARAMETER;
    }
    const bool namesProgramFolder = std::strstr(data, "%ProgramFiles%") != nullptr ||
                                    std::strstr(data, "%CommonProgramFiles%") != nullptr;
    if (viaHelper && namesProgramFolder) return SetRegStringViaRegExe(rootText, subKey, name, data);
    // kept: the size leaves the terminator out.
    return ::RegSetValueExA(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(data),
                            static_cast<DWORD>(std::strlen(data)));
}

LSTATUS SetRegStringViaRegExe(const char* rootText, const char* subKey, const char* name, const char* data) {
    if (rootText == nullptr || subKey == nullptr || name == nullptr || data == nullptr) {
        return kErrorsEncountered;
    }
    const std::string arguments = std::string("ADD \"") + rootText + "\\" + EscapeQuotes(subKey) +
                                  "\" /v \"" + name + "\" /t REG_SZ /d \"" +
                                  GuardVariables(EscapeQuotes(data)) + "\" /f";
    SHELLEXECUTEINFOA info = {};
    info.cbSize = sizeof info;
    info.fMask = SEE_MASK_NOCLOSEPROCESS;
    info.lpFile = "reg.exe";
    info.lpParameters = arguments.c_str();
    info.nShow = SW_HIDE;

    // Without redirection "reg.exe" is the system's native one.
    PVOID redirection = nullptr;
    const BOOL disabled = DisableFsRedirection(&redirection);
    bool written = ::ShellExecuteExA(&info) != FALSE;
    if (written) {
        const UniqueHandle process(info.hProcess);
        written = ::WaitForSingleObject(process.get(), kHelperMilliseconds) != WAIT_TIMEOUT;
    }
    if (disabled) RevertFsRedirection(&redirection);
    return written ? ERROR_SUCCESS : kErrorsEncountered;
}
