#pragma once

#include <windows.h>

#include <commctrl.h>

#include <functional>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "app/resources.h"
#include "ui/screens/common_interface.h"
#include "ui/theme/theme.h"
#include "ui/window/app_module.h"

// Starts what a screen needs, once: COM, the controls, the texts and the theme.
inline void StartScreens() {
    static const bool started = [] {
        ::CoInitialize(nullptr);
        const INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_STANDARD_CLASSES | ICC_BAR_CLASSES};
        ::InitCommonControlsEx(&controls);
        ::LoadLibraryA("riched20.dll");
        const bool hasTexts = LoadResources();
        AppModule().Init(::GetModuleHandleA(nullptr));
        AppModule().SetResourceInstance(ResourceModule());
        return hasTexts && g_Theme.Start();
    }();
    if (!started) throw std::runtime_error("GDI+ or the texts are missing");
}

// Stands in for the main window: it writes down what a screen asks for, and answers what it is told to.
class RecordingCommon final : public ICommonInterface {
  public:
    std::vector<std::string> calls;  // what changes something, in order, such as "EnableUI 1"
    std::map<int, int> options;      // of GetConfigInt; 0 for others
    std::uint32_t found = 0;
    std::uint32_t whitelisted = 0;
    std::uint32_t cleaned = 0;
    std::uint32_t failed = 0;
    std::uint32_t definitions = 0;          // version
    std::map<HSCANITEM, int> cleanedBelow;  // of GetCategoryCleaned; -1 for others
    std::set<std::string> restricted;       // the paths that ConfirmShredPath asks about
    bool confirms = false;                  // what it is answered
    std::vector<std::string> shredFiles;    // since the last start
    int framesDrawn[2] = {};                // of the erase and of the search animation
    std::function<void(HWND, int)> onStartShred = [](HWND, int) {};
    std::function<void()> onReload;

    // Before any page is made.
    RecordingCommon() { StartScreens(); }

    std::vector<std::string> TakeCalls() { return std::exchange(calls, {}); }

    void EnableUI(bool enable) override { Note("EnableUI", enable); }
    void AddShredFile(const char* path) override { shredFiles.push_back(path); }
    HANDLE StartShred(HWND notify, int eraseMode) override {
        Note("StartShred", eraseMode);
        onStartShred(notify, eraseMode);
        shredFiles.clear();
        return nullptr;
    }
    HANDLE StartScan(HWND) override {
        calls.emplace_back("StartScan");
        return nullptr;
    }
    HANDLE StartClean(HWND, int eraseMode) override {
        Note("StartClean", eraseMode);
        return nullptr;
    }
    void SetItemEnabled(HSCANITEM item, bool enabled) override { Note("SetItemEnabled", item, enabled); }
    void SetItemSelected(HSCANITEM item, bool selected) override { Note("SetItemSelected", item, selected); }
    int GetConfigInt(int id) override { return options[id]; }
    void SetConfigInt(int id, int value) override {
        options[id] = value;
        Note("SetConfigInt", id, value);
    }
    const char* GetConfigString(int id) override {
        m_link = "https://link.invalid/" + std::to_string(id);
        return m_link.c_str();
    }
    void SaveConfig(bool) override {}
    void StopOperation() override { calls.emplace_back("StopOperation"); }
    void SetSimulation(bool) override {}
    void GetItemDescription(HSCANITEM, char*, std::size_t, int*) override {}
    bool ConfirmShredPath(const char* path, int* isRestricted) override {
        const bool asks = restricted.contains(path);
        if (isRestricted != nullptr) *isRestricted = asks ? 1 : 0;
        if (asks) calls.push_back(std::string("asked about ") + path);
        return !asks || confirms;
    }
    std::uint32_t GetItemsFound() override { return found; }
    std::uint32_t GetItemsWhitelisted() override { return whitelisted; }
    std::uint32_t GetItemsCleaned() override { return cleaned; }
    std::uint32_t GetItemsFailed() override { return failed; }
    void ReloadDefinitions(bool forgetPreferences) override {
        Note("ReloadDefinitions", forgetPreferences);
        onReload();
    }
    int RunUpdates(bool flag) override {
        Note("RunUpdates", flag);
        return 0;
    }
    void PromptRestart(bool resume) override { Note("PromptRestart", resume); }
    void ShowHelp(int topic) override { Note("ShowHelp", topic); }
    std::uint32_t GetDefinitionsVersion() override { return definitions; }
    std::string GetDefinitionsDate() override { return {}; }
    void GetAnimationSize(int* width, int* height, double scale) override {
        *width = static_cast<int>(120 * scale);
        *height = static_cast<int>(30 * scale);
    }
    void DrawAnimationFrame(bool search, Gdiplus::Graphics&, int, int, double) override {
        ++framesDrawn[search];
    }
    int GetCategoryCleaned(HSCANITEM category) override {
        const auto at = cleanedBelow.find(category);
        return at == cleanedBelow.end() ? -1 : at->second;
    }

  private:
    static std::string Text(HSCANITEM item) { return std::to_string(reinterpret_cast<std::intptr_t>(item)); }
    static std::string Text(int number) { return std::to_string(number); }
    template <class... Values>
    void Note(std::string call, Values... values) {
        ((call += " " + Text(values)), ...);
        calls.push_back(std::move(call));
    }

    std::string m_link;
};
