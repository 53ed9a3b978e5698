#pragma once

#include <windows.h>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace Gdiplus {
class Image;
}

struct ImageDeleter {
    void operator()(Gdiplus::Image* image) const;
};
using UniqueImage = std::unique_ptr<Gdiplus::Image, ImageDeleter>;

// A temporary file that is deleted with its owner.
class TemporaryFile {
  public:
    TemporaryFile() = default;
    explicit TemporaryFile(std::string path) : m_path(std::move(path)) {}
    ~TemporaryFile();
    TemporaryFile(TemporaryFile&& other) noexcept : m_path(std::exchange(other.m_path, std::nullopt)) {}
    TemporaryFile& operator=(TemporaryFile&& other) noexcept {
        std::swap(m_path, other.m_path);
        return *this;
    }

    // The file's path, or null when there is none.
    const char* Path() const { return m_path ? m_path->c_str() : nullptr; }

  private:
    std::optional<std::string> m_path;
};

// Writes the bytes of a Base64 text to a new temporary file with the prefix "te". Empty when the file cannot
// be made.
TemporaryFile WriteImageFile(std::string_view base64);

// The picture in a file, or null: also for a null path, for what is no picture, and while GDI+ is not
// started. The file is closed again when it returns.
UniqueImage LoadImageFromFile(const char* path);

// The pictures of one load. Programs of a kind have the same one, which is decoded once; all but the first
// get a copy.
class SharedImages {
  public:
    // The picture of a Base64 text that was written to the file at `path`; null as LoadImageFromFile.
    // `base64` must stay where it is for as long as this lives.
    UniqueImage Load(std::string_view base64, const char* path);

  private:
    std::map<std::string_view, UniqueImage> m_decoded;
};
