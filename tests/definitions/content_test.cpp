#include <shlobj.h>

#include <algorithm>
#include <map>
#include <stdexcept>

#include "definitions/content_rows.h"
#include "engine/engine_fixture.h"
#include "support/api_hook.h"

namespace {

// The definitions as they were packed, beside the test program.
std::string Database() {
    char path[MAX_PATH] = {};
    ::GetModuleFileNameA(nullptr, path, MAX_PATH);
    const std::string program = path;
    const auto bytes = FileContent(program.substr(0, program.rfind('\\') + 1) + "cleaning.db");
    if (!bytes) throw std::runtime_error("cleaning.db is not beside the test program");
    return *bytes;
}

// Every folder that a variable stands for is one of the test's own, so nothing else can be reached.
const std::map<int, std::string> kFolders = {
    {CSIDL_APPDATA, "%appdata%"},
    {CSIDL_LOCAL_APPDATA, "%localappdata%"},
    {CSIDL_INTERNET_CACHE, "%internetcache%"},
    {CSIDL_COOKIES, "%cookies%"},
    {CSIDL_HISTORY, "%history%"},
    {CSIDL_RECENT, "%recentdocs%"},
    {CSIDL_PROFILE, "%userprofile%"},
    {CSIDL_COMMON_APPDATA, "%commonappdata%"},
    {CSIDL_WINDOWS, "%windir%"},
};

// The program's own %temp%, which no call tells of, is one of the test's as well for as long as this lives.
class OwnTemp {
  public:
    explicit OwnTemp(const std::string& path) {
        ::GetEnvironmentVariableA("TEMP", m_before, sizeof m_before);
        ::SetEnvironmentVariableA("TEMP", path.c_str());
    }
    ~OwnTemp() { ::SetEnvironmentVariableA("TEMP", m_before); }
    OwnTemp(const OwnTemp&) = delete;
    OwnTemp& operator=(const OwnTemp&) = delete;

  private:
    char m_before[MAX_PATH] = {};
};

std::vector<ContentCase> AllContent() {
    std::vector<ContentCase> all;
    for (const auto half : {WebContent(), DesktopContent()}) all.insert(all.end(), half.begin(), half.end());
    return all;
}

class Content : public EngineTest {
  protected:
    Content() {
        m_folders.Replace([this](HWND, int csidl, HANDLE, DWORD, LPSTR path) -> HRESULT {
            const auto known = kFolders.find(csidl);
            const std::string& name = known == kFolders.end() ? "%other%" : known->second;
            const std::string whole = folder.At(name);
            whole.copy(path, whole.size());
            path[whole.size()] = '\0';
            return S_OK;
        });
        folder.MakeFile("cleaning.db", Database());
    }

    static std::string TextOf(const ContentRow& row) { return *row.text ? row.text : row.file; }
    static void LayOut(const TestFolder& folder) {
        for (const ContentCase& program : AllContent()) {
            for (const ContentRow& row : program.rows) folder.MakeFile(row.file, TextOf(row));
        }
    }

    void SwitchOn() const {
        for (tagCLEAN_CATEGORY& category : engine->Categories()) {
            for (tagCLEAN_APPLICATION& application : category.applications) {
                application.enabled = true;
                for (tagCLEAN_ENTITY& entity : application.entities) entity.enabled = true;
            }
        }
    }

    std::vector<std::string> Present() const {
        std::vector<std::string> names;
        for (const tagCLEAN_CATEGORY& category : engine->Categories()) {
            for (const tagCLEAN_APPLICATION& application : category.applications) {
                if (application.present) names.emplace_back(application.name);
            }
        }
        return names;
    }

    void ExpectFates(bool everything) const {
        for (const ContentCase& program : AllContent()) {
            SCOPED_TRACE(program.application);
            for (const ContentRow& row : program.rows) {
                const auto content = FileContent(folder.At(row.file));
                const bool goes = row.fate == Fate::Trace || (row.fate == Fate::Chosen && everything);
                if (goes) {
                    EXPECT_FALSE(content) << row.file << " is still there";
                } else {
                    EXPECT_EQ(content, TextOf(row)) << row.file;
                }
            }
        }
    }

  private:
    ApiHook<decltype(&::SHGetFolderPathA)> m_folders{"SHGetFolderPathA"};
    const OwnTemp m_temp{folder.At("%temp%")};
};

// All profiles lie beside each other, so nothing of one program may be taken for another's.
TEST_F(Content, GoesWhereItIsATraceAndStaysWhereItIsNot) {
    LayOut(folder);
    // Variables of ini files are read once in an engine's life.
    RestartEngine();
    ASSERT_TRUE(Load());
    const std::vector<std::string> present = Present();
    for (const ContentCase& program : AllContent()) {
        EXPECT_EQ(std::ranges::count(present, program.application), 1) << program.application;
    }
    for (const bool everything : {false, false, true, true}) {
        SCOPED_TRACE(everything ? "everything" : "the defaults");
        if (everything) SwitchOn();
        Scan();
        Clean();
        ExpectFates(everything);
    }
}

}  // namespace
