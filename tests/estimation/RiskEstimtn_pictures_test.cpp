// The two pictures of a task: found at the load, chosen, cancelled, cleared, and what goes wrong.
#include <gmock/gmock.h>

#include <QFile>
#include <QImageReader>
#include <QImageWriter>

#include "estimation/EstimationTest.h"
#include "support/Files.h"
#include "support/RunAsNobody.h"

namespace kestrix {
namespace {

using ::testing::IsEmpty;

/// One of the two pictures, for tests that hold for both.
struct Side {
  const char* name;
  const char* box;
  const char* button;
  const char* field;
  const char* other_box;
  const char* other_field;

  friend void PrintTo(const Side& side, std::ostream* out) { *out << side.name; }
};
const Side kBefore{"Before",       "ImgBfore", "ImgSltdDwgBfr",
                   "PicBfrRcmdtn", "ImgAfter", "PicAftrRcmdtn"};
const Side kAfter{"After",         "ImgAfter", "ImgSltdDwgAfter",
                  "PicAftrRcmdtn", "ImgBfore", "PicBfrRcmdtn"};

class RiskEstimtnPicturesTest : public EstimationTest {
 protected:
  /// A picture of one colour, outside of the installation.
  QString GivenPicture(const QString& name, const QColor& colour) {
    return Paint(installation.Outside(name), colour);
  }
  /// The same in the picture folder of the organisation.
  QString GivenStoredPicture(const QString& name, const QColor& colour) {
    return Paint(InFolder(name), colour);
  }
  static QString Paint(const QString& path, const QColor& colour) {
    QImage image(80, 60, QImage::Format_RGB32);
    image.fill(colour);
    // Bitmaps keep their colours exactly; what a file is, its content tells.
    EXPECT_TRUE(image.save(path, "bmp"));
    return path;
  }
  /// A picture that is too large to be read at a glance.
  static QString GivenLarge(const QString& path, const QColor& colour) {
    QImage image(3000, 2000, QImage::Format_RGB32);
    image.fill(colour);
    EXPECT_TRUE(image.save(path, "png"));
    return path;
  }
  /// One that breaks off in the middle.
  static QString GivenLargeDamaged(const QString& path) {
    GivenLarge(path, Qt::red);
    QFile file(path);
    EXPECT_TRUE(file.resize(file.size() / 2));
    return path;
  }
  static QString GivenText(const QString& path) {
    WriteFile(path, "This is a letter, not a picture.");
    return path;
  }
  /// The form on a task with the picture "press.bmp", which is red.
  void OpenOnPress(const Side& side) {
    GivenStoredPicture("press.bmp", Qt::red);
    OpenOn({{side.field, "press.bmp"}});
  }
  [[nodiscard]] QString InFolder(const QString& name) const {
    return installation.PictureFolder(kStudy) + '/' + name;
  }
  [[nodiscard]] QString DefaultPicture() const {
    return installation.Path("RskAsmtFld/NoPicSlted.jpg");
  }
  [[nodiscard]] QStringList FilesInFolder() const {
    return QDir(installation.PictureFolder(kStudy)).entryList(QDir::Files, QDir::Name);
  }

