// Does on purpose what a careless test of a cleaner would do by accident. containment_test.sh starts it,
// contained, and looks from outside at what is left. Its own answers prove nothing: a delete that the host
// refuses is reported here as done.
//
//   delete PATH | write PATH | move PATH | attributes PATH   one blow at a file
//   await KIND PATH      the same, once PATH exists
//   user-folders         deletes what is in the user's folders, entering links as well
//   recycle PATH         moves a file to the recycle bin, then empties the bin
//   delay-delete PATH    has a file deleted by the next restart
//   window               makes a window
//   where                prints its own path
//   echo ARGUMENT...     prints its arguments and returns their number

#include <windows.h>
// After windows.h, which it needs.
#include <shellapi.h>
#include <shlobj.h>

#include <cstdio>
#include <cstring>
#include <string>

namespace {

constexpr DWORD kWaitLimit = 20000;  // ms; what is awaited is made right after the start

void Write(const char* path) {
    const HANDLE file = ::CreateFileA(path, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                      OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return;
    DWORD written = 0;
    ::WriteFile(file, "gone", 4, &written, nullptr);
    ::SetEndOfFile(file);
    ::CloseHandle(file);
}

bool Strike(const std::string& kind, const char* path) {
    if (kind == "delete") return ::DeleteFileA(path), true;
    if (kind == "write") return Write(path), true;
    if (kind == "move") {
        return ::MoveFileExA(path, "C:\\moved", MOVEFILE_COPY_ALLOWED | MOVEFILE_REPLACE_EXISTING), true;
    }
    if (kind == "attributes") return ::SetFileAttributesA(path, FILE_ATTRIBUTE_READONLY), true;
    return false;
}

bool Await(const char* path) {
    const ULONGLONG end = ::GetTickCount64() + kWaitLimit;
    while (::GetFileAttributesA(path) == INVALID_FILE_ATTRIBUTES) {
        if (::GetTickCount64() > end) return false;
        ::Sleep(10);
    }
    return true;
}

void Purge(const std::string& folder) {
    WIN32_FIND_DATAA data;
    const HANDLE find = ::FindFirstFileA((folder + "\\*").c_str(), &data);
    if (find == INVALID_HANDLE_VALUE) return;
    do {
        if (std::strcmp(data.cFileName, ".") == 0 || std::strcmp(data.cFileName, "..") == 0) continue;
        const std::string path = folder + "\\" + data.cFileName;
        if (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
            Purge(path);
            ::RemoveDirectoryA(path.c_str());
        } else {
            ::DeleteFileA(path.c_str());
        }
    } while (::FindNextFileA(find, &data));
    ::FindClose(find);
}

void PurgeUserFolders() {
    for (const int folder : {CSIDL_PERSONAL, CSIDL_DESKTOPDIRECTORY, CSIDL_MYMUSIC, CSIDL_MYPICTURES,
                             CSIDL_MYVIDEO, CSIDL_TEMPLATES, CSIDL_FAVORITES, CSIDL_RECENT, CSIDL_COOKIES,
                             CSIDL_HISTORY, CSIDL_INTERNET_CACHE, CSIDL_APPDATA, CSIDL_LOCAL_APPDATA,
                             CSIDL_COMMON_DOCUMENTS, CSIDL_COMMON_DESKTOPDIRECTORY, CSIDL_PROFILE}) {
        char path[MAX_PATH] = "";
        if (::SHGetFolderPathA(nullptr, folder, nullptr, SHGFP_TYPE_CURRENT, path) != S_OK) continue;
        std::printf("%s\n", path);
        Purge(path);
    }
}

int Recycle(const char* path) {
    std::string doubleEnded = path;
    doubleEnded.push_back('\0');
    SHFILEOPSTRUCTA operation = {};
    operation.wFunc = FO_DELETE;
    operation.pFrom = doubleEnded.c_str();
    operation.fFlags = FOF_ALLOWUNDO | FOF_NOCONFIRMATION | FOF_NOERRORUI | FOF_SILENT;
    if (::SHFileOperationA(&operation) != 0) return 1;
    SHQUERYRBINFO bin = {};
    bin.cbSize = sizeof bin;
    ::SHQueryRecycleBinA(nullptr, &bin);
    std::printf("in the bin: %lld\n", static_cast<long long>(bin.i64NumItems));
    ::SHEmptyRecycleBinA(nullptr, nullptr, SHERB_NOCONFIRMATION | SHERB_NOPROGRESSUI | SHERB_NOSOUND);
    ::SHQueryRecycleBinA(nullptr, &bin);
    std::printf("after emptying: %lld\n", static_cast<long long>(bin.i64NumItems));
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    const std::string kind = argc > 1 ? argv[1] : "";
    std::printf("probe %s\n", kind.c_str());
    if (kind == "echo") {
        for (int i = 2; i < argc; ++i) std::printf("[%s]\n", argv[i]);
        return argc - 2;
    }
    if (kind == "window") {
        return ::CreateWindowA("STATIC", "", WS_VISIBLE, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr) ? 0
                                                                                                         : 1;
    }
    if (kind == "where") {
        char path[MAX_PATH] = "";
        ::GetModuleFileNameA(nullptr, path, MAX_PATH);
        std::printf("at %s\n", path);
        return 0;
    }
    if (kind == "user-folders") return PurgeUserFolders(), 0;
    if (kind == "await" && argc == 4) return Await(argv[3]) && Strike(argv[2], argv[3]) ? 0 : 1;
    if (argc != 3) return 2;
    if (kind == "recycle") return Recycle(argv[2]);
    if (kind == "delay-delete") return ::MoveFileExA(argv[2], nullptr, MOVEFILE_DELAY_UNTIL_REBOOT) ? 0 : 1;
    return Strike(kind, argv[2]) ? 0 : 2;
}
