#include "ui/theme/picture.h"

#include <shlobj.h>

#include <optional>
#include <vector>

#include "base/picture_size.h"
#include "system/files.h"
#include "system/handles.h"
#include "system/library_search.h"
#include "system/system_facts.h"
#include "ui/theme/pictures_ahead.h"
#include "ui/theme/theme.h"

namespace {

// The largest picture of the program is a hundredth of it.
constexpr std::uint32_t kThemeImageBytes = 16 << 20;

struct ComRelease {
    void operator()(IUnknown* object) const { object->Release(); }
};
template <class Interface>
using UniqueCom = std::unique_ptr<Interface, ComRelease>;

struct ItemListCloser {
    void operator()(ITEMIDLIST* list) const { ::CoTaskMemFree(list); }
};
using UniqueItemList = std::unique_ptr<ITEMIDLIST, ItemListCloser>;

UniqueCom<IStream> MemoryStream(std::span<const std::uint8_t> bytes) {
    const HGLOBAL block = ::GlobalAlloc(GMEM_MOVEABLE, bytes.size());
    if (block == nullptr) return nullptr;
    IStream* raw = nullptr;
    if (FAILED(::CreateStreamOnHGlobal(block, TRUE, &raw))) {  // from here on the stream owns the block
        ::GlobalFree(block);
        return nullptr;
    }
    UniqueCom<IStream> stream(raw);
    ULONG written = 0;
    const LARGE_INTEGER start = {};
    if (FAILED(stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), &written)) ||
        FAILED(stream->Seek(start, STREAM_SEEK_SET, nullptr))) {
        return nullptr;
    }
    return stream;
}

bool IsRelative(const std::string& path) {
    return !path.starts_with('\\') && !path.starts_with('/') && path.find(':') == std::string::npos;
}

UniqueItemList ParseName(IShellFolder& folder, const std::string& name) {
    std::wstring wide = WideText(name);
    ITEMIDLIST* raw = nullptr;
    if (FAILED(folder.ParseDisplayName(nullptr, nullptr, wide.data(), nullptr, &raw, nullptr))) raw = nullptr;
    return UniqueItemList(raw);
}

// The extractor that the shell has for a file.
UniqueCom<IExtractImage> FindExtractor(const std::string& path) {
    const std::size_t slash = path.rfind('\\');
    if (slash == std::string::npos) return nullptr;
    IShellFolder* rawDesktop = nullptr;
    if (FAILED(::SHGetDesktopFolder(&rawDesktop))) return nullptr;
    const UniqueCom<IShellFolder> desktop(rawDesktop);
    // The root of a drive is the only folder whose backslash belongs to it.
    const UniqueItemList folderId = ParseName(*desktop, path.substr(0, slash == 2 ? 3 : slash));
    if (!folderId) return nullptr;
    void* rawFolder = nullptr;
    if (FAILED(desktop->BindToObject(folderId.get(), nullptr, IID_IShellFolder, &rawFolder))) return nullptr;
    const UniqueCom<IShellFolder> folder(static_cast<IShellFolder*>(rawFolder));
    const UniqueItemList fileId = ParseName(*folder, path.substr(slash + 1));
    if (!fileId) return nullptr;
    const ITEMIDLIST* id = fileId.get();
    void* rawExtractor = nullptr;
    if (FAILED(folder->GetUIObjectOf(nullptr, 1, &id, IID_IExtractImage, nullptr, &rawExtractor)))
        return nullptr;
    return UniqueCom<IExtractImage>(static_cast<IExtractImage*>(rawExtractor));
}

UniqueBitmap ExtractThumbnail(const std::string& path, SIZE limit) {
    const UniqueCom<IExtractImage> extractor = FindExtractor(path);
    if (!extractor) return nullptr;
    wchar_t location[MAX_PATH] = L"";
    DWORD priority = 0;
    DWORD flags = IEIFLAG_SCREEN | IEIFLAG_ORIGSIZE | IEIFLAG_OFFLINE;
    HBITMAP bitmap = nullptr;
    if (FAILED(extractor->GetLocation(location, MAX_PATH, &priority, &limit, 16, &flags))) return nullptr;
    if (FAILED(extractor->Extract(&bitmap))) return nullptr;
    return UniqueBitmap(bitmap);
}

