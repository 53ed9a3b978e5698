#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

#include "app/update_settings.h"

// The update library Kovar3.dll, which other products of ours share and which need not be there. Each use
// loads it, makes its call and unloads it; where the library or an entry of it is missing, nothing happens
// and nobody is told. User interface thread: the library's dialogs run within the call.

// The records that the library is handed. What holds an address is as wide as the host's pointers; every
// other field has 32 bits in either host, window handles too, of which the system uses no more, and the
// natural alignment.
struct tagCOLLECT_EMAIL {
    std::uint32_t version;
    const wchar_t* page;
    std::uint32_t reserved;
    std::uint32_t owner;
    const wchar_t* linkTail;
};

struct tagINIT_UNS {
    std::uint32_t version;
    const wchar_t* product;
    const wchar_t* state;
    const wchar_t* link;
    std::uint32_t reserved;
    const wchar_t* folder;
    std::int64_t time;
    std::uint8_t enabled;
    std::uint8_t unused[3];
    std::uint32_t owner;
};

static_assert(sizeof(void*) != 4 || sizeof(tagCOLLECT_EMAIL) == 20);
static_assert(sizeof(void*) != 8 || sizeof(tagCOLLECT_EMAIL) == 32);
static_assert(sizeof(void*) != 4 || (offsetof(tagINIT_UNS, time) == 24 && sizeof(tagINIT_UNS) == 40));
static_assert(sizeof(void*) != 8 || (offsetof(tagINIT_UNS, time) == 48 && sizeof(tagINIT_UNS) == 64));

// The loaded library. Its entries are found under plain names, which a compiler gives to functions of C's own
// calling convention, so that is the one they have.
class CUniversalWrapper {
  public:
    CUniversalWrapper() = default;
    virtual ~CUniversalWrapper();
    CUniversalWrapper(const CUniversalWrapper&) = delete;
    CUniversalWrapper& operator=(const CUniversalWrapper&) = delete;

    // Always 0. Without the library, and for an empty path, all entries stay null.
    int Load(const char* path);
    // Ends the library's instance and unloads it; nothing if it is not loaded.
    void Unload();

    // Null for what the library does not offer.
    struct Entries {
        void(__cdecl* create)(std::uint32_t* handle);
        void(__cdecl* showUpdatesSettingsDialog)(std::uint32_t handle, HWND owner);
        void(__cdecl* doAllUpdates)();  // kept: this and the next are looked up and never called
        void(__cdecl* doSelfUpdate)();
        void(__cdecl* doAllUpdatesWithUi)(std::uint32_t handle);
        void(__cdecl* deleteInstance)(std::uint32_t handle);
        void(__cdecl* doAllUpdatesWithUiEx)(std::uint32_t handle, std::uint32_t flag);
        void(__cdecl* initUns)(std::uint32_t handle, tagINIT_UNS* record);
        void(__cdecl* collectEmail)(tagCOLLECT_EMAIL* record);
    };

    HMODULE m_module = nullptr;
    std::uint32_t m_handle = 0;  // the library's instance, which KvCreate writes
    Entries m_entries = {};
};

// Looks for updates and installs them, with the library's windows. An older library does not get the flag.
// Always 0.
// kept: no instance is made for this either.
int RunUpdatesWithUi(bool flag);

// Offers the page on which the user can leave an e-mail address. `page` is the page's path, `linkTail` the
// query that ends our links. 0 if the library was called, else -1.
int ShowEmailPage(const char* page, std::uint32_t reserved, const char* linkTail, HWND owner);

// Tells the library who we are. `state`, `link` and `time` are for its own use. 0 if it was called, else -1.
int InitLibrary(const char* product, const char* state, const char* link, std::int64_t time, HWND owner);
