#include <gtest/gtest.h>

#include "platform/Services.h"
#include "support/Printers.h"

namespace kestrix {
namespace {

TEST(JoinPathTest, BackslashesOfTheTailAreFolderBoundaries) {
  EXPECT_EQ(JoinPath("/opt/study", "\\RskAsmtFld\\orgtn.mdb"), "/opt/study/RskAsmtFld/orgtn.mdb");
}

TEST(JoinPathTest, TailWithoutABoundaryGetsOne) {
  EXPECT_EQ(JoinPath("/opt/study", "Prj1"), "/opt/study/Prj1");
}

TEST(JoinPathTest, RootOfADriveGivesNoDoubleSeparator) {
  EXPECT_EQ(JoinPath("/", "\\New Folder"), "/New Folder");
  EXPECT_EQ(JoinPath("/media/stick/", "\\New Folder"), "/media/stick/New Folder");
}

TEST(JoinPathTest, TrailingBoundaryStaysForItSaysThatTheTargetIsAFolder) {
  EXPECT_EQ(JoinPath("/opt/study", "\\RskAsmtFld\\Picfolder\\"),
            "/opt/study/RskAsmtFld/Picfolder/");
}

TEST(JoinPathTest, EmptyTailIsTheFolderItself) {
  EXPECT_EQ(JoinPath("/opt/study", ""), "/opt/study");
}

}  // namespace
}  // namespace kestrix
