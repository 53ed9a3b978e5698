#pragma once

#include <windows.h>

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "base/delimiting_text_state_machine.h"
#include "engine/clean_records.h"
#include "engine/definition_memory.h"
#include "engine/engine_messages.h"
#include "engine/link_watch.h"
#include "engine/protected_folders.h"
#include "engine/result_store.h"
#include "engine/whitelist.h"
#include "system/critical_section.h"

namespace pugi {
class xml_node;
}
class FolderPaths;

// The one object that knows about traces: the hierarchy of definitions, the results of a scan under it, the
// location variables, the protected paths, the whitelist, and the files that wait to be shredded.
//
// Each Start operation runs its work on a worker thread of its own, one at a time, and reports to the window
// that it was given by the messages of engine_messages.h. All other operations are for the thread that owns
// the object, while no worker runs unless they say otherwise. Failures are counted, never shown: the user
// hears of them through the counters.
class CCleaningEngine {
  public:
    CCleaningEngine();
    // Waits for a running worker; messages that it sends to windows of this thread are answered meanwhile.
    ~CCleaningEngine();
    CCleaningEngine(const CCleaningEngine&) = delete;
    CCleaningEngine& operator=(const CCleaningEngine&) = delete;

    // --- Workers. Each returns the thread's handle, -1 if there could be none, or, if a worker is running
    // already, that worker's window, and then nothing is started.

    // Finishes what an earlier run left for the restart, then loads the definitions.
    std::uintptr_t StartLoad(HWND window);
    // Sends a node for each category, application and entity.
    std::uintptr_t StartList(HWND window);
    std::uintptr_t StartScan(HWND window);
    // Both set the pass count first. kept: also while another worker runs, whose count it then is.
    std::uintptr_t StartClean(HWND window, int passes);
    std::uintptr_t StartShred(HWND window, int passes);

    // True while a worker runs. Any thread.
    bool IsBusy() const { return m_window != nullptr; }

    // Asks the worker to end early, from its start on. No wait, no lock. Any thread.
    void CancelAction() { m_cancel = true; }
    // Returns when no worker runs; its messages are answered meanwhile. On the thread of the engine's owner.
    void WaitForWorker();

    // A run with `scanOnly` reports as if it cleaned and changes nothing, but for the URL cache.
    void SetScanOnly(bool scanOnly) { m_scanOnly = scanOnly; }

    // Appends a file, or an empty folder, to the queue of StartShred.
    void AddShredFile(std::string_view path) { m_shredFiles.emplace_back(path); }

    // 0 to 10 as they are; anything else means 11.
    void SetShredPasses(int passes) { m_passCount = passes >= 0 && passes <= 10 ? passes : 11; }

    // --- Records by their handle.

    // Sets the flag of one record, its children untouched. Of a result: whether it is cleaned, which for a
    // whitelistable entity also keeps the whitelist. Of the upper levels: whether they are cleaned, and with
    // `alsoEnable` whether they are scanned.
    void SetItemCheck(HSCANITEM handle, bool value, bool alsoEnable);

    // What GetItemString's text is.
    static constexpr DWORD kPlainText = 1;
    static constexpr DWORD kFilePath = 2;
    // Writes the text that describes a record into `buffer`, cut to `size` - 1 characters. Takes no lock.
    void GetItemString(HSCANITEM handle, char* buffer, std::size_t size, DWORD* kind) const;

    // Results that the latest clean removed from a category, -1 for any other handle.
    int GetCategoryCleaned(HSCANITEM handle) const;

    // --- Counters of the latest run. Any thread.
    std::uint32_t GetItemsFound() const { return m_itemsFound; }
    std::uint32_t GetItemsWhitelisted() const { return m_itemsWhitelisted; }
    std::uint32_t GetItemsCleaned() const { return m_cleaned; }
    std::uint32_t GetItemsFailed() const { return m_failed; }

    // --- Definitions.

    // The category list, in the order of the definitions. Its records belong to the engine.
    const RecordList<tagCLEAN_CATEGORY>& Categories() const { return m_categories; }
    std::uint32_t GetDefinitionsVersion() const { return m_definitionsVersion; }
    // The date as the definitions write it; nothing when they have none.
    const std::optional<std::string>& GetDefinitionsDate() const { return m_definitionsDate; }
    // How many categories and applications the latest load kept.
    std::uint32_t LoadedNodeCount() const { return m_loadedNodeCount; }
    // Makes the next load read this file instead of the first that is there of
    // <common application data>\Quillmere\Velvane\cleaning.db and <folder of the program>\cleaning.db.
    void SetDefinitionsFile(std::string path) { m_definitionsFile = std::move(path); }
    // Puts this file in the place of <application data>\Quillmere\Velvane\CleanPreferences.db.
    void SetPreferencesFile(std::string path) { m_preferencesFile = std::move(path); }

