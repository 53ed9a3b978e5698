#include "end_to_end/restart_stand_in.h"

#include <psapi.h>

#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/api_hook.h"
#include "system/entry_point.h"

namespace {

constexpr DWORD kSize = 4096;       // of the shared memory: the calls, behind them the code
constexpr DWORD kCodeOffset = 256;  // of the code in it

// The function: counts, writes down its two arguments, returns TRUE. At kAddress stands where to.
#ifdef _WIN64
constexpr BYTE kCode[] = {0x48, 0xB8, 0,    0, 0, 0, 0, 0, 0, 0,  // mov rax, calls
                          0xFF, 0x00,                             // inc dword [rax]
                          0x89, 0x48, 0x04,                       // mov [rax+4], ecx
                          0x89, 0x50, 0x08,                       // mov [rax+8], edx
                          0xB8, 1,    0,    0, 0,                 // mov eax, TRUE
                          0xC3};                                  // ret
constexpr std::size_t kAddress = 2;
#else
constexpr BYTE kCode[] = {0xB8, 0,    0,    0,    0,  // mov eax, calls
                          0xFF, 0x00,                 // inc dword [eax]
                          0x8B, 0x4C, 0x24, 0x04,     // mov ecx, [esp+4]
                          0x89, 0x48, 0x04,           // mov [eax+4], ecx
                          0x8B, 0x4C, 0x24, 0x08,     // mov ecx, [esp+8]
                          0x89, 0x48, 0x08,           // mov [eax+8], ecx
                          0xB8, 1,    0,    0,    0,  // mov eax, TRUE
                          0xC2, 8,    0};             // ret 8
constexpr std::size_t kAddress = 1;
#endif

void Require(bool holds, const char* what) {
    if (!holds) throw std::runtime_error(std::string("no stand-in for the restart: ") + what);
}

// Maps shared memory into another process. Calls by name: only later systems have a documented form.
BYTE* MapInto(HANDLE process, HANDLE shared) {
    using Map = LONG(WINAPI*)(HANDLE, HANDLE, void**, ULONG_PTR, SIZE_T, LARGE_INTEGER*, SIZE_T*, DWORD,
                              ULONG, ULONG);
    constexpr DWORD kShare = 1;  // child processes get the view as well
    void* place = nullptr;
    SIZE_T size = 0;
    const auto map = FindEntryPoint<Map>("ntdll", "NtMapViewOfSection");
    const LONG status = map(shared, process, &place, 0, 0, nullptr, &size, kShare, 0, PAGE_EXECUTE_READWRITE);
    return status >= 0 ? static_cast<BYTE*>(place) : nullptr;
}

// Where in the image the program keeps the address of the function, from the image's begin.
std::vector<SIZE_T> ImportOffsets(const char* path, const char* function) {
    const HMODULE image = ::LoadLibraryExA(path, nullptr, DONT_RESOLVE_DLL_REFERENCES);
    Require(image != nullptr, "its file cannot be read");
    std::vector<SIZE_T> offsets;
    for (void** const place : api_hook::FindImports(image, function))
        offsets.push_back(
            static_cast<SIZE_T>(reinterpret_cast<BYTE*>(place) - reinterpret_cast<BYTE*>(image)));
    ::FreeLibrary(image);
    Require(!offsets.empty(), "the program does not import it");
    return offsets;
}

}  // namespace

RestartStandIn::RestartStandIn(const ProgramRun& run)
    : m_shared(
          ::CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_EXECUTE_READWRITE, 0, kSize, nullptr)) {
    m_calls = static_cast<Calls*>(::MapViewOfFile(m_shared.get(), FILE_MAP_WRITE, 0, 0, kSize));
    BYTE* const there = MapInto(run.Process(), m_shared.get());
    Require(m_calls != nullptr && there != nullptr, "memory cannot be shared");
    BYTE* const code = reinterpret_cast<BYTE*>(m_calls) + kCodeOffset;
    std::memcpy(code, kCode, sizeof kCode);
    std::memcpy(code + kAddress, &there, sizeof there);
    const BYTE* const entry = there + kCodeOffset;

    HMODULE program = nullptr;
    DWORD size = 0;
    char path[MAX_PATH] = "";
    Require(::EnumProcessModules(run.Process(), &program, sizeof program, &size) &&
                ::GetModuleFileNameExA(run.Process(), program, path, sizeof path) != 0,
            "the program is not loaded");
    for (const SIZE_T offset : ImportOffsets(path, "ExitWindowsEx")) {
        void* const place = reinterpret_cast<BYTE*>(program) + offset;
        DWORD protection = 0;
        Require(::VirtualProtectEx(run.Process(), place, sizeof entry, PAGE_READWRITE, &protection) &&
                    ::WriteProcessMemory(run.Process(), place, &entry, sizeof entry, nullptr),
                "the program's memory cannot be written");
    }
}

RestartStandIn::~RestartStandIn() {
    ::UnmapViewOfFile(m_calls);
}
