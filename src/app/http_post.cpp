#include "app/http_post.h"

#include <wininet.h>

#include <cstring>
#include <memory>
#include <type_traits>

namespace {

constexpr int kPosted = 0;
constexpr int kFailed = -1;

struct InternetCloser {
    void operator()(HINTERNET handle) const { ::InternetCloseHandle(handle); }
};
using UniqueInternet = std::unique_ptr<std::remove_pointer_t<HINTERNET>, InternetCloser>;

constexpr DWORD kConnectFlags = 0x200000;
static_assert(kConnectFlags == INTERNET_FLAG_NO_AUTO_REDIRECT);
constexpr DWORD kRequestFlags = INTERNET_FLAG_RELOAD | INTERNET_FLAG_EXISTING_CONNECT |
                                INTERNET_FLAG_DONT_CACHE | INTERNET_FLAG_KEEP_CONNECTION;
static_assert(kRequestFlags == 0xA4400000);

// A server that takes the connection and then says nothing would hold an uninstall for as long as the system
// pleases, which is up to an hour. The limits are set on the request itself: not every system hands on what
// is set on the session.
void LimitWaits(HINTERNET request) {
    DWORD milliseconds = 30000;
    for (const DWORD option :
         {INTERNET_OPTION_CONNECT_TIMEOUT, INTERNET_OPTION_SEND_TIMEOUT, INTERNET_OPTION_RECEIVE_TIMEOUT}) {
        ::InternetSetOptionA(request, option, &milliseconds, sizeof milliseconds);
    }
}

bool SendForm(HINTERNET request, const std::string& body) {
    // No blank behind the colon: the endpoint has always been sent it so.
    constexpr char kType[] = "Content-Type:application/x-www-form-urlencoded";
    if (!::HttpAddRequestHeadersA(request, kType, static_cast<DWORD>(-1), HTTP_ADDREQ_FLAG_ADD)) return false;
    std::string sent = body;  // the call takes what it does not change as if it did
    return ::HttpSendRequestA(request, nullptr, 0, sent.data(), static_cast<DWORD>(sent.size()));
}

bool IsStatusOk(HINTERNET request) {
    DWORD status = 0;
    DWORD size = sizeof status;
    return ::HttpQueryInfoA(request, HTTP_QUERY_FLAG_NUMBER | HTTP_QUERY_STATUS_CODE, &status, &size,
                            nullptr) &&
           status == HTTP_STATUS_OK;
}

// Reads to the first block that does not come back full. Each block counts as a text, which a zero ends.
bool ReadResponse(HINTERNET request, std::string& response) {
    char block[2048];
    DWORD read = sizeof block;
    while (read == sizeof block) {
        if (!::InternetReadFile(request, block, sizeof block, &read)) return false;
        response.append(block, ::strnlen(block, read));
        if (response.size() > kLongestResponse) return false;
    }
    return true;
}

}  // namespace

int PostForm(const std::string& host, WORD port, const std::string& path, const std::string& body,
             std::string& response) {
    response.clear();
    const UniqueInternet session(::InternetOpenA("SurveyRequest", INTERNET_OPEN_TYPE_PRECONFIG, nullptr,
                                                 nullptr, INTERNET_FLAG_DONT_CACHE));
    if (!session) return kFailed;
    const UniqueInternet connection(::InternetConnectA(session.get(), host.c_str(), port, nullptr, nullptr,
                                                       INTERNET_SERVICE_HTTP, kConnectFlags, 0));
    if (!connection) return kFailed;
    const UniqueInternet request(::HttpOpenRequestA(connection.get(), "POST", path.c_str(), nullptr, nullptr,
                                                    nullptr, kRequestFlags, 0));
    if (!request) return kFailed;
    LimitWaits(request.get());
    if (!SendForm(request.get(), body) || !IsStatusOk(request.get())) return kFailed;
    if (ReadResponse(request.get(), response)) return kPosted;
    response.clear();
    return kFailed;
}
