#include <gtest/gtest.h>
#include <windows.h>

#include <shellapi.h>
#include <wininet.h>

#include <cstdint>
#include <cstring>
#include <ctime>
#include <future>
#include <iomanip>
#include <sstream>
#include <string>

#include "app/http_post.h"
#include "app/install_time.h"
#include "app/resources.h"
#include "app/survey_report.h"
#include "support/api_hook.h"
#include "support/http_server.h"
#include "support/sandbox.h"
#include "system/system_facts.h"

namespace {

// The pieces of a short answer arrive one by one.
HttpServer::Script Answers(const std::string& body, const std::string& status = "200 OK") {
    const std::string headers =
        "Content-Length: " + std::to_string(body.size()) + "\r\nConnection: close\r\n";
    return
        [answer = "HTTP/1.1 " + status + "\r\n" + headers + "\r\n" + body](const HttpServer::Client& client) {
            for (std::size_t at = 0; at < answer.size(); at += 700) {
                client.Send(answer.substr(at, 700));
                if (answer.size() < 7000) ::Sleep(5);
            }
        };
}

std::string Long(std::size_t length) {
    return std::string(length, 'x');
}

TEST(PostForm, TakesAWholeAnswerOrNone) {
    const struct {
        HttpServer::Script script;
        int result;
        std::string response;
    } cases[] = {
        {Answers(Long(6500)), 0, Long(6500)},  // three blocks and a part of one
        {Answers(Long(4096)), 0, Long(4096)},  // exactly two
        {Answers(Long(kLongestResponse)), 0, Long(kLongestResponse)},
        {Answers(Long(kLongestResponse + 1)), -1, ""},
        {Answers({"ab\0cd", 5}), 0, "ab"},
        {Answers("http://x/", "404 Not Found"), -1, ""},
        {[](const HttpServer::Client&) {}, -1, ""},  // a hang-up without an answer
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(&row - cases);
        const HttpServer server(row.script);
        std::string response = "old";
        EXPECT_EQ(PostForm("127.0.0.1", server.Port(), "index.php", "a=b", response), row.result);
        EXPECT_TRUE(response == row.response) << response.size() << " bytes";
    }
}

TEST(PostForm, DoesNotWaitForEverForASilentServer) {
    // Half a minute is more than a test should take: the limit that the program asks for is made shorter.
    auto options = API_HOOK(InternetSetOptionA);
    DWORD asked = 0;
    options.Replace([&](HINTERNET handle, DWORD option, LPVOID value, DWORD size) {
        if (option == INTERNET_OPTION_RECEIVE_TIMEOUT) asked = *static_cast<DWORD*>(value);
        DWORD brief = 300;
        return options.Real()(handle, option, &brief, size);
    });
    for (const char* beginning : {"", "HTTP/1.1 200 OK\r\nContent-Length: 5000\r\n\r\nhttp://"}) {
        SCOPED_TRACE(beginning);
        std::promise<bool> gaveUp;
        const HttpServer server([&](const HttpServer::Client& client) {
            client.Send(beginning);
            gaveUp.set_value(client.AwaitHangUp());
        });
        std::string response;
        EXPECT_EQ(PostForm("127.0.0.1", server.Port(), "index.php", "a=b", response), -1);
        EXPECT_EQ(response, "");
        EXPECT_TRUE(gaveUp.get_future().get());
    }
    EXPECT_EQ(asked, 30000u);
}

std::string Body(const HttpServer& server) {
    return server.Request().substr(server.Request().find("\r\n\r\n") + 4);
}

TEST(SurveyReport, NamesTheActionAndOpensOnlyAWebAddressAfterAnUninstall) {
    const struct {
        std::string form;
        DWORD silent;
        std::string response, opened;
    } cases[] = {
        {"action=install&actionid=1&", 0, "http://x/", ""},
        {"action=update&actionid=3&", 1, "http://x/", ""},
        {"action=install&actionid=1&", 2, "no other number is silent", ""},
        {"action=uninstall&actionid=2&", 1, "http://x/?a=1&b= 2", "http://x/?a=1&b= 2"},
        {"action=uninstall&actionid=2&", 0, "https://x/\r\n", "https://x/"},
        {"action=uninstall&actionid=2&", 0, "http://x/\" -run \"y", ""},
        {"action=uninstall&actionid=2&", 0, "HTTP://x/", ""},
        {"action=uninstall&actionid=2&", 0, "httpd.exe", ""},
    };
    std::string opened;
    auto shell = API_HOOK(ShellExecuteA);
    shell.Replace([&](HWND, LPCSTR verb, LPCSTR file, LPCSTR, LPCSTR, INT show) {
        EXPECT_TRUE(verb == std::string("open") && show == SW_SHOWNORMAL);
        opened = file;
        return reinterpret_cast<HINSTANCE>(INT_PTR{42});
    });
    const TestKey key(HKEY_LOCAL_MACHINE);
    SurveyFacts facts;
    facts.company = "VelvaneTests";
    facts.product = key.Path().substr(key.Path().rfind('\\') + 1);
    WORD port = 0;
    for (const auto& row : cases) {
        SCOPED_TRACE(row.form + row.response);
        key.SetNumber("Silent", row.silent);
        opened.clear();
        const HttpServer server(Answers(row.response));
        port = server.Port();
        EXPECT_TRUE(
            CSurveyReport(facts, {"127.0.0.1", port}).Report(row.form.starts_with("action=uninstall")));
        EXPECT_TRUE(Body(server).starts_with(row.form)) << Body(server);
        EXPECT_EQ(opened, row.opened);
    }
    EXPECT_FALSE(CSurveyReport(facts, {"127.0.0.1", port}).Report(true)) << "nobody listens any more";
}

TEST(InstallTime, IsALocalDateOrNone) {
    std::tm local = {};
    std::istringstream date(InstallDateText(133537140090000000));  // 2024-02-29 21:00:09 in Greenwich
    date >> std::get_time(&local, "%Y-%m-%d %H:%M:%S");
    local.tm_isdst = -1;
    EXPECT_EQ(std::mktime(&local), 1709240409) << date.str();
    EXPECT_EQ(InstallDateText(0), "") << "long before 1970";
    EXPECT_EQ(InstallDateText(~std::uint64_t{0}), "") << "no calendar goes so far";
}

constexpr char kKey[] = "Software\\Quillmere\\Velvane";  // the program's own, as this prefix has it

TEST(SurveyReport, TellsWhatItFindsAboutTheInstall) {
    ::RegDeleteTreeA(HKEY_LOCAL_MACHINE, kKey);
    ASSERT_TRUE(LoadResources());
    WriteInstallTime();
    std::uint64_t installed = 0;
    DWORD bytes = sizeof installed;
    ::RegGetValueA(HKEY_LOCAL_MACHINE, kKey, "InstallTime", RRF_RT_QWORD, nullptr, &installed, &bytes);
    EXPECT_NEAR(static_cast<double>(installed / 10000000),
                static_cast<double>(std::time(nullptr) + 11644473600), 60);
    for (const auto& [name, flag] : {std::pair("Updates", DWORD{2}), {"Login", 1}, {"Quick", 0}}) {
        ::RegSetKeyValueA(HKEY_LOCAL_MACHINE, kKey, name, REG_DWORD, &flag, sizeof flag);
    }

    // A program folder that can be written, with a program that has a version.
    const TestFolder folder;
    const std::string program = folder.At("velvane.exe");
    ASSERT_TRUE(::CopyFileA((ProgramFolder() + "resources.dll").c_str(), program.c_str(), FALSE) &&
                ::SetFileAttributesA(program.c_str(), FILE_ATTRIBUTE_NORMAL));
    folder.MakeFile("settings.xml", "<a><PID>9</PID><b><CPID>31</CPID></b><VID>a&b</VID><VID>2</VID></a>");
    auto modules = API_HOOK(GetModuleFileNameA);
    modules.Replace([&](HMODULE, LPSTR path, DWORD size) {
        ::lstrcpynA(path, program.c_str(), static_cast<int>(size));
        return static_cast<DWORD>(std::strlen(path));
    });
    const HttpServer server(Answers(""));
    SendSurvey(false, {"127.0.0.1", server.Port()});
    const std::string& headers = server.Request();
    EXPECT_TRUE(headers.starts_with("POST /index.php HTTP/1.1\r\n")) << headers;
    EXPECT_NE(headers.find("\r\nUser-Agent: SurveyRequest\r\n"), std::string::npos) << headers;
    EXPECT_NE(headers.find("application/x-www-form-urlencoded\r\n"), std::string::npos) << headers;
    EXPECT_EQ(Body(server), "action=install&actionid=1&PID=5&CPID=31&VID=a&b&LID=&Version=" +
                                std::string(VERSION) + "&InstallDate=" + InstallDateText(installed) +
                                "&Desktop=FALSE&Login=TRUE&Quick=FALSE&Updates=TRUE");

    // On an empty machine every field stays in the form.
    ::RegDeleteTreeA(HKEY_LOCAL_MACHINE, kKey);
    ::DeleteFileA(folder.At("settings.xml").c_str());
    ::DeleteFileA(program.c_str());
    SendSurvey(true, {"127.0.0.1", server.Port()});
    EXPECT_EQ(Body(server),
              "action=uninstall&actionid=2&PID=5&CPID=&VID=&LID=&Version=&InstallDate="
              "&Desktop=FALSE&Login=FALSE&Quick=FALSE&Updates=FALSE");

    auto sessions = API_HOOK(InternetOpenA);
    SendSurvey(true, {});
    EXPECT_EQ(sessions.Calls(), 0) << "there is no host";
}

}  // namespace
