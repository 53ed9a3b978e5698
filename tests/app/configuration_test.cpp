#include "app/configuration.h"

#include <aclapi.h>
#include <gtest/gtest.h>
#include <shlobj.h>

#include <climits>
#include <fstream>
#include <map>
#include <memory>
#include <string>

#include "app/clean_configuration.h"
#include "app/config_keys.h"
#include "app/deployment.h"
#include "support/api_hook.h"
#include "support/sandbox.h"
#include "system/handles.h"
#include "system/system_facts.h"

namespace {

constexpr char kCompany[] = "VelvaneTests";
constexpr char kProduct[] = "Configuration";

// Of a product whose number is not the tail's fixed 5.
std::string DefaultLink(const char* aid) {
    return std::string(kRedirectHost) + "redirect/?aid=" + aid +
           "&vid=31245&pid=77&lid=en&vid=31245&pid=5&lid=en&uid=0";
}

// The machine-wide folder is the prefix's, the program's is one of the test's own.
class Configuration : public ::testing::Test {
  protected:
    Configuration() {
        RemoveFolders();
        moduleName.Replace([this](HMODULE module, LPSTR buffer, DWORD size) {
            EXPECT_EQ(module, kModule);
            const std::string path = program.At("program.dll");
            buffer[path.copy(buffer, size - 1)] = '\0';
            return static_cast<DWORD>(path.size());
        });
    }
    ~Configuration() override { RemoveFolders(); }

    static std::string Folder(int csidl) { return FolderPath(csidl).value() + "\\" + kCompany; }
    static std::string File() {
        return Folder(CSIDL_COMMON_APPDATA) + "\\" + kProduct + "\\AppPreferences.dat";
    }
    static void RemoveFolders() {
        ::DeleteFileA(File().c_str());
        for (const int csidl : {CSIDL_COMMON_APPDATA, CSIDL_APPDATA}) {
            ::RemoveDirectoryA((Folder(csidl) + "\\" + kProduct).c_str());
            ::RemoveDirectoryA(Folder(csidl).c_str());
        }
    }
    static std::unique_ptr<CCleanAppConfig> Make() {
        return std::make_unique<CCleanAppConfig>(kModule, kCompany, kProduct, 77);
    }
    static std::unique_ptr<CCleanAppConfig> Loaded(const std::string& preferences) {
        auto config = Make();
        EXPECT_TRUE(std::ofstream(File(), std::ios::binary) << preferences << std::flush);
        config->Load(nullptr);
        return config;
    }

