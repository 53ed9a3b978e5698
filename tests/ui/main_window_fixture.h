#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <functional>
#include <memory>

#include "ui/screens/main_dlg.h"
#include "ui/window/message_loop.h"

// The real main window with the definitions, pictures and texts that lie beside the test program. It is
// visible, so that it paints. What the test pumps goes through the window's message filter as in the program.
class MainWindow : public ::testing::Test {
  protected:
    MainWindow();
    ~MainWindow() override;

    // Makes the window, hidden, and leaves the load under way.
    void Open();
    // The same, shown and with the definitions listed.
    void OpenListed();
    void Close();

    // Until it holds, at most for some seconds; false if it does not.
    bool PumpUntil(const std::function<bool()>& condition);
    void PumpWaiting();
    // The wParam of the WM_QUIT that was pumped; -1: none.
    int quitCode = -1;

    bool IsListed() const { return window->IsNavEnabled(); }
    HWND Page(int index) const;
    // The page that is on show; -1: not just one is.
    int ShownPage() const;
    // The middle of an entry, in client coordinates.
    POINT EntryPoint(int index) const;
    void Press(POINT point) const;
    void Release(POINT point) const;
    void Click(int entry) const;

    std::unique_ptr<CMessageLoop> loop;
    std::unique_ptr<CMainDlg> window;
};
