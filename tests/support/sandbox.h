#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Folders and keys of a test's own. They are made anew, and with all that is in them they go with the object.
// What does not belong to them is refused by an exception, which fails the test.

// A folder below the temp folder. Names are relative to it and may have folders in them; those are made where
// they are missing. A name that would lead out of it throws std::invalid_argument.
class TestFolder {
  public:
    TestFolder();
    // Removes the folder, never through a link. The test fails if something in it is still held open.
    ~TestFolder();
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    // With its trailing backslash.
    const std::string& Path() const { return m_path; }

    // The whole path of `name`, which need not exist.
    std::string At(std::string_view name) const;

    // Make a file or a folder (empty if it is new) and return its whole path, the folder's without a trailing
    // backslash. A file that is there is overwritten.
    std::string MakeFile(std::string_view name, std::string_view content = "content",
                         DWORD attributes = FILE_ATTRIBUTE_NORMAL) const;
    std::string MakeFolder(std::string_view name) const;

  private:
    std::string m_path;
};

// The file's bytes; nothing if it cannot be read.
std::optional<std::string> FileContent(const std::string& path);

// True if something is at `path`.
bool Exists(const std::string& path);

// The names in a folder without "." and "..", sorted. Empty if it cannot be listed.
std::vector<std::string> NamesIn(const std::string& folder);

// Where the system says that an opened path really is ("\\?\C:\..."); empty if it cannot be opened. Not for
// long paths.
std::string FinalPathOf(const char* path);

// A key below `root`, which is HKEY_CURRENT_USER or HKEY_LOCAL_MACHINE, in "Software\VelvaneTests".
class TestKey {
  public:
    explicit TestKey(HKEY root = HKEY_CURRENT_USER);
    // Removes the key with all below, locked or not.
    ~TestKey();
    TestKey(const TestKey&) = delete;
    TestKey& operator=(const TestKey&) = delete;

    HKEY Root() const { return m_root; }
    // Without the root's name and without a trailing backslash.
    const std::string& Path() const { return m_path; }
    const char* c_str() const { return m_path.c_str(); }

    // The path of the sub-key `name`; MakeKey makes it, too.
    std::string At(std::string_view name) const;
    std::string MakeKey(std::string_view name) const;

    // Values of the key itself, or of its sub-key `subKey`, which is made where it is missing.
    void SetText(const char* name, std::string_view text, const char* subKey = "") const;
    void SetNumber(const char* name, DWORD number, const char* subKey = "") const;
    // Exactly these bytes, with whatever type.
    void SetRaw(const char* name, DWORD type, std::string_view bytes, const char* subKey = "") const;

  private:
    HKEY m_root;
    std::string m_path;
};

bool KeyExists(HKEY root, const std::string& key);
bool ValueExists(HKEY root, const std::string& key, const char* name);

// The value's bytes; nothing if it is missing or cannot be read.
std::optional<std::string> ValueBytes(HKEY root, const std::string& key, const char* name);

// Locks a key: nobody may read, write or delete it. Its owner may still read and write its security, and it
// can be deleted under Wine, unless it has sub-keys.
void DenyEveryone(HKEY root, const std::string& key);

// The key's DACL as a self-relative descriptor, for comparing; throws std::runtime_error if it cannot be
// read.
std::vector<BYTE> DaclBytes(HKEY root, const std::string& key);
