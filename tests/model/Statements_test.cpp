#include "estimation/model/Statements.h"

#include <gtest/gtest.h>

#include <QString>

namespace kestrix::model {
namespace {

struct Box {
  Parameter parameter;
  int number;
  QStringView text;
  bool enabled;
};

void PrintTo(const Box& box, std::ostream* out) {
  *out << "parameter " << IndexOf(box.parameter) + 1 << " box " << box.number;
}

constexpr auto kSe = Parameter::kSeverity;
constexpr auto kEx = Parameter::kExposure;
constexpr auto kOc = Parameter::kOccurrence;
constexpr auto kAv = Parameter::kAvoidance;

constexpr Box kBoxes[] = {
    {kSe, 1, u" Scratches, bruises that are cured by first aid or similar", true},
    {kSe, 2,
     u" More severe scratches, bruises, stabbing, which require medical attention from "
     u"professionals",
     true},
    {kSe, 3,
     u" Normally irreversible injury; it will be slightly difficult to continue work after healing",
     true},
    {kSe, 4,
     u" Irreversible injury in such a way that it will be very difficult to continue work after "
     u"healing, if possible at all",
     true},
    {kSe, 5, u"", false},
    {kEx, 1, u"", false},
    {kEx, 2, u" Interval between exposure is more than a year", true},
    {kEx, 3, u" Interval between exposure is more than two weeks but less than or equal to a year",
     true},
    {kEx, 4, u" Interval between exposure is more than a day but less than or equal to two weeks",
     true},
    {kEx, 5,
     u" Interval between exposure is more than a hour but less than or equal to a day / interval "
     u"less than or equal to an hour",
     true},
    {kOc, 1,
     u" Negligible: for example, this kind of component never fails so that a hazardous event "
     u"occurs. No possibility of human error",
     true},
    {kOc, 2,
     u" Rarely: for example, it is unlikely this kind of component will fail so that a hazardous "
     u"event occurs. Human error is unlikely.",
     true},
    {kOc, 3,
     u" Possible: for example, this kind of component can fail so that a hazardous event occurs. "
     u"Human error is possible.",
     true},
    {kOc, 4,
     u" Likely: for example, this kind of component will probably fail so that a hazardous event "
     u"occurs. Human error is likely.",
     true},
    {kOc, 5,
     u" Very high: for example, this kind of component is not made for this application. It will "
     u"fail so that a hazardous event occurs. Human behaviour is such that the likelihood of error "
     u"is very high.",
     true},
    {kAv, 1,
     u" Likely: for example, it is likely that contact with moving parts behind an interlocked "
     u"guard will be avoided in most cases should the interlocking fail and the movements "
     u"continue.",
     true},
    {kAv, 2, u" ", false},
    {kAv, 3,
     u" Possible: for example, it is possible to avoid an entanglement hazard where the speed is "
     u"slow and there is sufficient space or otherwise it is easy to avoid moving parts of "
     u"machinery.",
     true},
    {kAv, 4, u"", false},
    {kAv, 5,
     u" Impossible: for example, it is impossible to avoid a sudden appearance of a powerful laser "
     u"beam, or in case of an explosion.",
     true},
};

class StatementBoxTest : public ::testing::TestWithParam<Box> {};

TEST_P(StatementBoxTest, HoldsItsTextAndIsOpenOrNot) {
  const Box& box = GetParam();
  const Statement& statement =
      StatementsOf(box.parameter)[static_cast<std::size_t>(box.number - kFirstStatementBox)];
  EXPECT_EQ(statement.text.toString(), box.text.toString());
  EXPECT_EQ(statement.enabled, box.enabled);
}

INSTANTIATE_TEST_SUITE_P(EveryBox, StatementBoxTest, ::testing::ValuesIn(kBoxes));

TEST(StatementsTest, FiveBoxesServeEveryParameter) {
  EXPECT_EQ(std::size(kBoxes), kParameters.size() * kLastStatementBox);
  for (const Parameter parameter : kParameters) EXPECT_EQ(StatementsOf(parameter).size(), 5U);
}

}  // namespace
}  // namespace kestrix::model
