#include "ui/theme/pictures_ahead.h"

#include <objbase.h>
#include <process.h>

#include <algorithm>
#include <utility>

namespace {

CPicturesAhead* g_ahead = nullptr;

}  // namespace

CPicturesAhead::CPicturesAhead(const std::vector<std::string>& paths) {
    m_entries.reserve(paths.size());
    for (const std::string& path : paths) m_entries.push_back({path, Stage::kWaiting, nullptr});
    m_thread.reset(reinterpret_cast<HANDLE>(::_beginthreadex(nullptr, 0, ThreadProc, this, 0, nullptr)));
    g_ahead = this;
}

CPicturesAhead::~CPicturesAhead() {
    g_ahead = nullptr;
    {
        const std::lock_guard guard(m_lock);
        for (Entry& entry : m_entries) {
            if (entry.stage == Stage::kWaiting) entry.stage = Stage::kTaken;
        }
    }
    if (m_thread) ::WaitForSingleObject(m_thread.get(), INFINITE);
    m_entries.clear();
    if (m_gdiplus != 0) Gdiplus::GdiplusShutdown(m_gdiplus);
}

unsigned WINAPI CPicturesAhead::ThreadProc(void* self) noexcept {
    // Some decoders are COM objects.
    const HRESULT com = ::CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    static_cast<CPicturesAhead*>(self)->DecodeAll();
    if (SUCCEEDED(com)) ::CoUninitialize();
    return 0;
}

void CPicturesAhead::DecodeAll() {
    const Gdiplus::GdiplusStartupInput input;
    if (Gdiplus::GdiplusStartup(&m_gdiplus, &input, nullptr) != Gdiplus::Ok) return;
    for (Entry& entry : m_entries) {
        {
            const std::lock_guard guard(m_lock);
            if (entry.stage != Stage::kWaiting) continue;
            entry.stage = Stage::kBegun;
        }
        ThemeImage image = ReadThemeImage(entry.path);
        {
            const std::lock_guard guard(m_lock);
            entry.image = std::move(image);
            entry.stage = Stage::kDone;
        }
        m_done.notify_all();
    }
}

std::optional<ThemeImage> CPicturesAhead::Take(const std::string& path) {
    return g_ahead != nullptr ? g_ahead->TakeEntry(path) : std::nullopt;
}

std::optional<ThemeImage> CPicturesAhead::TakeEntry(const std::string& path) {
    std::unique_lock lock(m_lock);
    const auto entry = std::find_if(m_entries.begin(), m_entries.end(),
                                    [&](const Entry& candidate) { return candidate.path == path; });
    if (entry == m_entries.end()) return std::nullopt;
    m_done.wait(lock, [&] { return entry->stage != Stage::kBegun; });
    if (std::exchange(entry->stage, Stage::kTaken) != Stage::kDone) return std::nullopt;
    return std::move(entry->image);
}
