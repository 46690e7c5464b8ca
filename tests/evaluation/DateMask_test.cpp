#include "evaluation/DateMask.h"

#include <gtest/gtest.h>

#include "support/Printers.h"

namespace kestrix {
namespace {

struct Reading {
  const char* text;
  QDate date;
};

class DatesThatAreRead : public ::testing::TestWithParam<Reading> {};

TEST_P(DatesThatAreRead, AreReadDayFirst) {
  EXPECT_EQ(DateMask::Read(QString::fromUtf8(GetParam().text)), GetParam().date);
}

INSTANTIATE_TEST_SUITE_P(
    DateMask, DatesThatAreRead,
    ::testing::Values(
        Reading{"15/02/2013", QDate(2013, 2, 15)}, Reading{"1/2/2013", QDate(2013, 2, 1)},
        Reading{"01/12/2013", QDate(2013, 12, 1)}, Reading{"29/02/2012", QDate(2012, 2, 29)},
        Reading{"1-2-2013", QDate(2013, 2, 1)}, Reading{"1.2.2013", QDate(2013, 2, 1)},
        Reading{"1 2 2013", QDate(2013, 2, 1)}, Reading{"1/2/13", QDate(2013, 2, 1)},
        Reading{"1/2/29", QDate(2029, 2, 1)}, Reading{"1/2/30", QDate(1930, 2, 1)},
        Reading{"1 Feb 2013", QDate(2013, 2, 1)}, Reading{"1-SEP-2013", QDate(2013, 9, 1)},
        Reading{"1 may 13", QDate(2013, 5, 1)}, Reading{" 1/2/2013 ", QDate(2013, 2, 1)}));

class TextsThatAreNoDate : public ::testing::TestWithParam<const char*> {};

TEST_P(TextsThatAreNoDate, AreRefused) {
  EXPECT_FALSE(DateMask::IsDate(QString::fromUtf8(GetParam())));
}

INSTANTIATE_TEST_SUITE_P(DateMask, TextsThatAreNoDate,
                         ::testing::Values("", "__/__/____", "31/02/2013", "29/02/2013",
                                           "12/25/2013", "00/01/2013", "01/00/2013", "1/2", "1/2/3",
                                           "1/2/201", "1/2-2013", "15/02/____", "15/02/2013x",
                                           "01/02/0000", "1 Xxx 2013", "2013", "soon"));

TEST(DateMaskTest, ADateIsWrittenWithTwoDigitsForDayAndMonth) {
  EXPECT_EQ(DateMask::Write(QDate(2013, 2, 1)), QStringLiteral("01/02/2013"));
}

TEST(DateMaskTest, ADateSettlesAtOnce) {
  EXPECT_FALSE(DateMask::Settle(QStringLiteral("15/02/2013")).has_value());
  EXPECT_FALSE(DateMask::Settle(QStringLiteral("1/2/2013")).has_value());
}

struct Settling {
  const char* text;
  const char* shown;
  int place;
  int selected_length;
};

class TextsThatSettle : public ::testing::TestWithParam<Settling> {};

TEST_P(TextsThatSettle, SelectTheNextFreePlace) {
  const auto outcome = DateMask::Settle(QString::fromUtf8(GetParam().text));
  ASSERT_TRUE(outcome.has_value());
  EXPECT_EQ(outcome->text, QString::fromUtf8(GetParam().shown));
  EXPECT_EQ(outcome->place, GetParam().place);
  EXPECT_EQ(outcome->selected_length, GetParam().selected_length);
}

INSTANTIATE_TEST_SUITE_P(
    DateMask, TextsThatSettle,
    ::testing::Values(Settling{"", "__/__/____", 0, 1}, Settling{"1", "1_/__/____", 1, 1},
                      Settling{"x", "x_/__/____", 1, 1}, Settling{"15/__/____", "15/__/____", 3, 1},
                      Settling{"15/02/____", "15/02/____", 6, 1},
                      Settling{"15/02/201_", "15/02/201_", 9, 1},
                      Settling{"31/02/2013", "31/02/2013", 10, 0}, Settling{"abc", "abc", 3, 0},
                      Settling{"abcdefghijkl_", "abcdefghijkl_", 10, 0}));

}  // namespace
}  // namespace kestrix
