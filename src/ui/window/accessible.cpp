#include "ui/window/accessible.h"

#include <oleacc.h>

#include <atomic>
#include <utility>

#include "system/handles.h"

namespace {

using TextGetter = HRESULT (STDMETHODCALLTYPE IAccessible::*)(VARIANT, BSTR*);

BSTR NewText(const std::string& text) {
    const int size = static_cast<int>(text.size());
    const int length = ::MultiByteToWideChar(CP_ACP, 0, text.data(), size, nullptr, 0);
    const BSTR wide = ::SysAllocStringLen(nullptr, static_cast<UINT>(length));
    if (wide != nullptr) ::MultiByteToWideChar(CP_ACP, 0, text.data(), size, wide, length);
    return wide;
}

HRESULT GiveNumber(LONG number, VARIANT* answer) {
    answer->vt = VT_I4;
    answer->lVal = number;
    return S_OK;
}

// Windows within one, counted from 0.
HWND ChildWindow(HWND window, LONG index) {
    HWND child = ::GetWindow(window, GW_CHILD);
    for (; child != nullptr && index > 0; --index) child = ::GetWindow(child, GW_HWNDNEXT);
    return child;
}

LONG ChildWindowCount(HWND window) {
    LONG count = 0;
    for (HWND child = ::GetWindow(window, GW_CHILD); child != nullptr; ++count)
        child = ::GetWindow(child, GW_HWNDNEXT);
    return count;
}

HRESULT GiveWindow(HWND window, IDispatch** answer) {
    return ::AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_WINDOW), __uuidof(IDispatch),
                                        reinterpret_cast<void**>(answer));
}

HRESULT GiveWindow(HWND window, VARIANT* answer) {
    const HRESULT result = GiveWindow(window, &answer->pdispVal);
    if (SUCCEEDED(result)) answer->vt = VT_DISPATCH;
    return result;
}

// The mouse and the keyboard come to it: it is on show, and no question stands in front of it.
bool IsUsable(HWND window) {
    if (!::IsWindowVisible(window)) return false;
    for (const HWND desktop = ::GetDesktopWindow(); window != nullptr && window != desktop;
         window = ::GetAncestor(window, GA_PARENT)) {
        if (!::IsWindowEnabled(window)) return false;
    }
    return true;
}

}  // namespace

// The system's interfaces have no destructors, and nobody deletes the object through one of them.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

// The object that a reader asks. No exception may leave a method: each would end the process there.
class CAccessible final : public IAccessible, public IOleWindow {
  public:
    // With one reference, the caller's; null when the system has no object for the window.
    static CAccessible* Make(HWND window, CAccessibleParts& parts) {
        UniqueReference<IAccessible> standard;
        IAccessible* raw = nullptr;
        if (FAILED(::CreateStdAccessibleObject(window, OBJID_CLIENT, __uuidof(IAccessible),
                                               reinterpret_cast<void**>(&raw)))) {
            return nullptr;
        }
        standard.reset(raw);
        return new CAccessible(window, parts, std::move(standard));
    }

    void Disconnect() {
        m_parts = nullptr;
        m_standard.reset();
    }

    // --- IUnknown
    STDMETHODIMP QueryInterface(REFIID id, void** object) noexcept override {
        if (object == nullptr) return E_POINTER;
        *object = nullptr;
        if (id == __uuidof(IUnknown) || id == __uuidof(IDispatch) || id == __uuidof(IAccessible)) {
            *object = static_cast<IAccessible*>(this);
        } else if (id == __uuidof(IOleWindow)) {
            *object = static_cast<IOleWindow*>(this);
        } else {
            return E_NOINTERFACE;
        }
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++m_references; }
    STDMETHODIMP_(ULONG) Release() noexcept override {
        const ULONG left = --m_references;
        if (left == 0) delete this;
        return left;
    }

