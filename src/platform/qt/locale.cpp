#include "platform/qt/locale.h"

#include "hostif/date.h"
#include "hostif/value.h"
#include "text/letters.h"

#include <QDate>
#include <QLocale>
#include <QStringList>

#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace genutil {
namespace {

// What the words of dates mean in one or many languages.
class DateWords {
public:
    void add(const QLocale& locale) {
        Months ofThisOne;
        for (int month = 1; month <= 12; ++month)
            for (const QString& text : textsWith(month, locale))
                for (const std::string& word : wordsOf(text))
                    enter(ofThisOne, word, month);
        // Words that come with more than one month are weekdays and what stands between the parts of a date.
        for (const auto& [word, month] : ofThisOne)
            if (month != severalMonths)
                enter(months_, word, month);
            else
                passedOver_.insert(word);
        for (const QString& half : {locale.amText(), locale.pmText()})
            for (const std::string& word : wordsOf(half))
                passedOver_.insert(word);
    }

    int monthNamed(const std::string& word) const {
        const auto found = months_.find(word);
        return found == months_.end() ? 0 : found->second;
    }
    bool isPassedOver(const std::string& word) const { return passedOver_.contains(word); }

private:
    using Months = std::unordered_map<std::string, int>;
    static constexpr int severalMonths = 0;

    static void enter(Months& months, const std::string& word, int month) {
        const auto [entry, isNew] = months.emplace(word, month);
        if (!isNew && entry->second != month)
            entry->second = severalMonths;
    }

    // The month's names, and whole dates of it: some languages join its name or the weekday's to other words.
    static QStringList textsWith(int month, const QLocale& locale) {
        QStringList texts;
        for (const auto form : {QLocale::LongFormat, QLocale::ShortFormat}) {
            texts << locale.monthName(month, form) << locale.standaloneMonthName(month, form);
            for (int weekday = 1; weekday <= 7; ++weekday)
                texts << locale.dayName(weekday, form) << locale.standaloneDayName(weekday, form);
        }
        for (int day = 1; day <= 7; ++day)
            texts << locale.toString(QDate(2001, month, day), QLocale::LongFormat);
        return texts;
    }

    static std::vector<std::string> wordsOf(const QString& text) {
        std::vector<std::string> words;
        QString word;
        for (const QChar c : text + u' ') {
            if (c.isLetter() || c.isMark() || c.isSurrogate())
                word += c;
            else if (!word.isEmpty())
                words.push_back(genutil::text::folded(std::exchange(word, {}).toStdString()));
        }
        return words;
    }

    Months months_;
    std::unordered_set<std::string> passedOver_;
};

const DateWords& wordsOfAllLanguages() {
    static const DateWords words = [] {
        DateWords all;
        for (const QLocale& locale :
            QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyTerritory))
            all.add(locale);
        return all;
    }();
    return words;
}

DateLocale::Order orderOf(const QString& format) {
    using enum DateLocale::Order;
    const qsizetype day = format.indexOf(u'd'), month = format.indexOf(u'M'), year = format.indexOf(u'y');
    return year < month && year < day ? YearMonthDay : month < day ? MonthDayYear : DayMonthYear;
}

DateLocale dateLocaleOf(const QLocale& locale) {
    DateLocale result;
    result.order = orderOf(locale.dateFormat(QLocale::ShortFormat));
    for (int month = 1; month <= 12; ++month)
        result.shortMonths[static_cast<std::size_t>(month - 1)] =
            locale.monthName(month, QLocale::ShortFormat).toStdString();
    for (int day = 0; day < 7; ++day)
        result.weekdays[static_cast<std::size_t>(day)] =
            locale.dayName(day == 0 ? 7 : day, QLocale::LongFormat).toStdString();
    DateWords words;
    words.add(locale);
    const auto own = std::make_shared<const DateWords>(std::move(words));
    result.monthNamed = [own](const std::string& word) {
        // Two letters are too often a small word of one language and a month of another.
        const bool isOwn = word.size() < 3 || own->monthNamed(word) > 0 || own->isPassedOver(word);
        return (isOwn ? *own : wordsOfAllLanguages()).monthNamed(word);
    };
    result.isPassedOver = [own](const std::string& word) {
        return own->isPassedOver(word) || wordsOfAllLanguages().isPassedOver(word);
    };
    return result;
}

} // namespace

void useSystemLocale() {
    const QLocale system = QLocale::system();
    setNumberLocale({system.decimalPoint().toStdString(), system.groupSeparator().toStdString()});
    setDateLocale(dateLocaleOf(system));
}

} // namespace genutil
