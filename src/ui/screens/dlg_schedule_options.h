#pragma once

#include <windows.h>

#include "resources/ids.h"
#include "ui/screens/schedule_trigger.h"
#include "ui/theme/glass_button.h"
#include "ui/theme/qm_dialog_base.h"
#include "ui/window/controls.h"

// Edits one time of the schedule: filled from a trigger, or left with its defaults; DoModal; and, if that is
// IDOK, copied into a trigger. Main thread.
class CDlgScheduleOptions : public CQMDialogBase<CDlgScheduleOptions> {
  public:
    enum { IDD = IDD_SCHEDULE_OPTIONS };

    CDlgScheduleOptions() = default;

    void FillFrom(const TASK_TRIGGER& trigger);
    // Makes it a weekly trigger; its dates and all else stay.
    void CopyInto(TASK_TRIGGER& trigger) const;

    BEGIN_MSG_MAP(CDlgScheduleOptions)
        MESSAGE_HANDLER(WM_INITDIALOG, OnInitDialog)
        COMMAND_RANGE_HANDLER(IDC_SCHEDULE_SUNDAY, IDC_SCHEDULE_SATURDAY, OnDay)
        COMMAND_ID_HANDLER(IDOK, OnEnd)
        COMMAND_ID_HANDLER(IDCANCEL, OnEnd)
        MESSAGE_HANDLER(DM_GETDEFID, OnGetDefaultButton)
        CHAIN_MSG_MAP(CQMDialogBase<CDlgScheduleOptions>)
        REFLECT_NOTIFICATIONS()
    END_MSG_MAP()

  private:
    LRESULT OnInitDialog(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnDay(WORD code, WORD id, HWND control, BOOL& handled);
    LRESULT OnEnd(WORD code, WORD id, HWND control, BOOL& handled);
    LRESULT OnGetDefaultButton(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);

    WeekDays CheckedDays() const;
    void UpdateOk() const;

    WeekDays m_days = {false, false, false, false, true, false, false};  // Thursday
    WORD m_hour = 5;
    WORD m_minute = 0;
    CComboBox m_hours;
    CComboBox m_minutes;
    CGlassButton m_ok;
    CGlassButton m_cancel;
};
