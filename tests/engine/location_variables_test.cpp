#include <gtest/gtest.h>
#include <windows.h>

#include <sddl.h>
#include <shlobj.h>

#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "engine/cleaning_engine.h"
#include "engine/engine_fixture.h"
#include "support/api_hook.h"

namespace {

using namespace std::string_literals;

std::string VariableXml(const std::string& name, const std::string& type, const std::string& location,
                        const std::string& more = "ValueName=''") {
    return "<LocationVariable Name='" + name + "' Type='" + type + "' Location='" + location + "' " + more +
           "/>\n";
}

class Variables : public EngineTest {
  protected:
    // Loads definitions that hold these variables and no category.
    void LoadVariables(const std::string& variables) {
        WriteDefinitions(DefinitionsXml(ElementXml("LocationVariables", "", variables)));
        EXPECT_FALSE(Load()) << "there is no category";
    }

    std::string Expand(const std::string& text) { return engine->ExpandLocation(text); }
};

// The folder as the system tells it, or nothing.
std::optional<std::string> SystemFolder(int csidl) {
    char path[MAX_PATH] = {};
    if (::SHGetFolderPathA(nullptr, csidl, nullptr, SHGFP_TYPE_CURRENT, path) != S_OK) return std::nullopt;
    return path;
}

std::string EnvironmentText(const char* name) {
    char text[1024] = {};
    ::GetEnvironmentVariableA(name, text, sizeof text);
    return text;
}

std::string UserSid() {
    HANDLE token = nullptr;
    if (!::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, &token)) return "?";
    alignas(TOKEN_USER) char block[512];
    DWORD size = 0;
    const BOOL known = ::GetTokenInformation(token, TokenUser, block, sizeof block, &size);
    ::CloseHandle(token);
    LPSTR text = nullptr;
    if (!known || !::ConvertSidToStringSidA(reinterpret_cast<TOKEN_USER*>(block)->User.Sid, &text))
        return "?";
    const std::string sid = text;
    ::LocalFree(text);
    return sid;
}

// Those that are shell folders.
struct FolderVariable {
    const char* name;
    int csidl;
};
constexpr FolderVariable kFolderVariables[] = {
    {"Appdata", 26}, {"internetcache", 32}, {"localappdata", 28}, {"programfiles", 38}, {"userprofile", 40},
};

TEST_F(Variables, OfTheSystemAreItsFoldersInTheRunningProfile) {
    LoadVariables("");
    int defined = 0;
    for (const FolderVariable& variable : kFolderVariables) {
        const std::string name = "%"s + variable.name + "%";
        const auto path = SystemFolder(variable.csidl);
        EXPECT_EQ(Expand(name), path.value_or(name));
        defined += path.has_value();
    }
    EXPECT_GE(defined, 4) << "too few of this profile's folders to be worth the name of a test";
    const std::string windows = SystemFolder(CSIDL_WINDOWS).value();
    EXPECT_EQ(Expand("%systemroot%\\x"), windows.substr(0, 2) + "\\x");
    EXPECT_EQ(Expand("%temp%"), EnvironmentText("temp"));
    EXPECT_EQ(Expand("%user_sid%"), UserSid());
    EXPECT_TRUE(UserSid().starts_with("S-1-5-"));
    EXPECT_EQ(Expand("%WinDir%|%WINDIR%|%windir%"), windows + "|" + windows + "|" + windows);
    EXPECT_EQ(Expand("%startmenu%"), SystemFolder(CSIDL_STARTMENU).value() + "\\Programs") << "crosswise";
    EXPECT_EQ(Expand("%recyclebin%\\"), "%recyclebin%\\");
    EXPECT_EQ(Expand("%windir"), "%windir");
}

TEST_F(Variables, OfTheSystemThatCannotBeToldAreEmptyOrAsTheyAreWritten) {
    auto sids = API_HOOK(OpenProcessToken);
    sids.FailAlways(ERROR_ACCESS_DENIED);
    auto environment = API_HOOK(ExpandEnvironmentStringsA);
    environment.Replace([](LPCSTR, LPSTR text, DWORD size) {
        ::lstrcpynA(text, "C:\\cut off", static_cast<int>(size));
        return DWORD{261};
    });
    auto folders = API_HOOK(SHGetFolderPathA);
    folders.FailAlways(0, E_FAIL);
    const std::string item = ItemXml("File", "C:\\f");
    const auto application = [&](const char* attributes) {
        return ElementXml("Application", attributes, ElementXml("Entity", "Name='E'", item));
    };
    ASSERT_TRUE(
        Load(DefinitionsXml(ElementXml("Category", "Name='Category'",
                                       application("Name='empty' InstallLocation=''") +
                                           application("Name='nobody' InstallLocation='%user_sid%'")))));
    EXPECT_EQ(Expand("<%user_sid%>"), "<>");
    EXPECT_EQ(Expand("%windir%"), "%windir%");
    EXPECT_EQ(Expand("<%systemroot%>"), "<>") << "kept: it is defined even then";
    EXPECT_EQ(Expand("%temp%"), "%temp%") << "a folder cut short is another folder";
    EXPECT_TRUE(Application("Category", "empty").present);
    EXPECT_FALSE(Application("Category", "nobody").present) << "what expands to nothing does not exist";
}

