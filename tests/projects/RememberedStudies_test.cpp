#include "projects/RememberedStudies.h"

#include <gtest/gtest.h>

#include "support/Printers.h"

namespace kestrix {
namespace {

TEST(RememberedStudiesTest, OrganisationsGetTheSlotsOneToThreeInOrder) {
  RememberedStudies studies;
  EXPECT_EQ(studies.Remember(" A", 5), 1);
  EXPECT_EQ(studies.Remember(" B", 6), 2);
  EXPECT_EQ(studies.Remember(" C", 7), 3);
  EXPECT_EQ(studies.SlotOf(" B"), 2);
  EXPECT_TRUE(studies.Holds(3, " C", 7));
}

TEST(RememberedStudiesTest, AKnownOrganisationKeepsItsSlotWithTheNewNumber) {
  RememberedStudies studies;
  studies.Remember(" A", 5);
  studies.Remember(" B", 6);
  EXPECT_EQ(studies.Remember(" A", 9), 1);
  EXPECT_TRUE(studies.Holds(1, " A", 9));
  EXPECT_TRUE(studies.Holds(2, " B", 6));
}

TEST(RememberedStudiesTest, AFourthOrganisationIsNotRemembered) {
  RememberedStudies studies;
  for (const char* name : {" A", " B", " C"}) studies.Remember(QString::fromUtf8(name), 0);
  EXPECT_EQ(studies.Remember(" D", 1), 0);
  EXPECT_EQ(studies.SlotOf(" D"), 0);
  EXPECT_EQ(studies.SlotOf(" C"), 3);
}

TEST(RememberedStudiesTest, NamesAreComparedExactly) {
  RememberedStudies studies;
  studies.Remember(" Acme", 0);
  EXPECT_EQ(studies.SlotOf(" ACME"), 0);
  EXPECT_EQ(studies.SlotOf("Acme"), 0);
}

TEST(RememberedStudiesTest, ForgettingFreesTheSlotsAndKeepsTheNumbers) {
  RememberedStudies studies;
  studies.Remember(" A", 5);
  studies.Remember(" B", 6);
  studies.ForgetNames();
  EXPECT_EQ(studies.SlotOf(" A"), 0);
  EXPECT_TRUE(studies.Holds(1, "NULL", 5));
  EXPECT_TRUE(studies.Holds(2, "NULL", 6));
  EXPECT_EQ(studies.Remember(" C", 7), 1);
}

TEST(RememberedStudiesTest, ASlotThatNobodyUsedHasAnEmptyName) {
  const RememberedStudies studies;
  EXPECT_EQ(studies.SlotOf(QString()), 1);
}

TEST(RememberedStudiesTest, SlotsThatDoNotExistHoldNothing) {
  const RememberedStudies studies;
  EXPECT_FALSE(studies.Holds(0, QString(), 0));
  EXPECT_FALSE(studies.Holds(4, QString(), 0));
  EXPECT_FALSE(studies.IsNamed(-1, QString()));
}

}  // namespace
}  // namespace kestrix
