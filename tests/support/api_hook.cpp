#include "support/api_hook.h"

#include <cstring>

namespace api_hook {

namespace {

SRWLOCK g_lock = SRWLOCK_INIT;

// What GetProcAddress is to answer, the last one made first in force.
struct LateBoundEntry {
    std::string name;
    void* replacement;
};
std::vector<LateBoundEntry> g_lateBound;
std::unique_ptr<ImportPatch> g_getProcAddress;

using GetProcAddressFunction = FARPROC(WINAPI*)(HMODULE, LPCSTR);
GetProcAddressFunction g_realGetProcAddress = nullptr;

const IMAGE_IMPORT_DESCRIPTOR* FirstImport(BYTE* base) {
    const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* const nt = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const DWORD offset = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    return reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + offset);
}

void WriteProtected(void** place, void* value) {
    DWORD protection = 0;
    ::VirtualProtect(place, sizeof *place, PAGE_READWRITE, &protection);
    *place = value;
    ::VirtualProtect(place, sizeof *place, protection, &protection);
}

FARPROC AsProcedure(void* function) {
    return reinterpret_cast<FARPROC>(function);
}

FARPROC WINAPI AnswerGetProcAddress(HMODULE module, LPCSTR name) {
    {
        const Lock lock;
        if (!IS_INTRESOURCE(name)) {
            for (auto entry = g_lateBound.rbegin(); entry != g_lateBound.rend(); ++entry) {
                if (entry->name == name) return AsProcedure(entry->replacement);
            }
        }
    }
    return g_realGetProcAddress(module, name);
}

// What the code under test would find in the modules that it may ask.
void* FindExport(const char* name) {
    for (const char* module : {"kernel32", "advapi32", "shell32", "user32", "ntdll"}) {
        const HMODULE handle = ::GetModuleHandleA(module);
        const FARPROC found = handle != nullptr ? ::GetProcAddress(handle, name) : nullptr;
        if (found != nullptr) return reinterpret_cast<void*>(found);
    }
    return nullptr;
}

}  // namespace

std::vector<void**> FindImports(HMODULE program, const char* name) {
    std::vector<void**> places;
    BYTE* const base = reinterpret_cast<BYTE*>(program);
    for (const IMAGE_IMPORT_DESCRIPTOR* import = FirstImport(base); import->Name != 0; ++import) {
        const auto* names = reinterpret_cast<const IMAGE_THUNK_DATA*>(base + import->OriginalFirstThunk);
        auto* place = reinterpret_cast<void**>(base + import->FirstThunk);
        for (; names->u1.AddressOfData != 0; ++names, ++place) {
            if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) continue;
            const auto* const byName =
                reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + names->u1.AddressOfData);
            if (std::strcmp(reinterpret_cast<const char*>(byName->Name), name) == 0) places.push_back(place);
        }
    }
    return places;
}

Lock::Lock() : m_lastError(::GetLastError()) {
    ::AcquireSRWLockExclusive(&g_lock);
}

Lock::~Lock() {
    ::ReleaseSRWLockExclusive(&g_lock);
    ::SetLastError(m_lastError);
}

ImportPatch::ImportPatch(const char* name, void* replacement) {
    for (void** const place : FindImports(::GetModuleHandleA(nullptr), name)) {
        m_entries.emplace_back(place, *place);
        WriteProtected(place, replacement);
    }
    if (m_entries.empty()) throw std::runtime_error(std::string("the program does not import ") + name);
}

ImportPatch::~ImportPatch() {
    for (const auto& [place, original] : m_entries) WriteProtected(place, original);
}

LateBoundPatch::LateBoundPatch(const char* name, void* replacement)
    : m_name(name), m_original(FindExport(name)) {
    bool first = false;
    {
        const Lock lock;
        first = g_lateBound.empty();
        g_lateBound.push_back({name, replacement});
    }
    if (!first) return;
    g_realGetProcAddress = ::GetProcAddress;
    auto patch =
        std::make_unique<ImportPatch>("GetProcAddress", reinterpret_cast<void*>(AnswerGetProcAddress));
    const Lock lock;
    g_getProcAddress = std::move(patch);
}

LateBoundPatch::~LateBoundPatch() {
    std::unique_ptr<ImportPatch> patch;
    {
        const Lock lock;
        for (auto entry = g_lateBound.rbegin(); entry != g_lateBound.rend(); ++entry) {
            if (entry->name != m_name) continue;
            g_lateBound.erase(std::next(entry).base());
            break;
        }
        if (g_lateBound.empty()) patch = std::move(g_getProcAddress);
    }
}

}  // namespace api_hook
