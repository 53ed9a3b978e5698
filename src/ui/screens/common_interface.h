#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "engine/engine_messages.h"

namespace Gdiplus {
class Graphics;
}

// The one door through which a screen reaches the engine, the configuration and the update library. Its
// operations stand in the order of their slots. Main thread alone.
//
// A handle is what the engine's messages brought. A notify window receives the messages of the run that it
// starts; a start on a busy engine is refused: the answer is then the window of the run that goes on.
class ICommonInterface {
  public:
    // False while a run goes on: no page change, no close, no start of a scan.
    virtual void EnableUI(bool enable) = 0;

    // Puts a path at the end of the list that the next StartShred goes through and empties.
    virtual void AddShredFile(const char* path) = 0;

    // Start the workers. Overwrite passes outside of 0 to 10 are taken as 11.
    virtual HANDLE StartShred(HWND notify, int eraseMode) = 0;
    virtual HANDLE StartScan(HWND notify) = 0;
    virtual HANDLE StartClean(HWND notify, int eraseMode) = 0;

    // Whether a node takes part in scans and cleans from now on, or a result is kept from now on (a
    // whitelistable one for good). The scan screen goes back to its beginning.
    virtual void SetItemEnabled(HSCANITEM item, bool enabled) = 0;
    // The same for the coming clean alone; but a result of a whitelistable entity is kept for good from now
    // on, too.
    virtual void SetItemSelected(HSCANITEM item, bool selected) = 0;

    // Options by the numbers of app/config_keys.h: -1 and null for an unknown one, which a write ignores. The
    // text is the configuration's.
    virtual int GetConfigInt(int id) = 0;
    virtual void SetConfigInt(int id, int value) = 0;
    virtual const char* GetConfigString(int id) = 0;
    // Writes the preferences, with `saveItemStates` the engine's as well.
    virtual void SaveConfig(bool saveItemStates) = 0;

    // Asks the run to end, which it does at its next element with its usual messages.
    virtual void StopOperation() = 0;
    // From now on runs change nothing.
    virtual void SetSimulation(bool on) = 0;

    // A line that describes a node or a result, zero-terminated within `size` bytes. `kind` is 2 for the path
    // of a file, else 1. Nothing if an argument is null or 0.
    virtual void GetItemDescription(HSCANITEM item, char* text, std::size_t size, int* kind) = 0;

    // True if `path` may be shredded: it is none that Windows or the user's folders stand on, or the user has
    // typed the word that confirms it. `restricted`, which may be null, gets 1 if it is one.
    virtual bool ConfirmShredPath(const char* path, int* restricted) = 0;

    // Of the latest run.
    virtual std::uint32_t GetItemsFound() = 0;
    virtual std::uint32_t GetItemsWhitelisted() = 0;
    virtual std::uint32_t GetItemsCleaned() = 0;
    virtual std::uint32_t GetItemsFailed() = 0;

    // Loads the definitions anew, with `forgetPreferences` without the user's choices. Nothing while they are
    // not loaded.
    virtual void ReloadDefinitions(bool forgetPreferences) = 0;

    // The status of the update library, 0 where there is none.
    virtual int RunUpdates(bool flag) = 0;

    // Saves everything and offers a restart of Windows, after which the program comes back by itself if
    // `resumeAfterReboot`.
    virtual void PromptRestart(bool resumeAfterReboot) = 0;

    // Opens the help. There is one page for all topics.
    virtual void ShowHelp(int topic) = 0;

    virtual std::uint32_t GetDefinitionsVersion() = 0;
    // Empty if the definitions have none.
    virtual std::string GetDefinitionsDate() = 0;

    // The size of a frame of the animations times `scale`, truncated; 0 if there are none. Nothing if a
    // pointer is null.
    virtual void GetAnimationSize(int* width, int* height, double scale) = 0;
    // Draws the next frame of the search or of the erase animation over what is at this place.
    virtual void DrawAnimationFrame(bool search, Gdiplus::Graphics& g, int x, int y, double scale) = 0;

    // What the latest clean removed below a category; -1 for any other handle.
    virtual int GetCategoryCleaned(HSCANITEM category) = 0;

  protected:
    ~ICommonInterface() = default;
};