  void ExpectShows(const QString& box, const QColor& colour) {
    ASSERT_TRUE(ShowsPicture(box)) << box.toStdString();
    EXPECT_EQ(MiddleOf(box), colour) << box.toStdString();
  }
  void ExpectShowsDefault(const QString& box) {
    ASSERT_TRUE(ShowsPicture(box)) << box.toStdString();
    const QImage shown = Control<QLabel>(box).pixmap(Qt::ReturnByValue).toImage();
    const QImage expected =
        QImage(DefaultPicture())
            .scaled(shown.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    for (const QPoint share : {QPoint(5, 5), QPoint(50, 50), QPoint(95, 95)}) {
      const QPoint place(shown.width() * share.x() / 100, shown.height() * share.y() / 100);
      const QColor one = shown.pixelColor(place);
      const QColor other = expected.pixelColor(place);
      EXPECT_NEAR(one.red(), other.red(), 16) << box.toStdString();
      EXPECT_NEAR(one.green(), other.green(), 16) << box.toStdString();
      EXPECT_NEAR(one.blue(), other.blue(), 16) << box.toStdString();
    }
  }
  void Choose(const QString& button, const QString& path) {
    desk.dialogs.ChooseToOpen(path);
    Click(button);
  }
  void ExpectCopyFailed() {
    desk.messages.ExpectTell(
        Icon::kInformation, "BELTROVAN",
        "Failed to copy picture file. Seek Administrator approval for writing. "
        "Unable to continue.");
  }
  void Cancel(const QString& button) { Choose(button, QString()); }
};

class EitherPictureTest : public RiskEstimtnPicturesTest,
                          public ::testing::WithParamInterface<Side> {
 protected:
  [[nodiscard]] static const Side& side() { return GetParam(); }
};

INSTANTIATE_TEST_SUITE_P(Pictures, EitherPictureTest, ::testing::Values(kBefore, kAfter),
                         [](const auto& side) { return std::string(side.param.name); });

TEST_P(EitherPictureTest, StoredPictureIsShown) {
  OpenOnPress(side());
  ExpectShows(side().box, Qt::red);
  ExpectShowsDefault(side().other_box);
  EXPECT_EQ(Saved(side().field), "press.bmp");
}

TEST_P(EitherPictureTest,
       PictureThatHasGoneAnEmptyNameAndTheWholePathOfAClearedOneBecomeTheDefault) {
  for (const QString& name : {QStringLiteral("gone.jpg"), QString(), DefaultPicture()}) {
    Exec(Study(), "DELETE FROM Risk_records");
    OpenOn({{side().field, name}});
    ExpectShowsDefault(side().box);
    EXPECT_EQ(Saved(side().field), "NoPicSlted.jpg") << name.toStdString();
  }
}

TEST_F(RiskEstimtnPicturesTest, UnreadableBeforePictureEndsTheLoadWithoutAWord) {
  GivenText(InFolder("letter.jpg"));
  GivenStoredPicture("after.bmp", Qt::blue);
  OpenOn({{"PicBfrRcmdtn", "letter.jpg"}, {"PicAftrRcmdtn", "after.bmp"}});
  EXPECT_FALSE(ShowsPicture("ImgBfore"));
  EXPECT_FALSE(ShowsPicture("ImgAfter")) << "not reached";
  EXPECT_EQ(TipOf("RskBfrAftrChk"), "");
  EXPECT_EQ(TipOf("RsltDsplRiskLbl"), "");
  EXPECT_THAT(desk.messages.Shown(), IsEmpty());
  EXPECT_EQ(Saved("PicBfrRcmdtn"), "letter.jpg");
  EXPECT_EQ(FocusName(), "SevertyCbo") << "the form is of use all the same";
  Pick("SevertyCbo", "None.");
  EXPECT_EQ(Saved("SevertyCbo"), "None.");
}

TEST_F(RiskEstimtnPicturesTest,
       MissingAfterPictureBehindAnUnreadableBeforePictureShowsTheDefaultOnly) {
  GivenText(InFolder("letter.jpg"));
  OpenOn({{"PicBfrRcmdtn", "letter.jpg"}, {"PicAftrRcmdtn", "gone.jpg"}});
  EXPECT_FALSE(ShowsPicture("ImgBfore"));
  ExpectShowsDefault("ImgAfter");
  EXPECT_EQ(Saved("PicAftrRcmdtn"), "gone.jpg") << "its name is left as it is";
}

TEST_F(RiskEstimtnPicturesTest, UnreadableAfterPictureLeavesTheBeforePicture) {
  GivenText(InFolder("letter.jpg"));
  GivenStoredPicture("before.bmp", Qt::green);
  OpenOn({{"PicBfrRcmdtn", "before.bmp"}, {"PicAftrRcmdtn", "letter.jpg"}});
  ExpectShows("ImgBfore", Qt::green);
  EXPECT_FALSE(ShowsPicture("ImgAfter"));
  EXPECT_EQ(TipOf("RskBfrAftrChk"), "");
}

TEST_F(RiskEstimtnPicturesTest, MissingDefaultPictureLeavesTheBoxesClearWithoutAWord) {
  ASSERT_TRUE(QFile::remove(DefaultPicture()));
  OpenOn(Levels({"None.", "N.A.", "N.A.", "N.A."}));
  EXPECT_FALSE(ShowsPicture("ImgBfore"));
  EXPECT_FALSE(ShowsPicture("ImgAfter"));
  EXPECT_THAT(desk.messages.Shown(), IsEmpty());
  EXPECT_EQ(LitLabels(), QStringList{"RILbl0"});
}

TEST_F(RiskEstimtnPicturesTest, MissingFoldersAreMadeAtTheLoad) {
  ASSERT_TRUE(QDir(installation.Path("RskAsmtFld/Picfolder")).removeRecursively());
  OpenOn({});
  EXPECT_TRUE(QDir(installation.PictureFolder(kStudy)).exists());
  ExpectShowsDefault("ImgBfore");
}

TEST_F(RiskEstimtnPicturesTest, FolderThatCannotBeMadeEndsTheLoadBehindTheReplayedPath) {
  ASSERT_TRUE(QDir(installation.PictureFolder(kStudy)).removeRecursively());
  desk.files.FailAlways(FileAction::kCreateFolder, "Prj7", failure::kPermissionDenied);
  Fields fields = Levels({"None.", "N.A.", "N.A.", "N.A."});
  fields["1Chk_OptnSltd"] = 3;
  OpenOn(fields);
  EXPECT_EQ(LitLabels(), QStringList{"RILbl0"});
  EXPECT_EQ(TextOf("SevertyCbo"), "None.");
  EXPECT_EQ(TextOf("SerChkStd"),
            "Severty : Normally irreversible injury; it will be slightly "
            "difficult to continue work after healing")
      << "by the first focus, which checks the stored box";
  EXPECT_EQ(TipOf("RskBfrAftrChk"), "");
  ExpectShowsDefault("ImgBfore");
  ExpectShowsDefault("ImgAfter");
  EXPECT_THAT(desk.messages.Shown(), IsEmpty());
}

TEST_F(RiskEstimtnPicturesTest, CommandsAndBoxesSayWhatTheyDo) {
  OpenOn({});
  EXPECT_EQ(TextOf("ImgSltdDwgBfr"), "Select Picture/Drawing before recommendations");
  EXPECT_EQ(TextOf("ImgSltdDwgAfter"), "Select Picture/Drawing after recommendations");
  EXPECT_EQ(TipOf("ImgBfore"), "Double click to clear drawing.");
  EXPECT_EQ(TipOf("ImgAfter"), "Double click to clear drawing.");
}

TEST_P(EitherPictureTest, ChosenPictureIsCopiedShownAndNamedInTheRow) {
  const QString source = GivenPicture("press.bmp", Qt::red);
  OpenOn({});
  Choose(side().button, source);
  EXPECT_EQ(FilesInFolder(), QStringList{"press.bmp"});
  EXPECT_TRUE(QFile::exists(source));
  ExpectShows(side().box, Qt::red);
  ExpectShowsDefault(side().other_box);
  EXPECT_EQ(dialog.FileName, "");
  EXPECT_EQ(RowInFile()[side().field], "NoPicSlted.jpg") << "saved with the task, not before";
  EXPECT_EQ(Saved(side().field), "press.bmp");
  EXPECT_EQ(Saved(side().other_field), "NoPicSlted.jpg");
  // Another one replaces it and leaves its file.
  Choose(side().button, GivenPicture("two.bmp", Qt::blue));
  ExpectShows(side().box, Qt::blue);
  EXPECT_EQ(Saved(side().field), "two.bmp");
  EXPECT_EQ(FilesInFolder(), QStringList({"press.bmp", "two.bmp"}));
}

TEST_P(EitherPictureTest, DialogAsksForPicturesAndItsCancelShowsTheDefault) {
  OpenOn({});
  dialog.FileName = "left over";
  dialog.FilterIndex = 3;
  Cancel(side().button);
  ASSERT_EQ(desk.dialogs.Requests().size(), 1);
  const FileDialogRequest& request = desk.dialogs.Requests()[0].request;
  EXPECT_EQ(request.title, "BELTROVAN : Select Pictures/Drawing Files");
  EXPECT_EQ(request.filter,
            "All Picture Files|*.bmp;*.jpg;*.gif|JPEG (*.jpg)|*.jpg|Bitmap (*.bmp)|*.bmp|GIF "
            "(*.gif)|*.gif|");
  EXPECT_EQ(request.filter_index, 1);
  EXPECT_EQ(request.file_name, "");
  // A task without a picture shows the default.
  ExpectShowsDefault(side().box);
  EXPECT_EQ(Saved(side().field), "NoPicSlted.jpg");
  EXPECT_THAT(FilesInFolder(), IsEmpty());
}

TEST_P(EitherPictureTest, PictureOfTheSameNameReplacesThatOfAnotherTaskWithoutAWord) {
  GivenStoredPicture("press.bmp", Qt::red);
  OpenOn({{side().other_field, "press.bmp"}});
  ExpectShows(side().other_box, Qt::red);
  Choose(side().button, GivenPicture("press.bmp", Qt::blue));
  ExpectShows(side().box, Qt::blue);
  EXPECT_EQ(FilesInFolder(), QStringList{"press.bmp"});
  EXPECT_EQ(QImage(InFolder("press.bmp")).pixelColor(5, 5), QColor(Qt::blue));
  EXPECT_THAT(desk.messages.Shown(), IsEmpty());
}

TEST_P(EitherPictureTest, ChosenFileThatIsNoPictureLeavesTheBoxClearAndIsNamedAllTheSame) {
  OpenOn({});
  Choose(side().button, GivenText(installation.Outside("letter.jpg")));
  EXPECT_FALSE(ShowsPicture(side().box));
  EXPECT_EQ(Saved(side().field), "letter.jpg");
  EXPECT_EQ(FilesInFolder(), QStringList{"letter.jpg"});
  EXPECT_THAT(desk.messages.Shown(), IsEmpty());
}

TEST_P(EitherPictureTest, UnreadableFileOfTheDefaultNameGivesWayToTheDefaultPicture) {
  OpenOn({});
  Choose(side().button, GivenText(installation.Outside("NoPicSlted.jpg")));
  ExpectShowsDefault(side().box);
  EXPECT_EQ(Saved(side().field), "NoPicSlted.jpg");
  EXPECT_THAT(FilesInFolder(), IsEmpty());
}

TEST_P(EitherPictureTest, CopyThatIsRefusedOrNotThereAfterwardsIsToldAndChangesNothing) {
  const QString source = GivenPicture("new.bmp", Qt::blue);
  GivenStoredPicture("old.bmp", Qt::red);
  for (const QString& stored : {QStringLiteral("old.bmp"), QStringLiteral("NoPicSlted.jpg")}) {
    for (const int number : {failure::kPermissionDenied, failure::kDiskFull, 0}) {
      OpenOn({{side().field, stored}});
      if (number != 0) {
        desk.files.FailNext(FileAction::kCopyFile, "new.bmp", number);
      } else {
        desk.files.PretendMissing("Prj7/new.bmp");
      }
      ExpectCopyFailed();
      Choose(side().button, source);
      if (stored == "old.bmp") {
        ExpectShows(side().box, Qt::red);
      } else {
        ExpectShowsDefault(side().box);
      }
      EXPECT_EQ(Saved(side().field), stored);
      desk.files.Heal();
      QFile::remove(InFolder("new.bmp"));
      Exec(Study(), "DELETE FROM Risk_records");
    }
  }
}

// As on a share where the engineer may look and not write.
TEST_P(EitherPictureTest, WriteProtectedFolderKeepsWhatIsThereAndNamesNothingElse) {
  KESTRIX_SKIP_WITHOUT_NOBODY();
  const QString source = GivenPicture("new.bmp", Qt::blue);
  for (const QString& stored : {QStringLiteral("old.bmp"), QStringLiteral("NoPicSlted.jpg")}) {
    GivenStoredPicture("old.bmp", Qt::red);
    GivenTask({{side().field, stored}});
    GiveToNobody(QFileInfo(installation.Folder()).path());
    const auto seen = RunAsNobody([&] {
      const QString folder = installation.PictureFolder(kStudy);
      QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner);
      OpenForm();
      ExpectCopyFailed();
      Choose(side().button, source);
      const bool shows_red = ShowsPicture(side().box) && MiddleOf(side().box) == QColor(Qt::red);
      const bool shows_default = ShowsPicture(side().box) && !shows_red;
      Click("clsfrm");
      QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
      return QStringList{Saved(side().field), FilesInFolder().join(u','),
                         shows_red       ? "red"
                         : shows_default ? "default"
                                         : "clear",
                         QString::number(desk.messages.Shown().size())}
          .join(u' ');
    });
    const bool has_picture = stored == "old.bmp";
    EXPECT_EQ(seen.value_or("died"),
              has_picture ? "old.bmp old.bmp red 1" : "NoPicSlted.jpg old.bmp default 1");
    EXPECT_EQ(QImage(InFolder("old.bmp")).pixelColor(5, 5), QColor(Qt::red));
    EXPECT_TRUE(QFile::exists(source));
    Exec(Study(), "DELETE FROM Risk_records");
  }
}

// A picture that may not be replaced is not lost by the attempt.
TEST_P(EitherPictureTest, PictureOfTheSameNameInAWriteProtectedFolderStays) {
  KESTRIX_SKIP_WITHOUT_NOBODY();
  const QString source = GivenPicture("press.bmp", Qt::blue);
  GivenStoredPicture("press.bmp", Qt::red);
  GivenTask({{side().other_field, "press.bmp"}});
  GiveToNobody(QFileInfo(installation.Folder()).path());
  const auto seen = RunAsNobody([&] {
    const QString folder = installation.PictureFolder(kStudy);
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner);
    ExpectCopyFailed();
    OpenForm();
    Choose(side().button, source);
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return QStringLiteral("%1, %2 box, %3 to come")
        .arg(Saved(side().field))
        .arg(desk.messages.Shown().size())
        .arg(desk.messages.Waiting());
  });
  EXPECT_EQ(seen.value_or("died"), "NoPicSlted.jpg, 1 box, 0 to come");
  EXPECT_EQ(QImage(InFolder("press.bmp")).pixelColor(5, 5), QColor(Qt::red));
}

TEST_P(EitherPictureTest, PictureOfTheFolderItselfIsRefusedAndTakenAwayFromATaskWithoutOne) {
  const QString source = GivenStoredPicture("press.bmp", Qt::red);
  OpenOn({});
  Choose(side().button, source);
  ExpectShowsDefault(side().box);
  EXPECT_EQ(Saved(side().field), "NoPicSlted.jpg");
  EXPECT_THAT(FilesInFolder(), IsEmpty()) << "a copy that failed is deleted, whatever it was";
}

TEST_P(EitherPictureTest, PictureOfTheFolderThatAnyTaskOfTheStudyNamesIsNotTakenAway) {
  const QString source = GivenStoredPicture("the press's.bmp", Qt::red);
  OpenOn({});
  installation.GivenTask(
      kStudy, {{"Project_Number", "P-2"}, {side().field, QStringLiteral("the press's.bmp")}});
  Choose(side().button, source);
  ExpectShowsDefault(side().box);
  EXPECT_EQ(Saved(side().field), "NoPicSlted.jpg");
  EXPECT_EQ(FilesInFolder(), QStringList{"the press's.bmp"});
}

TEST_P(EitherPictureTest, PictureThatTheOtherStageWasGivenIsNotTakenAway) {
  OpenOn({});
  SetFields({{side().other_field, "press.bmp"}});
  Choose(side().button, GivenStoredPicture("press.bmp", Qt::red));
  EXPECT_EQ(FilesInFolder(), QStringList{"press.bmp"}) << "the row in hand is not saved yet";
}

TEST_P(EitherPictureTest, PictureOfTheFolderItselfChangesNothingOnATaskThatHasOne) {
  const QString source = GivenStoredPicture("press.bmp", Qt::red);
  GivenStoredPicture("old.bmp", Qt::blue);
  OpenOn({{side().field, "old.bmp"}});
  Choose(side().button, source);
  ExpectShows(side().box, Qt::blue);
  EXPECT_EQ(Saved(side().field), "old.bmp");
  EXPECT_EQ(FilesInFolder(), QStringList({"old.bmp", "press.bmp"}));
}

TEST_P(EitherPictureTest, CopyThatCannotBeDeletedEitherIsTold) {
  const QString source = GivenStoredPicture("press.bmp", Qt::red);
  OpenOn({});
  desk.files.FailNext(FileAction::kDeleteFile, "press.bmp", failure::kPermissionDenied);
  desk.messages.ExpectTell(Icon::kCritical, "BELTROVAN",
                           QStringLiteral("A planned failure on \"%1\".").arg(source));
  Choose(side().button, source);
  ExpectShowsDefault(side().box);
  EXPECT_EQ(FilesInFolder(), QStringList{"press.bmp"});
}

TEST_P(EitherPictureTest, CancelOnATaskWithAPictureReloadsItAndWritesNothing) {
  OpenOnPress(side());
  Commit();
  GivenStoredPicture("press.bmp", Qt::blue);
  Cancel(side().button);
  ExpectShows(side().box, Qt::blue);
  EXPECT_FALSE(task.source.Recordset().HasPendingEdit());
}

TEST_P(EitherPictureTest, CancelOnAPictureThatHasGoneMeanwhileLeavesTheBoxClear) {
  const QString stored = GivenStoredPicture("press.bmp", Qt::red);
  OpenOn({{side().field, "press.bmp"}});
  ASSERT_TRUE(QFile::remove(stored));
  Cancel(side().button);
  EXPECT_FALSE(ShowsPicture(side().box));
  EXPECT_EQ(Saved(side().field), "press.bmp");
}

TEST_P(EitherPictureTest, CancelBehindAnEarlierChoiceDeletesNothing) {
  OpenOn({});
  Choose(side().button, GivenPicture("press.bmp", Qt::red));
  SetFields({{side().field, "NoPicSlted.jpg"}});
  Cancel(side().button);
  ExpectShowsDefault(side().box);
  EXPECT_EQ(FilesInFolder(), QStringList{"press.bmp"});
}

TEST_P(EitherPictureTest, DoubleClickClearsThePictureAndNamesTheDefaultByItsWholePath) {
  OpenOnPress(side());
  Click(side().box);
  ExpectShows(side().box, Qt::red);
  EXPECT_EQ(Saved(side().field), "press.bmp") << "a single click clears nothing";
  DoubleClick(side().box);
  ExpectShowsDefault(side().box);
  EXPECT_EQ(Saved(side().field), DefaultPicture());
  EXPECT_EQ(FilesInFolder(), QStringList{"press.bmp"}) << "another task may show it";
  Cancel(side().button);
  EXPECT_FALSE(ShowsPicture(side().box)) << "a cancel behind it leaves the box clear";
  EXPECT_EQ(Saved(side().field), DefaultPicture());
}

TEST_P(EitherPictureTest, PictureIsClearedByKeyboard) {
  OpenOnPress(side());
  Focus(side().box);
  PressKey(Qt::Key_Return, Qt::ControlModifier);
  ExpectShowsDefault(side().box);
  EXPECT_EQ(Saved(side().field), DefaultPicture());
}

TEST_P(EitherPictureTest, ClearWithoutADefaultPictureIsTold) {
  GivenStoredPicture("press.bmp", Qt::red);
  OpenOn({{side().field, "press.bmp"}, {side().other_field, "press.bmp"}});
  ASSERT_TRUE(QFile::remove(DefaultPicture()));
  desk.messages.ExpectTell(Icon::kCritical, "BELTROVAN",
                           QStringLiteral("The file %1 does not exist.").arg(DefaultPicture()));
  DoubleClick(side().box);
  EXPECT_FALSE(ShowsPicture(side().box));
  EXPECT_EQ(Saved(side().field), DefaultPicture());
}

TEST_F(RiskEstimtnPicturesTest, PhotographOfFiftyMegapixelsIsShownScaled) {
  QImage large(8660, 5774, QImage::Format_RGB32);
  large.fill(QColor(20, 40, 220));
  const QString source = installation.Outside("photograph.jpg");
  ASSERT_TRUE(large.save(source));
  OpenOn({});
  Choose("ImgSltdDwgBfr", source);
  ASSERT_TRUE(WaitUntil([this] { return ShowsPicture("ImgBfore"); }));
  const QSize shown = Control<QLabel>("ImgBfore").pixmap(Qt::ReturnByValue).size();
  EXPECT_LE(shown.width(), Control<QLabel>("ImgBfore").width());
  EXPECT_LE(shown.height(), Control<QLabel>("ImgBfore").height());
  EXPECT_NEAR(double(shown.width()) / shown.height(), 1.5, 0.05);
  EXPECT_GT(MiddleOf("ImgBfore").blue(), 200);
  EXPECT_EQ(QFile(InFolder("photograph.jpg")).size(), QFile(source).size()) << "copied in full";
}

TEST_F(RiskEstimtnPicturesTest, PhotographTakenUprightIsShownUpright) {
  QImage lying(400, 200, QImage::Format_RGB32);
  lying.fill(Qt::red);
  QImageWriter writer(InFolder("upright.jpg"), "jpg");
  writer.setTransformation(QImageIOHandler::TransformationRotate90);
  ASSERT_TRUE(writer.write(lying));
  OpenOn({{"PicAftrRcmdtn", "upright.jpg"}});
  const QSize shown = Control<QLabel>("ImgAfter").pixmap(Qt::ReturnByValue).size();
  EXPECT_NEAR(double(shown.height()) / shown.width(), 2.0, 0.1);
}

TEST_F(RiskEstimtnPicturesTest, FileThatClaimsToBeHugeIsLikeOneThatIsNoPicture) {
  const QString path = GivenPicture("huge.bmp", Qt::red);
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::ReadWrite));
  for (const int at : {18, 22}) {
    file.seek(at);
    file.write(QByteArray::fromHex("60EA0000"));
  }
  file.close();
  OpenOn({});
  Choose("ImgSltdDwgAfter", path);
  EXPECT_FALSE(ShowsPicture("ImgAfter"));
  EXPECT_EQ(Saved("PicAftrRcmdtn"), "huge.bmp");
}

