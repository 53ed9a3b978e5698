#include "ui/screens/message_box_with_check.h"

#include <algorithm>
#include <cstring>

#include "ui/window/gdi.h"
#include "ui/window/window.h"

namespace {

constexpr int kCheckBoxId = 3001;
constexpr int kTextId = -1;  // of the box's own text
constexpr DWORD kCheckBoxStyle = WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_CHECKBOX;
static_assert(kCheckBoxStyle == 0x50010002);

// One box at a time: these are those of the one that is up.
DWORD g_slot = TLS_OUT_OF_INDEXES;
HHOOK g_hook = nullptr;
WNDPROC g_boxProcedure = nullptr;

struct BoxMetrics {
    int caption = ::GetSystemMetrics(SM_CYCAPTION);
    int edgeY = ::GetSystemMetrics(SM_CYEDGE) + 5;
    int edgeX = ::GetSystemMetrics(SM_CXEDGE);
};
const BoxMetrics& Metrics() {
    static const BoxMetrics metrics;
    return metrics;
}

SIZE LabelSize(HWND box, HFONT font, const char* label) {
    const CClientDC dc(box);
    const CSelectedObject selected(dc, font);
    SIZE size = {};
    ::GetTextExtentPointA(dc, label, static_cast<int>(std::strlen(label)), &size);
    return size;
}

HFONT TextFont(HWND box) {
    const HWND text = ::GetDlgItem(box, kTextId);
    return CWindow(text != nullptr ? text : box).GetFont();
}

// Makes the box taller, and wider if the label needs it, and puts the check box below what was its end.
void AddCheckBox(HWND box, tagCHECKED_MESSAGE& record) {
    const BoxMetrics& metrics = Metrics();
    const HFONT font = TextFont(box);
    const SIZE label = LabelSize(box, font, record.label);
    const int height = std::max(static_cast<int>(label.cy), 13);
    const int growth = height + 13;
    const int width = label.cx + ::GetSystemMetrics(SM_CXSMICON) + 6;

    WINDOWPLACEMENT placement = {};
    placement.length = sizeof placement;
    ::GetWindowPlacement(box, &placement);
    RECT place = placement.rcNormalPosition;
    place.bottom -= 7;
    place.right = std::max<LONG>(place.right, place.left + width + 2 * metrics.edgeX + 14);
    ::OffsetRect(&place, -metrics.edgeX, -(metrics.caption + metrics.edgeY));
    const int boxHeight = place.bottom - place.top;
    ::MoveWindow(box, place.left, place.top - growth / 2, place.right - place.left, boxHeight + growth, TRUE);

    const int top = boxHeight - metrics.caption - metrics.edgeY + 6;
    record.checkBox = ::CreateWindowExA(
        WS_EX_TRANSPARENT, "BUTTON", record.label, kCheckBoxStyle, 7, top, width + 7, height, box,
        reinterpret_cast<HMENU>(static_cast<UINT_PTR>(kCheckBoxId)), nullptr, nullptr);
    CWindow(record.checkBox).SetFont(font);
    if (record.checked != 0) ::SendMessageA(record.checkBox, BM_SETCHECK, BST_CHECKED, 0);
}

LRESULT CALLBACK BoxProcedure(HWND box, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* const record = static_cast<tagCHECKED_MESSAGE*>(::TlsGetValue(g_slot));
    const auto passOn = [&] { return ::CallWindowProcA(g_boxProcedure, box, message, wParam, lParam); };
    if (record == nullptr) return passOn();
    if (message == WM_INITDIALOG) {
        // The box first: on some systems it takes its final size only here.
        const LRESULT result = passOn();
        AddCheckBox(box, *record);
        return result;
    }
    if (message == WM_COMMAND && wParam == MAKEWPARAM(kCheckBoxId, BN_CLICKED)) {
        record->checked = record->checked == 0;
        ::SendMessageA(record->checkBox, BM_SETCHECK, record->checked != 0 ? BST_CHECKED : BST_UNCHECKED, 0);
    }
    if (message == WM_CTLCOLORSTATIC && reinterpret_cast<HWND>(lParam) == record->checkBox) {
        passOn();
        ::SetBkMode(reinterpret_cast<HDC>(wParam), TRANSPARENT);
        return reinterpret_cast<LRESULT>(::GetStockObject(NULL_BRUSH));
    }
    return passOn();
}

bool IsDialog(HWND window) {
    char name[16] = {};
    return ::GetClassNameA(window, name, sizeof name) != 0 && std::strcmp(name, "#32770") == 0;
}

LRESULT CALLBACK CreationHook(int code, WPARAM wParam, LPARAM lParam) {
    const HWND window = reinterpret_cast<HWND>(wParam);
    if (code == HCBT_CREATEWND && g_boxProcedure == nullptr && IsDialog(window)) {
        g_boxProcedure = reinterpret_cast<WNDPROC>(
            ::SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(BoxProcedure)));
    }
    return ::CallNextHookEx(g_hook, code, wParam, lParam);
}

}  // namespace

int MessageBoxWithCheck(HWND owner, const char* text, const char* caption, UINT type,
                        tagCHECKED_MESSAGE& record) {
    g_slot = ::TlsAlloc();
    ::TlsSetValue(g_slot, &record);
    g_boxProcedure = nullptr;
    g_hook = ::SetWindowsHookExA(WH_CBT, CreationHook, nullptr, ::GetCurrentThreadId());
    const int answer = ::MessageBoxA(owner, text, caption, type);
    if (g_hook != nullptr) ::UnhookWindowsHookEx(g_hook);
    g_hook = nullptr;
    ::TlsFree(g_slot);
    g_slot = TLS_OUT_OF_INDEXES;
    return answer;
}
