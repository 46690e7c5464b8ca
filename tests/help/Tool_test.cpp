#include <QProcess>

#include "HelpTest.h"

namespace kestrix::help {
namespace {

class ToolTest : public HelpTest {
 protected:
  void SetUp() override { MakeFile("m.md", "# T\n\n## One\n\n![a form](form.png)\n"); }

  /// Runs the tool on the manual; gives its exit code.
  int Execute(QStringList arguments = {}) {
    if (arguments.isEmpty()) {
      arguments << QStringLiteral("--source") << PathOf("m.md") << QStringLiteral("--pictures")
                << PathOf(QString()) << QStringLiteral("--page") << PathOf("new/page.htm")
                << QStringLiteral("--manual") << PathOf("new/manual.pdf");
    }
    QProcess tool;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    environment.insert("QT_LOGGING_RULES", "default.warning=false");
    tool.setProcessEnvironment(environment);
    tool.start(QStringLiteral(KESTRIX_HELP_TOOL), arguments);
    EXPECT_TRUE(tool.waitForFinished(60'000));
    said = QString::fromUtf8(tool.readAllStandardError()).trimmed();
    return tool.exitCode();
  }

  [[nodiscard]] bool NothingIsWritten() const {
    return !QFile::exists(PathOf("new/page.htm")) && !QFile::exists(PathOf("new/manual.pdf"));
  }

  QString said;
};

TEST_F(ToolTest, BothFilesAreMadeInAFolderThatWasNotThere) {
  MakePicture("form.png");
  EXPECT_EQ(Execute(), 0) << said.toStdString();
  EXPECT_EQ(said, QString());
  EXPECT_TRUE(QFile::exists(PathOf("new/page.htm")));
  EXPECT_TRUE(QFile::exists(PathOf("new/manual.pdf")));
}

TEST_F(ToolTest, MissingPictureSourceOrOptionEndsItWithASentenceAndNothingIsWritten) {
  EXPECT_EQ(Execute(), 1);
  EXPECT_TRUE(said.endsWith("lacks pictures that the manual shows: form.png."))
      << said.toStdString();
  EXPECT_TRUE(NothingIsWritten());
  MakePicture("form.png");
  ASSERT_TRUE(QFile::remove(PathOf("m.md")));
  EXPECT_EQ(Execute(), 1);
  EXPECT_TRUE(said.startsWith("kestrix_help: The manual's source")) << said.toStdString();
  EXPECT_TRUE(NothingIsWritten());
  EXPECT_EQ(Execute({"--source", PathOf("m.md")}), 1);
  EXPECT_EQ(said, "kestrix_help: The option --pictures is missing.");
}

TEST_F(ToolTest, PlaceThatCannotBeWrittenIsTold) {
  MakePicture("form.png");
  MakeFile("new", "in the way");
  EXPECT_EQ(Execute(), 1);
  EXPECT_TRUE(said.contains("page.htm can't be written")) << said.toStdString();
}

}  // namespace
}  // namespace kestrix::help
