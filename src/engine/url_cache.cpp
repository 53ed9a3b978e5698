#include "engine/url_cache.h"

#include <windows.h>

#include <wininet.h>

#include <cstdlib>
#include <memory>

#include "system/handles.h"

namespace {

constexpr DWORD kFirstBufferSize = 4096;

// An entry of the cache is told in some kilobytes; what asks for more than this, or for less than an entry's
// head, is no sane answer.
constexpr DWORD kSmallestBufferSize = sizeof(INTERNET_CACHE_ENTRY_INFOA);
constexpr DWORD kLargestBufferSize = 16 * 1024 * 1024;

// Why the call just before failed; never ERROR_SUCCESS, whatever it left.
DWORD FailureReason() {
    const DWORD error = ::GetLastError();
    return error != ERROR_SUCCESS ? error : ERROR_GEN_FAILURE;
}

class UrlCacheWalk {
  public:
    ~UrlCacheWalk() {
        if (m_find) ::FindCloseUrlCache(m_find);
    }

    // Every entry into `visit`. True at the end of the cache.
    template <class Visit>
    bool Run(Visit visit) {
        DWORD error = FetchIntoNewBuffer(kFirstBufferSize);
        for (;;) {
            if (error == ERROR_INSUFFICIENT_BUFFER) {
                // The first try after a walk step keeps the size; only its own failure tells the size that is
                // needed, and a size that does not grow then ends the walk.
                const DWORD asked = m_size;
                error = FetchIntoNewBuffer(asked);
                if (error == ERROR_INSUFFICIENT_BUFFER && m_size <= asked) return false;
            } else if (error == ERROR_SUCCESS) {
                visit(*m_entry);
                error = FetchNext();
            } else {
                return error == ERROR_NO_MORE_ITEMS;
            }
        }
    }

  private:
    // ERROR_SUCCESS with an entry, or the error; on ERROR_INSUFFICIENT_BUFFER m_size is the size asked for.
    DWORD FetchIntoNewBuffer(DWORD size) {
        if (size < kSmallestBufferSize || size > kLargestBufferSize) return ERROR_INVALID_DATA;
        m_entry.reset(static_cast<INTERNET_CACHE_ENTRY_INFOA*>(std::calloc(1, size)));
        if (!m_entry) return ERROR_NOT_ENOUGH_MEMORY;
        m_entry->dwStructSize = size;
        m_capacity = m_size = size;
        if (m_find) {
            if (::FindNextUrlCacheEntryA(m_find, m_entry.get(), &m_size)) return ERROR_SUCCESS;
        } else {
            m_find = ::FindFirstUrlCacheEntryA(nullptr, m_entry.get(), &m_size);
            if (m_find) return ERROR_SUCCESS;
        }
        return FailureReason();
    }

    // The same into the buffer that is there; its size stays what it was.
    DWORD FetchNext() {
        m_size = m_capacity;
        if (::FindNextUrlCacheEntryA(m_find, m_entry.get(), &m_size)) return ERROR_SUCCESS;
        const DWORD error = FailureReason();
        m_size = m_capacity;
        return error;
    }

    HANDLE m_find = nullptr;
    std::unique_ptr<INTERNET_CACHE_ENTRY_INFOA, FreeDeleter> m_entry;
    DWORD m_capacity = 0;
    DWORD m_size = 0;
};

}  // namespace

bool CleanUrlCache() {
    return UrlCacheWalk().Run([](const INTERNET_CACHE_ENTRY_INFOA& entry) {
        if (!entry.lpszLocalFileName ||
            ::GetFileAttributesA(entry.lpszLocalFileName) == INVALID_FILE_ATTRIBUTES) {
            ::DeleteUrlCacheEntryA(entry.lpszSourceUrlName);
        }
    });
}
