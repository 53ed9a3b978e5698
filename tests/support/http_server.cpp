#include "support/http_server.h"

#include <winsock2.h>

#include <cstdlib>
#include <stdexcept>
#include <utility>

void HttpServer::Client::Send(std::string_view text) const {
    ::send(socket, text.data(), static_cast<int>(text.size()), 0);
}

bool HttpServer::Client::AwaitHangUp() const {
    char byte;
    return ::recv(socket, &byte, 1, 0) == 0 || ::WSAGetLastError() != WSAETIMEDOUT;
}

HttpServer::HttpServer(Script script) : m_script(std::move(script)) {
    WSADATA data;
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = ::htonl(INADDR_LOOPBACK);
    int size = sizeof address;
    sockaddr* const name = reinterpret_cast<sockaddr*>(&address);
    if (::WSAStartup(MAKEWORD(2, 2), &data) != 0 ||
        (m_listener = ::socket(AF_INET, SOCK_STREAM, IPPROTO_TCP)) == INVALID_SOCKET ||
        ::bind(m_listener, name, size) != 0 || ::listen(m_listener, 5) != 0 ||
        ::getsockname(m_listener, name, &size) != 0) {
        throw std::runtime_error("no port can be listened to");
    }
    m_port = ::ntohs(address.sin_port);
    m_thread = std::thread([this] { Serve(); });
}

HttpServer::~HttpServer() {
    m_stop = true;
    m_thread.join();
    ::closesocket(m_listener);
    ::WSACleanup();
}

void HttpServer::Serve() {
    while (!m_stop) {
        fd_set waiting = {1, {m_listener}};
        timeval moment = {0, 10000};
        if (::select(0, &waiting, nullptr, nullptr, &moment) != 1) continue;
        const SOCKET socket = ::accept(m_listener, nullptr, nullptr);
        const DWORD limit = 20000;  // no test waits longer for the other side
        ::setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, reinterpret_cast<const char*>(&limit), sizeof limit);
        if (ReadRequest(socket)) m_script({socket});
        ::shutdown(socket, SD_SEND);
        ::closesocket(socket);
    }
}

bool HttpServer::ReadRequest(std::uintptr_t socket) {
    constexpr std::string_view kLength = "\r\nContent-Length:";
    m_request.clear();
    for (std::size_t whole = std::string::npos; m_request.size() < whole;) {
        char block[4096];
        const int read = ::recv(socket, block, sizeof block, 0);
        if (read <= 0) return false;
        m_request.append(block, static_cast<std::size_t>(read));
        const std::size_t end = m_request.find("\r\n\r\n");
        if (end == std::string::npos) continue;
        const std::size_t length = m_request.find(kLength);
        whole = end + 4 + (length < end ? std::strtoul(&m_request[length + kLength.size()], nullptr, 10) : 0);
    }
    return true;
}
