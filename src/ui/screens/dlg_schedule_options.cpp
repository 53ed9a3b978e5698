#include "ui/screens/dlg_schedule_options.h"

#include <cstdio>

namespace {

constexpr float kButtonRadius = 8;
constexpr int kHours = 24;
constexpr int kMinutes = 60;

// Numbers from 0 on, and one of them selected: the first if `selected` is none of them.
void FillNumbers(const CComboBox& box, int count, int selected) {
    for (int number = 0; number < count; ++number) {
        char text[16];
        std::snprintf(text, sizeof text, "%.2d", number);
        box.AddString(text);
    }
    box.SetCurSel(selected < count ? selected : 0);
}

}  // namespace

void CDlgScheduleOptions::FillFrom(const TASK_TRIGGER& trigger) {
    m_days = DaysOf(trigger.Type.Weekly.rgfDaysOfTheWeek);
    m_hour = trigger.wStartHour;
    m_minute = trigger.wStartMinute;
}

void CDlgScheduleOptions::CopyInto(TASK_TRIGGER& trigger) const {
    trigger.wStartHour = m_hour;
    trigger.wStartMinute = m_minute;
    trigger.TriggerType = TASK_TIME_TRIGGER_WEEKLY;
    trigger.Type.Weekly.WeeksInterval = 1;
    trigger.Type.Weekly.rgfDaysOfTheWeek = BitsOf(m_days);
}

LRESULT CDlgScheduleOptions::OnInitDialog(UINT, WPARAM, LPARAM, BOOL& handled) {
    SetText("Schedule Options");
    for (int day = 0; day < static_cast<int>(m_days.size()); ++day)
        CheckDlgButton(IDC_SCHEDULE_SUNDAY + day, m_days[static_cast<std::size_t>(day)]);
    m_hours.Attach(GetDlgItem(IDC_SCHEDULE_HOUR));
    m_minutes.Attach(GetDlgItem(IDC_SCHEDULE_MINUTE));
    FillNumbers(m_hours, kHours, m_hour);
    FillNumbers(m_minutes, kMinutes, m_minute);
    m_ok.Attach(GetDlgItem(IDOK), kButtonRadius);
    m_cancel.Attach(GetDlgItem(IDCANCEL), kButtonRadius);
    UpdateOk();
    handled = FALSE;  // the frame follows
    return TRUE;
}

LRESULT CDlgScheduleOptions::OnDay(WORD, WORD, HWND, BOOL&) {
    UpdateOk();
    return 0;
}

void CDlgScheduleOptions::UpdateOk() const {
    m_ok.EnableWindow(BitsOf(CheckedDays()) != 0);
}

WeekDays CDlgScheduleOptions::CheckedDays() const {
    WeekDays days = {};
    for (int day = 0; day < static_cast<int>(days.size()); ++day)
        days[static_cast<std::size_t>(day)] = IsDlgButtonChecked(IDC_SCHEDULE_SUNDAY + day);
    return days;
}

LRESULT CDlgScheduleOptions::OnEnd(WORD, WORD id, HWND, BOOL&) {
    // Enter finds it whether it is enabled or not.
    if (id == IDOK && !m_ok.IsWindowEnabled()) return 0;
    m_days = CheckedDays();
    m_hour = static_cast<WORD>(m_hours.GetCurSel());
    m_minute = static_cast<WORD>(m_minutes.GetCurSel());
    EndDialog(id);
    return 0;
}

// A button that paints itself does not tell the dialog that Enter is for it.
LRESULT CDlgScheduleOptions::OnGetDefaultButton(UINT, WPARAM, LPARAM, BOOL& handled) {
    handled = m_cancel.m_hWnd != nullptr && ::GetFocus() == m_cancel.m_hWnd;
    return MAKELRESULT(IDCANCEL, DC_HASDEFID);
}
