#pragma once

#include <windows.h>
// Behind windows.h, which it does not include by itself.
#include <shellapi.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

// Where the shredder's paths come from. Paths are whole; one of a folder ends in a backslash. What has no
// path that the program can hand back to the system, too long a one or one with characters that it cannot
// spell, is passed over: a path that was changed on the way would destroy something else.

using PathSink = std::function<void(const std::string& path)>;

// Everything below `folder`, which ends in a backslash: what a folder holds before the folder. The folder
// itself is not in it. A link is reported as itself and never followed.
// kept: a folder whose name begins with two points is passed over, with all that it holds.
void AddFolderContent(const std::string& folder, const PathSink& sink);

// The same for a path of any kind, and then the path itself.
void AddWithContent(const std::string& path, const PathSink& sink);

// What was dropped, in its order. The drop stays the caller's.
std::vector<std::string> DroppedPaths(HDROP drop);

// --- the recycle bin; on a thread with COM

// What the shell calls it; empty if it does not tell.
std::string RecycleBinName(HWND owner);

// All that is in it, by where it lies: what a deleted folder holds before the folder. `owner` owns whatever
// the shell might have to ask. A shell that fails gives less, and nobody is told.
void AddRecycleBinContent(HWND owner, const PathSink& sink);

// --- the open dialog

// What the user picked in the dialog that asks for files, as it comes from the system: a whole path, or a
// folder and the names of files in it.
struct OpenSelection {
    std::vector<char> buffer;    // texts with a zero behind each, a second one at the end
    std::size_t fileOffset = 0;  // where in it the first file's name stands
};

// The path by which a selection is asked whether it may be shredded.
// kept: a single file's path gets a backslash as a folder's does.
std::string RestrictionPath(const OpenSelection& selection);

// The picked files.
std::vector<std::string> SelectedPaths(const OpenSelection& selection);

// Asks for files, system files left out. Nothing if the user cancels or there were too many for the buffer.
std::optional<OpenSelection> AskForFiles(HWND owner);
