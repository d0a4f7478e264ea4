#include "hostif/date.h"

#include "hostif/error.h"
#include "text/letters.h"
#include "text/utf8.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <span>
#include <utility>
#include <vector>

namespace genutil {
namespace {

DateLocale& currentLocale() {
    static DateLocale locale;
    return locale;
}

constexpr std::array<std::string_view, 12> englishMonths{"january", "february", "march", "april", "may",
    "june", "july", "august", "september", "october", "november", "december"};
constexpr std::array<std::string_view, 7> englishWeekdays{
    "monday", "tuesday", "wednesday", "thursday", "friday", "saturday", "sunday"};
constexpr std::array<std::string_view, 5> halvesOfTheDay{"am", "pm", "a", "p", "m"};

// The place of the name in the list, from 1, that the word is or shortens to three letters or more; else 0.
int nameIn(std::span<const std::string_view> names, std::string_view word) {
    const auto found = std::ranges::find_if(
        names, [word](std::string_view name) { return word.size() >= 3 && name.starts_with(word); });
    return found == names.end() ? 0 : static_cast<int>(found - names.begin()) + 1;
}

int monthNamed(const std::string& word) {
    const auto& ofTheUser = dateLocale().monthNamed;
    const int month = ofTheUser ? ofTheUser(word) : 0;
    return month >= 1 && month <= 12 ? month : nameIn(englishMonths, word);
}

bool isPassedOver(const std::string& word) {
    const auto& ofTheUser = dateLocale().isPassedOver;
    return nameIn(englishWeekdays, word) > 0 || std::ranges::count(halvesOfTheDay, word) > 0 ||
           (ofTheUser && ofTheUser(word));
}

constexpr bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// A number, or the name of a month.
struct Piece {
    int value;
    std::size_t digits; // 0 for a name
    std::string word;   // of a name
};

// Takes the pieces from the front of a text.
class Reader {
public:
    explicit Reader(std::string_view text) : rest_(text) {}

    // Nothing when the text holds what no date does.
    std::optional<std::vector<Piece>> pieces() {
        while (skipSeparators(), !rest_.empty())
            if (pieces_.size() == mostPieces || !(isDigit(rest_[0]) ? takeNumber() : takeWord()))
                return std::nullopt;
        return std::move(pieces_);
    }

private:
    static constexpr std::size_t mostPieces = 4; // a weekday that may be a month's name, and the date

    // Beside those of ASCII all characters that are no letters: blanks that do not break, marks of direction.
    static bool isSeparator(char32_t c) {
        constexpr std::u32string_view known = U" \t\r\n/-.,'\u060C"; // the last is the Arabic comma
        return known.find(c) != std::u32string_view::npos || (c >= 0x80 && !text::isWordCharacter(c));
    }

    void skipSeparators() {
        while (!rest_.empty()) {
            const text::DecodedCharacter next = text::decodeUtf8(rest_, 0);
            if (!next.valid || !isSeparator(next.codePoint))
                return;
            rest_.remove_prefix(next.length);
        }
    }

    bool takeWord() {
        std::size_t end = 0;
        while (end < rest_.size() && !isDigit(rest_[end])) {
            const text::DecodedCharacter next = text::decodeUtf8(rest_, end);
            if (!next.valid || isSeparator(next.codePoint) || !text::isWordCharacter(next.codePoint))
                break;
            end += next.length;
        }
        std::string word = text::folded(rest_.substr(0, end));
        rest_.remove_prefix(end);
        const int month = monthNamed(word);
        if (month == 0)
            return end > 0 && isPassedOver(word);
        pieces_.push_back({month, 0, std::move(word)});
        return true;
    }

    // A number of the date, or a whole time of day.
    bool takeNumber() {
        const Piece number = takeDigits();
        if (!rest_.starts_with(':')) {
            pieces_.push_back(number);
            return number.digits <= 4;
        }
        constexpr int lastHour = 23, lastMinute = 59;
        if (std::exchange(hasTime_, true) || number.digits > 2 || number.value > lastHour)
            return false;
        for (int parts = 1; rest_.starts_with(':'); ++parts) {
            rest_.remove_prefix(1);
            const Piece part = takeDigits();
            if (parts > 2 || part.digits == 0 || part.digits > 2 || part.value > lastMinute)
                return false;
        }
        return true;
    }

    // The value of more than four digits does not matter.
    Piece takeDigits() {
        Piece number{0, 0, {}};
        for (; !rest_.empty() && isDigit(rest_[0]); rest_.remove_prefix(1), ++number.digits)
            number.value = number.digits < 4 ? number.value * 10 + (rest_[0] - '0') : number.value;
        return number;
    }

