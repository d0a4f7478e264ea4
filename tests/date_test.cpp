#include "hostif/date.h"
#include "hostif/error.h"

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

using namespace genutil;

namespace {

using Order = DateLocale::Order;

// As a user of French, Spanish and Japanese has it.
DateLocale localeOf(Order order) {
    DateLocale locale;
    locale.order = order;
    locale.shortMonths[1] = "f\u00E9vr.";
    locale.monthNamed = [](const std::string& word) {
        return word == "f\u00E9vrier" || word == "f\u00E9vr" ? 2 : word == "mar" ? 3 : 0;
    };
    locale.isPassedOver = [](const std::string& word) {
        return word == "mar" || word == "\u5E74" || word == "\u6708" || word == "\u65E5";
    };
    return locale;
}

TEST(Dates, AreReadAsUsersWriteThem) {
    const struct {
        Order order;
        const char *text, *read;
    } cases[] = {{Order::DayMonthYear, "17/11/2026", "17-Nov-2026"},
        {Order::DayMonthYear, "5/6/2026", "05-Jun-2026"}, {Order::MonthDayYear, "5/6/2026", "06-May-2026"},
        {Order::YearMonthDay, "5/6/07", "07-Jun-2005"}, {Order::DayMonthYear, "12/13/2020", "13-Dec-2020"},
        {Order::MonthDayYear, "13.12.2020", "13-Dec-2020"}, {Order::YearMonthDay, "17.11.26", "26-Nov-2017"},
        {Order::DayMonthYear, "2026-11-17", "17-Nov-2026"},
        {Order::MonthDayYear, "2026/17/11", "17-Nov-2026"}, {Order::DayMonthYear, "17-NOV-29", "17-Nov-2029"},
        {Order::DayMonthYear, "1 sept. 30", "01-Sep-1930"},
        {Order::DayMonthYear, "November 17, 2026", "17-Nov-2026"},
        {Order::YearMonthDay, "2 November '99", "02-Nov-1999"},
        {Order::MonthDayYear, "17November2026", "17-Nov-2026"},
        {Order::DayMonthYear, "29 Feb 2024", "29-f\u00E9vr.-2024"},
        {Order::DayMonthYear, "29-f\u00E9vr.-2024", "29-f\u00E9vr.-2024"},
        {Order::DayMonthYear, "1\u00A0F\u00C9VRIER 999", "01-f\u00E9vr.-0999"},
        {Order::DayMonthYear, "Nov 2026", "01-Nov-2026"}, {Order::MonthDayYear, "11/2026", "01-Nov-2026"},
        {Order::DayMonthYear, "Tue 17 Nov 2026", "17-Nov-2026"},
        {Order::DayMonthYear, "mar 17 nov 2026", "17-Nov-2026"},
        {Order::DayMonthYear, "mar. 17/11/2026", "17-Nov-2026"},
        {Order::DayMonthYear, "17 mar 2026", "17-Mar-2026"},
        {Order::YearMonthDay, "2026\u5E7411\u670817\u65E5", "17-Nov-2026"},
        {Order::MonthDayYear, "11/17/2026 9:05:59 PM", "17-Nov-2026"},
        {Order::DayMonthYear, "21:05 17/11/2026", "17-Nov-2026"}};
    for (const auto& each : cases) {
        setDateLocale(localeOf(each.order));
        const auto date = readDate(each.text);
        EXPECT_EQ(date ? dateText(*date) : "none", each.read) << each.text;
    }
    EXPECT_EQ(readDate("17 Nov")->month, 11) << "of this year";
    for (const char* const none : {"", " / ", "31/04/2026", "29 Feb 2023", "31 Nov 31 2026", "17", "Nov",
             "9:05", "1/2/3/4", "1 Nov Dec 2026", "17 Brumaire 2026", "17/11/20266", "17/11/099", "0/1/2026",
             "1/0/2026", "99999999999999999999/1/2026", "17%11%2026", "17/11/2026 24:00", "17/11/2026 9:60",
             "17/11/2026 9:", "17/11/2026 1:2:3:4", "1/1/2026 9:05 9:06", "\xFF", "17 Nov 2026\xC3"})
        EXPECT_FALSE(readDate(none)) << none;
    setDateLocale({});
}

TEST(Dates, HaveTheNumberOfTheirDay) {
    const std::pair<Date, std::int32_t> cases[] = {{{1899, 12, 30}, 0}, {{1899, 12, 29}, -1},
        {{1000, 1, 1}, -328716}, {{2026, 11, 17}, 46343}, {{9999, 12, 31}, 2958465}};
    for (const auto& [date, number] : cases)
        EXPECT_EQ(dayNumber(date), number) << dateText(date);
}

TEST(Moments, AreWrittenToTheMinuteThatTheyAreIn) {
    const std::tuple<double, const char*, const char*> cases[] = {
        {0, "30 Dec 1899  00:00", "Saturday, 30 Dec 1899  00:00"},
        {46000 + 9.0 / 24 + 5.0 / 1440, "9 Dec 2025  09:05", "Tuesday, 9 Dec 2025  09:05"},
        {46000.999999, "10 Dec 2025  00:00", "Wednesday, 10 Dec 2025  00:00"},
        {-1.25, "29 Dec 1899  06:00", "Friday, 29 Dec 1899  06:00"}, // as automation dates count
    };
    for (const auto& [days, text, withWeekday] : cases) {
        EXPECT_EQ(momentText(days), text);
        EXPECT_EQ(momentText(days, Weekday::Named), withWeekday);
    }
    for (const double none : {1e300, -700'000.0, 2'958'466.0, std::nan("")})
        EXPECT_THROW(momentText(none), Error) << none;
}

} // namespace
