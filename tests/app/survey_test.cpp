#include <gtest/gtest.h>
#include <windows.h>

#include <wininet.h>

#include <future>
#include <string>

#include "app/http_post.h"
#include "support/api_hook.h"
#include "support/http_server.h"

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

}  // namespace
