// The one file that holds the identifiers of the scheduler's interfaces.
#define INITGUID
#include <windows.h>
// Before the headers whose identifiers it defines.
#include <initguid.h>

#include "app/scheduler_com.h"

SchedulerSession::SchedulerSession(AtEnd atEnd) : m_result(::CoInitialize(nullptr)) {
    m_closesCom = SUCCEEDED(m_result) && atEnd == AtEnd::kCloseCom;
    if (FAILED(m_result)) return;
    void* scheduler = nullptr;
    m_result = ::CoCreateInstance(CLSID_CTaskScheduler, nullptr, CLSCTX_INPROC_SERVER, IID_ITaskScheduler,
                                  &scheduler);
    m_scheduler.reset(static_cast<ITaskScheduler*>(scheduler));
}

SchedulerSession::~SchedulerSession() {
    m_scheduler.reset();
    if (m_closesCom) ::CoUninitialize();
}

SchedulerText::SchedulerText(const std::string& text) {
    const int size = static_cast<int>(text.size());
    std::wstring wide(text.size(), L'\0');
    const int length = ::MultiByteToWideChar(CP_ACP, 0, text.data(), size, wide.data(), size);
    m_text = ::SysAllocStringLen(wide.data(), static_cast<UINT>(length));
}

std::string TakeText(wchar_t* raw) {
    if (raw == nullptr) return {};
    const std::unique_ptr<wchar_t, TaskMemoryFree> wide(raw);
    const int size = ::WideCharToMultiByte(CP_ACP, 0, raw, -1, nullptr, 0, nullptr, nullptr);
    if (size <= 0) return {};
    std::string text(static_cast<std::size_t>(size), '\0');
    ::WideCharToMultiByte(CP_ACP, 0, raw, -1, text.data(), size, nullptr, nullptr);
    text.pop_back();  // the terminator
    return text;
}
