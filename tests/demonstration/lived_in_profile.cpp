// What the demonstration needs done from within Windows. scripts/run.sh starts it, contained, in a prefix of
// its own.
//
//   make         fills the lists in the registry and makes entries of the URL cache
//   hold FILE    keeps FILE open, so that nobody else may have it, until it is ended
//   state        prints one line for each of those: its name, a tab, how much there is of it, a tab, and
//   `goes` or
//                `stays`, which is what should become of it

#include <windows.h>
// After windows.h, which it needs.
#include <wininet.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace {

#define EXPLORER "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\"

struct RegistryList {
    const char* name;  // in what `state` prints
    const char* key;
    std::vector<const char*> values;
};

const RegistryList kLists[] = {
    {"recent documents", EXPLORER "RecentDocs", {"tax return.pdf", "letter.txt"}},
    {"recent documents of one kind", EXPLORER "RecentDocs\\.pdf", {"tax return.pdf"}},
    {"run dialog", EXPLORER "RunMRU", {"regedit\\1", "notepad\\1"}},
    {"typed paths", EXPLORER "TypedPaths", {"C:\\users\\velvane\\Documents"}},
    {"search words", EXPLORER "WordWheelQuery", {"doctor"}},
    {"recent files of Paint",
     "Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Paint\\Recent File List",
     {"C:\\users\\velvane\\Pictures\\x-ray.png"}},
};

// An archiver, whose folder tells that it is installed.
constexpr char kArchiver[] = "Software\\7-Zip";
constexpr char kArchiverWindow[] = "Software\\7-Zip\\FM";
constexpr char kArchiverFolder[] = "C:\\users\\velvane\\AppData\\Local\\Programs\\7-Zip";
constexpr const char* kArchiverTraces[] = {"FolderHistory", "PanelPath0"};
constexpr char kArchiverFavourites[] = "FolderShortcuts";

constexpr char kUrlStart[] = "http://demonstration.invalid/";
constexpr int kUrls = 3;

bool SetText(const char* path, const char* name, const char* text) {
    return ::RegSetKeyValueA(HKEY_CURRENT_USER, path, name, REG_SZ, text,
                             static_cast<DWORD>(std::strlen(text) + 1)) == ERROR_SUCCESS;
}

// "a", "b" ... with the list's order, as Windows names them.
bool MakeList(const RegistryList& list) {
    std::string order;
    bool made = true;
    for (const char* value : list.values) {
        order += static_cast<char>('a' + order.size());
        made &= SetText(list.key, order.substr(order.size() - 1).c_str(), value);
    }
    return made && SetText(list.key, "MRUList", order.c_str());
}

bool MakeArchiver() {
    bool made = SetText(kArchiver, "Path", kArchiverFolder) &&
                SetText(kArchiverWindow, kArchiverFavourites, "C:\\users\\velvane\\Documents");
    for (const char* name : kArchiverTraces) {
        made &= SetText(kArchiverWindow, name, "C:\\users\\velvane\\Documents\\Letters");
    }
    return made;
}

bool MakeUrlEntry(int number) {
    const std::string url = kUrlStart + std::to_string(number) + ".htm";
    char file[MAX_PATH] = "";
    if (!::CreateUrlCacheEntryA(url.c_str(), 0, "htm", file, 0)) return false;
    FILE* page = std::fopen(file, "wb");
    if (!page) return false;
    std::fputs("<html>a page that was read</html>", page);
    std::fclose(page);
    return ::CommitUrlCacheEntryA(url.c_str(), file, FILETIME(), FILETIME(), NORMAL_CACHE_ENTRY, nullptr, 0,
                                  nullptr, nullptr) != FALSE;
}

int Make() {
    bool made = MakeArchiver();
    for (const RegistryList& list : kLists) made &= MakeList(list);
    for (int i = 1; i <= kUrls; ++i) made &= MakeUrlEntry(i);
    return made ? 0 : 1;
}

int Hold(const char* path) {
    const HANDLE file = ::CreateFileA(path, GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return 1;
    std::puts("held");
    std::fflush(stdout);
    ::Sleep(INFINITE);
    return 0;
}

DWORD ValuesIn(const char* path) {
    HKEY key = nullptr;
    DWORD count = 0;
    if (::RegOpenKeyExA(HKEY_CURRENT_USER, path, 0, KEY_READ, &key) != ERROR_SUCCESS) return 0;
    ::RegQueryInfoKeyA(key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &count, nullptr, nullptr,
                       nullptr, nullptr);
    ::RegCloseKey(key);
    return count;
}

bool ArchiverHas(const char* name) {
    return ::RegGetValueA(HKEY_CURRENT_USER, kArchiverWindow, name, RRF_RT_ANY, nullptr, nullptr, nullptr) ==
           ERROR_SUCCESS;
}

int CountUrls() {
    std::vector<char> buffer(65536);
    auto* entry = reinterpret_cast<INTERNET_CACHE_ENTRY_INFOA*>(buffer.data());
    auto size = static_cast<DWORD>(buffer.size());
    const HANDLE find = ::FindFirstUrlCacheEntryA(nullptr, entry, &size);
    if (!find) return 0;
    int count = 0;
    do {
        count += std::strncmp(entry->lpszSourceUrlName, kUrlStart, sizeof kUrlStart - 1) == 0;
        size = static_cast<DWORD>(buffer.size());
    } while (::FindNextUrlCacheEntryA(find, entry, &size));
    ::FindCloseUrlCache(find);
    return count;
}

int State() {
    const auto tell = [](const char* name, int count, const char* fate) {
        std::printf("%s\t%d\t%s\n", name, count, fate);
    };
    for (const RegistryList& list : kLists) tell(list.name, static_cast<int>(ValuesIn(list.key)), "goes");
    int folders = 0;
    for (const char* name : kArchiverTraces) folders += ArchiverHas(name);
    tell("folders that 7-Zip showed", folders, "goes");
    tell("favourites of 7-Zip", ArchiverHas(kArchiverFavourites), "stays");
    tell("entries of the URL cache", CountUrls(), "goes");
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string command = argc > 1 ? argv[1] : "";
    if (command == "make") return Make();
    if (command == "hold" && argc == 3) return Hold(argv[2]);
    if (command == "state") return State();
    std::fputs("demonstration: make, hold FILE or state\n", stderr);
    return 2;
}
