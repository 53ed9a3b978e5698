#include "app/trigger_text.h"

#include <cstdio>

namespace {

constexpr const char* kDays[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
constexpr const char* kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                   "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
constexpr const char* kWeeks[] = {"first", "second", "third", "fourth", "last"};
constexpr WORD kAllMonths = 0xFFF;

std::string TimeText(const TASK_TRIGGER& trigger) {
    char text[16];
    std::snprintf(text, sizeof text, "%02u:%02u", trigger.wStartHour, trigger.wStartMinute);
    return text;
}

std::string DateText(WORD year, WORD month, WORD day) {
    char text[32];
    std::snprintf(text, sizeof text, "%u/%u/%u", month, day, year);
    return text;
}

// "day", or "2 days".
std::string Interval(WORD count, const std::string& unit) {
    return count <= 1 ? unit : std::to_string(count) + " " + unit + "s";
}

// The texts of the bits that are set, the lowest first, with commas.
template <class TextOf>
std::string BitTexts(DWORD bits, TextOf textOf) {
    std::string texts;
    for (unsigned int bit = 0; bits != 0; ++bit, bits >>= 1) {
        if ((bits & 1) == 0) continue;
        if (!texts.empty()) texts += ", ";
        texts += textOf(bit);
    }
    return texts;
}

std::string DaysText(WORD days) {
    return BitTexts(days & 0x7F, [](unsigned int bit) { return kDays[bit]; });
}

std::string MonthsText(WORD months) {
    if ((months & kAllMonths) == kAllMonths) return "every month";
    return BitTexts(months & kAllMonths, [](unsigned int bit) { return kMonths[bit]; });
}

std::string WeekText(WORD week) {
    return week >= TASK_FIRST_WEEK && week <= TASK_LAST_WEEK ? kWeeks[week - TASK_FIRST_WEEK] : "";
}

// What stands between the time and the date; nothing for a trigger that is no matter of days.
std::string DaysOf(const TASK_TRIGGER& trigger) {
    const TRIGGER_TYPE_UNION& type = trigger.Type;
    switch (trigger.TriggerType) {
        case TASK_TIME_TRIGGER_DAILY:
            return "every " + Interval(type.Daily.DaysInterval, "day");
        case TASK_TIME_TRIGGER_WEEKLY:
            return "every " + DaysText(type.Weekly.rgfDaysOfTheWeek) + " of every " +
                   Interval(type.Weekly.WeeksInterval, "week");
        case TASK_TIME_TRIGGER_MONTHLYDATE:
            return "on day " +
                   BitTexts(type.MonthlyDate.rgfDays,
                            [](unsigned int bit) { return std::to_string(bit + 1); }) +
                   " of " + MonthsText(type.MonthlyDate.rgfMonths);
        case TASK_TIME_TRIGGER_MONTHLYDOW:
            return "on the " + WeekText(type.MonthlyDOW.wWhichWeek) + " " +
                   DaysText(type.MonthlyDOW.rgfDaysOfTheWeek) + " of " +
                   MonthsText(type.MonthlyDOW.rgfMonths);
        default:
            return {};
    }
}

}  // namespace

std::string TriggerText(const TASK_TRIGGER& trigger) {
    const std::string begin = DateText(trigger.wBeginYear, trigger.wBeginMonth, trigger.wBeginDay);
    switch (trigger.TriggerType) {
        case TASK_TIME_TRIGGER_ONCE:
            return "At " + TimeText(trigger) + " on " + begin;
        case TASK_EVENT_TRIGGER_ON_IDLE:
            return "Run when idle";
        case TASK_EVENT_TRIGGER_AT_SYSTEMSTART:
            return "Run at system startup";
        case TASK_EVENT_TRIGGER_AT_LOGON:
            return "Run at user logon";
        default:
            break;
    }
    const std::string days = DaysOf(trigger);
    if (days.empty()) return "Unknown trigger";
    std::string text = "At " + TimeText(trigger) + " " + days + ", starting " + begin;
    if ((trigger.rgFlags & TASK_TRIGGER_FLAG_HAS_END_DATE) != 0) {
        text += " and ending " + DateText(trigger.wEndYear, trigger.wEndMonth, trigger.wEndDay);
    }
    return text;
}
