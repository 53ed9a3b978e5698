#include "ui/window/window_layer.h"

#include <algorithm>
#include <unordered_map>
#include <utility>
#include <vector>

// What is known of a window that has, or had, layers.
struct WindowRecord {
    HWND window = nullptr;
    WNDPROC original = nullptr;         // what the messages end in
    bool ofOwnClass = false;            // our procedure is that of its class and cannot be taken away
    bool destroyed = false;             // WM_NCDESTROY is through
    int depth = 0;                      // dispatches of this window on the stack
    std::vector<CWindowLayer*> layers;  // the youngest last; null where one left while a dispatch ran
};

namespace {

using Records = std::unordered_map<HWND, std::shared_ptr<WindowRecord>>;

// The windows of this thread. A window's messages come on its own thread alone, so nothing needs a lock. A
// plain pointer, deleted with the last window, so that objects of static life may still leave at the
// program's end.
thread_local Records* g_records = nullptr;
thread_local PendingWindow* g_pending = nullptr;  // the innermost

std::shared_ptr<WindowRecord> FindRecord(HWND window) {
    if (g_records == nullptr) return nullptr;
    const auto found = g_records->find(window);
    return found == g_records->end() ? nullptr : found->second;
}

std::shared_ptr<WindowRecord> AddRecord(HWND window, WNDPROC original, bool ofOwnClass) {
    auto record = std::make_shared<WindowRecord>();
    record->window = window;
    record->original = original;
    record->ofOwnClass = ofOwnClass;
    if (g_records == nullptr) g_records = new Records;
    (*g_records)[window] = record;
    return record;
}

void EraseRecord(HWND window) {
    if (g_records == nullptr) return;
    g_records->erase(window);
    if (!g_records->empty()) return;
    delete g_records;
    g_records = nullptr;
}

bool HasNoLayer(const WindowRecord& record) {
    return std::all_of(record.layers.begin(), record.layers.end(),
                       [](const CWindowLayer* layer) { return layer == nullptr; });
}

WNDPROC CurrentProcedure(HWND window) {
    return reinterpret_cast<WNDPROC>(::GetWindowLongPtrA(window, GWLP_WNDPROC));
}

// Gives a window that no object wants any more its own procedure back. Where somebody else has put one on top
// of ours, ours has to stay beneath and passes everything on.
void RestoreProcedure(const WindowRecord& record) {
    if (record.ofOwnClass || record.destroyed || !HasNoLayer(record)) return;
    if (CurrentProcedure(record.window) != CWindowLayer::WindowProc) return;
    ::SetWindowLongPtrA(record.window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(record.original));
    EraseRecord(record.window);
}

// The procedure of a dialog that is bound: all it has to say is said before.
INT_PTR CALLBACK AnswerNothing(HWND, UINT, WPARAM, LPARAM) noexcept {
    return FALSE;
}

// The messages whose answer a dialog procedure returns itself; for all others it says only whether there is
// one.
bool AnswersDirectly(UINT message) {
    switch (message) {
        case WM_INITDIALOG:
        case WM_CHARTOITEM:
        case WM_VKEYTOITEM:
        case WM_COMPAREITEM:
        case WM_QUERYDRAGICON:
            return true;
        default:
            return message >= WM_CTLCOLORMSGBOX && message <= WM_CTLCOLORSTATIC;
    }
}

}  // namespace

CWindowLayer::Creation::Creation(CWindowLayer& layer, WNDPROC original)
    : m_pending{&layer, original, g_pending} {
    g_pending = &m_pending;
}

CWindowLayer::Creation::~Creation() {
    g_pending = m_pending.outer;
}

CWindowLayer::~CWindowLayer() {
    Detach();
}

bool CWindowLayer::JoinWindow(HWND window) {
    if (m_record != nullptr || ::GetWindowThreadProcessId(window, nullptr) != ::GetCurrentThreadId()) {
        return false;
    }
    std::shared_ptr<WindowRecord> record = FindRecord(window);
    if (record == nullptr) {
        record = AddRecord(window, CurrentProcedure(window), false);
        ::SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(WindowProc));
    }
    Push(record);
    return true;
}

void CWindowLayer::LeaveWindow() {
    Detach();
    SetHandle(nullptr);
}

LRESULT CWindowLayer::PassOn(UINT message, WPARAM wParam, LPARAM lParam) {
    const std::shared_ptr<WindowRecord> record = m_record;
    if (record == nullptr || message == WM_NCDESTROY) return 0;
    const auto own = std::find(record->layers.begin(), record->layers.end(), this);
    ++record->depth;
    const LRESULT result =
        Walk(*record, static_cast<std::size_t>(own - record->layers.begin()), message, wParam, lParam);
    if (--record->depth == 0) Settle(*record);
    return result;
}

