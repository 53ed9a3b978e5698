// The part of the shredder's sources that asks for files.

#include <windows.h>
// Behind windows.h, which they do not include by themselves.
#include <commdlg.h>
#include <dlgs.h>
#include <shlobj.h>

#include <algorithm>
#include <cstring>

#include "app/resources.h"
#include "resources/ids.h"
#include "system/files.h"
#include "system/system_facts.h"
#include "ui/screens/shred_sources.h"
#include "ui/window/controls.h"

namespace {

constexpr std::size_t kSelectionCapacity = 100000;

// "C:\" with its zero: several files of a drive's root, the one folder that ends in a backslash.
constexpr std::size_t kRootOffset = 4;

// The text that begins at `offset`, up to its zero or `end`.
std::string TextAt(const OpenSelection& selection, std::size_t offset, std::size_t end) {
    end = std::min(end, selection.buffer.size());
    if (offset >= end) return {};
    const char* const begin = selection.buffer.data() + offset;
    return std::string(begin, ::strnlen(begin, end - offset));
}

std::string AsFolder(std::string path, const OpenSelection& selection) {
    if (selection.fileOffset != kRootOffset && !path.ends_with('\\')) path += '\\';
    return path;
}

// Takes what has the system attribute out of the folder that the dialog shows.
// kept: the attributes of an item that cannot be read look like all of them, so it is taken out as well.
void HideSystemFiles(HWND dialog) {
    const CListViewCtrl view(::FindWindowExA(::GetDlgItem(dialog, lst2), nullptr, WC_LISTVIEWA, nullptr));
    // The current folder need not be the one on show.
    char folder[kPathCapacity] = "";
    const LRESULT size =
        ::SendMessageA(dialog, CDM_GETFOLDERPATH, sizeof folder, reinterpret_cast<LPARAM>(folder));
    std::string place = size > 0 && size <= static_cast<LRESULT>(sizeof folder) ? folder : "";
    if (!place.empty() && !place.ends_with('\\')) place += '\\';
    for (int item = view.GetItemCount() - 1; item >= 0; --item) {
        const std::string path = place + view.GetItemText(item, 0);
        if ((::GetFileAttributesA(path.c_str()) & FILE_ATTRIBUTE_SYSTEM) != 0) view.DeleteItem(item);
    }
}

UINT_PTR CALLBACK OpenDialogHook(HWND hook, UINT message, WPARAM, LPARAM lParam) {
    if (message == WM_NOTIFY && reinterpret_cast<const NMHDR*>(lParam)->code == CDN_FOLDERCHANGE)
        HideSystemFiles(::GetParent(hook));
    return 0;
}

}  // namespace

std::string RestrictionPath(const OpenSelection& selection) {
    return AsFolder(TextAt(selection, 0, selection.buffer.size()), selection);
}

std::vector<std::string> SelectedPaths(const OpenSelection& selection) {
    const std::string folder = AsFolder(TextAt(selection, 0, selection.fileOffset), selection);
    std::vector<std::string> paths;
    std::size_t offset = selection.fileOffset;
    for (std::string name; !(name = TextAt(selection, offset, selection.buffer.size())).empty();
         offset += name.size() + 1) {
        const auto path = JoinPath(folder, name);
        if (path && IsSurvivingPath(*path)) paths.push_back(*path);
    }
    return paths;
}

std::optional<OpenSelection> AskForFiles(HWND owner) {
    OpenSelection selection;
    selection.buffer.resize(kSelectionCapacity);
    // The dialog leaves the current folder in what the user looked at, which it would hold in use.
    char former[kPathCapacity] = "";
    const DWORD length = ::GetCurrentDirectoryA(sizeof former, former);
    const std::string title = ResourceText(IDS_ADD_FILES_TITLE);
    const std::string desktop = FolderPath(CSIDL_DESKTOP).value_or("");
    OPENFILENAMEA ask = {};
    ask.lStructSize = sizeof ask;
    ask.hwndOwner = owner;
    ask.lpstrFilter = "All Files\0*.*\0";
    ask.nFilterIndex = 1;
    ask.lpstrFile = selection.buffer.data();
    ask.nMaxFile = kSelectionCapacity;
    ask.lpstrInitialDir = desktop.c_str();
    ask.lpstrTitle = title.c_str();
    ask.Flags = OFN_HIDEREADONLY | OFN_ENABLEHOOK | OFN_ALLOWMULTISELECT | OFN_PATHMUSTEXIST |
                OFN_FILEMUSTEXIST | OFN_EXPLORER | OFN_NODEREFERENCELINKS | OFN_ENABLEINCLUDENOTIFY |
                OFN_ENABLESIZING | OFN_DONTADDTORECENT;
    ask.lpfnHook = OpenDialogHook;
    const BOOL picked = ::GetOpenFileNameA(&ask);
    if (length != 0 && length < sizeof former) ::SetCurrentDirectoryA(former);
    if (!picked) return std::nullopt;
    selection.fileOffset = ask.nFileOffset;
    return selection;
}