    static inline const HINSTANCE kModule = reinterpret_cast<HINSTANCE>(0x10000);
    const TestFolder program;
    decltype(API_HOOK(GetModuleFileNameA)) moduleName = API_HOOK(GetModuleFileNameA);
};

using Options = std::map<int, int>;
const Options kDefaults = {{KEY_FIRSTRUN, 1},
                           {KEY_AUTOCHECKUPDATES, 1},
                           {KEY_ASKBEFOREDOWNLOAD, 1},
                           {KEY_ERASEMODE, 1},
                           {KEY_CLEANMODE, 0},
                           {KEY_LASTCHECK, -1},
                           {KEY_SCANERASENOSHOW, 0},
                           {KEY_SHREDNOSHOW, 0},
                           {KEY_AUTOCLEAN, 0},
                           {17, -1},
                           {21, -1}};
Options OptionsOf(const CAppConfig& config) {
    Options options;
    for (const auto& [key, value] : kDefaults) options[key] = config.GetInt(key);
    return options;
}
Options DefaultsBut(Options changed) {
    changed.insert(kDefaults.begin(), kDefaults.end());
    return changed;
}

TEST_F(Configuration, ReadsThePreferencesElementByElement) {
    using std::string_literals::operator""s;
    const struct {
        const char* behaviour;
        std::string text;
        Options changed;
    } rows[] = {
        {"an empty element ends the first run", "<config><firstrun/></config>", {{KEY_FIRSTRUN, 0}}},
        {"truths are exactly 1",
         "<config><autocheckupdates>0</autocheckupdates><askbeforedownload>yes</askbeforedownload>"
         "<scanerasenoshow>2</scanerasenoshow><shrednoshow>1</shrednoshow><autoclean> 1</autoclean></config>",
         {{KEY_AUTOCHECKUPDATES, 0}, {KEY_ASKBEFOREDOWNLOAD, 0}, {KEY_SHREDNOSHOW, 1}, {KEY_AUTOCLEAN, 1}}},
        {"a later element wins, and numbers stay in their range",
         "<config><erasemode>3</erasemode><erasemode>99999999999</erasemode>"
         "<cleanmode>-99999999999999999999</cleanmode></config>",
         {{KEY_ERASEMODE, INT_MAX}, {KEY_CLEANMODE, INT_MIN}}},
        {"the first config counts, and its own children alone",
         "<a><config><x><erasemode>3</erasemode></x><cleanmode>7</cleanmode></config></a>"
         "<config><autoclean>1</autoclean></config>",
         {{KEY_CLEANMODE, 7}}},
        {"a shortened file is broken", "<config>\r\n\t<cleanmode>7</cleanmode>\r\n\t<erasem", {}},
        {"a zero ends the text", "<config><cleanmode>7</cleanmode></config>\0<"s, {{KEY_CLEANMODE, 7}}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(OptionsOf(*Loaded(row.text)), DefaultsBut(row.changed)) << row.behaviour;
    }
}

TEST_F(Configuration, IsWrittenByteForByteAndForgetsTheUpdateOptions) {
    const auto config = Loaded(
        "<config><autocheckupdates>0</autocheckupdates><askbeforedownload>0</askbeforedownload></config>");
    config->SetInt(KEY_ERASEMODE, -5);
    config->SetInt(KEY_CLEANMODE, 7);
    config->SetInt(KEY_SHREDNOSHOW, 1);
    {
        auto query = API_HOOK(GetWindowPlacement);
        query.Replace([](HWND window, WINDOWPLACEMENT* placement) {
            EXPECT_EQ(window, ::GetDesktopWindow());
            *placement = {44, 1, 2, {-32000, 4}, {5, 6}, {7, 8, 9, 10}};
            return TRUE;
        });
        config->Save(::GetDesktopWindow());
    }
    EXPECT_EQ(
        FileContent(File()),
        "<config>\r\n"
        "\t<windowplacement flags=\"1\" minposx=\"-32000\" minposy=\"4\" maxposx=\"5\" maxposy=\"6\"\r\n"
        "\t\tleft=\"7\" top=\"8\" right=\"9\" bottom=\"10\" showcmd=\"2\"/>\n"
        "\t<firstrun>no</firstrun>\r"
        "\t<erasemode>-5</erasemode>\r\n"
        "\t<cleanmode>7</cleanmode>\r\n"
        "\t<scanerasenoshow>0</scanerasenoshow>\r\n"
        "\t<shrednoshow>1</shrednoshow>\r\n"
        "\t<autoclean>0</autoclean>\r\n"
        "</config>\r\n");
    const Options kept = {{KEY_FIRSTRUN, 0}, {KEY_ERASEMODE, -5}, {KEY_CLEANMODE, 7}, {KEY_SHREDNOSHOW, 1}};
    EXPECT_EQ(OptionsOf(*Loaded(FileContent(File()).value())), DefaultsBut(kept));
}

TEST_F(Configuration, SetsOnlyWhatHasAWayIn) {
    const auto config = Make();
    for (int key = -1; key <= 21; ++key) config->SetInt(key, 1);
    Options set = {{KEY_SCANERASENOSHOW, 1}, {KEY_SHREDNOSHOW, 1}, {KEY_AUTOCLEAN, 1}, {KEY_CLEANMODE, 1}};
    EXPECT_EQ(OptionsOf(*config), DefaultsBut(set));
    for (int key = -1; key <= 21; ++key) config->SetInt(key, 2);
    set = {{KEY_ASKBEFOREDOWNLOAD, 0}, {KEY_ERASEMODE, 2}, {KEY_CLEANMODE, 2}};
    EXPECT_EQ(OptionsOf(*config), DefaultsBut(set)) << "a truth is exactly 1";
}

TEST_F(Configuration, KeepsItsDefaultsWhereAFileCannotBeUsed) {
    const std::string good = "<config><cleanmode>7</cleanmode></config>";
    {
        auto read = API_HOOK(ReadFile);
        read.Replace([&](HANDLE file, void* buffer, DWORD size, DWORD* done, OVERLAPPED* overlapped) {
            return read.Real()(file, buffer, size - 1, done, overlapped);
        });
        EXPECT_EQ(OptionsOf(*Loaded(good + " ")), kDefaults) << "a short read";
    }
    EXPECT_EQ(OptionsOf(*Loaded(good + std::string(1024 * 1024, ' '))), kDefaults) << "too large";
    std::string deep;
    for (int i = 0; i < 140000; ++i) deep += "<a>";
    deep += good;
    for (int i = 0; i < 140000; ++i) deep += "</a>";
    EXPECT_EQ(Loaded(deep)->GetInt(KEY_CLEANMODE), 7);

    const auto config = Loaded(good);
    {
        auto folder = API_HOOK(SHGetFolderPathA);
        folder.FailAlways(0, E_FAIL);
        Make()->Save(nullptr);
        config->Save(nullptr);
    }
    const UniqueHandle holder = OwnHandle<UniqueHandle>(
        ::CreateFileA(File().c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    config->Save(nullptr);
    EXPECT_EQ(FileContent(File()), good) << "neither save reached it";
}

// Every user may put files into the machine's application data, and these options delete without a question.
TEST_F(Configuration, TrustsNoFileOfAnotherUser) {
    const std::string planted = "<config><autoclean>1</autoclean></config>";
    SID everybody = {SID_REVISION, 1, SECURITY_WORLD_SID_AUTHORITY, {SECURITY_WORLD_RID}};
    auto security = API_HOOK(GetNamedSecurityInfoA);
    security.Replace([&](LPCSTR, SE_OBJECT_TYPE, SECURITY_INFORMATION, PSID* owner, PSID*, PACL*, PACL*,
                         PSECURITY_DESCRIPTOR* descriptor) -> DWORD {
        *owner = &everybody;
        *descriptor = nullptr;
        return ERROR_SUCCESS;
    });
    const auto config = Loaded(planted);
    EXPECT_EQ(OptionsOf(*config), kDefaults);
    config->Save(nullptr);
    EXPECT_EQ(FileContent(File()), planted) << "nothing is written into a folder of another user";
    security.FailAlways(0, static_cast<DWORD>(ERROR_ACCESS_DENIED));
    EXPECT_EQ(OptionsOf(*Loaded(planted)), kDefaults) << "nor where the owner cannot be told";
}

TEST_F(Configuration, TakesTheLinksOfADistribution) {
    const auto config = Make();
    program.MakeFile("settings.xml", "<URLHELP>http://help</URLHELP><broken");
    config->Load(nullptr);
    EXPECT_EQ(config->GetString(KEY_URLHELP), DefaultLink("18"));
    EXPECT_EQ(config->GetString(KEY_URLSUFFIX), std::string("&vid=31245&pid=5&lid=en&uid=0"));

    program.MakeFile("settings.xml",
                     "<s><URLHELP>https://help/?a=1&b=2</URLHELP><URLCOMPANY/>"
                     "<x><CUSTOMIZATION><![CDATA[&x=1]]></CUSTOMIZATION></x><URLHELP>second</URLHELP></s>");
    config->Load(nullptr);
    EXPECT_EQ(config->GetString(KEY_URLSUFFIX), std::string("&x=1&uid=0"));
    EXPECT_EQ(config->GetString(KEY_URLHELP), std::string("https://help/?a=1&b=2&x=1&uid=0"));
    EXPECT_EQ(config->GetString(KEY_URLCOMPANY), DefaultLink("6")) << "an empty element changes nothing";
    EXPECT_EQ(config->GetString(KEY_URLSUPPORT), DefaultLink("2")) << "with the tail that it had";
}

}  // namespace
