#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace genutil {

// A day of the Gregorian calendar.
struct Date {
    std::int16_t year = 1; // 1 to 9999
    std::int8_t month = 1;
    std::int8_t day = 1;
    friend bool operator==(const Date&, const Date&) = default;
};

// How dates are written for the user, and read. Words are asked for as texts may hold them, folded as
// folded() does, without a point.
struct DateLocale {
    enum class Order { DayMonthYear, MonthDayYear, YearMonthDay };
    Order order = Order::DayMonthYear;
    // "Jan" to "Dec" as dates are shown; a short name may end in a point.
    std::array<std::string, 12> shortMonths{
        "Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    // Sunday to Saturday, in full.
    std::array<std::string, 7> weekdays{
        "Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};
    // The month, 1 to 12, that the word names, short or long; 0 when it names none. English names are known
    // without it.
    std::function<int(const std::string& word)> monthNamed;
    // Whether the word may be one that a date is read without: a weekday, a half of the day. The English ones
    // are known without it.
    std::function<bool(const std::string& word)> isPassedOver;
};

// The running user's date locale. The desktop sets it once at start; the default is English, day first.
const DateLocale& dateLocale();
void setDateLocale(DateLocale locale);

// Reads a date text as users write it: "17/11/2026", "17-Nov-2026", "November 17 2026", "2026-11-17",
// "17.11.26"; a time of day, names of weekdays and the small words of long dates ("17 de noviembre de 2026")
// are passed over. Numbers stand in the locale's order; in one that makes a date where that one does not.
// Years of two digits: 00 to 29 are of this century, 30 to 99 of the last; years before 100 are none. Without
// a year it is one of this year, without a day ("Nov 2026", "11/2026") the first of the month. Nothing for a
// text that is no date.
std::optional<Date> readDate(std::string_view text);

// Days since 30 December 1899; negative before it.
std::int32_t dayNumber(const Date& date);

// "17-Nov-2026".
std::string dateText(const Date& date);

// A moment in days since 30 December 1899: "7 Nov 2026  09:05", or "Saturday, 7 Nov 2026  09:05". Overflow
// for one outside of the years 1 to 9999.
enum class Weekday { LeftOut, Named };
std::string momentText(double days, Weekday weekday = Weekday::LeftOut);
// The same as a date that readDate() reads back: "07/11/2026" in the locale's order, and "07/11/2026
// 09:05:30" where it is not midnight.
std::string shortMomentText(double days);

} // namespace genutil
