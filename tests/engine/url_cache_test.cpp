#include "engine/url_cache.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <wininet.h>

#include <string>
#include <utility>

#include "support/sandbox.h"

namespace {

// An entry of the system's own cache, with its file. Gone with the object, whatever a test left of it.
class CacheEntry {
  public:
    explicit CacheEntry(std::string url, std::string headers = "") : m_url(std::move(url)) {
        char file[MAX_PATH] = {};
        EXPECT_TRUE(::CreateUrlCacheEntryA(m_url.c_str(), 7, "txt", file, 0));
        const HANDLE handle = ::CreateFileA(file, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
        DWORD written = 0;
        EXPECT_TRUE(::WriteFile(handle, "content", 7, &written, nullptr));
        ::CloseHandle(handle);
        EXPECT_TRUE(::CommitUrlCacheEntryA(m_url.c_str(), file, {}, {}, NORMAL_CACHE_ENTRY,
                                           reinterpret_cast<BYTE*>(headers.data()),
                                           static_cast<DWORD>(headers.size()), nullptr, nullptr));
        m_file = file;
    }
    ~CacheEntry() { ::DeleteUrlCacheEntryA(m_url.c_str()); }
    CacheEntry(const CacheEntry&) = delete;
    CacheEntry& operator=(const CacheEntry&) = delete;

    const std::string& File() const { return m_file; }
    bool Exists() const {
        DWORD size = 0;
        return !::GetUrlCacheEntryInfoA(m_url.c_str(), nullptr, &size) &&
               ::GetLastError() == ERROR_INSUFFICIENT_BUFFER;
    }

  private:
    std::string m_url;
    std::string m_file;
};

TEST(UrlCache, LosesTheEntriesWhoseFileIsGone) {
    const CacheEntry kept("http://velvane.invalid/kept");
    const CacheEntry orphan("http://velvane.invalid/orphan");
    // Its description does not fit the first buffer.
    const CacheEntry large("http://velvane.invalid/large", std::string(6000, 'h'));
    ASSERT_TRUE(kept.Exists() && orphan.Exists() && large.Exists());
    ASSERT_TRUE(::DeleteFileA(orphan.File().c_str()));
    ASSERT_TRUE(::DeleteFileA(large.File().c_str()));
    EXPECT_TRUE(CleanUrlCache());
    EXPECT_TRUE(kept.Exists());
    EXPECT_TRUE(Exists(kept.File())) << "no file is touched";
    EXPECT_FALSE(orphan.Exists());
    EXPECT_FALSE(large.Exists());
    EXPECT_TRUE(CleanUrlCache()) << "there is nothing left to do";
}

}  // namespace
