#include <windows.h>

#include <fstream>
#include <string>

#include "app/update_library.h"

// The update library as the program expects it. Each call writes a line to Kovar3.dll.txt beside the library.
#ifndef FORM_EMPTY

namespace {
std::string Text(const wchar_t* wide) {
    char text[1024] = {};
    ::WideCharToMultiByte(CP_UTF8, 0, wide, -1, text, sizeof text, nullptr, nullptr);
    return std::string("'") + text + "'";
}

template <class... Values>
void Record(const Values&... values) {
    char path[MAX_PATH] = {};
    ::GetModuleFileNameA(::GetModuleHandleA("Kovar3.dll"), path, MAX_PATH);
    std::ofstream file(path + std::string(".txt"), std::ios::app | std::ios::binary);
    ((file << values << ' '), ...) << '\n';
}
}  // namespace

#define ENTRY extern "C" __declspec(dllexport) void

ENTRY KvCreate(std::uint32_t* handle) {
    *handle = 77;
    Record("create");
}
ENTRY KvDelete(std::uint32_t handle) {
    Record("delete", handle);
}
ENTRY KvShowUpdatesSettingsDialog(std::uint32_t handle, HWND owner) {
    Record("settings", handle, reinterpret_cast<std::uintptr_t>(owner));
}
ENTRY KvDoAllUpdatesWithUI(std::uint32_t handle) {
    Record("updates", handle);
}
#ifdef FORM_WHOLE
ENTRY KvDoAllUpdatesWithUIEx(std::uint32_t handle, std::uint32_t flag) {
    Record("updates with a flag", handle, flag);
}
#endif
ENTRY KvInitUns(std::uint32_t handle, const tagINIT_UNS* it) {
    Record("init", handle, it->version, Text(it->product), Text(it->state), Text(it->link), it->reserved,
           Text(it->folder), it->time, int{it->enabled}, it->owner);
}
ENTRY CollectEmail(const tagCOLLECT_EMAIL* it) {
    Record("email", it->version, Text(it->page), it->reserved, it->owner, Text(it->linkTail));
}

#endif
