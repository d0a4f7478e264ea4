#include "hostif/date.h"
#include "platform/qt/locale.h"

#include <gtest/gtest.h>

using namespace genutil;

namespace {

TEST(SystemLocale, ReadsTheDatesOfOtherSurveyorsMachines) {
    const DateLocale earlier = dateLocale();
    useSystemLocale();
    for (const char* const text :
        {"1 f\u00E9vrier 1999", "1. Feb. 1999", "1 \u0444\u0435\u0432\u0440\u0430\u043B\u044F 1999 \u0433.",
            "lunes, 1 de febrero de 1999", "1999\u5E742\u67081\u65E5\u661F\u671F\u4E00",
            "1 \u05D1\u05E4\u05D1\u05E8\u05D5\u05D0\u05E8 1999"})
        EXPECT_EQ(readDate(text), (Date{1999, 2, 1})) << text;
    EXPECT_FALSE(readDate("1 Brumaire 1999"));
    setDateLocale(earlier);
}

} // namespace
