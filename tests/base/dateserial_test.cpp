#include "base/dateserial.h"

#include <gtest/gtest.h>

#include <cmath>
#include <ctime>
#include <limits>
#include <random>

#include "base/basesupport.h"

namespace spectrane {
namespace {

struct SerialRow {
  const char* Name;
  double Serial;
  CivilTime Civil;
};

class DateSerialTest : public testing::TestWithParam<SerialRow> {};

TEST_P(DateSerialTest, ToTheSerial) {
  EXPECT_DOUBLE_EQ(SerialFromCivil(GetParam().Civil), GetParam().Serial);
}
TEST_P(DateSerialTest, FromTheSerial) {
  EXPECT_EQ(CivilFromSerial(GetParam().Serial), GetParam().Civil);
}

// Serials of well-known days: 1970-01-01 is 25569, 2000-01-01 is 36526, 1900-03-01 is 61.
const SerialRow kSerialRows[] = {
    {"DayZero", 0.0, {1899, 12, 30}},
    {"DayOne", 1.0, {1899, 12, 31}},
    {"NoLeapDayIn1900", 60.0, {1900, 2, 28}},
    {"March1900", 61.0, {1900, 3, 1}},
    {"UnixDay", 25569.0, {1970, 1, 1}},
    {"LeapDay2000", 36585.0, {2000, 2, 29}},
    {"Noon2000", 36526.5, {2000, 1, 1, 12}},
    {"QuarterOfADay", 36526.25, {2000, 1, 1, 6}},
    {"OneSecond", 36526.0 + 1.0 / 86400.0, {2000, 1, 1, 0, 0, 1}},
    {"OneMillisecond", 36526.0 + 1.0 / 86400000.0, {2000, 1, 1, 0, 0, 0, 1}},
    {"LastMillisecond", 36527.0 - 1.0 / 86400000.0, {2000, 1, 1, 23, 59, 59, 999}},
    {"DayBeforeDayZero", -1.0, {1899, 12, 29}},
    {"EveningBeforeDayZero", -0.25, {1899, 12, 29, 18}},
    {"FirstDay", -657434.0, {100, 1, 1}},
    {"LastDay", 2958465.0, {9999, 12, 31}},
};
INSTANTIATE_TEST_SUITE_P(Rows, DateSerialTest, testing::ValuesIn(kSerialRows), NameOfRow<SerialRow>);

TEST(DateSerial, OutsideTheYearsThereIsNoDate) {
  const double infinity = std::numeric_limits<double>::infinity();
  for (const double serial : {-657435.0, 2958466.0, std::nextafter(2958466.0, 0.0), 1e300, -1e300, infinity,
                              -infinity, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_EQ(CivilFromSerial(serial), std::nullopt) << serial;
    EXPECT_EQ(DateTimeText(serial), "") << serial;
  }
}

TEST(DateSerial, AFaultOfTheLastBitDoesNotChangeTheSecond) {
  const double exact = SerialFromCivil({2024, 5, 17, 10, 30, 15});
  EXPECT_EQ(DateTimeText(std::nextafter(exact, 0.0)), "2024-05-17  10:30:15");
  EXPECT_EQ(DateTimeText(std::nextafter(exact, 1e9)), "2024-05-17  10:30:15");
}

TEST(DateSerial, FieldsBeyondTheirRangeCarryOver) {
  EXPECT_EQ(CivilFromSerial(SerialFromCivil({2023, 2, 29})), (CivilTime{2023, 3, 1}));
  EXPECT_EQ(CivilFromSerial(SerialFromCivil({2023, 1, 1, 0, -1})), (CivilTime{2022, 12, 31, 23, 59}));
}

TEST(DateSerial, EveryMillisecondComesBack) {
  std::mt19937 random(7);
  for (int i = 0; i < 20000; ++i) {
    const CivilTime civil{static_cast<int>(1900 + random() % 300), static_cast<int>(1 + random() % 12),
                          static_cast<int>(1 + random() % 28),     static_cast<int>(random() % 24),
                          static_cast<int>(random() % 60),         static_cast<int>(random() % 60),
                          static_cast<int>(random() % 1000)};
    ASSERT_EQ(CivilFromSerial(SerialFromCivil(civil)), civil) << DateTimeText(SerialFromCivil(civil));
  }
}

TEST(DateSerial, TheTextHasTwoBlanksAndTwoDigitFields) {
  EXPECT_EQ(DateTimeText(36526.5), "2000-01-01  12:00:00");
  EXPECT_EQ(DateTimeText(SerialFromCivil({2024, 11, 9, 3, 4, 5, 999})), "2024-11-09  03:04:05");
  EXPECT_EQ(DateTimeText(-657434.0), "0100-01-01  00:00:00");
}

TEST(DateSerial, NowIsTheLocalWallClock) {
  const std::time_t before = std::time(nullptr);
  const std::optional<CivilTime> civil = CivilFromSerial(Now());
  const std::time_t after = std::time(nullptr);
  ASSERT_TRUE(civil);
  std::tm fields{};
  fields.tm_year = civil->Year - 1900;
  fields.tm_mon = civil->Month - 1;
  fields.tm_mday = civil->Day;
  fields.tm_hour = civil->Hour;
  fields.tm_min = civil->Minute;
  fields.tm_sec = civil->Second;
  fields.tm_isdst = -1;
  const std::time_t seen = std::mktime(&fields);
  EXPECT_GE(seen, before);
  EXPECT_LE(seen, after + 1);
}

}  // namespace
}  // namespace spectrane
