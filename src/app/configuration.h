#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
#include <pugixml.hpp>
#include <string>

#include "app/links.h"

// What the program remembers between runs and what it knows about where it stands: folders, links, update
// preferences. It owns the files; what a derived class adds to them goes through the operations below.
//
// Two files feed it, and neither has to be there: what is missing or broken leaves the defaults, and nobody
// is told. AppPreferences.dat, in the machine-wide application data, is ours. settings.xml, beside the
// program, comes with a distribution and is only read. Main thread.
class CAppConfig {
  public:
    // `instanceHandle` is the module whose folder is the program's; `id` is the product's number in the
    // links. Makes the folders of company and product under the user's and the machine's application data.
    CAppConfig(HINSTANCE instanceHandle, std::string company, std::string product, unsigned int id);
    CAppConfig(const CAppConfig&) = delete;
    CAppConfig& operator=(const CAppConfig&) = delete;

    // Reads both files, once. `placement`, which may be null, takes the window's placement of the last save,
    // never a minimised one; it stays as it is where the file has none.
    void Load(WINDOWPLACEMENT* placement);

    // Writes AppPreferences.dat with the placement of `window`. A failure loses this session's options,
    // silently.
    void Save(HWND window) const;

    // Options by the numbers in config_keys.h. GetInt gives -1 for a number that nobody knows, SetInt ignores
    // it.
    int GetInt(int key) const;
    void SetInt(int key, int value);
    // Null for a number that nobody knows; valid as long as the object lives and nothing is loaded.
    const char* GetString(int key) const;
    void SetString(int key, const char* value);

  protected:
    ~CAppConfig() = default;

    // An element of the preferences that the base does not know. `value` is null for an empty one.
    virtual void ReadExtraElement(const char* name, const char* value) = 0;
    // The lines of the derived elements as they go into the file.
    virtual void GetExtraXml(std::string& text) const = 0;
    // Options whose numbers the base does not know.
    virtual int GetExtraInt(int key) const = 0;
    virtual void SetExtraInt(int key, int value) = 0;
    virtual const char* GetExtraString(int key) const = 0;
    virtual void SetExtraString(int key, const char* value) = 0;

  private:
    void CreateFolders(int csidl, void (*make)(const char* path)) const;
    std::optional<std::string> PreferencesPath() const;
    void LoadPreferences(WINDOWPLACEMENT* placement);
    void ReadElement(const pugi::xml_node& element, WINDOWPLACEMENT* placement);
    void LoadSettings();

    std::string companyName;
    std::string productName;
    unsigned int productId;
    std::string registryKeyPath;  // kept: nothing reads it
    std::string appDirectory;     // with its trailing backslash; empty if the system does not tell
    std::string helpFilePath;
    HINSTANCE instance;
    bool firstRun = true;
    std::int64_t lastUpdateCheck = 0;  // seconds; kept: nothing reads it
    tagAPP_LINKS links;
    bool autoCheckUpdates = true;
    bool askBeforeDownload = true;
};
