#include "engine/url_cache.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <wininet.h>

#include <cstring>
#include <functional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "support/api_hook.h"
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

// One answer of the cache to a request for an entry: an entry, or an error with the size that is asked for.
struct Answer {
    const char* url = nullptr;
    DWORD error = ERROR_SUCCESS;
    DWORD size = 0;
};

// Answers in the cache's place, from a script whose last line is repeated for ever.
class ScriptedCache {
  public:
    // Beyond this the walk is taken for endless, and is ended.
    static constexpr int kTooMany = 100;

    explicit ScriptedCache(std::vector<Answer> script) : m_script(std::move(script)) {
        m_first.Replace([this](LPCSTR pattern, LPINTERNET_CACHE_ENTRY_INFOA entry, LPDWORD size) {
            EXPECT_EQ(pattern, nullptr);
            requests.push_back('F');
            return Fill(entry, size) ? this : nullptr;
        });
        m_next.Replace([this](HANDLE handle, LPINTERNET_CACHE_ENTRY_INFOA entry, LPDWORD size) {
            EXPECT_EQ(handle, this);
            requests.push_back('N');
            return Fill(entry, size) ? TRUE : FALSE;
        });
        m_delete.Replace([this](LPCSTR url) {
            deleted.emplace_back(url);
            return FALSE;  // whatever comes of it, the walk goes on
        });
        m_close.Replace([this](HANDLE handle) {
            EXPECT_EQ(handle, this);
            ++closed;
            return TRUE;
        });
    }

    std::string requests;      // F for a first entry, N for a next one
    std::vector<DWORD> sizes;  // of the buffers, as they were handed in
    std::vector<std::string> deleted;
    int closed = 0;

  private:
    bool Fill(LPINTERNET_CACHE_ENTRY_INFOA entry, LPDWORD size) {
        sizes.push_back(*size);
        // A fresh buffer says its own size.
        if (sizes.size() == 1 || sizes.back() != sizes[sizes.size() - 2]) {
            EXPECT_EQ(entry->dwStructSize, *size);
        }
        if (sizes.size() > kTooMany) {
            ADD_FAILURE() << "the walk does not end";
            ::SetLastError(ERROR_NO_MORE_ITEMS);
            return false;
        }
        const Answer& answer = m_script[std::min(sizes.size(), m_script.size()) - 1];
        if (answer.url == nullptr) {
            if (answer.size != 0) *size = answer.size;
            ::SetLastError(answer.error);
            return false;
        }
        char* const texts = reinterpret_cast<char*>(entry + 1);
        std::strcpy(texts, answer.url);
        entry->lpszSourceUrlName = texts;
        // "gone" has a file that does not exist, "bare" has none.
        entry->lpszLocalFileName = nullptr;
        if (std::strcmp(answer.url, "bare") != 0) {
            entry->lpszLocalFileName = texts + std::strlen(answer.url) + 1;
            std::strcpy(entry->lpszLocalFileName,
                        std::strcmp(answer.url, "gone") == 0 ? "C:\\no such file" : "C:\\windows");
        }
        return true;
    }

    std::vector<Answer> m_script;
    ApiHook<decltype(&::FindFirstUrlCacheEntryA)> m_first{"FindFirstUrlCacheEntryA"};
    ApiHook<decltype(&::FindNextUrlCacheEntryA)> m_next{"FindNextUrlCacheEntryA"};
    ApiHook<decltype(&::DeleteUrlCacheEntryA)> m_delete{"DeleteUrlCacheEntryA"};
    ApiHook<decltype(&::FindCloseUrlCache)> m_close{"FindCloseUrlCache"};
};

constexpr DWORD kTooSmall = ERROR_INSUFFICIENT_BUFFER;
constexpr DWORD kNoMore = ERROR_NO_MORE_ITEMS;

struct WalkCase {
    const char* name;
    std::vector<Answer> script;
    bool answer;
    std::string requests;
    std::vector<DWORD> sizes;
    std::vector<std::string> deleted;
};

const WalkCase kWalkCases[] = {
    {"an empty cache", {{nullptr, kNoMore}}, true, "F", {4096}, {}},
    {"a cache that does not open", {{nullptr, ERROR_ACCESS_DENIED}}, false, "F", {4096}, {}},
    {"entries to the end",
     {{"gone"}, {"there"}, {"bare"}, {"gone"}, {nullptr, kNoMore}},
     true,
     "FNNNN",
     {4096, 4096, 4096, 4096, 4096},
     {"gone", "bare", "gone"}},
    {"an error in the middle",
     {{"gone"}, {"gone"}, {nullptr, ERROR_GEN_FAILURE}, {"gone"}},
     false,
     "FNN",
     {4096, 4096, 4096},
     {"gone", "gone"}},
    {"a first entry that is too large",
     {{nullptr, kTooSmall, 9000}, {"gone"}, {nullptr, kNoMore}},
     true,
     "FFN",
     {4096, 9000, 9000},
     {"gone"}},
    // The size that a step of the walk asks for is forgotten, so the same size is tried once more.
    {"a later entry that is too large",
     {{"there"}, {nullptr, kTooSmall, 9000}, {nullptr, kTooSmall, 9000}, {"gone"}, {nullptr, kNoMore}},
     true,
     "FNNNN",
     {4096, 4096, 4096, 9000, 9000},
     {"gone"}},
    {"a later entry that fits after all",
     {{"there"}, {nullptr, kTooSmall, 9000}, {"gone"}, {nullptr, kNoMore}},
     true,
     "FNNN",
     {4096, 4096, 4096, 4096},
     {"gone"}},
    {"an error while a larger buffer is tried",
     {{"there"}, {nullptr, kTooSmall, 9000}, {nullptr, ERROR_GEN_FAILURE}},
     false,
     "FNN",
     {4096, 4096, 4096},
     {}},
    {"a first buffer that never suffices, and nothing says how much would",
     {{nullptr, kTooSmall}},
     false,
     "FF",
     {4096, 4096},
     {}},
    {"the same behind an entry", {{"there"}, {nullptr, kTooSmall}}, false, "FNN", {4096, 4096, 4096}, {}},
    {"a size that does not grow", {{nullptr, kTooSmall, 9000}}, false, "FF", {4096, 9000}, {}},
    {"a size that shrinks", {{nullptr, kTooSmall, 2000}}, false, "FF", {4096, 2000}, {}},
    {"a size that holds no entry", {{nullptr, kTooSmall, 3}}, false, "F", {4096}, {}},
    {"a size that no entry has", {{nullptr, kTooSmall, 0xFFFFFFFF}}, false, "F", {4096}, {}},
    {"a first entry that fails without a reason", {{nullptr, ERROR_SUCCESS}}, false, "F", {4096}, {}},
    {"a later entry that fails without a reason",
     {{"gone"}, {nullptr, ERROR_SUCCESS}},
     false,
     "FN",
     {4096, 4096},
     {"gone"}},
};

TEST(UrlCache, WalksByTheErrorsAndAlwaysEnds) {
    for (const WalkCase& row : kWalkCases) {
        SCOPED_TRACE(row.name);
        ScriptedCache cache(row.script);
        EXPECT_EQ(CleanUrlCache(), row.answer);
        EXPECT_EQ(cache.requests, row.requests);
        EXPECT_EQ(cache.sizes, row.sizes);
        EXPECT_EQ(cache.deleted, row.deleted);
        const bool opened = row.script.front().url != nullptr || (row.script.size() > 1 && row.script[1].url);
        EXPECT_EQ(cache.closed, opened ? 1 : 0);
    }
}

}  // namespace
