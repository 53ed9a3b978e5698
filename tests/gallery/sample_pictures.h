#pragma once

#include <string>

#include "ui/theme/picture.h"

// Pictures for the panels, drawn here: the gallery needs no other file.

// An arrow to the right, white, as the start button has.
ThemeImage ArrowPicture(int side);

// A landscape, as of somebody's holidays.
ThemeImage LandscapePicture(int width, int height);

// Writes a picture as a PNG file into the temp folder and gives its path.
std::string WriteTemporaryPicture(Gdiplus::Bitmap& picture, const char* name);