TEST_F(RiskEstimtnPicturesTest, LargePicturesAreReadWhileThePathIsChosen) {
  GivenLarge(InFolder("before.jpg"), Qt::red);
  GivenLarge(InFolder("after.jpg"), Qt::blue);
  hold_readers = true;
  OpenOn({{"PicBfrRcmdtn", "before.jpg"}, {"PicAftrRcmdtn", "after.jpg"}});
  EXPECT_FALSE(ShowsPicture("ImgBfore"));
  PickLevels({"S2, Serious", "F1, Seldom", "O3, High", "A2, Impossible"});
  EXPECT_EQ(Saved("RiskIndex"), "4");
  readers->LetGo();
  ASSERT_TRUE(WaitUntil([this] { return ShowsPicture("ImgAfter"); }));
  ExpectShows("ImgBfore", Qt::red);
  ExpectShows("ImgAfter", Qt::blue);
  EXPECT_EQ(TipOf("RskBfrAftrChk"), "Click to estimation risk after recommendations");
}

TEST_F(RiskEstimtnPicturesTest, AfterPictureWaitsForTheLargeBeforePicture) {
  GivenLarge(InFolder("before.jpg"), Qt::red);
  GivenStoredPicture("after.bmp", Qt::blue);
  hold_readers = true;
  OpenOn({{"PicBfrRcmdtn", "before.jpg"}, {"PicAftrRcmdtn", "after.bmp"}});
  EXPECT_FALSE(ShowsPicture("ImgAfter"));
  EXPECT_EQ(TipOf("RskBfrAftrChk"), "");
  readers->LetGo();
  ASSERT_TRUE(WaitUntil([this] { return ShowsPicture("ImgBfore"); }));
  ExpectShows("ImgAfter", Qt::blue);
  EXPECT_NE(TipOf("RskBfrAftrChk"), "");
}

