#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <vector>

// One page of the gallery.
struct GalleryPanel {
    const char* name;  // of its picture, too
    // At scale 1. At scale 2 it has to fit a screen of 1024 by 768: nothing is drawn beyond its edges.
    SIZE size;
    // Puts the controls into `parent`, which has the panel's size at the theme's scale, reflects
    // notifications and is painted in the theme's background. What is returned lives until the window is
    // destroyed.
    std::function<std::shared_ptr<void>(HWND parent)> make;
};

// All of them. A new control gets a panel, here or in a file of its own that panels.cpp adds to the list.
std::vector<GalleryPanel> GalleryPanels();
