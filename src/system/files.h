#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Facts about files and folders that the engine's rules stand on. Paths are texts in the process's code page.

// Longest path with its terminator that the program handles.
inline constexpr std::size_t kPathCapacity = 260;

// `folder` followed by `name`; nothing if that would not fit kPathCapacity with its terminator. Never a
// shortened path.
std::optional<std::string> JoinPath(std::string_view folder, std::string_view name);

// True for a reparse point that leads elsewhere. `tag` is dwReserved0 of the find data. The placeholders of
// cloud storage (any of the tags 0x9000?01A) stand for their own content and are not links.
bool IsLink(DWORD attributes, DWORD tag);

// The same by path; false when it does not exist.
bool IsLink(const char* path);

// The next entry of a listing. One whose name is too long for the find data fails the system's call by
// itself; what stands behind it is found all the same.
bool FindNextEntry(HANDLE find, WIN32_FIND_DATAA& entry);

// The name of a found entry if it names that entry again when it is handed back to the system; nothing
// when the name has characters that the process's code page does not have, when the system would take it for
// another one, or when it does not fit.
std::optional<std::string_view> SurvivingName(const WIN32_FIND_DATAA& entry, const std::string& folder);

// The same for a whole path that the system has put into the process's code page: false for one that may name
// something else than it did there, or is too long for the program to handle.
bool IsSurvivingPath(const std::string& path);

// A text in the process's code page; nothing when it would come back as another. A character that the code
// page lacks becomes one that looks like it, and a file's name that of another file.
std::optional<std::string> ExactText(const wchar_t* text);

// Where an open file or folder really is, with the prefix \\?\ in front; empty if the system cannot tell.
std::string FinalPath(HANDLE handle);

// True when nothing is at `path` any more, or nothing that can be opened.
bool IsGone(const char* path);

// Takes a link to a folder away and never what it points to. `path` may end in a backslash. False, with
// nothing touched, when it is no such link or the system does not give a handle to the link itself: Wine
// opens what the link leads to, whatever it is asked for, and would delete that.
bool RemoveFolderLink(const char* path);

// The whole of an open file from its start; nothing if it has more than `limit` bytes or is not read to its
// end.
std::optional<std::vector<std::uint8_t>> ReadWholeFile(HANDLE file, std::uint32_t limit);

// The whole file, opened with FILE_SHARE_READ; nothing if it cannot be opened, has more than `limit` bytes or
// is not read to its end.
std::optional<std::vector<std::uint8_t>> ReadWholeFile(const char* path, std::uint32_t limit);

// Writes a new file beside `path` (with ".new" behind its name, which has to fit kPathCapacity), flushes it,
// and moves it into its place. On failure what was at `path` stays, and nothing beside it.
bool ReplaceFileContent(const char* path, const void* data, std::uint32_t size);
