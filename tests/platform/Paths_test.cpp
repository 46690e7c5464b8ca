#include <gtest/gtest.h>

#include "platform/Services.h"
#include "support/Printers.h"

namespace kestrix {
namespace {

TEST(JoinPathTest, BackslashesOfTheTailAreFolderBoundariesOfWhichThereIsOneInBetween) {
  EXPECT_EQ(JoinPath("/opt/study", "\\RskAsmtFld\\orgtn.mdb"), "/opt/study/RskAsmtFld/orgtn.mdb");
  EXPECT_EQ(JoinPath("/opt/study", "Prj1"), "/opt/study/Prj1");
  EXPECT_EQ(JoinPath("/", "\\New Folder"), "/New Folder");
  EXPECT_EQ(JoinPath("/media/stick/", "\\New Folder"), "/media/stick/New Folder");
  EXPECT_EQ(JoinPath("/opt/study", "\\RskAsmtFld\\Picfolder\\"), "/opt/study/RskAsmtFld/Picfolder/")
      << "a boundary at the end says that the target is a folder";
  EXPECT_EQ(JoinPath("/opt/study", ""), "/opt/study");
}

}  // namespace
}  // namespace kestrix
