#pragma once

// GDI+ as the whole theme includes it: its headers want COM's, and the two functions that NOMINMAX takes
// from them as macros.

#include <windows.h>

#include <objidl.h>

#include <algorithm>

namespace Gdiplus {
using std::max;
using std::min;
}  // namespace Gdiplus

#include <gdiplus.h>