    // --- IDispatch: the names of the methods are the system's.
    STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override {
        return m_standard ? m_standard->GetTypeInfoCount(count) : CO_E_OBJNOTCONNECTED;
    }
    STDMETHODIMP GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) noexcept override {
        return m_standard ? m_standard->GetTypeInfo(index, locale, info) : CO_E_OBJNOTCONNECTED;
    }
    STDMETHODIMP GetIDsOfNames(REFIID id, LPOLESTR* names, UINT count, LCID locale,
                               DISPID* ids) noexcept override {
        return m_standard ? m_standard->GetIDsOfNames(id, names, count, locale, ids) : CO_E_OBJNOTCONNECTED;
    }
    STDMETHODIMP Invoke(DISPID member, REFIID, LCID locale, WORD flags, DISPPARAMS* parameters,
                        VARIANT* answer, EXCEPINFO* exception, UINT* wrongArgument) noexcept override {
        ITypeInfo* raw = nullptr;
        const HRESULT result = GetTypeInfo(0, locale, &raw);
        if (FAILED(result)) return result;
        const UniqueReference<ITypeInfo> info(raw);
        return info->Invoke(static_cast<IAccessible*>(this), member, flags, parameters, answer, exception,
                            wrongArgument);
    }

    // --- IOleWindow
    STDMETHODIMP GetWindow(HWND* window) noexcept override {
        if (window == nullptr) return E_INVALIDARG;
        *window = m_parts != nullptr ? m_window : nullptr;
        return m_parts != nullptr ? S_OK : CO_E_OBJNOTCONNECTED;
    }
    STDMETHODIMP ContextSensitiveHelp(BOOL) noexcept override { return E_NOTIMPL; }

    // --- IAccessible: the tree of objects
    STDMETHODIMP get_accParent(IDispatch** parent) noexcept override {
        return m_standard ? m_standard->get_accParent(parent) : CO_E_OBJNOTCONNECTED;
    }
    STDMETHODIMP get_accChildCount(LONG* count) noexcept override {
        if (count == nullptr) return E_INVALIDARG;
        *count = 0;
        if (m_parts == nullptr) return CO_E_OBJNOTCONNECTED;
        *count = m_parts->PartCount() + ChildWindowCount(m_window);
        return S_OK;
    }
    STDMETHODIMP get_accChild(VARIANT child, IDispatch** object) noexcept override;
    STDMETHODIMP accNavigate(LONG direction, VARIANT start, VARIANT* end) noexcept override;
    STDMETHODIMP accHitTest(LONG x, LONG y, VARIANT* child) noexcept override;
    STDMETHODIMP get_accFocus(VARIANT* child) noexcept override;
    STDMETHODIMP get_accSelection(VARIANT* child) noexcept override;

    // --- what a part is
    STDMETHODIMP get_accName(VARIANT child, BSTR* text) noexcept override {
        return GiveText(child, &AccessiblePart::name, &IAccessible::get_accName, text);
    }
    STDMETHODIMP get_accValue(VARIANT child, BSTR* text) noexcept override {
        return GiveText(child, &AccessiblePart::value, &IAccessible::get_accValue, text);
    }
    STDMETHODIMP get_accDescription(VARIANT child, BSTR* text) noexcept override {
        return GiveText(child, &AccessiblePart::description, &IAccessible::get_accDescription, text);
    }
    STDMETHODIMP get_accDefaultAction(VARIANT child, BSTR* text) noexcept override {
        return GiveText(child, &AccessiblePart::action, &IAccessible::get_accDefaultAction, text);
    }
    STDMETHODIMP get_accHelp(VARIANT child, BSTR* text) noexcept override {
        return GiveText(child, nullptr, &IAccessible::get_accHelp, text);
    }
    STDMETHODIMP get_accKeyboardShortcut(VARIANT child, BSTR* text) noexcept override {
        return GiveText(child, nullptr, &IAccessible::get_accKeyboardShortcut, text);
    }
    STDMETHODIMP get_accHelpTopic(BSTR*, VARIANT, LONG*) noexcept override { return DISP_E_MEMBERNOTFOUND; }
    STDMETHODIMP get_accRole(VARIANT child, VARIANT* role) noexcept override;
    STDMETHODIMP get_accState(VARIANT child, VARIANT* state) noexcept override;
    STDMETHODIMP accLocation(LONG* left, LONG* top, LONG* width, LONG* height,
                             VARIANT child) noexcept override;

    // --- what a reader may do
    STDMETHODIMP accDoDefaultAction(VARIANT child) noexcept override;
    STDMETHODIMP accSelect(LONG flags, VARIANT child) noexcept override;
    STDMETHODIMP put_accName(VARIANT, BSTR) noexcept override { return DISP_E_MEMBERNOTFOUND; }
    STDMETHODIMP put_accValue(VARIANT, BSTR) noexcept override { return DISP_E_MEMBERNOTFOUND; }

  private:
    CAccessible(HWND window, CAccessibleParts& parts, UniqueReference<IAccessible> standard)
        : m_window(window), m_parts(&parts), m_standard(std::move(standard)) {}
    ~CAccessible() = default;

    // The part that a call is about.
    HRESULT Find(const VARIANT& child, LONG& part) const {
        if (m_parts == nullptr) return CO_E_OBJNOTCONNECTED;
        if (child.vt != VT_I4 || child.lVal < 0 || child.lVal > m_parts->PartCount()) return E_INVALIDARG;
        part = child.lVal;
        return S_OK;
    }
    HRESULT GiveText(const VARIANT& child, std::string AccessiblePart::*field, TextGetter standard,
                     BSTR* text) const;
    HRESULT GiveChild(LONG index, VARIANT* child) const;
    LONG StateOf(const AccessiblePart& part) const;

    std::atomic<ULONG> m_references = 1;
    const HWND m_window;
    CAccessibleParts* m_parts;                // null when the window or its object is gone
    UniqueReference<IAccessible> m_standard;  // the system's object for the window; null likewise
};

