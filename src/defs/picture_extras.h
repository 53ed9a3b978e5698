#pragma once

#include <string>

// A PNG file without what has no part in drawing it: its background colour, texts and times. Decoders look
// for a reader of each, which takes as long as the picture itself. Anything else is given back as it is.
std::string WithoutPictureExtras(const std::string& file);
