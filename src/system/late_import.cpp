#include <windows.h>

#include <delayimp.h>

#include "system/library_search.h"

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace {

template <class Type>
Type* AtImage(RVA address) {
    return reinterpret_cast<Type*>(reinterpret_cast<char*>(&__ImageBase) + address);
}

// Ends the process: the function cannot be called, and its callers do not expect that.
[[noreturn]] void Fail(DWORD code, const char* name) {
    const ULONG_PTR argument = reinterpret_cast<ULONG_PTR>(name);
    ::RaiseException(VcppException(ERROR_SEVERITY_ERROR, code), EXCEPTION_NONCONTINUABLE, 1, &argument);
    ::ExitProcess(code);
}

}  // namespace

// Called by the linked stubs of a late library at the first call of each of its functions; what it answers is
// then called. Two threads may come here at once: both find the same library and the same function.
extern "C" FARPROC WINAPI __delayLoadHelper2(PCImgDelayDescr library, PImgThunkData slot) {
    const DWORD lastError = ::GetLastError();
    HMODULE& module = *AtImage<HMODULE>(library->rvaHmod);
    if (module == nullptr) {
        const char* const name = AtImage<const char>(library->rvaDLLName);
        const HMODULE loaded = LoadSystemLibrary(name);
        if (loaded == nullptr) Fail(ERROR_MOD_NOT_FOUND, name);
        ::InterlockedExchangePointer(reinterpret_cast<void**>(&module), loaded);
    }
    IMAGE_THUNK_DATA* const slots = AtImage<IMAGE_THUNK_DATA>(library->rvaIAT);
    const IMAGE_THUNK_DATA& wanted = AtImage<IMAGE_THUNK_DATA>(library->rvaINT)[slot - slots];
    const auto* const import = AtImage<const IMAGE_IMPORT_BY_NAME>(static_cast<RVA>(wanted.u1.AddressOfData));
    const char* const name = reinterpret_cast<const char*>(import->Name);
    const FARPROC function = ::GetProcAddress(module, name);
    if (function == nullptr) Fail(ERROR_PROC_NOT_FOUND, name);
    ::InterlockedExchangePointer(reinterpret_cast<void**>(slot), reinterpret_cast<void*>(function));
    ::SetLastError(lastError);
    return function;
}
