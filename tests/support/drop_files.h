#pragma once

#include <windows.h>
// Behind windows.h, which it does not include by itself.
#include <shlobj.h>

#include <string>
#include <vector>

// What the memory behind a WM_DROPFILES holds, as the shell writes it: the names in wide characters.
inline std::string DropBytes(const std::vector<std::string>& paths) {
    std::wstring names;
    for (const std::string& path : paths) {
        std::wstring wide(path.size(), L'\0');
        const int length = static_cast<int>(path.size());
        wide.resize(static_cast<std::size_t>(
            ::MultiByteToWideChar(CP_ACP, 0, path.data(), length, wide.data(), length)));
        names += wide + L'\0';
    }
    names += L'\0';
    DROPFILES header = {};
    header.pFiles = sizeof header;
    header.fWide = TRUE;
    return std::string(reinterpret_cast<const char*>(&header), sizeof header) +
           std::string(reinterpret_cast<const char*>(names.data()), names.size() * sizeof(wchar_t));
}