    std::string_view rest_;
    std::vector<Piece> pieces_;
    bool hasTime_ = false;
};

std::int16_t thisYear() {
    const auto today = std::chrono::floor<std::chrono::days>(std::chrono::system_clock::now());
    return static_cast<std::int16_t>(static_cast<int>(std::chrono::year_month_day(today).year()));
}

std::chrono::year_month_day toCalendar(const Date& date) {
    return {std::chrono::year(date.year), std::chrono::month(static_cast<unsigned>(date.month)),
        std::chrono::day(static_cast<unsigned>(date.day))};
}

// The date of the pieces when they stand for what the layout's letters say: d, m, y.
std::optional<Date> dateIn(std::span<const Piece> pieces, std::string_view layout) {
    constexpr int firstYear = 100;
    const bool hasName = std::ranges::count(pieces, 0u, &Piece::digits) > 0;
    Date date{thisYear(), 1, 1};
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        const auto& [value, digits, word] = pieces[i];
        if ((layout[i] == 'm') != (hasName ? digits == 0 : layout[i] == 'm'))
            return std::nullopt;
        if (layout[i] != 'y' && digits > 2)
            return std::nullopt;
        if (layout[i] == 'd')
            date.day = static_cast<std::int8_t>(value);
        else if (layout[i] == 'm')
            date.month = static_cast<std::int8_t>(value);
        else if (digits > 2 && value < firstYear)
            return std::nullopt;
        else
            date.year = static_cast<std::int16_t>(digits > 2   ? value
                                                  : value < 30 ? 2000 + value
                                                               : 1900 + value);
    }
    return toCalendar(date).ok() ? std::optional(date) : std::nullopt;
}

std::span<const std::string_view> layouts(DateLocale::Order order, std::size_t pieces) {
    using Layouts = std::array<std::string_view, 4>;
    static constexpr Layouts whole[] = {
        {"dmy", "mdy", "ymd", "ydm"}, {"mdy", "dmy", "ymd", "ydm"}, {"ymd", "mdy", "dmy", "ydm"}};
    static constexpr Layouts short_[] = {
        {"dm", "md", "my", "ym"}, {"md", "dm", "my", "ym"}, {"md", "dm", "ym", "my"}};
    if (pieces < 2 || pieces > 3)
        return {};
    return (pieces == 3 ? whole : short_)[static_cast<std::size_t>(order)];
}

std::string padded(std::int64_t number, std::size_t digits) {
    const std::string text = std::to_string(number);
    return std::string(digits - std::min(digits, text.size()), '0') + text;
}

constexpr std::chrono::sys_days dayZero =
    std::chrono::year(1899) / std::chrono::month(12) / std::chrono::day(30);

} // namespace

const DateLocale& dateLocale() {
    return currentLocale();
}

void setDateLocale(DateLocale locale) {
    currentLocale() = std::move(locale);
}

std::optional<Date> readDate(std::string_view text) {
    auto pieces = Reader(text).pieces();
    if (!pieces)
        return std::nullopt;
    // A name may be a weekday's as well, as "mar" in Spanish.
    const auto isName = [](const Piece& piece) { return piece.digits == 0; };
    if (pieces->size() > 3 || std::ranges::count_if(*pieces, isName) > 1) {
        const auto weekday = std::ranges::find_if(
            *pieces, [&](const Piece& piece) { return isName(piece) && isPassedOver(piece.word); });
        if (weekday != pieces->end())
            pieces->erase(weekday);
    }
    for (const std::string_view layout : layouts(dateLocale().order, pieces->size()))
        if (const auto date = dateIn(*pieces, layout))
            return date;
    return std::nullopt;
}

std::int32_t dayNumber(const Date& date) {
    return static_cast<std::int32_t>((std::chrono::sys_days(toCalendar(date)) - dayZero).count());
}

std::string dateText(const Date& date) {
    return padded(date.day, 2) + '-' + dateLocale().shortMonths[static_cast<std::size_t>(date.month - 1)] +
           '-' + padded(date.year, 4);
}

namespace {

struct Moment {
    std::chrono::year_month_day date;
    std::int64_t second = 0; // of the day
};

// Days before day 0 count backwards, but the time within a day never does: -1.25 is six o'clock of the day
// before. A time of day is a fraction that may lie a hair below its minute.
Moment momentOf(double days) {
    constexpr double secondsPerDay = 86'400;
    constexpr double mostDays = 4'000'000; // beyond the year 9999, either way
    if (!(std::abs(days) < mostDays))
        throw Error(errors::Overflow, "Day " + std::to_string(days) + " is not a day of the calendar");
    const double whole = std::trunc(days);
    const std::chrono::sys_seconds moment =
        dayZero + std::chrono::seconds(std::llround((whole + std::abs(days - whole)) * secondsPerDay));
    const auto day = std::chrono::floor<std::chrono::days>(moment);
    const std::chrono::year_month_day date(day);
    if (const int year = int(date.year()); year < 1 || year > 9999)
        throw Error(errors::Overflow, "The year " + std::to_string(year) + " is not one of 1 to 9999");
    return {date, (moment - day).count()};
}

} // namespace

std::string momentText(double days, Weekday weekday) {
    const auto [date, second] = momentOf(days);
    const std::string named =
        weekday == Weekday::Named
            ? dateLocale().weekdays[std::chrono::weekday(std::chrono::sys_days(date)).c_encoding()] + ", "
            : "";
    return named + std::to_string(unsigned(date.day())) + ' ' +
           dateLocale().shortMonths[unsigned(date.month()) - 1] + ' ' + padded(int(date.year()), 4) + "  " +
           padded(second / 3600, 2) + ':' + padded(second / 60 % 60, 2);
}

std::string shortMomentText(double days) {
    const auto [date, second] = momentOf(days);
    const std::string day = padded(unsigned(date.day()), 2), month = padded(unsigned(date.month()), 2),
                      year = padded(int(date.year()), 4);
    std::string text = dateLocale().order == DateLocale::Order::DayMonthYear ? day + '/' + month + '/' + year
                       : dateLocale().order == DateLocale::Order::MonthDayYear
                           ? month + '/' + day + '/' + year
                           : year + '-' + month + '-' + day;
    if (second != 0)
        text +=
            ' ' + padded(second / 3600, 2) + ':' + padded(second / 60 % 60, 2) + ':' + padded(second % 60, 2);
    return text;
}

} // namespace genutil