#pragma GCC diagnostic pop

HRESULT CAccessible::GiveText(const VARIANT& child, std::string AccessiblePart::*field, TextGetter standard,
                              BSTR* text) const {
    if (text == nullptr) return E_INVALIDARG;
    *text = nullptr;
    LONG part = 0;
    const HRESULT found = Find(child, part);
    if (FAILED(found)) return found;
    if (part == CHILDID_SELF) return (m_standard.get()->*standard)(child, text);
    if (field == nullptr) return S_FALSE;
    const std::string own = m_parts->DescribePart(part).*field;
    if (own.empty()) return S_FALSE;
    *text = NewText(own);
    return *text != nullptr ? S_OK : E_OUTOFMEMORY;
}

// Parts and windows in one count, from 1.
HRESULT CAccessible::GiveChild(LONG index, VARIANT* child) const {
    const LONG parts = m_parts->PartCount();
    if (index >= 1 && index <= parts) return GiveNumber(index, child);
    const HWND window = index > parts ? ChildWindow(m_window, index - parts - 1) : nullptr;
    return window != nullptr ? GiveWindow(window, child) : S_FALSE;
}

STDMETHODIMP CAccessible::get_accChild(VARIANT child, IDispatch** object) noexcept {
    if (object == nullptr) return E_INVALIDARG;
    *object = nullptr;
    if (m_parts == nullptr) return CO_E_OBJNOTCONNECTED;
    if (child.vt != VT_I4 || child.lVal < 0) return E_INVALIDARG;
    if (child.lVal == CHILDID_SELF)
        return QueryInterface(__uuidof(IDispatch), reinterpret_cast<void**>(object));
    const LONG parts = m_parts->PartCount();
    if (child.lVal <= parts) return S_FALSE;  // it has no object of its own
    const HWND window = ChildWindow(m_window, child.lVal - parts - 1);
    return window != nullptr ? GiveWindow(window, object) : E_INVALIDARG;
}

