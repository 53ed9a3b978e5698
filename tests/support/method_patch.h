#pragma once

#include <windows.h>

#include <cstring>
#include <type_traits>

// Replaces a method of a COM object, and with it of all objects of its class in this process, for as long as
// the patch lives.
//
//     MethodPatch patch(task, &ITask::SetComment, &FailMethod<E_ACCESSDENIED>);
class MethodPatch {
  public:
    template <class Interface, class... Arguments>
    MethodPatch(std::type_identity_t<Interface>* object, HRESULT (WINAPI Interface::*method)(Arguments...),
                std::type_identity_t<HRESULT(WINAPI*)(Interface*, Arguments...)> replacement) {
        std::size_t offset = 0;
        // A pointer to a virtual method is the offset in the table of methods, and one.
        std::memcpy(&offset, &method, sizeof offset);
        m_entry = *reinterpret_cast<void***>(object) + (offset - 1) / sizeof(void*);
        m_original = Write(reinterpret_cast<void*>(replacement));
    }
    ~MethodPatch() { Write(m_original); }
    MethodPatch(const MethodPatch&) = delete;
    MethodPatch& operator=(const MethodPatch&) = delete;

  private:
    void* Write(void* method) const {
        void* const old = *m_entry;
        DWORD protection = 0;
        ::VirtualProtect(m_entry, sizeof *m_entry, PAGE_READWRITE, &protection);
        *m_entry = method;
        ::VirtualProtect(m_entry, sizeof *m_entry, protection, &protection);
        return old;
    }

    void** m_entry;
    void* m_original;
};

// For a patch: a method that does nothing but fail.
template <HRESULT result, class... Arguments>
HRESULT WINAPI FailMethod(Arguments...) {
    return result;
}
