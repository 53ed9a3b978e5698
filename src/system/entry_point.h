#pragma once

#include <windows.h>

// An entry of a loaded system module that older systems lack; null where it is missing. Looked up at each
// use, so that the program starts without it.
template <class Function>
Function FindEntryPoint(const char* module, const char* name) {
    const HMODULE handle = ::GetModuleHandleA(module);
    if (handle == nullptr) return nullptr;
    // The detour over void* is how the compiler lets one function type become another.
    return reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(handle, name)));
}
