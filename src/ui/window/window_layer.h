#pragma once

#include <windows.h>

#include <cstddef>
#include <memory>

class CWindowLayer;
struct WindowRecord;

// A window that is being created and has not yet had a message.
struct PendingWindow {
    CWindowLayer* layer;   // null as soon as it is bound
    WNDPROC original;      // what the class of an own window falls back on; null for a dialog
    PendingWindow* outer;  // during its creation this one began
};

// How an object comes to a window's messages, and loses them. Each window that has such objects carries a
// stack of them: a message goes to the youngest first, and what it leaves goes down to the next and in the
// end to the procedure that the window had before. The base of CWindowImpl, CContainedWindow and CDialogImpl;
// screens have no use for it.
//
// Who dies first does not matter. When the window dies, the object loses its handle at the end of
// WM_NCDESTROY and is told by OnFinalMessage, once no handler of that window is on the stack any more. When
// the object dies, or leaves, the window lives on with what lies below. Both may happen within a handler; it
// must then not touch the object any more. All on the thread that the window belongs to.
class CWindowLayer {
  public:
    CWindowLayer(const CWindowLayer&) = delete;
    CWindowLayer& operator=(const CWindowLayer&) = delete;

    // The procedure of all windows that have layers.
    static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    // The dialog procedure of all dialogs. It only binds the dialog to its object, which goes on as a layer.
    static INT_PTR CALLBACK DialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;

  protected:
    // Lives on the stack around a call that creates a window: the first message of it, which comes long
    // before that call returns, finds its object here. `original` as in PendingWindow.
    class Creation {
      public:
        explicit Creation(CWindowLayer& layer, WNDPROC original = nullptr);
        ~Creation();
        Creation(const Creation&) = delete;
        Creation& operator=(const Creation&) = delete;

      private:
        PendingWindow m_pending;
    };

    CWindowLayer() = default;
    virtual ~CWindowLayer();

    // Takes the messages of an existing window, on top of what has them now. False when the object has a
    // window already, of which the last handler may yet be running, or the handle is none of this thread.
    bool JoinWindow(HWND window);
    // Gives them back.
    void LeaveWindow();
    bool HasWindow() const { return m_record != nullptr; }

    // Hands a message to what lies below this layer. WM_NCDESTROY goes down by itself and is not handed on
    // here.
    LRESULT PassOn(UINT message, WPARAM wParam, LPARAM lParam);

    // TRUE if the message ends here with `result`.
    virtual BOOL HandleMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) = 0;
    // The object's handle from now on; null when the window is gone.
    virtual void SetHandle(HWND window) = 0;
    // The last call for a window. The object may delete itself.
    virtual void OnFinalMessage(HWND window);

  private:
    static LRESULT Dispatch(std::shared_ptr<WindowRecord> record, UINT message, WPARAM wParam, LPARAM lParam);
    static LRESULT Walk(WindowRecord& record, std::size_t below, UINT message, WPARAM wParam, LPARAM lParam);
    static void Forget(const std::shared_ptr<WindowRecord>& record);
    static void Settle(WindowRecord& record);
    void Push(const std::shared_ptr<WindowRecord>& record);
    void Detach();

    std::shared_ptr<WindowRecord> m_record;  // null without a window
};
