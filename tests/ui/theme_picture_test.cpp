#include "ui/theme/picture.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/picture_size.h"
#include "support/sandbox.h"
#include "system/files.h"
#include "ui/theme/image_tooltip.h"
#include "ui/theme/pictures_ahead.h"
#include "ui/theme/theme.h"

// Pictures of other people's making, and the tips that show them.

namespace {

// GDI+'s encoders differ in the last byte of the first part of their class.
constexpr CLSID Encoder(BYTE last) {
    return {0x557cf400u + last, 0x1a04, 0x11d3, {0x9a, 0x73, 0x00, 0x00, 0xf8, 0x1e, 0xf3, 0x2e}};
}
constexpr BYTE kBmp = 0, kJpeg = 1, kTiff = 5, kPng = 6;

// One pixel; not every GDI+ writes GIF files that it can read.
const std::string kGif("GIF89a\1\0\1\0\x80\0\0\0\0\0\xFF\xFF\xFF,\0\0\0\0\1\0\1\0\0\2\2D\1\0;", 35);

class Pictures : public ::testing::Test {
  protected:
    Pictures() {
        ::CoInitialize(nullptr);
        g_Theme.Start();
    }
    ~Pictures() override {
        g_Theme.Stop();
        ::CoUninitialize();
    }

    std::string Save(const char* name, int width, int height, BYTE encoder) const {
        Gdiplus::Bitmap picture(width, height, PixelFormat24bppRGB);
        {
            Gdiplus::Graphics g(&picture);
            g.Clear(Gdiplus::Color(0xFF204060));
        }
        const CLSID clsid = Encoder(encoder);
        const std::string path = m_folder.At(name);
        EXPECT_EQ(picture.Save(WideText(path).c_str(), &clsid, nullptr), Gdiplus::Ok) << name;
        return path;
    }
    static std::vector<std::uint8_t> Bytes(const std::string& path) {
        return ReadWholeFile(path.c_str(), 1 << 20).value_or(std::vector<std::uint8_t>());
    }
    TestFolder m_folder;
};

TEST_F(Pictures, DecodedAheadAreTheSameAndAreGivenOnce) {
    std::vector<std::string> paths;
    for (int width = 1; width <= 12; ++width)
        paths.push_back(Save((std::to_string(width) + ".png").c_str(), width * 20, 300, kPng));
    paths.push_back(m_folder.At("missing.png"));
    {
        const CPicturesAhead ahead(paths);
        // From the end, so that some are asked for before, while and after the thread has them.
        for (std::size_t place = paths.size() - 1; place-- > 0;) {
            const int width = static_cast<int>(place + 1) * 20;
            EXPECT_EQ(PictureExtent(LoadThemeImage(paths[place]).get()).cx, width);
            EXPECT_EQ(PictureExtent(LoadThemeImage(paths[place]).get()).cx, width) << "again";
        }
        EXPECT_EQ(LoadThemeImage(paths.back()), nullptr);
    }
    EXPECT_NE(LoadThemeImage(paths[0]), nullptr) << "and without it";
    const CPicturesAhead untaken(paths);
}

TEST_F(Pictures, AreKnownByTheirBytesAndNotByTheirNames) {
    for (const BYTE encoder : {kBmp, kJpeg, kPng}) {
        const auto bytes = Bytes(Save("wrong.tif", 33, 21, encoder));
        EXPECT_TRUE(PictureSizeOf(bytes) == (PictureSize{33, 21})) << int{encoder};
        const ThemeImage image = DecodePicture(bytes);
        ASSERT_NE(image, nullptr) << int{encoder};
        EXPECT_EQ(image->GetWidth(), 33u);
        EXPECT_EQ(image->GetHeight(), 21u);
    }
    EXPECT_NE(DecodePicture(Bytes(m_folder.MakeFile("wrong.jpg", kGif))), nullptr);
    EXPECT_EQ(DecodePicture(Bytes(Save("wrong.png", 33, 21, kTiff))), nullptr) << "a format that is not ours";
}

// What a decoder is handed it might believe: it is not handed a header that promises gigabytes, and what is
// cut off or bent must neither crash nor hang it.
TEST_F(Pictures, OfLyingFilesAreNone) {
    auto png = Bytes(Save("a.png", 33, 21, kPng));
    ASSERT_GT(png.size(), 24u);
    for (const std::size_t place : {18u, 19u, 22u, 23u}) png[place] = 0xFF;  // 65,535 by 65,535
    EXPECT_TRUE(PictureSizeOf(png) == (PictureSize{65535, 65535}));
    EXPECT_EQ(DecodePicture(png), nullptr);

    for (const BYTE encoder : {kBmp, kJpeg, kPng}) {
        const auto whole = Bytes(Save("b", 33, 21, encoder));
        for (std::size_t length = 0; length < whole.size(); length += 7) {
            const ThemeImage image = DecodePicture(std::span(whole).first(length));
            EXPECT_TRUE(!image || image->GetWidth() == 33) << int{encoder} << " at " << length;
        }
        for (std::size_t place = 0; place < std::min<std::size_t>(whole.size(), 200); ++place) {
            auto bent = whole;
            bent[place] ^= 0x81;
            const ThemeImage image = DecodePicture(bent);
            EXPECT_TRUE(!image || std::uint64_t{image->GetWidth()} * image->GetHeight() <= kMaxPicturePixels);
        }
    }
    EXPECT_EQ(DecodePicture({}), nullptr);
}

// --- tips ---

class PictureTip : public Pictures {
  protected:
    PictureTip() { m_tip.Create(nullptr); }
    ~PictureTip() override { m_tip.DestroyWindow(); }

    void Show(const std::string& text) {
        std::string copy = text;
        TOOLINFOA tool = {};
        tool.cbSize = TTTOOLINFOA_V1_SIZE;
        tool.lpszText = copy.data();
        m_tip.UpdateTipText(tool);
    }

    CImageTooltip m_tip;
};

TEST_F(PictureTip, ShowsThePictureOfAFileAndTheTextOfEverythingElse) {
    Show(Save("photo.jpg", 600, 300, kJpeg));
    ASSERT_NE(m_tip.Picture(), nullptr);
    EXPECT_TRUE(m_tip.PictureSize().cx == 300 && m_tip.PictureSize().cy == 150);
    for (const std::string& text : {std::string("HKEY_CURRENT_USER\\Software\\Recent: File1"), std::string(),
                                    std::string(65536, 'w'), std::string("\xFF\xC3\x28"), m_folder.Path(),
                                    m_folder.MakeFile("text.jpg", "no picture"), m_folder.At("gone.jpg")}) {
        Show(text);
        EXPECT_EQ(m_tip.Picture(), nullptr) << text.substr(0, 60);
    }
    Show(Save("dot.png", 5, 10, kPng));
    EXPECT_TRUE(m_tip.PictureSize().cx == 10 && m_tip.PictureSize().cy == 20) << "a small one grows";
    TOOLINFOA later = {};
    later.cbSize = TTTOOLINFOA_V1_SIZE;
    later.lpszText = LPSTR_TEXTCALLBACKA;
    m_tip.UpdateTipText(later);
    EXPECT_EQ(m_tip.Picture(), nullptr);
}

}  // namespace