    // --- Location variables and protected paths, complete from the first load on.

    // `text` with its location variables replaced. Not while a load runs.
    std::string ExpandLocation(std::string text);
    // The tests of restricted_paths.h, with this machine's folders: for a definition's location, ...
    bool IsRestrictedLocation(std::string_view location) const;
    // ... for a path that the user picked, as IsRestrictedUserPath ...
    bool IsRestrictedPath(const char* path) const;
    // ... as HoldsProtectedPath ...
    bool HoldsRestrictedPath(const char* path) const;
    // ... and as IsInFolderText with the Windows folder.
    bool IsInWindowsFolder(const char* path) const;

    // --- States and whitelist.

    // Writes the enabled flags and the whitelist. The file of before stays when anything fails, when the text
    // would be longer than kMaxDbPayload, and while nothing is loaded.
    void SaveItemStates();
    // Forgets the stored flags and the hierarchy; the whitelist stays. Nothing while a worker runs.
    void DeleteItemStates();
    bool IsWhitelisted(std::string_view name) const { return m_whitelist.Contains(name); }
    // Adds without a look whether the name is there already, or removes the first entry of this name.
    void SetWhitelisted(std::string_view name, bool add);
    const Whitelist& WhitelistEntries() const { return m_whitelist; }

    // --- What the workers run, and its parts. On a worker, or on a thread of the caller's that has seen to
    // it that no worker runs.

    // False when no category was loaded, also for want of memory.
    bool LoadDefinitions();
    // Frees the hierarchy, with `save` after writing its states.
    void FreeDefinitions(bool save);
    void ListDefinitions();
    void Scan();
    void Clean();
    void ShredList();
    void CompleteAfterReboot();

    // Overwrites (by the pass count), renames and deletes a file, or removes an empty folder. True if it is
    // gone; false may mean that it waits for the restart.
    bool ShredFile(const std::string& path, bool disableRedirection);
    // All passes over an open file. The result of the last one.
    bool OverwriteFile(HANDLE file, const std::string& path);

    // Paths that go with the restart, as far as the system accepted them since the engine was made, in order.
    const std::vector<std::string>& FilesWaitingForRestart() const { return m_waitingForRestart; }

    // The folder that locked files are moved to at the restart, with its trailing backslash. With `create` it
    // is made, once in the engine's life.
    const std::string& GetRebootFolder(bool create);

  private:
    class ItemSink;
    using Worker = void (CCleaningEngine::*)();
    using Place = std::variant<std::monostate, tagCLEAN_CATEGORY*, tagCLEAN_APPLICATION*, tagCLEAN_ENTITY*,
                               tagCLEAN_ITEM*, tagCLEAN_RESULT*>;

    // cleaning_engine.cpp
    std::uintptr_t StartWorker(HWND window, Worker worker);
    void LoadWorker();
    void ListWorker();
    void ScanWorker();
    void CleanWorker();
    void ShredWorker();
    // True when the run is to end early, which a loop that asks before an element then traces.
    bool Stopped() const;
    LRESULT Send(UINT message, WPARAM wParam, LPARAM lParam) const {
        return ::SendMessageA(m_window, message, wParam, lParam);
    }
    void SendNode(const tagSCAN_NODE_INFO& node, bool scanning) const {
        Send(WM_ENGINE_NODE, scanning, reinterpret_cast<LPARAM>(&node));
    }

    // item_access.cpp
    Place FindRecord(HSCANITEM handle) const;

    // location_variables.cpp
    void CreateSystemLocationVariables(FolderPaths& folders);
    void CreateRestrictedPaths(FolderPaths& folders);
    void LoadLocationVariables(const pugi::xml_node& root);
    void LoadLocationVariable(const pugi::xml_node& node);
    std::string_view ExpandedForLoad(std::string_view text);
    void ExpandForLoad(std::string& text) { text = std::string(ExpandedForLoad(text)); }
    bool LocationExists(std::string location);

