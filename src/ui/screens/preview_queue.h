#pragma once

#include <cstddef>
#include <deque>
#include <string>

// Whether the name of a file begins its extension as that of a picture does.
bool HasPictureExtension(const std::string& path);

// The pictures that a scan has found and that are still to be shown, oldest first. Main thread.
class CPreviewQueue {
  public:
    // More would not be seen before the scan ends.
    static constexpr std::size_t kLimit = 2000;

    // Takes `path` if the file may be a picture, can be read by nobody else at the time, and is small enough
    // to be shown in passing. What is not taken is passed over in silence.
    void Offer(const std::string& path);
    // The oldest; it leaves the queue, which must not be empty.
    std::string Take();
    void Clear() { m_paths.clear(); }
    bool IsEmpty() const { return m_paths.empty(); }
    std::size_t Size() const { return m_paths.size(); }

  private:
    std::deque<std::string> m_paths;
};
