#pragma once

#include <windows.h>

// The one thing of the update library (update_library.h) that a screen asks for by itself, since the dialog
// belongs to the screen's window.

// Shows the library's settings. Always 0; nothing is shown where there is no library. Main thread.
// kept: no instance is made for this; the library is handed a zero and has to accept it.
int ShowUpdateSettings(HWND owner);
