#include "text/time_form.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace tarvo {
namespace {

constexpr std::int64_t kSecond = kTimeUnitsPerSecond;
constexpr std::int64_t kHour = 3600 * kSecond;
constexpr std::int64_t kNoTime = INT64_MIN;

std::int64_t time_read(const char* form_text, const char* text, const CivilDate& survey_date = {}, double offset = 0)
{
    const TimeFormReading compiled = compile_time_form(form_text, survey_date, offset);
    EXPECT_TRUE(compiled.form) << form_text << ": " << compiled.refusal;
    const std::optional<WrittenTime> written = read_time(*compiled.form, text);
    RunningDay running;
    return written ? time_of(*compiled.form, *written, running) : kNoTime;
}

TEST(TimeForm, ReadsExactTimes)
{
    constexpr std::int64_t kSeptember28 = 1601251200 * kSecond; // 2020-09-28
    constexpr std::int64_t kLeapDay = 1582934400 * kSecond;     // 2020-02-29
    struct Case {
        const char* form;
        const char* text;
        std::int64_t expected;
    };
    const Case cases[] = {
        {"YYYY/MM/DD hh:mm:ss", "2020/09/28 13:37:53.000", 1601300273 * kSecond},
        {"YYYY/MM/DD hh:mm:ss", "  2020/9/28 \t 9:05:07 ", kSeptember28 + 9 * kHour + 307 * kSecond},
        {"YYYY/MM/DD hh:mm:ss", "2020/09/28T09:05:07", kSeptember28 + 9 * kHour + 307 * kSecond},
        {"YYYY-MM-DDThh:mm:ss", "2020-09-28 09:05:07", kSeptember28 + 9 * kHour + 307 * kSecond},
        {"YYYY/MM/DD hh:mm:ss", "2020/09/2809:05:07", kNoTime},
        {"YYYY/MM/DD hh:mm:ss", "2020/09/28 09:05", kNoTime},
        {"YYYY/MM/DD hh:mm:ss", "2020/09/28 09:05:07 x", kNoTime},
        {"YYYY/MM/DD hh:mm:ss", "2020-09-28 09:05:07", kNoTime},
        {"YYYY/MM/DD hh:mm:ss", "20/09/28 09:05:07", kNoTime},
        {"YYYY/MM/DD hh:mm:ss", "2020/09/28 009:05:07", kNoTime},
        {"YYYY/MM/DD hh:mm:ss", "", kNoTime},
        // Fractions: exact, halves to even, at the smallest unit of the clock alone.
        {"YYYYMMDD ss.hh:mm", "20200928 5.01:02", kSeptember28 + kHour + 125 * kSecond},
        {"hh:mm:ss", "00:00:00.00005", 0},
        {"hh:mm:ss", "00:00:00.00015", 2},
        {"hh:mm:ss", "00:00:00.000050000000000000001", 1},
        {"hh:mm:ss", "00:00:59.99995", 60 * kSecond},
        {"hh:mm:ss", "00:00:5.", 5 * kSecond},
        {"hh:mm:ss", "00:00:.5", kNoTime},
        {"hh:mm:ss", "00:00.5:00", kNoTime},
        {"hhmm", "1314.25", 13 * kHour + 855 * kSecond},
        {"hh", "6.5", 6 * kHour + 1800 * kSecond},
        {"hh:mm:ss DD.MM.YYYY", "01:00:00.25 28.09.2020", kSeptember28 + kHour + 2500},
        // Dates.
        {"DD-MMM-YYYY hh:mm", "28-sEp-2020 00:00", kSeptember28},
        {"DD-MMM-YYYY", "28-Sept-2020", kNoTime},
        {"YYDDD", "20060", kLeapDay},
        {"YY DDD", "21 366", kNoTime},
        {"YY DDD", "20 366", 1609372800 * kSecond},
        {"YY DDD", "20 0", kNoTime},
        {"DD.MM.YY", "29.2.20", kLeapDay},
        {"DD.MM.YY", "29.2.21", kNoTime},
        {"DD.MM.YY", "1.1.80", 315532800 * kSecond},
        {"DD.MM.YY", "1.1.79", 3439756800 * kSecond},
        {"DD.MM.YY", "1.13.20", kNoTime},
        {"DD.MM.YY", "0.12.20", kNoTime},
        {"YYYYMMDD", "20200229", kLeapDay},
        {"YYYYMMDD", "20200928", kSeptember28},
        {"YYYYMMDD", "0000101", kNoTime},
        {"YYYY-MM-DD s", "2020-09-28 86401.5", kSeptember28 + 864015000},
        {"YYYY-MM-DD ms", "2020-09-28 1500", kSeptember28 + 15000},
        // Ranges of the clock.
        {"hh:mm:ss", "24:00:00.000", 24 * kHour},
        {"hh:mm:ss", "24:00:00.001", kNoTime},
        {"hh:mm:ss", "24:01:00", kNoTime},
        {"hh:mm:ss", "25:00:00", kNoTime},
        {"hh:mm:ss", "00:60:00", kNoTime},
        {"hh:mm:ss", "23:59:60.5", 24 * kHour + 5000},
        {"hh:mm:ss", "00:00:61", kNoTime},
        // Zones.
        {"hh:mm:ss", "12:00:00Z", 12 * kHour},
        {"hh:mm:ss", "12:00:00.5 +03:30", 12 * kHour + 5000 - 126000000},
        {"hh:mm:ss", "12:00:00-0100", 13 * kHour},
        {"hh:mm:ss", "12:00:00+01", 11 * kHour},
        {"hh:mm:ss", "12:00:00+1", kNoTime},
        {"hh:mm:ss", "12:00:00+24:00", kNoTime},
        {"hh:mm:ss", "12:00:00+01:60", kNoTime},
        {"hh:mm:ss", "12:00:00ZZ", kNoTime},
        {"DD-MM-YYYY", "28-09-2020", kSeptember28},
        // Counts.
        {"s", "1601300273.00005", 16013002730000},
        {"s", "-1.5e1", -15 * kSecond},
        {"s", "15Z", kNoTime},
        {"s", "1e300", kNoTime},
        {"ms", "60", 600},
        {"ms", "1.25", 12},
        {"ms", "-1", -10},
        {"week sow", "2267 591770.402", 16876381524020}, // 2023-06-24 20:22:50.402, less 18 s
        {"week sow", "1930 18.0", 1483228800 * kSecond}, // the second behind a leap second, and both before it
        {"week sow", "1930 17.0", 1483228800 * kSecond},
        {"week sow", "1930 16.0", 1483228799 * kSecond},
        {"week sow", "0 0", 315964800 * kSecond},
        {"week sow", "2267 604800", kNoTime},
    };
    for (const Case& c : cases) EXPECT_EQ(time_read(c.form, c.text), c.expected) << c.form << " of " << c.text;
}

TEST(TimeForm, WhatIsMissingComesFromTheSurveyDate)
{
    const CivilDate date{2020, 2, 28};
    constexpr std::int64_t kDay = 1582848000 * kSecond;
    EXPECT_EQ(time_read("hh:mm", "01:00", date, -18), kDay + kHour - 18 * kSecond);
    EXPECT_EQ(time_read("s", "3600", date), kDay + kHour);
    EXPECT_EQ(time_read("ms", "3600000", date), kDay + kHour);
    EXPECT_EQ(time_read("DD/MM hh:mm", "29/02 00:00", date), kDay + 24 * kHour);
    EXPECT_EQ(time_read("DD/MM hh:mm", "29/02 00:00", {2021, 1, 1}), kNoTime);
}

TEST(TimeForm, AFallOfMoreThanTwelveHoursBeginsTheNextDay)
{
    struct Case {
        const char* form;
        CivilDate survey_date;
        std::vector<const char*> texts;
        std::vector<double> hours; // since the survey date
    };
    const CivilDate date{2020, 9, 28};
    const Case cases[] = {
        {"hh:mm",
         date,
         {"23:59", "00:00", "23:00", "10:59", "10:58"},
         {23 + 59 / 60.0, 24, 47, 58 + 59 / 60.0, 58 + 58 / 60.0}},
        {"hh:mm", date, {"12:00", "00:00", "12:01", "00:00"}, {12, 0, 12 + 1 / 60.0, 24}},
        {"hh:mm", date, {"24:00", "00:30"}, {24, 24.5}},
        {"hh:mm", date, {"23:30+01:00", "00:30+01:00", "22:00Z"}, {22.5, 23.5, 46}}, // as written, before the zone
        {"s", date, {"86399", "0"}, {86399 / 3600.0, 24}},
        {"s", {}, {"86399", "0"}, {86399 / 3600.0, 0}},
        {"DD hh MMM", date, {"28 23 Sep", "28 00 Sep"}, {23, 0}},
    };
    for (const Case& c : cases) {
        const TimeForm form = *compile_time_form(c.form, c.survey_date).form;
        RunningDay running;
        for (std::size_t line = 0; line < c.texts.size(); ++line) {
            const std::int64_t time = time_of(form, *read_time(form, c.texts[line]), running);
            const std::int64_t since = time - days_since_1970(c.survey_date) * kTimeUnitsPerDay;
            EXPECT_EQ(since, std::llround(c.hours[line] * static_cast<double>(kHour)))
                << c.form << " " << c.texts[line];
        }
    }
}

TEST(TimeForm, RefusesWhatCannotBeATime)
{
    for (const char* form : {"",
                             "--",
                             "hh:mm:ss.sss",
                             "YYYY-MM-DDThh:mm:ssZ",
                             "hh:MM:x",
                             "YYYY",
                             "YYYY-MM hh",
                             "DD hh",
                             "DDD MM",
                             "DD DDD MM",
                             "YYYY YY DD MM",
                             "MM MMM DD",
                             "mm:ss",
                             "hh:ss",
                             "hh s",
                             "hh:mm ms",
                             "week",
                             "sow",
                             "week sow hh",
                             "week sow DD MM",
                             "s ms",
                             "hh hh",
                             "W",
                             "S"}) {
        const TimeFormReading reading = compile_time_form(form);
        EXPECT_FALSE(reading.form) << form;
        EXPECT_FALSE(reading.refusal.empty()) << form;
    }
}

} // namespace
} // namespace tarvo
