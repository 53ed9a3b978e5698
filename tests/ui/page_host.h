#pragma once

#include <windows.h>
// Behind windows.h, which it does not include by itself.
#include <shellapi.h>

#include <cstring>
#include <string>
#include <vector>

#include "support/drop_files.h"
#include "ui/recording_common.h"
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
    const std::string bytes = DropBytes(paths);
    const HGLOBAL block = ::GlobalAlloc(GHND, bytes.size());
    std::memcpy(::GlobalLock(block), bytes.data(), bytes.size());
    ::GlobalUnlock(block);
    return static_cast<HDROP>(block);
}
