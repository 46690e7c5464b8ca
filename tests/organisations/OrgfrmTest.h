#pragma once

#include <QAbstractItemView>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QProcess>
#include <QStyle>
#include <QStyleOptionComboBox>

#include "formkit/Controls.h"
#include "organisations/Orgfrm.h"
#include "store/Database.h"
#include "support/Files.h"
#include "support/FormTest.h"
#include "support/OtherForm.h"
#include "support/RunAsNobody.h"

namespace kestrix {

/// Another process that holds the lock sign of a study, as a running program of another user does.
class SignHolder {
 public:
  explicit SignHolder(const QString& sign) {
    process_.start("flock", {"--shared", sign, "cat"});
    // What is written comes back only once the sign is held.
    process_.write("held\n");
    EXPECT_TRUE(process_.waitForReadyRead()) << "the sign can't be held";
  }
  ~SignHolder() {
    process_.closeWriteChannel();
    process_.waitForFinished();
  }
  SignHolder(const SignHolder&) = delete;
  SignHolder& operator=(const SignHolder&) = delete;

 private:
  QProcess process_;
};

/// A disk that can't be asked whether a file of that ending is there.
class DeafFiles : public FailingFileSystem {
 public:
  explicit DeafFiles(QString ending) : ending_(std::move(ending)) {}
  [[nodiscard]] bool FileExists(const QString& path) const override {
    if (path.endsWith(ending_)) throw Failure(failure::kDeviceError, "the disk failed");
    return FailingFileSystem::FileExists(path);
  }

 private:
  QString ending_;
};

/// What tests of the organisation form start from. What the form tells others is noted in `told`,
/// in order.
class OrgfrmTest : public FormTest {
 protected:
  ~OrgfrmTest() override { delete form.data(); }

  void TearDown() override {
    EXPECT_EQ(QApplication::overrideCursor(), nullptr) << "the wait cursor was not put back";
  }

  /// Loads the form without showing it.
  void LoadOrganisations() { LoadOrganisations(context); }
  void LoadOrganisations(Context& in) {
    delete form.data();
    told.clear();
    form = new Orgfrm(in);
    Listen();
    form->LoadForm();
  }
  /// The form as the frame shows it.
  void OpenOrganisations() { OpenOrganisations(context); }
  void OpenOrganisations(Context& in) {
    LoadOrganisations(in);
    form->ShowForm();
    Settle();
    if (!IsGone()) LookAt(*form);
  }
  [[nodiscard]] bool IsGone() const { return !form || form->IsUnloading(); }

  /// Takes a name from the list of the combo by the mouse: its arrow is what the text box leaves
  /// free of it.
  void PickOrganisation(const QString& name) {
    auto& combo = Control<QComboBox>("orgnmecbo");
    ASSERT_TRUE(combo.isEnabled());
    QStyleOptionComboBox option;
    option.initFrom(&combo);
    option.editable = true;
    const QRect arrow = combo.style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                      QStyle::SC_ComboBoxArrow, &combo);
    const QPoint spot = combo.mapTo(combo.window(), arrow.center());
    ASSERT_EQ(combo.window()->childAt(spot), &combo);
    QTest::mouseClick(combo.window()->windowHandle(), Qt::LeftButton, Qt::NoModifier, spot);
    Settle();
    ASSERT_TRUE(combo.view()->isVisible());
    const int row = combo.findText(name, Qt::MatchExactly | Qt::MatchCaseSensitive);
    ASSERT_GE(row, 0) << name.toStdString();
    combo.view()->setCurrentIndex(combo.model()->index(row, 0));
    PressKey(Qt::Key_Return);
  }
  void OpenAndPick(const QString& name) {
    OpenOrganisations();
    PickOrganisation(name);
  }
  /// Types the name of a new organisation.
  void TypeNew(const QString& name) {
    Click("addorncmd");
    Type(name);
  }
  /// Another form comes to the front and goes again.
  void GoAwayAndComeBack() {
    Open<OtherForm>().UnloadForm();
    Settle();
  }
  /// Types the name of a new organisation and leaves the box.
  void Add(const QString& name) {
    Click("addorncmd");
    Type(name);
    PressTab();
  }
  /// Opens the menu of the history and closes it again.
  void OpenHistory() {
    auto& menu = Control<QMenu>("fle");
    menu.popup(form->mapToGlobal(QPoint(0, 0)));
    Settle();
    EXPECT_TRUE(menu.isVisible());
    menu.hide();
    Settle();
  }
  void DoubleClickFace() {
    auto& box = Control<QWidget>("orgnmecbotxt");
    QTest::mouseDClick(box.window()->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                       box.mapTo(box.window(), box.rect().center()));
    Settle();
  }

  /// "clsd", "addorncmd", "delte" and "clsed", as far as they are enabled.
  [[nodiscard]] QStringList Enabled() {
    QStringList names;
    for (const char* name : {"clsd", "addorncmd", "delte", "clsed"}) {
      if (IsEnabled(name)) names += name;
    }
    return names;
  }
  [[nodiscard]] QString TagOf(const QString& name) {
    return Control<QWidget>(name).property("Tag").toString();
  }
  [[nodiscard]] bool IsLocked() { return Control<QLineEdit>("orgnmecbotxt").isReadOnly(); }

  /// The register: each organisation with its study number.
  [[nodiscard]] QList<QStringList> Organisations() {
    return RowsOf(installation.Register(), "orgtn");
  }
  /// The number that the history has stored.
  [[nodiscard]] QStringList LastOpened() {
    return Column(installation.Register(), "SELECT OrgNameTMP FROM Orgtmp");
  }

  QPointer<Orgfrm> form;
  QStringList told;

 private:
  void Listen() {
    QObject::connect(form, &Orgfrm::OrganisationOpened, form,
                     [this](const QString& caption) { told += "opened [" + caption + "]"; });
    QObject::connect(form, &Orgfrm::Closing, form, [this] { told += "closing"; });
    QObject::connect(form, &Orgfrm::ProjectFormUnloadRequested, form,
                     [this] { told += "project form away"; });
    QObject::connect(form, &Orgfrm::LoadFailed, form, [this] { told += "load failed"; });
    QObject::connect(form, &Orgfrm::StudyReleaseRequested, form,
                     [this] { told += "let go of the study"; });
  }
};

}  // namespace kestrix