STDMETHODIMP CAccessible::accNavigate(LONG direction, VARIANT start, VARIANT* end) noexcept {
    if (end == nullptr) return E_INVALIDARG;
    end->vt = VT_EMPTY;
    if (m_parts == nullptr) return CO_E_OBJNOTCONNECTED;
    const LONG count = m_parts->PartCount() + ChildWindowCount(m_window);
    const bool isChild = start.vt == VT_I4 && start.lVal >= 1 && start.lVal <= count;
    const bool isInward = direction == NAVDIR_FIRSTCHILD || direction == NAVDIR_LASTCHILD;
    if (start.vt == VT_I4 && start.lVal == CHILDID_SELF && isInward) {
        return GiveChild(direction == NAVDIR_FIRSTCHILD ? 1 : count, end);
    }
    // From the window to its neighbours; and the system has numbers of its own for the windows within.
    if (!isChild) return m_standard->accNavigate(direction, start, end);
    switch (direction) {
        case NAVDIR_NEXT:
            return GiveChild(start.lVal + 1, end);
        case NAVDIR_PREVIOUS:
            return GiveChild(start.lVal - 1, end);
        case NAVDIR_UP:
        case NAVDIR_DOWN:
        case NAVDIR_LEFT:
        case NAVDIR_RIGHT: {
            const LONG parts = m_parts->PartCount();
            const LONG beside = start.lVal <= parts ? m_parts->PartBeside(start.lVal, direction) : 0;
            return beside > 0 ? GiveNumber(beside, end) : S_FALSE;
        }
        default:
            return isInward ? S_FALSE : E_INVALIDARG;
    }
}

STDMETHODIMP CAccessible::accHitTest(LONG x, LONG y, VARIANT* child) noexcept {
    if (child == nullptr) return E_INVALIDARG;
    child->vt = VT_EMPTY;
    if (m_parts == nullptr) return CO_E_OBJNOTCONNECTED;
    POINT point = {x, y};
    ::ScreenToClient(m_window, &point);
    RECT client = {};
    ::GetClientRect(m_window, &client);
    if (!::PtInRect(&client, point)) return S_FALSE;
    const HWND within = ::ChildWindowFromPointEx(m_window, point, CWP_SKIPINVISIBLE | CWP_SKIPTRANSPARENT);
    if (within != nullptr && within != m_window) return GiveWindow(within, child);
    return GiveNumber(m_parts->PartAt(point), child);
}

STDMETHODIMP CAccessible::get_accFocus(VARIANT* child) noexcept {
    if (child == nullptr) return E_INVALIDARG;
    child->vt = VT_EMPTY;
    if (m_parts == nullptr) return CO_E_OBJNOTCONNECTED;
    if (::GetFocus() == m_window) return GiveNumber(m_parts->FocusedPart(), child);
    return m_standard->get_accFocus(child);
}

STDMETHODIMP CAccessible::get_accSelection(VARIANT* child) noexcept {
    if (child == nullptr) return E_INVALIDARG;
    child->vt = VT_EMPTY;
    if (m_parts == nullptr) return CO_E_OBJNOTCONNECTED;
    const LONG selected = m_parts->SelectedPart();
    return selected > 0 ? GiveNumber(selected, child) : S_FALSE;
}

STDMETHODIMP CAccessible::get_accRole(VARIANT child, VARIANT* role) noexcept {
    if (role == nullptr) return E_INVALIDARG;
    role->vt = VT_EMPTY;
    LONG part = 0;
    const HRESULT found = Find(child, part);
    if (FAILED(found)) return found;
    return GiveNumber(part == CHILDID_SELF ? m_parts->WindowRole() : m_parts->DescribePart(part).role, role);
}