UniqueBitmap DecodeThumbnail(const std::string& path, SIZE limit) {
    const auto bytes = ReadWholeFile(path.c_str(), kPictureFileLimit - 1);
    if (!bytes) return nullptr;
    const ThemeImage image = DecodePicture(*bytes);
    if (!image) return nullptr;
    const SIZE size = FitWithin(PictureExtent(image.get()), limit);
    Gdiplus::Bitmap small(size.cx, size.cy, PixelFormat32bppRGB);
    {
        Gdiplus::Graphics g(&small);
        g.Clear(g_Theme.background);
        DrawPicture(g, *image,
                    Gdiplus::RectF(0, 0, static_cast<float>(size.cx), static_cast<float>(size.cy)));
    }
    HBITMAP bitmap = nullptr;
    if (small.GetHBITMAP(g_Theme.background, &bitmap) != Gdiplus::Ok) return nullptr;
    return UniqueBitmap(bitmap);
}

}  // namespace

ThemeImage DecodePicture(std::span<const std::uint8_t> file) {
    const std::optional<PictureSize> size = PictureSizeOf(file);
    if (!size || std::uint64_t{size->width} * size->height > kMaxPicturePixels) return nullptr;
    // GDI+ loads the decoders by their bare name, and gets the ones that are loaded already. They stay to the
    // end of the process.
    [[maybe_unused]] static const HMODULE decoders = LoadSystemLibrary("windowscodecs.dll");
    const UniqueCom<IStream> stream = MemoryStream(file);
    if (!stream) return nullptr;
    ThemeImage image(Gdiplus::Bitmap::FromStream(stream.get(), FALSE));
    if (image &&
        (image->GetLastStatus() != Gdiplus::Ok || image->GetWidth() == 0 || image->GetHeight() == 0)) {
        image.reset();
    }
    return image;
}

ThemeImage LoadThemeImage(const std::string& path) {
    std::optional<ThemeImage> ahead = CPicturesAhead::Take(path);
    return ahead ? std::move(*ahead) : ReadThemeImage(path);
}

ThemeImage ReadThemeImage(const std::string& path) {
    if (path.empty()) return nullptr;
    const std::string whole = IsRelative(path) ? ProgramFolder() + path : path;
    const auto bytes = ReadWholeFile(whole.c_str(), kThemeImageBytes);
    return bytes ? DecodePicture(*bytes) : nullptr;
}

SIZE PictureExtent(Gdiplus::Bitmap* image) {
    if (image == nullptr) return {0, 0};
    return {static_cast<LONG>(image->GetWidth()), static_cast<LONG>(image->GetHeight())};
}

void DrawPicture(Gdiplus::Graphics& g, Gdiplus::Bitmap& image, const Gdiplus::RectF& place, float opacity) {
    const SIZE size = PictureExtent(&image);
    const Gdiplus::ColorMatrix matrix = {
        {{1, 0, 0, 0, 0}, {0, 1, 0, 0, 0}, {0, 0, 1, 0, 0}, {0, 0, 0, opacity, 0}, {0, 0, 0, 0, 1}}};
    Gdiplus::ImageAttributes attributes;
    // Beyond its edges the picture is mirrored: blended with nothing they would fade.
    attributes.SetWrapMode(Gdiplus::WrapModeTileFlipXY);
    if (opacity < 1) attributes.SetColorMatrix(&matrix);
    const auto pixelOffset = g.GetPixelOffsetMode();
    const auto interpolation = g.GetInterpolationMode();
    g.SetPixelOffsetMode(Gdiplus::PixelOffsetModeHalf);
    g.SetInterpolationMode(Gdiplus::InterpolationModeHighQualityBicubic);
    g.DrawImage(&image, place, 0, 0, static_cast<float>(size.cx), static_cast<float>(size.cy),
                Gdiplus::UnitPixel, &attributes);
    g.SetInterpolationMode(interpolation);
    g.SetPixelOffsetMode(pixelOffset);
}

SIZE FitWithin(SIZE picture, SIZE limit) {
    if (picture.cx <= limit.cx && picture.cy <= limit.cy) return picture;
    const double ratio =
        std::min(static_cast<double>(limit.cx) / picture.cx, static_cast<double>(limit.cy) / picture.cy);
    return {std::max(1L, static_cast<LONG>(picture.cx * ratio)),
            std::max(1L, static_cast<LONG>(picture.cy * ratio))};
}

bool MayHavePicture(const std::string& path) {
    const auto file = OwnHandle<UniqueHandle>(
        ::CreateFileA(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    LARGE_INTEGER size = {};
    return file && ::GetFileType(file.get()) == FILE_TYPE_DISK && ::GetFileSizeEx(file.get(), &size) &&
           size.QuadPart < kPictureFileLimit;
}

UniqueBitmap LoadThumbnail(const std::string& path, SIZE limit) {
    UniqueBitmap extracted = ExtractThumbnail(path, limit);
    return extracted ? std::move(extracted) : DecodeThumbnail(path, limit);
}
