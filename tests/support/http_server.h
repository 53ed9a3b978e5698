#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <thread>

// A web server on 127.0.0.1, on a port of its own, that serves one request after the other from its own
// thread for as long as the object lives.
class HttpServer {
  public:
    // The way back to whoever sent the request.
    struct Client {
        std::uintptr_t socket;
        void Send(std::string_view text) const;
        // Says nothing until the other side hangs up; false if it does not within 20 seconds.
        bool AwaitHangUp() const;
    };
    // Answers a request, on the server's thread; the connection is closed behind it.
    using Script = std::function<void(const Client&)>;

    explicit HttpServer(Script script);
    ~HttpServer();

    std::uint16_t Port() const { return m_port; }
    // The last request with its headers and its body, once it has been answered.
    const std::string& Request() const { return m_request; }

  private:
    void Serve();
    bool ReadRequest(std::uintptr_t socket);

    Script m_script;
    std::uintptr_t m_listener;
    std::uint16_t m_port = 0;
    std::string m_request;
    std::atomic<bool> m_stop{false};
    std::thread m_thread;
};
