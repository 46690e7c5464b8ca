#include "evaluation/DateMask.h"

#include <gtest/gtest.h>

#include "support/Printers.h"

namespace kestrix {
namespace {

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
