#pragma once

#include <windows.h>
// Behind windows.h, which it does not include by itself.
#include <shellapi.h>

#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "ui/screens/common_interface.h"
#include "ui/theme/picture.h"
#include "ui/theme/theme.h"
#include "ui/window/window_impl.h"

// Starts what a page needs, once: COM, the common controls, the texts and the theme.
void StartPages();

// A window of the theme's background for a page to lie in.
class CPageHost : public CWindowImpl<CPageHost> {
  public:
    DECLARE_WND_CLASS("VelvanePageHost")
    BEGIN_MSG_MAP(CPageHost)
        MESSAGE_HANDLER(WM_ERASEBKGND, OnErase)
    END_MSG_MAP()

    // On show, with a client area of this size in pixels.
    explicit CPageHost(SIZE size);
    ~CPageHost() { DestroyWindow(); }

  private:
    LRESULT OnErase(UINT, WPARAM wParam, LPARAM, BOOL&);
};

// Stands in for the main window: it writes down what a page asks for, and answers what it is told to.
class PageCommon final : public ICommonInterface {
  public:
    std::map<int, int> options;           // of GetConfigInt; -1 for others
    std::set<std::string> restricted;     // the paths that ConfirmShredPath asks about
    bool confirms = false;                // what it is answered
    std::uint32_t definitions = 0;        // version
    std::vector<std::string> calls;       // in order, such as "EnableUI 1"
    std::vector<std::string> shredFiles;  // since the last start
    std::function<void(HWND, int)> onStartShred;
    std::vector<ThemeImage> frames;  // of the erase animation; may be empty

    std::vector<std::string> TakeCalls() { return std::exchange(calls, {}); }

    void EnableUI(bool enable) override { calls.push_back(enable ? "EnableUI 1" : "EnableUI 0"); }
    void AddShredFile(const char* path) override { shredFiles.push_back(path); }
    HANDLE StartShred(HWND notify, int eraseMode) override;
    HANDLE StartScan(HWND) override { return nullptr; }
    HANDLE StartClean(HWND, int) override { return nullptr; }
    void SetItemEnabled(HSCANITEM, bool) override {}
    void SetItemSelected(HSCANITEM, bool) override {}
    int GetConfigInt(int id) override { return options.contains(id) ? options[id] : -1; }
    void SetConfigInt(int id, int value) override;
    const char* GetConfigString(int id) override;
    void SaveConfig(bool) override {}
    void StopOperation() override { calls.push_back("StopOperation"); }
    void SetSimulation(bool) override {}
    void GetItemDescription(HSCANITEM, char*, std::size_t, int*) override {}
    bool ConfirmShredPath(const char* path, int* isRestricted) override;
    std::uint32_t GetItemsFound() override { return 0; }
    std::uint32_t GetItemsWhitelisted() override { return 0; }
    std::uint32_t GetItemsCleaned() override { return 0; }
    std::uint32_t GetItemsFailed() override { return 0; }
    void ReloadDefinitions(bool) override {}
    int RunUpdates(bool flag) override;
    void PromptRestart(bool) override {}
    void ShowHelp(int topic) override { calls.push_back("ShowHelp " + std::to_string(topic)); }
    std::uint32_t GetDefinitionsVersion() override { return definitions; }
    std::string GetDefinitionsDate() override { return {}; }
    void GetAnimationSize(int*, int*, double) override {}
    void DrawAnimationFrame(bool search, Gdiplus::Graphics& g, int x, int y, double scale) override;
    int GetCategoryCleaned(HSCANITEM) override { return -1; }

  private:
    std::string m_link;
    std::size_t m_frame = 0;
};

// A drop of these paths, as the shell makes it.
HDROP MakeDrop(const std::vector<std::string>& paths);
