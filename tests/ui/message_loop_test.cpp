#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "ui/window/app_module.h"
#include "ui/window/message_loop.h"

namespace {

constexpr UINT kOrdinary = WM_APP + 1;
constexpr UINT kEaten = WM_APP + 2;

// Notes what it sees in a common log, eats `kEaten`, and goes after `remaining` messages.
class Filter final : public CMessageFilter {
  public:
    Filter(CMessageLoop& loop, std::string name, std::vector<std::string>& log, int remaining = 1000)
        : m_loop(loop), m_name(std::move(name)), m_log(log), m_remaining(remaining) {}
    BOOL PreTranslateMessage(MSG* message) override {
        m_log.push_back(m_name + std::to_string(message->message - WM_APP));
        if (--m_remaining == 0) m_loop.RemoveMessageFilter(this);
        return message->message == kEaten;
    }

  private:
    CMessageLoop& m_loop;
    std::string m_name;
    std::vector<std::string>& m_log;
    int m_remaining;
};

TEST(MessageLoop, FiltersSeeMessagesYoungestFirst) {
    CMessageLoop loop;
    std::vector<std::string> log;
    Filter older(loop, "older", log);
    Filter younger(loop, "younger", log, 1);
    EXPECT_TRUE(loop.AddMessageFilter(&older));
    EXPECT_TRUE(loop.AddMessageFilter(&younger));
    EXPECT_FALSE(loop.AddMessageFilter(&younger));
    ::PostThreadMessageA(::GetCurrentThreadId(), kOrdinary, 0, 0);
    ::PostThreadMessageA(::GetCurrentThreadId(), kEaten, 0, 0);
    ::PostQuitMessage(23);
    EXPECT_EQ(loop.Run(), 23);
    EXPECT_EQ(log, (std::vector<std::string>{"younger1", "older1", "older2"}));
    EXPECT_FALSE(loop.RemoveMessageFilter(&younger)) << "it has gone by itself";

    MSG eaten = {};
    eaten.message = kEaten;
    EXPECT_TRUE(loop.PreTranslateMessage(&eaten));
}

// Asks for more until it has had `wanted` calls in a row, then posts what is next.
class Idler final : public CIdleHandler {
  public:
    explicit Idler(std::vector<UINT> next) : m_next(std::move(next)) {}
    BOOL OnIdle() override {
        ++m_calls;
        if (m_calls % 3 != 0) return TRUE;
        if (m_posted == m_next.size()) {
            ::PostQuitMessage(0);
        } else {
            ::PostThreadMessageA(::GetCurrentThreadId(), m_next[m_posted++], 0, 0);
        }
        return FALSE;
    }
    int m_calls = 0;

  private:
    std::vector<UINT> m_next;
    std::size_t m_posted = 0;
};

TEST(MessageLoop, IdleHandlersRunWhenTheQueueIsEmpty) {
    CMessageLoop loop;
    Idler idler({kOrdinary, kOrdinary});
    EXPECT_TRUE(loop.AddIdleHandler(&idler));
    EXPECT_EQ(loop.Run(), 0);
    EXPECT_EQ(idler.m_calls, 9) << "three at the start and three after each of two messages";
    EXPECT_TRUE(loop.RemoveIdleHandler(&idler));
    EXPECT_FALSE(loop.RemoveIdleHandler(&idler));
}

TEST(AppModule, KeepsModulesAndTheLoopOfEachThread) {
    CAppModule module;
    const HINSTANCE program = ::GetModuleHandleA(nullptr);
    const HINSTANCE resources = ::GetModuleHandleA("user32.dll");
    EXPECT_EQ(module.GetResourceInstance(), program);
    module.SetResourceInstance(resources);
    module.Init(program);
    EXPECT_EQ(module.GetModuleInstance(), program);
    EXPECT_EQ(module.GetResourceInstance(), resources) << "set before Init, and it stays";

    CMessageLoop loop;
    EXPECT_TRUE(module.AddMessageLoop(&loop));
    EXPECT_FALSE(module.AddMessageLoop(&loop));
    CMessageLoop* elsewhere = &loop;
    std::thread([&] { elsewhere = module.GetMessageLoop(); }).join();
    EXPECT_EQ(elsewhere, nullptr);
    EXPECT_EQ(module.GetMessageLoop(), &loop);
    EXPECT_TRUE(module.RemoveMessageLoop());
    EXPECT_EQ(module.GetMessageLoop(), nullptr);
    module.Term();
    EXPECT_EQ(module.GetResourceInstance(), program);
}

}  // namespace
