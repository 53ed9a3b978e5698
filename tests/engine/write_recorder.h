#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "support/api_hook.h"

// Keeps what is written to files, pass by pass: a pass begins where the file pointer is set. What is written
// goes on to the file. A volume of this object's cluster size stands in for the real one, so that small files
// have several clusters.
class WriteRecorder {
  public:
    static constexpr DWORD kSectors = 2;
    static constexpr DWORD kSectorBytes = 8;
    static constexpr DWORD kCluster = kSectors * kSectorBytes;

    struct Pass {
        std::vector<std::string> writes;
        std::string Whole() const {
            std::string all;
            for (const std::string& one : writes) all += one;
            return all;
        }
    };

    WriteRecorder() {
        m_seek.Replace([this](HANDLE file, LONG distance, LONG* high, DWORD method) {
            passes.emplace_back();
            return m_seek.Real()(file, distance, high, method);
        });
        writes.Replace(
            [this](HANDLE file, LPCVOID data, DWORD size, LPDWORD written, LPOVERLAPPED overlapped) {
                if (passes.empty()) passes.emplace_back();
                passes.back().writes.emplace_back(static_cast<const char*>(data), size);
                return writes.Real()(file, data, size, written, overlapped);
            });
        geometry.Replace([this](LPCSTR path, LPDWORD sectors, LPDWORD bytes, LPDWORD free, LPDWORD all) {
            root = path;
            *sectors = kSectors;
            *bytes = kSectorBytes;
            *free = *all = 0;
            return TRUE;
        });
    }

    std::vector<Pass> passes;
    std::string root;  // what the geometry was asked for
    ApiHook<decltype(&::WriteFile)> writes{"WriteFile"};
    ApiHook<decltype(&::GetDiskFreeSpaceA)> geometry{"GetDiskFreeSpaceA"};

  private:
    ApiHook<decltype(&::SetFilePointer)> m_seek{"SetFilePointer"};
};