    // definitions.cpp, definition_items.cpp
    std::optional<std::string> ReadDefinitions() const;
    bool ReplaceDefinitions();
    std::uint32_t LoadCategories(const pugi::xml_node& root, std::uint32_t& categoryCount);
    std::uint32_t LoadApplications(const pugi::xml_node& node, tagCLEAN_CATEGORY& category,
                                   SharedImages& images);
    std::uint32_t LoadEntities(const pugi::xml_node& node, tagCLEAN_APPLICATION& application);
    std::uint32_t LoadItems(const pugi::xml_node& node, tagCLEAN_ENTITY& entity);
    bool LoadItem(const pugi::xml_node& node, tagCLEAN_ENTITY& entity);
    bool IsOnFixedDrive(const char* location);

    // item_states.cpp
    std::optional<std::string> PreferencesPath() const;
    void LoadItemStates();

    // scanner.cpp
    std::uint32_t ScanDefinitionCount() const;
    void ClearResults();
    void ScanCategories();
    std::uint32_t ScanApplications(const tagCLEAN_CATEGORY& category);
    std::uint32_t ScanEntities(const tagCLEAN_APPLICATION& application);
    std::uint32_t ScanItems(const tagCLEAN_ENTITY& entity);
    std::uint32_t ScanItem(tagCLEAN_ITEM& item, ItemSink& sink);
    void AddResult(tagCLEAN_ITEM& item, ResultStore& store, ResultType type,
                   const std::shared_ptr<const std::string>& path, std::optional<std::string> name,
                   bool whitelistable);
    void PruneEmptyNodes();

    // cleaner.cpp
    std::uint32_t CleanResultCount() const;
    void CleanCategories(std::uint32_t total);
    void CleanApplications(tagCLEAN_CATEGORY& category, std::uint32_t total);
    void CleanEntities(tagCLEAN_CATEGORY& category, const tagCLEAN_APPLICATION& application,
                       std::uint32_t total);
    std::uint32_t CleanResults(const tagCLEAN_ITEM* firstItem, std::uint32_t total,
                               std::uint32_t& categoryCleaned);
    bool CleanResult(const tagCLEAN_ITEM& item, const tagCLEAN_RESULT& result);
    bool LeadsElsewhere(const tagCLEAN_ITEM& item, const tagCLEAN_RESULT& result);
    bool CleanFile(const tagCLEAN_RESULT& result);

    // shredder.cpp, reboot_completion.cpp
    bool OverwriteForShred(const std::string& path);
    bool OverwriteSpecialFile(const std::string& path) const;
    bool RenameAndDelete(const std::string& path) const;
    bool ShredListed(const std::string& path, bool isReached);
    void ScheduleForReboot(const std::string& path);

    CriticalSection m_lock;               // the hierarchy and every worker
    std::atomic<HWND> m_window{nullptr};  // target of the messages; set while a worker runs
    std::atomic<bool> m_cancel{false};    // asks the worker to end early
    bool m_scanOnly = false;              // nothing in the object's life clears it by itself
    std::atomic<int> m_passCount{1};

    DefinitionMemory m_definitionMemory;  // what m_categories is made of
    RecordList<tagCLEAN_CATEGORY> m_categories;
    ResultStore m_results;
    std::vector<UniqueImage> m_scanImages;  // handed to the tree by the latest scan
    std::uint32_t m_definitionsVersion = 0;
    std::optional<std::string> m_definitionsDate;
    std::uint32_t m_loadedNodeCount = 0;
    std::map<std::string, UINT> m_driveTypes;  // by root, as the present load found them
    std::size_t m_growthLeft = 0;              // by how much variables may still let texts grow in this load
    std::optional<std::string> m_definitionsFile;
    std::optional<std::string> m_preferencesFile;

    std::atomic<std::uint32_t> m_itemsFound{0};
    std::atomic<std::uint32_t> m_itemsWhitelisted{0};
    std::atomic<std::uint32_t> m_cleaned{0};
    std::atomic<std::uint32_t> m_failed{0};
    std::uint32_t m_processed = 0;  // results that the clean has dealt with
    std::uint32_t m_scanTotal = 0;  // what progress divides by, and how far it is
    std::uint32_t m_scanProgress = 0;

    std::string m_windowsFolder;  // empty if the system does not tell it
    std::string m_rebootFolder;   // likewise
    bool m_rebootFolderMade = false;
    std::vector<std::string> m_shredFiles;
    std::vector<std::string> m_waitingForRestart;
    std::unique_ptr<DelimitingTextStateMachine> m_variables;
    std::vector<std::string> m_restrictedPaths;
    std::optional<ProtectedFolders> m_protectedFolders;  // as the latest scan found them
    LinkWatch m_linkWatch;
    Whitelist m_whitelist;
};