TEST_F(RiskEstimtnPicturesTest, LargeBeforePictureThatBreaksOffEndsTheLoadAllTheSame) {
  GivenLargeDamaged(InFolder("cut.jpg"));
  for (const QString name : {"after.bmp", "gone.jpg"}) {
    GivenStoredPicture("after.bmp", Qt::blue);
    OpenOn({{"PicBfrRcmdtn", "cut.jpg"}, {"PicAftrRcmdtn", name}});
    WaitForReaders();
    EXPECT_FALSE(ShowsPicture("ImgBfore"));
    if (name == "gone.jpg") {
      ExpectShowsDefault("ImgAfter");
    } else {
      EXPECT_FALSE(ShowsPicture("ImgAfter")) << "not reached";
    }
    EXPECT_EQ(TipOf("RskBfrAftrChk"), "");
    EXPECT_EQ(SavedFields({"PicBfrRcmdtn", "PicAftrRcmdtn"}), QStringList({"cut.jpg", name}));
    Close();
    Exec(Study(), "DELETE FROM Risk_records");
  }
  EXPECT_THAT(desk.messages.Shown(), IsEmpty());
}

TEST_F(RiskEstimtnPicturesTest, TipsFollowAStageThatWasSwitchedWhileAPictureWasRead) {
  GivenLarge(InFolder("before.jpg"), Qt::red);
  hold_readers = true;
  OpenOn({{"PicBfrRcmdtn", "before.jpg"}});
  ToAfterStage();
  readers->LetGo();
  ASSERT_TRUE(WaitUntil([this] { return ShowsPicture("ImgBfore"); }));
  EXPECT_EQ(TipOf("RskBfrAftrChk"), "Click to estimation risk before recommendations");
}

