#pragma once

#include <QMap>
#include <QPointer>
#include <QPushButton>

#include "evaluation/RiskEvalFrm_1.h"
#include "formkit/Controls.h"
#include "formkit/Grid.h"
#include "support/FormTest.h"

namespace kestrix {

/// A study with the project "P-1" and the evaluation form on it, with what other forms would do on
/// its signals written down.
class EvaluationTest : public FormTest {
 protected:
  static constexpr int kStudy = 7;
  using Fields = QMap<QString, QVariant>;

  void SetUp() override {
    session.ActiveStudyNo = kStudy;
    installation.GivenStudy(kStudy);
    project.number = "P-1";
    project.description = "Press line 4";
    desk.clock.SetToday(QDate(2013, 2, 15));
  }

  void TearDown() override {
    // Whatever a test has done, the file it leaves is whole.
    delete form_.data();
    Settle();
    EXPECT_EQ(Column(Study(), "PRAGMA integrity_check"), QStringList{"ok"});
  }

  [[nodiscard]] QString Study() const { return installation.Study(kStudy); }
  [[nodiscard]] QString Lists() const { return installation.Lists(); }

  /// A task of the project with two dates; `fields` come over that.
  qint64 GivenTask(const Fields& fields) {
    Fields all{{"Project_Number", "P-1"}, {"dateOfRcd", "01/02/2013"}, {"actnDt", "03/04/2013"}};
    all.insert(fields);
    return installation.GivenTask(kStudy, all);
  }
  void GivenTasks(const QStringList& titles) {
    for (const QString& title : titles) GivenTask({{"FuntnTaskMachry", title}});
  }

  /// Makes and loads the form without showing it.
  RiskEvalFrm_1& LoadForm() {
    delete form_.data();
    form_ = new RiskEvalFrm_1(context);
    using Me = RiskEvalFrm_1;
    const auto note = [this](const char* step) {
      return [this, step] { steps.append(QString::fromLatin1(step)); };
    };
    QObject::connect(form_, &Me::EstimationRequested, note("estimation"));
    QObject::connect(form_, &Me::Closed, note("closed"));
    QObject::connect(form_, &Me::Unloaded, note("unloaded"));
    QObject::connect(form_, &Me::ProjectAndOrganisationUnloadRequested, note("unload forms"));
    QObject::connect(form_, &Me::FrameUnloadRequested, note("unload frame"));
    form_->LoadForm();
    return *form_;
  }
  RiskEvalFrm_1& OpenForm() {
    RiskEvalFrm_1& form = LoadForm();
    form.ShowFormModal();
    Settle();
    LookAt(form);
    return form;
  }
  RiskEvalFrm_1& OpenOn(const QStringList& titles) {
    GivenTasks(titles);
    return OpenForm();
  }
  void CloseForm() {
    form_->UnloadForm();
    Settle();
  }

  /// For the two buttons that are never shown.
  void ClickHidden(const QString& name) {
    Control<QPushButton>(name).click();
    Settle();
  }
  void Search(const QString& text) {
    Click("FndESINo");
    Type(text);
  }
  void Delete(const QString& title, Button answer = Button::kYes,
              const QString& date = "01/02/2013") {
    ExpectAsk("BELTROVAN", "Wish to delete task " + title + " Dated : " + date, answer);
    Click("DleteRcd");
  }
  void SetText(const QString& name, const QString& text) {
    TypeInto(name, QString());
    if (!text.isEmpty()) Type(text);
  }

  void ExpectTell(const QString& text, Icon icon = Icon::kInformation,
                  const QString& title = "BELTROVAN") {
    desk.messages.ExpectTell(icon, title, text);
  }
  void ExpectAsk(const QString& title, const QString& text, Button answer) {
    desk.messages.ExpectAsk(Icon::kInformation, title, text, answer);
  }

  /// A field of all tasks of the project, in their order, read from the file.
  [[nodiscard]] QStringList Stored(const QString& field) const {
    return Column(Study(), QStringLiteral("SELECT \"%1\" FROM Risk_records WHERE "
                                          "Project_Number='P-1' ORDER BY nunberauto")
                               .arg(field));
  }
  [[nodiscard]] QList<QStringList> AllTasks() const { return RowsOf(Study(), "Risk_records"); }
  void ChangeTask(qint64 key, const QString& set) {
    Exec(Study(),
         QStringLiteral("UPDATE Risk_records SET %1 WHERE nunberauto=%2").arg(set).arg(key));
  }

  [[nodiscard]] QString Position() const { return TextOf("TotAcdRCDDsply"); }

  static inline const QStringList kCombos{"PhaseMachn", "PrimaryHazard", "HazardType",
                                          "ReccdtnTypTxt", "ActnByCbo"};
  static inline const QStringList kListButtons{"adddt",   "dletedt",  "adddt1",  "dletedt1",
                                               "adddt2",  "dletedt2", "adddt_2", "dletedt_2",
                                               "adddt_3", "dletedt_3"};
  [[nodiscard]] QStringList EnabledOf(const QStringList& names) const {
    QStringList enabled;
    for (const QString& name : names) {
      if (IsEnabled(name)) enabled += name;
    }
    return enabled;
  }

  QStringList steps;  ///< what was told to other forms, in order
  QPointer<RiskEvalFrm_1> form_;
};

}  // namespace kestrix