LONG CAccessible::StateOf(const AccessiblePart& part) const {
    LONG state = part.state;
    if (!::IsWindowVisible(m_window)) state |= STATE_SYSTEM_INVISIBLE;
    if (!IsUsable(m_window)) state |= STATE_SYSTEM_UNAVAILABLE;
    RECT client = {};
    ::GetClientRect(m_window, &client);
    RECT seen = {};
    if (!::IntersectRect(&seen, &client, &part.place)) state |= STATE_SYSTEM_OFFSCREEN;
    if (::GetFocus() != m_window) state &= ~STATE_SYSTEM_FOCUSED;
    return state;
}

STDMETHODIMP CAccessible::get_accState(VARIANT child, VARIANT* state) noexcept {
    if (state == nullptr) return E_INVALIDARG;
    state->vt = VT_EMPTY;
    LONG part = 0;
    const HRESULT found = Find(child, part);
    if (FAILED(found)) return found;
    if (part == CHILDID_SELF) return m_standard->get_accState(child, state);
    return GiveNumber(StateOf(m_parts->DescribePart(part)), state);
}

STDMETHODIMP CAccessible::accLocation(LONG* left, LONG* top, LONG* width, LONG* height,
                                      VARIANT child) noexcept {
    if (left == nullptr || top == nullptr || width == nullptr || height == nullptr) return E_INVALIDARG;
    *left = *top = *width = *height = 0;
    LONG part = 0;
    const HRESULT found = Find(child, part);
    if (FAILED(found)) return found;
    if (part == CHILDID_SELF) return m_standard->accLocation(left, top, width, height, child);
    const RECT place = m_parts->DescribePart(part).place;
    POINT corner = {place.left, place.top};
    ::ClientToScreen(m_window, &corner);
    *left = corner.x;
    *top = corner.y;
    *width = place.right - place.left;
    *height = place.bottom - place.top;
    return S_OK;
}

STDMETHODIMP CAccessible::accDoDefaultAction(VARIANT child) noexcept {
    LONG part = 0;
    const HRESULT found = Find(child, part);
    if (FAILED(found)) return found;
    if (part == CHILDID_SELF) return m_standard->accDoDefaultAction(child);
    if (!IsUsable(m_window) || m_parts->DescribePart(part).action.empty()) return DISP_E_MEMBERNOTFOUND;
    m_parts->PressPart(part);
    return S_OK;
}

STDMETHODIMP CAccessible::accSelect(LONG flags, VARIANT child) noexcept {
    LONG part = 0;
    const HRESULT found = Find(child, part);
    if (FAILED(found)) return found;
    // One part is selected at a time.
    if (flags == 0 || (flags & ~(SELFLAG_TAKEFOCUS | SELFLAG_TAKESELECTION)) != 0) return E_INVALIDARG;
    const bool focus = (flags & SELFLAG_TAKEFOCUS) != 0;
    if (!IsUsable(m_window)) return DISP_E_MEMBERNOTFOUND;
    if (part != CHILDID_SELF) return m_parts->SelectPart(part, focus) ? S_OK : DISP_E_MEMBERNOTFOUND;
    if (!focus) return DISP_E_MEMBERNOTFOUND;
    ::SetFocus(m_window);
    return S_OK;
}

LRESULT CAccessibleParts::OnGetObject(HWND window, WPARAM wParam, LPARAM lParam, BOOL& handled) {
    // In 64 bits the number comes with its sign or without.
    handled = static_cast<LONG>(lParam) == OBJID_CLIENT;
    if (!handled) return 0;
    if (m_object == nullptr) m_object = CAccessible::Make(window, *this);
    handled = m_object != nullptr;
    return handled ? ::LresultFromObject(__uuidof(IAccessible), wParam, static_cast<IAccessible*>(m_object))
                   : 0;
}

void CAccessibleParts::Disconnect() {
    CAccessible* const object = std::exchange(m_object, nullptr);
    if (object == nullptr) return;
    object->Disconnect();
    object->Release();
}
