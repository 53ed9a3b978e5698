#pragma once

#include <windows.h>

#include <cstddef>
#include <string>
#include <unordered_map>

#include "ui/window/controls.h"
#include "ui/window/gdi.h"

// The list box with what is to be destroyed: one line for each path, in the order in which they came. It
// knows its lines by heart, so that looking for one is not a walk through all. Only this class may add and
// remove.
class CShredList : public CListBox {
  public:
    // Takes an empty list box.
    void Attach(HWND window);

    // What is added at one time, a drop for instance. The list is drawn when it ends.
    class Batch {
      public:
        explicit Batch(CShredList& list);
        ~Batch();
        Batch(const Batch&) = delete;
        Batch& operator=(const Batch&) = delete;

        // Puts `path` at the end unless it is there, in whatever letter case.
        // kept: what goes into an empty list is not looked for, and may hold the same path twice.
        void Add(const std::string& path);

      private:
        CShredList& m_list;
        const bool m_wasEmpty;
        const CClientDC m_dc;
        const CSelectedObject m_font;
        LONG m_characterWidth;
        LONG m_extent;
    };

    void RemoveSelected();
    // The width that can be scrolled to goes back to nothing, too.
    void RemoveAll();

    // A run goes through the lines from the first to the last and tells of each: BeginRun, then LineDone for
    // one that is destroyed, which leaves the list, and LineFailed for one that is not, which stays; EndRun.
    // Meanwhile the list is drawn by Refresh alone: drawing it takes longer than a line does.
    void BeginRun();
    void Refresh();
    void EndRun();
    void LineDone(const char* path);
    void LineFailed() { ++m_next; }

  private:
    void Remove(int index);
    int FindLine(const std::string& path) const;

    std::unordered_map<std::string, int> m_counts;  // lines by their text in lower case
    int m_next = 0;                                 // the line that the run has come to
};
