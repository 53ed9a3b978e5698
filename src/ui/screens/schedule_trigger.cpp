#include "ui/screens/schedule_trigger.h"

WeekDays DaysOf(WORD bits) {
    WeekDays days = {};
    for (std::size_t day = 0; day < days.size(); ++day) days[day] = (bits & (1u << day)) != 0;
    return days;
}

WORD BitsOf(const WeekDays& days) {
    unsigned bits = 0;
    for (std::size_t day = 0; day < days.size(); ++day) bits |= days[day] ? 1u << day : 0u;
    return static_cast<WORD>(bits);
}

TASK_TRIGGER NewTrigger(const SYSTEMTIME& today) {
    TASK_TRIGGER trigger = {};
    static_assert(sizeof trigger == 48, "the size is fixed");
    trigger.cbTriggerSize = sizeof trigger;
    trigger.wBeginYear = today.wYear;
    trigger.wBeginMonth = today.wMonth;
    trigger.wBeginDay = today.wDay;
    return trigger;
}

int SelectionAfterDelete(int deleted, int count) {
    return deleted == count - 1 ? deleted - 1 : deleted;
}