void CWindowLayer::OnFinalMessage(HWND) {}

LRESULT CALLBACK CWindowLayer::WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    std::shared_ptr<WindowRecord> record = FindRecord(window);
    if (record == nullptr) {
        if (g_pending == nullptr || g_pending->original == nullptr || g_pending->layer == nullptr) {
            return ::DefWindowProcA(window, message, wParam, lParam);
        }
        record = AddRecord(window, g_pending->original, true);
        std::exchange(g_pending->layer, nullptr)->Push(record);
    }
    return Dispatch(std::move(record), message, wParam, lParam);
}

INT_PTR CALLBACK CWindowLayer::DialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    if (g_pending == nullptr || g_pending->original != nullptr || g_pending->layer == nullptr) return FALSE;
    CWindowLayer* const layer = std::exchange(g_pending->layer, nullptr);
    if (!layer->JoinWindow(window)) return FALSE;
    // A dialog that is bound goes on asking its dialog procedure, and the next dialog makes it do so, as its
    // owner, while it is being created itself.
    ::SetWindowLongPtrA(window, DWLP_DLGPROC, reinterpret_cast<LONG_PTR>(AnswerNothing));
    // From the next message on the object is asked ahead of the dialog's own procedure. This one has come
    // through it already, so it is answered in a dialog procedure's way.
    LRESULT result = 0;
    const std::shared_ptr<WindowRecord> record = FindRecord(window);
    ++record->depth;
    const BOOL handled = layer->HandleMessage(window, message, wParam, lParam, result);
    if (--record->depth == 0) Settle(*record);
    if (!handled) return FALSE;
    if (AnswersDirectly(message)) return static_cast<INT_PTR>(result);
    if (!record->destroyed) ::SetWindowLongPtrA(window, DWLP_MSGRESULT, static_cast<LONG_PTR>(result));
    return TRUE;
}

LRESULT CWindowLayer::Dispatch(std::shared_ptr<WindowRecord> record, UINT message, WPARAM wParam,
                               LPARAM lParam) {
    ++record->depth;
    const LRESULT result = Walk(*record, record->layers.size(), message, wParam, lParam);
    if (message == WM_NCDESTROY) Forget(record);
    if (--record->depth == 0) Settle(*record);
    return result;
}

// Offers a message to the layers under the place `below`, and at last to the window's own procedure. The list
// may grow meanwhile, and get gaps, but shrinks only when no dispatch runs. WM_NCDESTROY goes all the way
// down whatever a handler says: everyone below has to clear up.
LRESULT CWindowLayer::Walk(WindowRecord& record, std::size_t below, UINT message, WPARAM wParam,
                           LPARAM lParam) {
    for (std::size_t place = below; place-- > 0 && !record.destroyed;) {
        CWindowLayer* const layer = record.layers[place];
        if (layer == nullptr) continue;
        LRESULT result = 0;
        const BOOL handled = layer->HandleMessage(record.window, message, wParam, lParam, result);
        if (handled && message != WM_NCDESTROY) return result;
    }
    if (record.destroyed) return 0;
    return ::CallWindowProcA(record.original, record.window, message, wParam, lParam);
}

// The window is gone; its number may be another's in a moment.
void CWindowLayer::Forget(const std::shared_ptr<WindowRecord>& record) {
    record->destroyed = true;
    EraseRecord(record->window);
    for (CWindowLayer* const layer : record->layers) {
        if (layer != nullptr) layer->SetHandle(nullptr);
    }
}

// No handler of the window is on the stack any more.
void CWindowLayer::Settle(WindowRecord& record) {
    if (!record.destroyed) {
        std::erase(record.layers, nullptr);
        return;
    }
    // Each may delete itself and others; those take themselves off the list.
    while (!record.layers.empty()) {
        CWindowLayer* const layer = record.layers.back();
        record.layers.pop_back();
        if (layer == nullptr) continue;
        layer->m_record = nullptr;
        layer->OnFinalMessage(record.window);
    }
}

void CWindowLayer::Push(const std::shared_ptr<WindowRecord>& record) {
    record->layers.push_back(this);
    m_record = record;
    SetHandle(record->window);
}

void CWindowLayer::Detach() {
    const std::shared_ptr<WindowRecord> record = std::exchange(m_record, nullptr);
    if (record == nullptr) return;
    std::replace(record->layers.begin(), record->layers.end(), this, static_cast<CWindowLayer*>(nullptr));
    if (record->depth == 0) std::erase(record->layers, nullptr);
    RestoreProcedure(*record);
}
