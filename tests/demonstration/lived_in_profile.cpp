// What the demonstration needs done from within Windows. scripts/run.sh starts it, contained, in a prefix of
// its own.
//
//   make         fills the lists in the registry and makes entries of the URL cache
//   hold FILE    keeps FILE open, so that nobody else may have it, until it is ended
//   state        prints one line for each of those: its name, a tab, and how much there is of it

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
    {"run dialog", EXPLORER "RunMRU", {"regedit\\1", "cmd\\1", "notepad\\1"}},
    {"typed paths", EXPLORER "TypedPaths", {"C:\\users\\velvane\\Documents"}},
    {"search words", EXPLORER "WordWheelQuery", {"doctor", "loan"}},
    {"recent files of Paint",
     "Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Paint\\Recent File List",
     {"C:\\users\\velvane\\Pictures\\x-ray.png"}},
};

constexpr char kUrlStart[] = "http://demonstration.invalid/";
constexpr int kUrls = 3;

// "a", "b" ... with the list's order, as Windows names them.
bool MakeList(const RegistryList& list) {
    HKEY key = nullptr;
    if (::RegCreateKeyA(HKEY_CURRENT_USER, list.key, &key) != ERROR_SUCCESS) return false;
    std::string order;
    bool made = true;
    const auto set = [&](const std::string& name, const char* text) {
        const auto* bytes = reinterpret_cast<const BYTE*>(text);
        made &= ::RegSetValueExA(key, name.c_str(), 0, REG_SZ, bytes,
                                 static_cast<DWORD>(std::strlen(text) + 1)) == ERROR_SUCCESS;
    };
    for (const char* value : list.values) {
        order += static_cast<char>('a' + order.size());
        set(order.substr(order.size() - 1), value);
    }
    set("MRUList", order.c_str());
    ::RegCloseKey(key);
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
    bool made = true;
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
    for (const RegistryList& list : kLists) std::printf("%s\t%lu\n", list.name, ValuesIn(list.key));
    std::printf("entries of the URL cache\t%d\n", CountUrls());
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
