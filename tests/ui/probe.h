#pragma once

#include <functional>

#include "ui/dialog_ids.h"
#include "ui/window/controls.h"
#include "ui/window/dialog_impl.h"

// A window or dialog whose map is a function of the test.
template <class TBase>
class CProbeOf : public TBase {
  public:
    using Handler = std::function<BOOL(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result)>;

    // Copies are called, since a test may delete the object in them.
    BOOL ProcessWindowMessage(HWND, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result,
                              DWORD) override {
        const Handler handler = m_handler;
        return handler && handler(message, wParam, lParam, result);
    }
    void OnFinalMessage(HWND) override {
        const std::function<void()> atEnd = m_atEnd;
        if (atEnd) atEnd();
    }

    // WM_APP is answered by a number.
    void AnswerBy(LRESULT number) {
        m_handler = [number](UINT message, WPARAM, LPARAM, LRESULT& result) {
            result = number;
            return message == WM_APP;
        };
    }

    Handler m_handler;
    std::function<void()> m_atEnd;
};

class CProbeWindow : public CProbeOf<CWindowImpl<CProbeWindow, CListBox>> {
  public:
    HWND CreateProbe() {
        const RECT place = {0, 0, 100, 40};
        return Create(nullptr, &place, "probe", WS_POPUP);
    }
};

template <int kTemplate>
class CProbeDialog : public CProbeOf<CDialogImpl<CProbeDialog<kTemplate>>> {
  public:
    enum { IDD = kTemplate };
};
