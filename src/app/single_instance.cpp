#include "app/single_instance.h"

#include <windows.h>

SingleInstance::SingleInstance(const std::string& product) {
    const HANDLE mutex = ::CreateMutexA(nullptr, TRUE, product.c_str());
    const DWORD status = ::GetLastError();
    m_mutex.reset(mutex);
    if (status != ERROR_ALREADY_EXISTS) return;
    const HWND window = ::FindWindowA(nullptr, product.c_str());
    if (::IsWindow(window)) ::SwitchToThisWindow(window, TRUE);
    m_mutex.reset();
}

void CloseRunningCopy() {
    // kept: this title is not taken from the resources, unlike that of the window to be brought to the front.
    const HWND window = ::FindWindowA(nullptr, "Velvane");
    if (::IsWindow(window)) ::PostMessageA(window, WM_CLOSE, 0, 0);
}
