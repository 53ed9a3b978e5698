#include "engine/image_file.h"

#include <algorithm>
#include <vector>

#include "base/base64.h"
#include "system/files.h"
#include "system/handles.h"
#include "system/library_search.h"

using std::max;
using std::min;
#include <objidl.h>

#include <gdiplus.h>

void ImageDeleter::operator()(Gdiplus::Image* image) const {
    delete image;
}

TemporaryFile::~TemporaryFile() {
    if (m_path) ::DeleteFileA(m_path->c_str());
}

TemporaryFile WriteImageFile(std::string_view base64) {
    const std::vector<std::uint8_t> bytes = DecodeBase64(base64);
    char folder[MAX_PATH] = "";
    char path[MAX_PATH] = "";
    const DWORD length = ::GetTempPathA(MAX_PATH, folder);
    if (length == 0 || length >= MAX_PATH) return {};
    if (::GetTempFileNameA(folder, "te", 0, path) == 0) return {};
    TemporaryFile file{std::string(path)};
    const auto handle = OwnHandle<UniqueHandle>(
        ::CreateFileA(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!handle) return {};
    DWORD written = 0;
    ::WriteFile(handle.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    return file;
}

namespace {

// A picture of the definitions is an icon; the largest database is not larger than this.
constexpr std::uint32_t kMaxImageBytes = 32 << 20;

struct StreamRelease {
    void operator()(IStream* stream) const { stream->Release(); }
};
using UniqueStream = std::unique_ptr<IStream, StreamRelease>;

// A stream over a copy of the bytes, or null.
UniqueStream MemoryStream(const std::vector<std::uint8_t>& bytes) {
    const HGLOBAL block = ::GlobalAlloc(GMEM_MOVEABLE, bytes.size());
    if (!block) return nullptr;
    IStream* stream = nullptr;
    if (FAILED(::CreateStreamOnHGlobal(block, TRUE, &stream))) {  // from here on the stream owns the block
        ::GlobalFree(block);
        return nullptr;
    }
    UniqueStream owner(stream);
    ULONG written = 0;
    const LARGE_INTEGER start = {};
    if (FAILED(stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), &written)) ||
        FAILED(stream->Seek(start, STREAM_SEEK_SET, nullptr))) {
        return nullptr;
    }
    return owner;
}

}  // namespace

UniqueImage LoadImageFromFile(const char* path) {
    if (!path) return nullptr;
    const auto bytes = ReadWholeFile(path, kMaxImageBytes);
    if (!bytes || bytes->empty()) return nullptr;
    // An image that is made from the file itself keeps it open, and the file could not be deleted with its
    // record while an image of the latest scan lives.
    const UniqueStream stream = MemoryStream(*bytes);
    if (!stream) return nullptr;
    // GDI+ loads the decoders by their bare name, and gets the ones that are loaded already: the system's,
    // whatever lies beside the program. They stay to the end of the process.
    [[maybe_unused]] static const HMODULE decoders = LoadSystemLibrary("windowscodecs.dll");
    UniqueImage image(Gdiplus::Image::FromStream(stream.get(), FALSE));
    if (image && image->GetLastStatus() != Gdiplus::Ok) image.reset();
    return image;
}

UniqueImage SharedImages::Load(std::string_view base64, const char* path) {
    if (!path) return nullptr;
    UniqueImage& decoded = m_decoded[base64];
    if (!decoded) decoded = LoadImageFromFile(path);
    return UniqueImage(decoded ? decoded->Clone() : nullptr);
}
