#include "store/StoredDate.h"

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
  EXPECT_EQ(ReadDate(QString::fromUtf8(GetParam().text)), GetParam().date);
}

INSTANTIATE_TEST_SUITE_P(
    StoredDate, DatesThatAreRead,
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
  EXPECT_FALSE(ReadDate(QString::fromUtf8(GetParam())).has_value());
}

INSTANTIATE_TEST_SUITE_P(StoredDate, TextsThatAreNoDate,
                         ::testing::Values("", "__/__/____", "31/02/2013", "29/02/2013",
                                           "12/25/2013", "00/01/2013", "01/00/2013", "1/2", "1/2/3",
                                           "1/2/201", "1/2-2013", "15/02/____", "15/02/2013x",
                                           "01/02/0000", "1 Xxx 2013", "2013", "soon"));

TEST(StoredDateTest, ADateIsWrittenWithTwoDigitsForDayAndMonth) {
  EXPECT_EQ(WriteDate(QDate(2013, 2, 1)), QStringLiteral("01/02/2013"));
}

}  // namespace
}  // namespace kestrix
