#include "ui/page_host.h"

#include <windows.h>

#include <commctrl.h>
#include <shlobj.h>

#include <cstring>

#include "app/resources.h"

void StartPages() {
    static const bool started = [] {
        ::CoInitialize(nullptr);
        const INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_STANDARD_CLASSES | ICC_PROGRESS_CLASS};
        ::InitCommonControlsEx(&controls);
        LoadResources();
        AppModule().Init(::GetModuleHandleA(nullptr));
        AppModule().SetResourceInstance(ResourceModule());
        return g_Theme.Start();
    }();
    (void)started;
}

CPageHost::CPageHost(SIZE size) {
    const RECT place = {0, 0, size.cx, size.cy};
    Create(nullptr, &place, "page", WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN);
}

LRESULT CPageHost::OnErase(UINT, WPARAM wParam, LPARAM, BOOL&) {
    const RECT client = GetClientRect();
    ::FillRect(reinterpret_cast<HDC>(wParam), &client, g_Theme.backgroundGdiBrush);
    return 1;
}

HANDLE PageCommon::StartShred(HWND notify, int eraseMode) {
    calls.push_back("StartShred " + std::to_string(eraseMode));
    if (onStartShred) onStartShred(notify, eraseMode);
    shredFiles.clear();
    return nullptr;
}

void PageCommon::SetConfigInt(int id, int value) {
    options[id] = value;
    calls.push_back("SetConfigInt " + std::to_string(id) + " " + std::to_string(value));
}

const char* PageCommon::GetConfigString(int id) {
    m_link = "https://link.invalid/" + std::to_string(id);
    return m_link.c_str();
}

bool PageCommon::ConfirmShredPath(const char* path, int* isRestricted) {
    const bool asks = restricted.contains(path);
    if (isRestricted != nullptr) *isRestricted = asks ? 1 : 0;
    if (asks) calls.push_back(std::string("asked about ") + path);
    return !asks || confirms;
}

int PageCommon::RunUpdates(bool flag) {
    calls.push_back(flag ? "RunUpdates 1" : "RunUpdates 0");
    return 0;
}

void PageCommon::DrawAnimationFrame(bool search, Gdiplus::Graphics& g, int x, int y, double scale) {
    if (search || frames.empty()) return;
    Gdiplus::Bitmap& frame = *frames[m_frame++ % frames.size()];
    const Gdiplus::RectF place(static_cast<float>(x), static_cast<float>(y),
                               static_cast<float>(static_cast<int>(frame.GetWidth() * scale)),
                               static_cast<float>(static_cast<int>(frame.GetHeight() * scale)));
    g.FillRectangle(&*g_Theme.backgroundBrush, place);
    DrawPicture(g, frame, place);
}

HDROP MakeDrop(const std::vector<std::string>& paths) {
    std::wstring names;
    for (const std::string& path : paths) names += WideText(path) + L'\0';
    names += L'\0';
    const std::size_t size = names.size() * sizeof(wchar_t);
    const HGLOBAL block = ::GlobalAlloc(GHND, sizeof(DROPFILES) + size);
    auto* const drop = static_cast<DROPFILES*>(::GlobalLock(block));
    drop->pFiles = sizeof(DROPFILES);
    drop->fWide = TRUE;
    std::memcpy(drop + 1, names.data(), size);
    ::GlobalUnlock(block);
    return static_cast<HDROP>(block);
}
