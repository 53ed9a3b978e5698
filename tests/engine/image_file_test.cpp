#include "engine/image_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "base/base64.h"
#include "engine/engine_fixture.h"
#include "support/api_hook.h"

using std::max;
using std::min;
#include <objidl.h>

#include <gdiplus.h>

namespace {

// A PNG of two by three points.
constexpr char kPicture[] =
    "iVBORw0KGgoAAAANSUhEUgAAAAIAAAADCAIAAAA2iEnWAAAAEElEQVR42mP4z8AARAwoFABE0AX7TM5xDwAAAABJRU5ErkJggg==";

std::string PictureBytes() {
    const auto bytes = DecodeBase64(kPicture);
    return {bytes.begin(), bytes.end()};
}

// The measures of an image, "2x3", or "none".
std::string SizeOf(Gdiplus::Image* image) {
    if (!image) return "none";
    return std::to_string(image->GetWidth()) + "x" + std::to_string(image->GetHeight());
}

// With GDI+ started and a temp folder of the test's own.
class Images : public EngineTest {
  protected:
    Images() {
        const Gdiplus::GdiplusStartupInput input;
        EXPECT_EQ(Gdiplus::GdiplusStartup(&m_token, &input, nullptr), Gdiplus::Ok);
        folder.MakeFolder("temp");
        m_tempPath.Replace([this](DWORD size, LPSTR path) -> DWORD {
            const std::string temp = folder.At("temp\\");
            ::lstrcpynA(path, temp.c_str(), static_cast<int>(size));
            return static_cast<DWORD>(temp.size());
        });
    }
    ~Images() override {
        engine.reset();
        Gdiplus::GdiplusShutdown(m_token);
    }

    std::vector<std::string> TemporaryFiles() const { return NamesIn(folder.At("temp")); }

    // A category and an application that have pictures, and each of them twice more where it is dropped.
    bool LoadPictures() {
        const std::string picture = " Image='" + std::string(kPicture) + "'";
        const std::string entity = ElementXml("Entity", "Name='E'", ItemXml("File", "%temp%\\none"));
        const std::string noEntity = ElementXml("Application", "Name='X'" + picture, "");
        return Load(DefinitionsXml(
            ElementXml("Category", "Name='X'" + picture, noEntity) +
            ElementXml("Category", "Name='Category'" + picture,
                       noEntity + ElementXml("Application", "Name='Application'" + picture, entity))));
    }

  private:
    ULONG_PTR m_token = 0;
    ApiHook<decltype(&::GetTempPathA)> m_tempPath = API_HOOK(GetTempPathA);
};

TEST_F(Images, OfCategoriesAndApplicationsLieInTemporaryFilesAsLongAsTheirRecordsLive) {
    ASSERT_TRUE(LoadPictures());
    const char* files[] = {Category().imageFile.Path(), Application().imageFile.Path()};
    for (const char* file : files) {
        ASSERT_NE(file, nullptr);
        EXPECT_TRUE(std::string(file).starts_with(folder.At("temp\\te"))) << file;
        EXPECT_EQ(FileContent(file), PictureBytes());
    }
    EXPECT_EQ(SizeOf(Category().image.get()), "2x3");
    EXPECT_EQ(SizeOf(Application().image.get()), "2x3");
    EXPECT_EQ(TemporaryFiles().size(), 2u) << "those of dropped records are gone";

    // A scan shows fresh ones.
    std::vector<std::string> sizes;
    window.OnMessage([&](const RecordedMessage& message) {
        if (message.node) sizes.push_back(SizeOf(message.node->image));
        return LRESULT{0};
    });
    Scan();
    EXPECT_EQ(sizes, (std::vector<std::string>{"2x3", "2x3", "none"}));

    engine->FreeDefinitions(false);
    EXPECT_TRUE(TemporaryFiles().empty());
}

TEST_F(Images, AreLoadedFromAnyPathThatIsAPicture) {
    const std::string picture = folder.MakeFile("b\xC3\xBCro \xE2\x82\xAC.png", PictureBytes());
    EXPECT_EQ(SizeOf(LoadImageFromFile(picture.c_str()).get()), "2x3");
    EXPECT_EQ(LoadImageFromFile(nullptr), nullptr);
    EXPECT_EQ(LoadImageFromFile(folder.At("missing.png").c_str()), nullptr);
    EXPECT_EQ(LoadImageFromFile(folder.MakeFile("text.png", "no picture").c_str()), nullptr);
}

}  // namespace
