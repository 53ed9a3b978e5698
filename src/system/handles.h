#pragma once

#include <windows.h>

#include <cstdlib>
#include <memory>
#include <type_traits>

// One closer for each kind of resource that the program owns. Each owner closes once and never a null.

struct KeyCloser {
    void operator()(HKEY key) const { ::RegCloseKey(key); }
};
using UniqueKey = std::unique_ptr<std::remove_pointer_t<HKEY>, KeyCloser>;

struct HandleCloser {
    void operator()(HANDLE handle) const { ::CloseHandle(handle); }
};
using UniqueHandle = std::unique_ptr<std::remove_pointer_t<HANDLE>, HandleCloser>;

struct FindCloser {
    void operator()(HANDLE handle) const { ::FindClose(handle); }
};
using UniqueFind = std::unique_ptr<std::remove_pointer_t<HANDLE>, FindCloser>;

// A reference to a COM object. It must be gone before COM is closed on its thread.
struct ReferenceReleaser {
    template <class Interface>
    void operator()(Interface* object) const {
        object->Release();
    }
};
template <class Interface>
using UniqueReference = std::unique_ptr<Interface, ReferenceReleaser>;

struct FreeDeleter {
    void operator()(void* block) const { std::free(block); }
};

// The owner of what a file or find call returned, empty for INVALID_HANDLE_VALUE.
template <class Owner>
Owner OwnHandle(HANDLE raw) {
    return Owner(raw == INVALID_HANDLE_VALUE ? nullptr : raw);
}