TEST_F(Variables, OfTheUserComeFromTheRegistryAnIniFileOrTheDefinitions) {
    const TestKey key;
    key.SetText("path", "D:\\data");
    key.SetRaw("unexpanded", REG_EXPAND_SZ, "%windir%\\x\0"s);
    key.SetRaw("list", REG_MULTI_SZ, "a\0b\0\0"s);
    key.SetNumber("number", 5);
    const std::string registry = "HKCU\\" + key.Path();
    const std::string ini =
        folder.MakeFile("a.ini", "[one]\r\nkey= first \r\n[two]\r\nkey=second\r\nempty=\r\n");
    const std::string windows = SystemFolder(CSIDL_WINDOWS).value();
    struct {
        std::string xml;
        std::string value;  // of %v%; that itself where it is not defined
    } const cases[] = {
        {VariableXml("v", "REG", registry, "ValueName='path'"), "D:\\data"},
        {VariableXml("v", "REG", registry, "ValueName='list'"), "a, b"},
        {VariableXml("v", "REG", registry, "ValueName='unexpanded'"), windows + "\\x"},
        {VariableXml("v", "REG", registry, "ValueName='number'"), "%v%"},
        {VariableXml("v", "REG", registry, "ValueName='missing'"), "%v%"},
        {VariableXml("v", "INI", ini, "ValueName='key' Section='one'"), "first"},
        {VariableXml("v", "INI", ini, "ValueName='empty' Section='two'"), "%v%"},
        {VariableXml("v", "SYS", "C:\\games"), "C:\\games"},
        {VariableXml("v", "SYS", "%windir%\\x"), windows + "\\x"},
        {VariableXml("v", "Sys", "C:\\games"), "%v%"},
        {"<LocationVariable Name='v' Location='x' ValueName=''/>", "%v%"},
        {VariableXml("%v", "SYS", "never closed"), "%v%"},
        // The first value stays.
        {VariableXml("v", "SYS", "1") + VariableXml("V", "SYS", "2"), "1"},
        // A variable sees those in front of it alone.
        {VariableXml("a", "SYS", "1") + VariableXml("v", "SYS", "%a%2"), "12"},
        {VariableXml("v", "SYS", "%a%2") + VariableXml("a", "SYS", "1"), "%a%2"},
        {VariableXml("a", "SYS", folder.At("a")) +
             VariableXml("v", "INI", "%a%.ini", "ValueName='key' Section='one'"),
         "first"},
        {VariableXml("a", "SYS", registry) + VariableXml("v", "REG", "%a%", "ValueName='path'"), "%v%"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.xml);
        RestartEngine();
        LoadVariables(c.xml);
        EXPECT_EQ(Expand("%v%"), c.value);
    }
}

TEST_F(Variables, StayAsTheFirstLoadMadeThem) {
    LoadVariables(VariableXml("v", "SYS", "1") + VariableXml("temp", "SYS", "X:\\"));
    EXPECT_EQ(Expand("%temp%"), EnvironmentText("temp")) << "one of the system is not redefined";
    LoadVariables(VariableXml("v", "SYS", "2") + VariableXml("w", "SYS", "3"));
    EXPECT_EQ(Expand("%v%%w%"), "13") << "a second load adds and does not change";
    LoadVariables("");
    EXPECT_EQ(Expand("%v%%w%"), "13");
}

TEST_F(Variables, HaveValuesThatAreCutWhereTheyFitNoPathAnyMore) {
    const TestKey key;
    const std::string long259(259, 'a');
    const std::string long400(400, 'b');
    key.SetText("259", long259);
    key.SetText("400", long400);
    const std::string registry = "HKCU\\" + key.Path();
    const std::string ini = folder.MakeFile("a.ini", "[s]\r\n259=" + long259 + "\r\n400=" + long400 + "\r\n");
    for (const auto& source : {VariableXml("a", "REG", registry, "ValueName='259'") +
                                   VariableXml("b", "REG", registry, "ValueName='400'"),
                               VariableXml("a", "INI", ini, "ValueName='259' Section='s'") +
                                   VariableXml("b", "INI", ini, "ValueName='400' Section='s'"),
                               VariableXml("a", "SYS", long259) + VariableXml("b", "SYS", long400)}) {
        RestartEngine();
        LoadVariables(source);
        EXPECT_EQ(Expand("%a%"), long259);
        EXPECT_EQ(Expand("%b%"), long400.substr(0, 260));
    }
}

}  // namespace
