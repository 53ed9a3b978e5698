#pragma once

#include <windows.h>

#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "system/handles.h"
#include "ui/theme/picture.h"

// Decodes pictures of the program on a thread of its own, before somebody asks for them, for a start that has
// other things to do. While an object lives, LoadThemeImage of one of its paths, in the same letters, takes
// the picture from here, once; what it finds undecided it decodes itself. Without a thread that is all of
// them. One at a time, on the main thread; it may be there before the theme, since it keeps GDI+ started for
// its thread, and has to end before it. Its end waits for the thread, which goes no further than the picture
// it is at, and drops what nobody took.
class CPicturesAhead {
  public:
    // In the order of decoding: what takes long and is needed late first.
    explicit CPicturesAhead(const std::vector<std::string>& paths);
    ~CPicturesAhead();
    CPicturesAhead(const CPicturesAhead&) = delete;
    CPicturesAhead& operator=(const CPicturesAhead&) = delete;

    // The picture, which may be null, if it is one of these that the thread has begun and nobody took.
    // For LoadThemeImage.
    static std::optional<ThemeImage> Take(const std::string& path);

  private:
    enum class Stage { kWaiting, kBegun, kDone, kTaken };
    struct Entry {
        std::string path;
        Stage stage = Stage::kWaiting;
        ThemeImage image;
    };

    static unsigned WINAPI ThreadProc(void* self) noexcept;
    void DecodeAll();
    std::optional<ThemeImage> TakeEntry(const std::string& path);

    ULONG_PTR m_gdiplus = 0;  // the thread's start of GDI+; 0: none
    std::mutex m_lock;
    std::condition_variable m_done;
    std::vector<Entry> m_entries;  // their stages and pictures by the lock
    UniqueHandle m_thread;
};
