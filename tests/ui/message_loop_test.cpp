#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "ui/window/app_module.h"
#include "ui/window/message_loop.h"

namespace {

constexpr UINT kOrdinary = WM_APP + 1;
constexpr UINT kEaten = WM_APP + 2;

// Notes what it sees, eats `kEaten`, and goes by itself after its first message if it is told so.
class Filter final : public CMessageFilter {
  public:
    Filter(CMessageLoop& loop, const char* name, std::string& log, bool goes)
        : m_loop(loop), m_name(name), m_log(log), m_goes(goes) {}
    BOOL PreTranslateMessage(MSG* message) override {
        m_log += m_name + std::to_string(message->message - WM_APP) + ' ';
        if (m_goes) m_loop.RemoveMessageFilter(this);
        return message->message == kEaten;
    }

  private:
    CMessageLoop& m_loop;
    std::string m_name;
    std::string& m_log;
    bool m_goes;
};

// Asks for more once and then ends the loop.
class Idler final : public CIdleHandler {
  public:
    BOOL OnIdle() override {
        if (++m_calls == 2) ::PostQuitMessage(23);
        return m_calls < 2;
    }
    int m_calls = 0;
};

TEST(MessageLoop, FiltersSeeMessagesYoungestFirstAndThenComesIdleTime) {
    CMessageLoop loop;
    Idler idler;
    EXPECT_TRUE(loop.AddIdleHandler(&idler));
    std::string log;
    Filter older(loop, "older", log, false);
    Filter younger(loop, "younger", log, true);
    EXPECT_TRUE(loop.AddMessageFilter(&older) && loop.AddMessageFilter(&younger));
    EXPECT_FALSE(loop.AddMessageFilter(&younger));
    ::PostThreadMessageA(::GetCurrentThreadId(), kOrdinary, 0, 0);
    ::PostThreadMessageA(::GetCurrentThreadId(), kEaten, 0, 0);
    EXPECT_EQ(loop.Run(), 23);
    EXPECT_EQ(log, "younger1 older1 older2 ");
    EXPECT_EQ(idler.m_calls, 2);
}

}  // namespace
