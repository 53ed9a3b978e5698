#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "ui/screens/dlg_scan.h"

// Starts what the screen needs, once: the theme, the texts, the rich edit control.
struct ScanSurroundings {
    ScanSurroundings();
};

// Stands in for the main window: it writes down what a screen asks for, and answers what it is told to.
class RecordingCommon final : public ICommonInterface {
  public:
    std::uint32_t found = 0;
    std::uint32_t whitelisted = 0;
    std::uint32_t cleaned = 0;
    std::uint32_t failed = 0;
    std::map<int, int> options;             // of GetConfigInt; 0 for others
    std::map<HSCANITEM, int> cleanedBelow;  // of GetCategoryCleaned
    std::vector<std::string> calls;         // what changes something, in order, such as "EnableUI 1"
    std::vector<ThemeImage> frames[2];      // of the erase and of the search animation; may be empty
    int framesDrawn[2] = {};

    std::vector<std::string> TakeCalls() { return std::exchange(calls, {}); }
    void LoadFrames();

    void EnableUI(bool enable) override;
    void AddShredFile(const char*) override {}
    HANDLE StartShred(HWND, int) override { return nullptr; }
    HANDLE StartScan(HWND notify) override;
    HANDLE StartClean(HWND notify, int eraseMode) override;
    void SetItemEnabled(HSCANITEM, bool) override {}
    void SetItemSelected(HSCANITEM item, bool selected) override;
    int GetConfigInt(int id) override { return options[id]; }
    void SetConfigInt(int id, int value) override;
    const char* GetConfigString(int) override { return nullptr; }
    void SaveConfig(bool) override {}
    void StopOperation() override { calls.emplace_back("StopOperation"); }
    void SetSimulation(bool) override {}
    void GetItemDescription(HSCANITEM, char*, std::size_t, int*) override {}
    bool ConfirmShredPath(const char*, int*) override { return false; }
    std::uint32_t GetItemsFound() override { return found; }
    std::uint32_t GetItemsWhitelisted() override { return whitelisted; }
    std::uint32_t GetItemsCleaned() override { return cleaned; }
    std::uint32_t GetItemsFailed() override { return failed; }
    void ReloadDefinitions(bool) override {}
    int RunUpdates(bool) override { return 0; }
    void PromptRestart(bool resume) override;
    void ShowHelp(int) override {}
    std::uint32_t GetDefinitionsVersion() override { return 0; }
    std::string GetDefinitionsDate() override { return {}; }
    void GetAnimationSize(int* width, int* height, double scale) override;
    void DrawAnimationFrame(bool search, Gdiplus::Graphics& g, int x, int y, double scale) override;
    int GetCategoryCleaned(HSCANITEM category) override;

  private:
    int m_frame = 0;
};

// The screen in a window of its own, which is as large as its client area, and the messages of a worker.
class ScanScreen : private ScanSurroundings, public CWindowImpl<ScanScreen> {
  public:
    explicit ScanScreen(SIZE size = {608, 440});
    ~ScanScreen() override { DestroyWindow(); }

    static HSCANITEM Handle(int number) { return reinterpret_cast<HSCANITEM>(std::intptr_t{number} * 16); }

    // A node of the engine; what WM_ENGINE_NODE answers.
    CScanTree::Node* SendNode(DWORD level, int handle, const char* name, const char* filePath = nullptr,
                              bool checked = true, bool expanded = false, const char* help = nullptr);
    LRESULT SendEngine(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
        return dialog.Send(message, wParam, lParam);
    }
    // As the tick of the clock does.
    void Tick(int times = 1);
    void Resize(SIZE size);
    // To the results of a scan, in which these nodes came.
    void ScanTo(const std::function<void()>& sendNodes);

    bool Shows(int id) const { return (dialog.GetDlgItem(id).GetStyle() & WS_VISIBLE) != 0; }
    bool Enabled(int id) const { return dialog.GetDlgItem(id).IsWindowEnabled(); }
    // The place of a control in the dialog.
    RECT Place(int id) const { return dialog.GetRectOf(dialog.GetDlgItem(id)); }
    // As plain text.
    std::string Report() const;
    void Press(int id) { dialog.Send(WM_COMMAND, MAKEWPARAM(id, BN_CLICKED)); }
    // As the user does, on a row that is on show.
    void ClickCheckBox(CScanTree::Node* node);

    RecordingCommon common;
    CDlgScan dialog;

    BEGIN_MSG_MAP(ScanScreen)
    END_MSG_MAP()
};
