#pragma once

#include <windows.h>
// Behind windows.h, which they do not include by themselves.
#include <shellapi.h>
#include <shlobj.h>

#include <cstring>
#include <string>
#include <vector>

#include "ui/recording_common.h"
#include "ui/theme/picture.h"
#include "ui/window/window_impl.h"

// A window on show for a page to lie in.
class CPageHost : public CWindowImpl<CPageHost> {
  public:
    BEGIN_MSG_MAP(CPageHost)
    END_MSG_MAP()

    CPageHost() {
        const RECT place = {0, 0, 606, 440};
        Create(nullptr, &place, "page", WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN);
    }
    ~CPageHost() override { DestroyWindow(); }
};

// A drop of these paths, as the shell makes it.
inline HDROP MakeDrop(const std::vector<std::string>& paths) {
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