TEST_P(EitherPictureTest, PictureThatIsChosenWhileAnotherIsReadStands) {
  GivenLarge(InFolder("large.jpg"), Qt::red);
  hold_readers = true;
  OpenOn({{side().field, "large.jpg"}});
  Choose(side().button, GivenPicture("new.bmp", Qt::blue));
  ExpectShows(side().box, Qt::blue);
  readers->LetGo();
  WaitForReaders();
  ExpectShows(side().box, Qt::blue);
  ExpectShowsDefault(side().other_box);
  EXPECT_EQ(Saved(side().field), "new.bmp");
  EXPECT_NE(TipOf("RskBfrAftrChk"), "");
}

TEST_P(EitherPictureTest, PictureThatIsClearedBeforeItsTurnStaysCleared) {
  GivenLarge(InFolder("large.jpg"), Qt::red);
  GivenStoredPicture("press.bmp", Qt::blue);
  hold_readers = true;
  OpenOn({{"PicBfrRcmdtn", "large.jpg"}, {"PicAftrRcmdtn", "press.bmp"}});
  DoubleClick(side().box);
  readers->LetGo();
  WaitForReaders();
  ExpectShowsDefault(side().box);
  EXPECT_TRUE(ShowsPicture(side().other_box));
  EXPECT_EQ(Saved(side().field), DefaultPicture());
  EXPECT_NE(TipOf("RskBfrAftrChk"), "");
}

