#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <vector>

// One page of the gallery.
struct GalleryPanel {
    const char* name;  // of its picture, too
    SIZE size;         // at scale 1
    // Puts the controls into `parent`, which has the panel's size at the theme's scale, reflects
    // notifications and is painted in the theme's background. What is returned lives until the window is
    // destroyed.
    std::function<std::shared_ptr<void>(HWND parent)> make;
};

// All of them. A new control gets a panel, here or in a file of its own that panels.cpp adds to the list.
std::vector<GalleryPanel> GalleryPanels();
