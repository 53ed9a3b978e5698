#pragma once

#include <windows.h>

#include <shlobj.h>

#include <optional>
#include <string>
#include <utility>

#include "support/api_hook.h"

// Puts a folder in the place of the user's application data, for engines that are made while it lives.
class AppDataStandIn {
  public:
    explicit AppDataStandIn(std::string folder) : m_folder(std::move(folder)) {
        m_folders.Replace([this](HWND owner, int csidl, HANDLE token, DWORD flags, LPSTR path) -> HRESULT {
            if (csidl != CSIDL_APPDATA) return m_folders.Real()(owner, csidl, token, flags, path);
            if (!m_folder) return E_FAIL;
            m_folder->copy(path, m_folder->size());
            path[m_folder->size()] = '\0';
            return S_OK;
        });
    }
    // From now on there is none.
    void TakeAway() { m_folder.reset(); }

  private:
    std::optional<std::string> m_folder;
    ApiHook<decltype(&::SHGetFolderPathA)> m_folders{"SHGetFolderPathA"};
};
