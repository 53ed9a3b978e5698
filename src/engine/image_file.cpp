#include "engine/image_file.h"

#include <algorithm>
#include <vector>

#include "base/base64.h"
#include "system/handles.h"

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

UniqueImage LoadImageFromFile(const char* path) {
    if (!path) return nullptr;
    wchar_t wide[MAX_PATH] = L"";
    if (::MultiByteToWideChar(CP_ACP, 0, path, -1, wide, MAX_PATH) == 0) return nullptr;
    UniqueImage image(Gdiplus::Image::FromFile(wide, FALSE));
    if (image && image->GetLastStatus() != Gdiplus::Ok) image.reset();
    return image;
}
