#include "app/update_library.h"

#include <shlobj.h>

#include <string>

#include "system/files.h"

namespace {

constexpr int kDone = 0;
constexpr int kNotCalled = -1;
constexpr std::uint32_t kRecordVersion = 2;

// Empty if the shell has no such folder: what is left then would name a file on whatever drive is the current
// one.
std::string LibraryPath() {
    char folder[kPathCapacity] = {};
    if (!::SHGetSpecialFolderPathA(nullptr, folder, CSIDL_PROGRAM_FILES_COMMON, TRUE)) return {};
    return JoinPath(folder, "\\Quillmere\\Kovar3\\Kovar3.dll").value_or(std::string());
}

std::wstring Widen(const char* text) {
    const int length = ::MultiByteToWideChar(CP_ACP, 0, text, -1, nullptr, 0);
    if (length <= 0) return {};
    std::wstring wide(static_cast<std::size_t>(length), L'\0');
    ::MultiByteToWideChar(CP_ACP, 0, text, -1, wide.data(), length);
    wide.pop_back();  // the terminator
    return wide;
}

// With its last backslash.
std::wstring WideProgramFolder() {
    wchar_t path[kPathCapacity] = {};
    const DWORD length = ::GetModuleFileNameW(nullptr, path, kPathCapacity);
    const std::wstring whole(path, length);
    return whole.substr(0, whole.rfind(L'\\') + 1);
}

std::uint32_t HandleBits(HWND window) {
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(window));
}

template <class Function>
void Find(HMODULE module, const char* name, Function*& entry) {
    // The detour over void* is how the compiler lets one function type become another.
    entry = reinterpret_cast<Function*>(reinterpret_cast<void*>(::GetProcAddress(module, name)));
}

}  // namespace

CUniversalWrapper::~CUniversalWrapper() {
    Unload();
}

int CUniversalWrapper::Load(const char* path) {
    Unload();
    // What the library needs itself comes from where the process looks for libraries, not from its own
    // folder.
    if (*path != '\0') m_module = ::LoadLibraryA(path);
    if (m_module == nullptr) return 0;
    Find(m_module, "KvCreate", m_entries.create);
    Find(m_module, "KvShowUpdatesSettingsDialog", m_entries.showUpdatesSettingsDialog);
    Find(m_module, "KvDoAllUpdates", m_entries.doAllUpdates);
    Find(m_module, "KvDoSelfUpdate", m_entries.doSelfUpdate);
    Find(m_module, "KvDoAllUpdatesWithUI", m_entries.doAllUpdatesWithUi);
    Find(m_module, "KvDelete", m_entries.deleteInstance);
    Find(m_module, "KvDoAllUpdatesWithUIEx", m_entries.doAllUpdatesWithUiEx);
    Find(m_module, "KvInitUns", m_entries.initUns);
    Find(m_module, "CollectEmail", m_entries.collectEmail);
    return 0;
}

void CUniversalWrapper::Unload() {
    if (m_module == nullptr) return;
    if (m_entries.deleteInstance != nullptr) m_entries.deleteInstance(m_handle);
    ::FreeLibrary(m_module);
    m_module = nullptr;
    m_handle = 0;
    m_entries = {};
}

int ShowUpdateSettings(HWND owner) {
    CUniversalWrapper library;
    library.Load(LibraryPath().c_str());
    if (library.m_entries.showUpdatesSettingsDialog != nullptr) {
        library.m_entries.showUpdatesSettingsDialog(library.m_handle, owner);
    }
    return kDone;
}

int RunUpdatesWithUi(bool flag) {
    CUniversalWrapper library;
    library.Load(LibraryPath().c_str());
    if (library.m_entries.doAllUpdatesWithUiEx != nullptr) {
        library.m_entries.doAllUpdatesWithUiEx(library.m_handle, flag);
    } else if (library.m_entries.doAllUpdatesWithUi != nullptr) {
        library.m_entries.doAllUpdatesWithUi(library.m_handle);
    }
    return kDone;
}

int ShowEmailPage(const char* page, std::uint32_t reserved, const char* linkTail, HWND owner) {
    // The texts outlive the instance, which may look at them once more when it ends.
    const std::wstring widePage = Widen(page);
    const std::wstring wideTail = Widen(linkTail);
    CUniversalWrapper library;
    library.Load(LibraryPath().c_str());
    if (library.m_entries.create != nullptr) library.m_entries.create(&library.m_handle);
    if (library.m_entries.collectEmail == nullptr) return kNotCalled;
    tagCOLLECT_EMAIL record = {kRecordVersion, widePage.c_str(), reserved, HandleBits(owner),
                               wideTail.c_str()};
    library.m_entries.collectEmail(&record);
    return kDone;
}

int InitLibrary(const char* product, const char* state, const char* link, std::int64_t time, HWND owner) {
    const std::wstring wideProduct = Widen(product);
    const std::wstring wideState = Widen(state);
    const std::wstring wideLink = Widen(link);
    const std::wstring folder = WideProgramFolder();
    CUniversalWrapper library;
    library.Load(LibraryPath().c_str());
    if (library.m_entries.create != nullptr) library.m_entries.create(&library.m_handle);
    if (library.m_entries.initUns == nullptr) return kNotCalled;
    tagINIT_UNS record = {};
    record.version = kRecordVersion;
    record.product = wideProduct.c_str();
    record.state = wideState.c_str();
    record.link = wideLink.c_str();
    record.folder = folder.c_str();
    record.time = time;
    record.enabled = 1;
    record.owner = HandleBits(owner);
    library.m_entries.initUns(library.m_handle, &record);
    return kDone;
}
