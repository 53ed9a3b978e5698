#include "ui/window/app_module.h"

#include <mutex>

void CAppModule::Init(HINSTANCE instance) {
    m_instance = instance;
}

void CAppModule::Term() {
    const std::lock_guard lock(m_lock);
    m_instance = nullptr;
    m_resource = nullptr;
    m_loops.clear();
}

HINSTANCE CAppModule::GetModuleInstance() const {
    return m_instance != nullptr ? m_instance : ::GetModuleHandleA(nullptr);
}

HINSTANCE CAppModule::GetResourceInstance() const {
    return m_resource != nullptr ? m_resource : GetModuleInstance();
}

bool CAppModule::AddMessageLoop(CMessageLoop* loop) {
    const std::lock_guard lock(m_lock);
    return loop != nullptr && m_loops.emplace(::GetCurrentThreadId(), loop).second;
}

bool CAppModule::RemoveMessageLoop() {
    const std::lock_guard lock(m_lock);
    return m_loops.erase(::GetCurrentThreadId()) != 0;
}

CMessageLoop* CAppModule::GetMessageLoop() const {
    const std::lock_guard lock(m_lock);
    const auto found = m_loops.find(::GetCurrentThreadId());
    return found == m_loops.end() ? nullptr : found->second;
}

CAppModule& AppModule() {
    static CAppModule module;
    return module;
}
