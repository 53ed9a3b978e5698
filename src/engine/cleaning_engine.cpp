#include "engine/cleaning_engine.h"

#include <process.h>
#include <shlobj.h>

#include <memory>
#include <mutex>

#include "base/random_text.h"
#include "engine/trace.h"
#include "system/system_facts.h"

namespace {

bool IsLeadByte(unsigned char byte) {
    return ::IsDBCSLeadByte(byte) != FALSE;
}

// What a worker thread is started with; it frees it.
struct WorkerStart {
    CCleaningEngine* engine;
    void (CCleaningEngine::*run)();
};

}  // namespace

CCleaningEngine::CCleaningEngine()
    : m_windowsFolder(FolderPath(CSIDL_WINDOWS).value_or("")),
      m_variables(std::make_unique<DelimitingTextStateMachine>('%', IsLeadByte)) {
    // kept: this seeds the generator of this thread alone; the workers start from its default.
    RandomText::Seed(::GetTickCount());
    if (const auto folder = FolderPath(CSIDL_APPDATA)) {
        m_rebootFolder = *folder + "\\Quillmere\\Velvane\\DeleteOnReboot\\";
    }
}

CCleaningEngine::~CCleaningEngine() {
    WaitForWorker();
    FreeDefinitions(false);
}

void CCleaningEngine::WaitForWorker() {
    while (IsBusy()) {
        MSG message;
        ::PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
        ::MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_SENDMESSAGE);
    }
}

std::uintptr_t CCleaningEngine::StartWorker(HWND window, Worker worker) {
    if (const HWND busy = m_window) return reinterpret_cast<std::uintptr_t>(busy);
    // Not by the worker as its first act: it would forget a stop that comes before it.
    m_cancel = false;
    m_window = window;
    auto start = std::make_unique<WorkerStart>(WorkerStart{this, worker});
    const std::uintptr_t thread = ::_beginthread(
        [](void* argument) noexcept {
            const std::unique_ptr<WorkerStart> own(static_cast<WorkerStart*>(argument));
            (own->engine->*own->run)();
        },
        0, start.get());
    if (thread == static_cast<std::uintptr_t>(-1)) {
        m_window = nullptr;
    } else {
        start.release();
    }
    return thread;
}

std::uintptr_t CCleaningEngine::StartLoad(HWND window) {
    return StartWorker(window, &CCleaningEngine::LoadWorker);
}

std::uintptr_t CCleaningEngine::StartList(HWND window) {
    return StartWorker(window, &CCleaningEngine::ListWorker);
}

std::uintptr_t CCleaningEngine::StartScan(HWND window) {
    return StartWorker(window, &CCleaningEngine::ScanWorker);
}

std::uintptr_t CCleaningEngine::StartClean(HWND window, int passes) {
    SetShredPasses(passes);
    return StartWorker(window, &CCleaningEngine::CleanWorker);
}

std::uintptr_t CCleaningEngine::StartShred(HWND window, int passes) {
    SetShredPasses(passes);
    return StartWorker(window, &CCleaningEngine::ShredWorker);
}

// The engine may be destroyed as soon as m_window is clear, so clearing it is the last that a worker does
// with it.
void CCleaningEngine::LoadWorker() {
    const HWND window = m_window;
    CompleteAfterReboot();
    const bool loaded = LoadDefinitions();
    m_window = nullptr;
    ::PostMessageA(window, WM_ENGINE_LOADED, 0, loaded);
}

void CCleaningEngine::ListWorker() {
    const HWND window = m_window;
    ListDefinitions();
    m_window = nullptr;
    ::SendMessageA(window, WM_ENGINE_SHRED_DONE, 0, 0);
}

void CCleaningEngine::ScanWorker() {
    Scan();
    m_window = nullptr;
}

void CCleaningEngine::CleanWorker() {
    Clean();
    m_window = nullptr;
}

void CCleaningEngine::ShredWorker() {
    ShredList();
    m_window = nullptr;
}

bool CCleaningEngine::Stopped() const {
    if (!m_cancel) return false;
    ENGINE_TRACE("User cancelled current action.");
    return true;
}

void CCleaningEngine::ListDefinitions() {
    const std::lock_guard lock(m_lock);
    for (const tagCLEAN_CATEGORY& category : m_categories) {
        if (!category.applications.Head()) continue;
        SendNode({1, category.imageFile.Path(), category.name.c_str(),
                  category.help ? category.help->c_str() : nullptr, nullptr, category.image.get(),
                  category.enabled, 0, HandleOf(category)},
                 false);
        for (const tagCLEAN_APPLICATION& application : category.applications) {
            SendNode({2, application.imageFile.Path(), application.name.c_str(), nullptr, nullptr,
                      application.image.get(), application.enabled, 0, HandleOf(application)},
                     false);
            for (const tagCLEAN_ENTITY& entity : application.entities) {
                SendNode({3, nullptr, entity.name.c_str(), entity.help.OrNull(), nullptr, nullptr,
                          entity.enabled, 0, HandleOf(entity)},
                         false);
            }
        }
    }
}

void CCleaningEngine::SetWhitelisted(std::string_view name, bool add) {
    if (add) {
        m_whitelist.Add(name);
    } else {
        m_whitelist.RemoveFirst(name);
    }
}

std::string CCleaningEngine::ExpandLocation(std::string text) {
    m_variables->ReplaceDelimitedText(text);
    return text;
}
