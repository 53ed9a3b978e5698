#pragma once

// Who we are, where it is no text for the user: registry keys, folders, links.
inline constexpr char kCompanyName[] = "Quillmere";
inline constexpr unsigned int kProductId = 5;
