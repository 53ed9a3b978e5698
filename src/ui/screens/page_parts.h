#pragma once

#include <windows.h>

#include "ui/theme/theme_group.h"
#include "ui/window/window.h"

// What pages of one look have in common. Main thread.

// The corners of their buttons, in pixels.
inline constexpr float kPageButtonRadius = 8;

// The answer to WM_CTLCOLORDLG, WM_CTLCOLORSTATIC and WM_CTLCOLORBTN for the control's context `wParam`: the
// theme's background.
LRESULT PageColors(WPARAM wParam);

// Makes a frame where the control `place` of `page` stands, with its text, behind all controls; `place`
// itself is hidden.
void MakePageGroup(CThemeGroup& group, const CWindow& page, int place, UINT id);

// True for a button of any kind, check boxes and radio buttons among them.
bool IsButton(HWND window);
