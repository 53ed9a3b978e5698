#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "end_to_end/program_run.h"

// The pages in the order of their entries.
enum PageEntry { kScanPage, kSettingsPage, kSchedulePage, kShredderPage, kAboutPage };

// Works the windows of a started program as a user's hand would, by messages from outside.
class UserHand {
  public:
    // `run` must outlive the hand.
    explicit UserHand(const ProgramRun& run) : m_run(run) {}

    // The main window, waited for; null if there is none in the end.
    HWND Window() const { return m_run.AwaitWindow("Velvane"); }

    // A visible and enabled control of this number, wherever in the main window, waited for; null if there is
    // none.
    HWND Control(int id) const;
    // True as soon as there is one. No wait.
    bool Offers(int id) const;

    // Presses a button and does not wait for what it does. False if it is not offered.
    bool Press(int id) const;

    // Clicks the entry of a page.
    void ClickEntry(int page) const;
    // The same until the page, which is another than the present one, offers this control. False if it never
    // does.
    bool OpenPage(PageEntry page, int control) const;

    // Drops files and folders, as the shell does, on the page that offers this control. Does not wait for
    // what it does; false if nothing is offered.
    bool Drop(int control, const std::vector<std::string>& paths) const;

    // The message box or dialog that stands before the main window, waited for; null if there is none.
    HWND Dialog() const;
    // Ends it by this button. False if there is no dialog.
    bool Answer(int id) const;

    // The text of a control of the main window, visible or not.
    std::string TextOf(int id) const;

    // The lines of a list box.
    std::vector<std::string> LinesOf(int id) const;

    // A key into the window that has the program's focus.
    void Type(WPARAM key) const;

    // Saves what is on the screen where the main window stands, as PNG. For a program on a display. False on
    // failure.
    bool SavePicture(const std::string& path) const;

  private:
    const ProgramRun& m_run;
};
