#include <QProcess>

#include "HelpTest.h"

namespace kestrix::help {
namespace {

class ToolTest : public HelpTest {
 protected:
  void SetUp() override {
    MakeFile(QStringLiteral("m.md"), "# T\n\n## One\n\n![a form](form.png)\n");
  }

  /// Runs the tool on the manual; gives its exit code.
  int Execute(QStringList arguments = {}) {
    if (arguments.isEmpty()) {
      arguments << QStringLiteral("--source") << PathOf(QStringLiteral("m.md"))
                << QStringLiteral("--pictures") << PathOf(QString()) << QStringLiteral("--page")
                << PathOf(QStringLiteral("new/page.htm")) << QStringLiteral("--manual")
                << PathOf(QStringLiteral("new/manual.pdf"));
    }
    QProcess tool;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.insert(QStringLiteral("QT_LOGGING_RULES"), QStringLiteral("default.warning=false"));
    tool.setProcessEnvironment(environment);
    tool.start(QStringLiteral(KESTRIX_HELP_TOOL), arguments);
    EXPECT_TRUE(tool.waitForFinished(60'000));
    said = QString::fromUtf8(tool.readAllStandardError()).trimmed();
    return tool.exitCode();
  }

  [[nodiscard]] bool NothingIsWritten() const {
    return !QFile::exists(PathOf(QStringLiteral("new/page.htm"))) &&
           !QFile::exists(PathOf(QStringLiteral("new/manual.pdf")));
  }

  QString said;
};

TEST_F(ToolTest, BothFilesAreMadeInAFolderThatWasNotThere) {
  MakePicture(QStringLiteral("form.png"));
  EXPECT_EQ(Execute(), 0) << said.toStdString();
  EXPECT_EQ(said, QString());
  EXPECT_TRUE(QFile::exists(PathOf(QStringLiteral("new/page.htm"))));
  EXPECT_TRUE(QFile::exists(PathOf(QStringLiteral("new/manual.pdf"))));
}

TEST_F(ToolTest, MissingPictureEndsItWithASentenceAndNothingIsWritten) {
  EXPECT_EQ(Execute(), 1);
  EXPECT_TRUE(said.endsWith(QStringLiteral("lacks pictures that the manual shows: form.png.")))
      << said.toStdString();
  EXPECT_TRUE(NothingIsWritten());
}

TEST_F(ToolTest, MissingSourceEndsItWithASentence) {
  MakePicture(QStringLiteral("form.png"));
  ASSERT_TRUE(QFile::remove(PathOf(QStringLiteral("m.md"))));
  EXPECT_EQ(Execute(), 1);
  EXPECT_TRUE(said.startsWith(QStringLiteral("kestrix_help: The manual's source")))
      << said.toStdString();
  EXPECT_TRUE(NothingIsWritten());
}

TEST_F(ToolTest, MissingOptionEndsItWithASentence) {
  EXPECT_EQ(Execute({QStringLiteral("--source"), PathOf(QStringLiteral("m.md"))}), 1);
  EXPECT_EQ(said, QStringLiteral("kestrix_help: The option --pictures is missing."));
}

TEST_F(ToolTest, PlaceThatCannotBeWrittenIsTold) {
  MakePicture(QStringLiteral("form.png"));
  MakeFile(QStringLiteral("new"), "in the way");
  EXPECT_EQ(Execute(), 1);
  EXPECT_TRUE(said.contains(QStringLiteral("page.htm can't be written"))) << said.toStdString();
}

}  // namespace
}  // namespace kestrix::help
