#pragma once

#include <cstddef>

#include "engine/engine_messages.h"

namespace Gdiplus {
class Bitmap;
}

// What a row shows. The tree that it was inserted into owns it. Main thread.
struct tagNODE_DATA {
    DWORD type = 0;  // the level, RowLevel
    // Icon of a category, or null. Not owned: it has to live as long as the row.
    Gdiplus::Bitmap* image = nullptr;
    char* label = nullptr;  // text of the row, from the C library's heap; owned
    char* help = nullptr;   // second line of a category, tip of the others; owned, may be null
    DWORD total = 0;        // leaves below it
    DWORD checkedCount =
        0;  // those that were checked when they came, corrected at each change of a check box
    HSCANITEM handle = nullptr;

    tagNODE_DATA() = default;
    tagNODE_DATA(const tagNODE_DATA&) = delete;
    tagNODE_DATA& operator=(const tagNODE_DATA&) = delete;
    ~tagNODE_DATA();

    // A tree has a million of them, so they come from a pool.
    static void* operator new(std::size_t size) noexcept;
    static void operator delete(void* data) noexcept;
};

// Data with copies of the texts, either of which may be null; null when there is no memory.
tagNODE_DATA* NewNodeData(DWORD type, HSCANITEM handle, const char* label, const char* help,
                          Gdiplus::Bitmap* image = nullptr);