TEST_P(EitherPictureTest, LargeFileOfTheDefaultNameThatBreaksOffGivesWayToTheDefaultPicture) {
  const QString source = GivenLargeDamaged(installation.Outside("NoPicSlted.jpg"));
  OpenOn({});
  Choose(side().button, source);
  WaitForReaders();
  ExpectShowsDefault(side().box);
  EXPECT_EQ(Saved(side().field), "NoPicSlted.jpg");
  EXPECT_THAT(FilesInFolder(), IsEmpty());
}

TEST_P(EitherPictureTest, FormThatIsClosedWhileAPictureIsReadLeavesTheRowAsItIs) {
  GivenLarge(InFolder("large.jpg"), Qt::red);
  hold_readers = true;
  OpenOn({{side().field, "large.jpg"}, {side().other_field, "gone.jpg"}});
  const auto row = SavedRow();
  readers->LetGo();
  Close();
  EXPECT_EQ(SavedRow(), row);
  EXPECT_TRUE(form_.isNull());
}

TEST_F(RiskEstimtnPicturesTest, PicturesOfBothStagesStayWhenTheStageIsSwitched) {
  GivenStoredPicture("before.bmp", Qt::red);
  GivenStoredPicture("after.bmp", Qt::blue);
  OpenOn({{"PicBfrRcmdtn", "before.bmp"}, {"PicAftrRcmdtn", "after.bmp"}});
  ToAfterStage();
  ExpectShows("ImgBfore", Qt::red);
  ExpectShows("ImgAfter", Qt::blue);
}

}  // namespace
}  // namespace kestrix
