#pragma once

#include <windows.h>

#include <shlobj.h>

#include <string>
#include <utility>

#include "support/api_hook.h"

// The shell's identifier of a folder on the disk, for the caller to free.
inline HRESULT ShellIdOf(const std::string& folder, ITEMIDLIST** id) {
    wchar_t wide[MAX_PATH] = L"";
    ::MultiByteToWideChar(CP_ACP, 0, folder.c_str(), -1, wide, MAX_PATH);
    return ::SHParseDisplayName(wide, nullptr, id, 0, nullptr);
}

// Puts a folder of the disk in the place of the recycle bin, whose entries the shell shows by the paths where
// they lie. Wine's own bin tells their names alone.
class BinStandIn {
  public:
    explicit BinStandIn(std::string folder) : m_folder(std::move(folder)) {
        m_location.Replace([this](HWND owner, int csidl, ITEMIDLIST** id) {
            if (csidl != CSIDL_BITBUCKET) return m_location.Real()(owner, csidl, id);
            return ShellIdOf(m_folder, id);
        });
    }

  private:
    std::string m_folder;
    ApiHook<decltype(&::SHGetSpecialFolderLocation)> m_location{"SHGetSpecialFolderLocation"};
};
