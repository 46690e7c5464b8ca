#include "store/ReferenceNumber.h"

#include <gtest/gtest.h>

#include <QLocale>

#include "support/Printers.h"

namespace kestrix {
namespace {

struct Written {
  const char* text;
  const char* number;
};

class NumbersThatAreWritten : public ::testing::TestWithParam<Written> {};

TEST_P(NumbersThatAreWritten, HaveTwoDigitsOnBothSidesOfThePoint) {
  EXPECT_EQ(ReferenceNumber(QString::fromUtf8(GetParam().text)),
            QString::fromUtf8(GetParam().number));
}

INSTANTIATE_TEST_SUITE_P(
    ReferenceNumber, NumbersThatAreWritten,
    ::testing::Values(Written{"0", "00.00"}, Written{"00.0", "00.00"}, Written{"3.5", "03.50"},
                      Written{"12", "12.00"}, Written{"100", "100.00"}, Written{"007", "07.00"},
                      Written{".5", "00.50"}, Written{"5.", "05.00"}, Written{"+1", "01.00"},
                      Written{"-3.5", "-03.50"}, Written{"-0.001", "00.00"},
                      Written{"2.675", "02.68"}, Written{"1.005", "01.01"},
                      Written{"9.999", "10.00"}, Written{"99.995", "100.00"},
                      Written{"12.344", "12.34"}, Written{" 7 ", "07.00"},
                      Written{"123456789012345678901.5", "123456789012345678901.50"}));

class TextsThatAreNoNumber : public ::testing::TestWithParam<const char*> {};

TEST_P(TextsThatAreNoNumber, AreRefused) {
  EXPECT_FALSE(ReferenceNumber(QString::fromUtf8(GetParam())).has_value());
}

INSTANTIATE_TEST_SUITE_P(ReferenceNumber, TextsThatAreNoNumber,
                         ::testing::Values("", ".", "-", "abc", "1a", "1e3", "0x10", "nan", "inf",
                                           "3,5", "1 2", "1.2.3", "--1"));

TEST(ReferenceNumber, TakesTheDecimalSignOfTheDesktop) {
  const QLocale before;
  QLocale::setDefault(QLocale(QLocale::German));
  EXPECT_EQ(ReferenceNumber("3,5"), "03.50");
  EXPECT_EQ(ReferenceNumber("3.5"), "03.50");
  EXPECT_FALSE(ReferenceNumber("1.000,5").has_value());
  QLocale::setDefault(before);
}

}  // namespace
}  // namespace kestrix
