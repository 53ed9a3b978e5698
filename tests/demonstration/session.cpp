#include <windows.h>

#include <objidl.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include "end_to_end/program_run.h"
#include "end_to_end/user_hand.h"
#include "resources/ids.h"
#include "support/window_picture.h"

namespace Gdiplus {
using std::max;
using std::min;
}  // namespace Gdiplus
#include <gdiplus.h>

// The window's part of the demonstration: starts velvane.exe on the display, works one whole session in it as
// a user would, and saves a picture of each state where it was started. Prints what the program reports.
// usage: demonstration-session [--stay]     --stay leaves the window open at the end

namespace {

struct Failure {
    std::string what;
};

void Require(bool holds, const std::string& what) {
    if (!holds) throw Failure{what};
}

class Demonstration {
  public:
    Demonstration() : m_run(BuiltProgram(), ""), m_hand(m_run) {}

    void Run(bool stay) {
        Require(m_hand.Control(IDC_SCAN_START) != nullptr, "the window with its button does not come");
        ::SetCursorPos(0, 0);  // where it hovers over nothing: a tip would cover what a picture is to show
        Picture("1-intro");
        m_hand.Press(IDC_SCAN_START);
        Require(m_hand.Control(IDC_SCAN_CLEAN) != nullptr, "the scan does not end");
        Picture("2-results");
        UncheckFirstResult();
        Picture("3-one-unchecked");
        m_hand.Press(IDC_SCAN_CLEAN);
        Require(m_hand.Dialog() != nullptr, "no question comes before the clean");
        Picture("4-question");
        m_hand.Answer(IDYES);
        Require(m_hand.Control(IDC_SCAN_FINISH) != nullptr, "the clean does not end");
        // One file is in use, so that the program offers a restart.
        Require(m_hand.Dialog() != nullptr, "no restart is offered");
        Picture("5-restart");
        const HWND question = m_hand.Dialog();
        m_hand.Answer(IDCANCEL);
        Require(Await([&] { return !::IsWindow(question); }), "the question does not go away");
        Picture("6-report");
        PrintReport(m_hand.TextOf(IDC_SCAN_REPORT));
        m_hand.Press(IDC_SCAN_FINISH);
        Require(m_hand.Control(IDC_SCAN_START) != nullptr, "the way back is closed");
        const char* const pages[] = {nullptr, "7-settings", "8-schedule", "9-shredder", "10-about"};
        for (int page = 1; page < 5; ++page) {
            m_hand.ClickEntry(page);
            Picture(pages[page]);
        }
        m_hand.ClickEntry(kScanPage);
        if (!stay) ::PostMessageA(m_hand.Window(), WM_CLOSE, 0, 0);
        while (m_run.IsRunning()) ::Sleep(50);
    }

  private:
    // What is on the screen once it has been painted.
    void Picture(const std::string& name) {
        ::Sleep(600);
        // On a busy machine the first try has failed at times.
        Require(Await([&] { return m_hand.SavePicture(name + ".png"); }), "no picture of " + name);
    }

    // Down the tree by the keyboard: category, application, entity, result.
    void UncheckFirstResult() {
        const HWND tree = m_hand.Control(IDC_SCAN_TREE);
        for (const WPARAM key : {VK_SPACE, VK_RIGHT, VK_DOWN, VK_RIGHT, VK_DOWN, VK_RIGHT, VK_DOWN, VK_SPACE})
            ::SendMessageA(tree, WM_KEYDOWN, key, 1);
    }

    static void PrintReport(const std::string& text) {
        std::string line;
        for (const char c : text + "\n") {
            if (c == '\r') continue;
            if (c != '\n') {
                line += c;
                continue;
            }
            if (!line.empty()) std::printf("%s\n", line.c_str());
            line.clear();
        }
    }

    ProgramRun m_run;
    UserHand m_hand;
};

}  // namespace

int main(int argc, char** argv) {
    const Gdiplus::GdiplusStartupInput input;
    ULONG_PTR token = 0;
    Gdiplus::GdiplusStartup(&token, &input, nullptr);
    try {
        Demonstration().Run(argc > 1 && std::string(argv[1]) == "--stay");
    } catch (const Failure& failure) {
        std::fprintf(stderr, "demonstration-session: %s\n", failure.what.c_str());
        return 1;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "demonstration-session: %s\n", failure.what());
        return 1;
    }
    return 0;
}
