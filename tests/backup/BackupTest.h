#pragma once

#include <QDir>
#include <QDirIterator>
#include <QMap>

#include "backup/BackupWorker.h"
#include "backup/BkUpfrm.h"
#include "backup/opnflddlg.h"
#include "store/RecordSources.h"
#include "support/Files.h"
#include "support/FormTest.h"

namespace kestrix {

/// The bytes of every file below a folder, by its path within it, and its empty folders.
using Tree = QMap<QString, QByteArray>;

inline Tree TreeOf(const QString& folder) {
  Tree tree;
  QDirIterator all(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                   QDirIterator::Subdirectories);
  while (all.hasNext()) {
    const QString path = all.next();
    const QString name = QDir(folder).relativeFilePath(path);
    tree[name] = all.fileInfo().isDir() ? "<folder>" : ReadFile(path);
  }
  return tree;
}

/// An installation with organisations that have something to copy, and a place for sets.
class BackupTest : public FormTest {
 protected:
  static inline const QString kToday = QStringLiteral("15February2013");

  BackupTest() {
    session.BackupFolder = Place("sets");
    session.BackupDateName = kToday;
  }

  /// A folder outside of the installation, made if it isn't there.
  QString Place(const QString& name) const {
    const QString path = installation.Outside(name);
    EXPECT_TRUE(QDir().mkpath(path));
    return path;
  }
  QString InSet(const QString& name) const { return session.BackupFolder + "/" + name; }
  QString InDated(const QString& name) const { return InSet(kToday + "/" + name); }

  /// An organisation with a project, tasks and two pictures.
  void GivenFullOrganisation(const QString& name, int number) {
    installation.GivenOrganisation(name, number);
    installation.GivenProject(number, "P-1", name);
    installation.GivenTasks(number, "P-1", 20 + number);
    WriteFile(Picture(number, "a.jpg"), "before of " + name.toUtf8());
    WriteFile(Picture(number, "b.jpg"), "after of " + name.toUtf8());
  }
  /// Organisations numbered 1 to `count` whose studies are empty.
  void GivenManyOrganisations(int count) {
    Exec(installation.Register(),
         QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<%1) "
                        "INSERT INTO orgtn SELECT 'Works '||i, i FROM n")
             .arg(count));
    for (int number = 1; number <= count; ++number) installation.GivenStudy(number);
  }
  QString Picture(int number, const QString& name) const {
    return installation.PictureFolder(number) + "/" + name;
  }
  QString Data() const { return installation.Path("RskAsmtFld"); }
  QStringList Organisations(const QString& register_file) const {
    return Column(register_file, "SELECT OrgName FROM orgtn");
  }

  void ForBackup() { session.BackupMode = session.BackupSubMode = 0; }
  void ForRestore() {
    session.BackupMode = 1;
    session.BackupSubMode = 0;
  }
  /// Of the set that was made in the folder that is chosen now.
  void ForRestoreOfToday() {
    session.BackupFolder = InSet(kToday);
    ForRestore();
  }

  /// Runs the worker as the form does: on the live register, or on the set's.
  BackupWorker::End Run(const BackupWorker::Runner& runner = RunBesideEvents) {
    DataControl organisations("Orgndata");
    const QString copy = installation.Outside("orgtn.mdb");
    if (session.BackupMode == 1) {
      QFile::remove(copy);
      EXPECT_TRUE(QFile::copy(InSet("ktx_RskSmt.kbp"), copy));
    }
    organisations.SetDatabaseName(session.BackupMode == 1 ? copy : installation.Register());
    organisations.SetRecordSource(sources::kOrgtnTable);
    organisations.Refresh();
    session.OrgRowCount = static_cast<qint16>(organisations.Recordset().RecordCount());
    steps.clear();
    BackupWorker worker(session, paths, desk.platform(), runner);
    return worker.Run(organisations.Recordset(), [this](const BackupWorker::Progress& progress) {
      steps.append(progress.text);
      percent = progress.percent;
    });
  }
  int FailureOfRun() {
    return FailureOf([this] { (void)Run(); });
  }
  /// Without a thread, for a child process.
  static void RunHere(const std::function<void()>& work) { work(); }

  static QString Trouble(const QString& what) {
    return "Failed to " + what + ". Seek Administrator approval for writing. Unable to continue.";
  }
  void ExpectTrouble(const QString& what) {
    desk.messages.ExpectTell(Icon::kInformation, "BELTROVAN", Trouble(what));
  }
  void ExpectOverwriteQuestion(Button answer) {
    desk.messages.ExpectAsk(
        Icon::kCritical, "BELTROVAN: Over write",
        "Wish to replace existing backup files?, If 'NO', select different folder.", answer);
  }

  QStringList steps;
  double percent = 0;
};

/// Both forms in their slots, with the steps between them that the whole program makes.
class BackupFormTest : public BackupTest {
 protected:
  BackupFormTest()
      : backup([this] { return MakeBackup(); }), folders([this] { return MakeFolders(); }) {}

  /// What the frame's menu does.
  void ChooseBackup() {
    ForBackup();
    BkUpfrm& form = backup.Get();
    form.ShowForm();
    form.PrepareBackup();
    Settle();
  }
  void ChooseRestore() {
    ForRestore();
    folders.Get().ShowForm();
    Settle();
  }
  /// From the menu to the button that begins the work.
  void ChooseRestoreOf(const QString& folder) {
    session.BackupFolder = folder;
    ChooseRestore();
    Click("slctfld");
  }
  void ChooseBackupInto(const QString& folder) {
    session.BackupFolder = folder;
    ChooseBackup();
    Click("clsd");
    Click("slctfld");
  }

  FormSlot<BkUpfrm> backup;
  FormSlot<opnflddlg> folders;
  int notices = 0;

 private:
  std::unique_ptr<BkUpfrm> MakeBackup() {
    auto form = std::make_unique<BkUpfrm>(context);
    const auto connect = [&](auto signal, auto step) {
      QObject::connect(form.get(), signal, form.get(), step);
    };
    connect(&BkUpfrm::FolderDialogRequested, [this] { folders.Get().ShowForm(); });
    connect(&BkUpfrm::LoadFailed, [this] { ++notices; });
    connect(&BkUpfrm::CopyingFailed, [this] { folders.Unload(); });
    connect(&BkUpfrm::CaptionDue,
            [this](const QString& caption) { backup.Get().SetMainCaption(caption); });
    return form;
  }
  std::unique_ptr<opnflddlg> MakeFolders() {
    auto form = std::make_unique<opnflddlg>(context);
    const auto connect = [&](auto signal, auto step) {
      QObject::connect(form.get(), signal, form.get(), step);
    };
    const auto show_with = [this](const QString& caption) {
      BkUpfrm& shown = backup.Get();
      shown.SetMainCaption(caption);
      shown.ShowForm();
    };
    connect(&opnflddlg::BackupFolderChosen, [=] { show_with(BkUpfrm::kBackup); });
    connect(&opnflddlg::RestoreFolderChosen, [=] { show_with(BkUpfrm::kRestore); });
    connect(&opnflddlg::Cancelled, [this] { backup.Get().ShowForm(); });
    return form;
  }
};

}  // namespace kestrix
