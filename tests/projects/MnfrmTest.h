#pragma once

#include <QStringList>

#include "formkit/Controls.h"
#include "formkit/Grid.h"
#include "projects/mnfrm.h"
#include "support/Files.h"
#include "support/FormTest.h"
#include "support/OtherForm.h"

namespace kestrix {

/// What tests of the project form start from. What the form asks of others is noted in `asked`.
class MnfrmTest : public FormTest {
 protected:
  void SetUp() override { installation.GivenStudy(1); }

  /// The organisation ACME with these projects.
  mnfrm& OpenAcme(const QStringList& numbers = {}) {
    GivenProjects(numbers);
    return OpenOrganisation("ACME", 1);
  }
  /// The form as the organisation form brings it up: loaded by the write of the caption, and told
  /// that the organisation form is gone.
  mnfrm& OpenOrganisation(const QString& name, int study) {
    form = &Make<mnfrm>();
    Listen();
    HandOver(name, study);
    LookAt(*form);
    return *form;
  }
  /// What opening an organisation leaves behind, on a form that is there.
  void HandOver(const QString& name, int study) {
    session.SelectedOrgName = name;
    session.ActiveOrgName = name;
    session.ActiveStudyNo = static_cast<qint16>(study);
    form->SetOrganisationCaption(u' ' + name);
    form->OrganisationFormClosed();
    WaitForFront(*form);
  }
  /// The organisations are asked for, another one is opened, and the form comes back.
  void ChangeOrganisation(const QString& name, int study) {
    Click("nworg");
    OtherForm& organisations = OpenModal<OtherForm>();
    WaitForFront(organisations);
    session.SelectedOrgName = name;
    session.ActiveOrgName = name;
    session.ActiveStudyNo = static_cast<qint16>(study);
    form->SetOrganisationCaption(u' ' + name);
    form->OrganisationFormClosed();
    organisations.UnloadForm();
    ComeBack();
  }
  /// Another form was in front and is gone; nothing else happened.
  void GoAwayAndComeBack() {
    session.ProjectFormHolds = 0;
    OtherForm& other = Open<OtherForm>();
    WaitForFront(other);
    other.UnloadForm();
    ComeBack();
  }
  void ComeBack() {
    form->ShowForm();
    WaitForFront(*form);
    LookAt(*form);
  }

  /// A real desktop takes its time.
  void WaitForFront(const Form& wanted) {
    EXPECT_TRUE(WaitUntil([&] { return kit.forms.active() == &wanted; }));
    Settle();
  }

  void GivenProjects(const QStringList& numbers, const QString& organisation = "ACME",
                     int study = 1) {
    for (const QString& number : numbers) installation.GivenProject(study, number, organisation);
  }
  void GivenManyProjects(int count) {
    Exec(installation.Study(1),
         QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<%1) "
                        "INSERT INTO Project_details(Factory_Name,Project_Number) "
                        "SELECT 'ACME','P'||i FROM n")
             .arg(count));
  }
  /// One field of a project as the file holds it.
  [[nodiscard]] QString Stored(const QString& number, const QString& field, int study = 1) {
    const QStringList values =
        Column(installation.Study(study),
               QStringLiteral("SELECT %1 FROM Project_details WHERE Project_Number='%2'")
                   .arg(field, number));
    return values.size() == 1 ? values.first() : QStringLiteral("<%1 rows>").arg(values.size());
  }
  [[nodiscard]] QStringList StoredNumbers(int study = 1) {
    return Column(installation.Study(study),
                  "SELECT Project_Number FROM Project_details ORDER BY _rowid_");
  }
  /// From 1; -1 without a row.
  [[nodiscard]] int CurrentRow() {
    return Control<DataControl>("dtsorce1").Recordset().AbsolutePosition();
  }
  [[nodiscard]] QList<bool> ProjectCommands() {
    return {IsEnabled("delteZapNo"), IsEnabled("LnkDwgs"), IsEnabled("simultn1"),
            IsEnabled("repotview")};
  }
  void TypeNewNumber(const QString& number) {
    Click("NwESINo");
    Type(number);
  }

  /// What the second one of two who changed a field, to "theirs" and to "mine", is told.
  void ExpectLost(const QString& field) {
    desk.messages.ExpectTell(
        Icon::kCritical, "BELTROVAN",
        QStringLiteral("Somebody else has changed %1 of this record meanwhile. Their text stands; "
                       "please look at it and change it again if need be.\n\n%1\nTheirs: theirs\n"
                       "Yours: mine")
            .arg(field));
  }
  /// From now on the study refuses two projects with the same text in this field.
  void RefuseEqual(const QString& field) {
    Exec(installation.Study(1),
         QStringLiteral("CREATE UNIQUE INDEX one_each ON Project_details(%1 COLLATE NOCASE)")
             .arg(field));
  }

  mnfrm* form = nullptr;
  QStringList asked;

  static inline const QList<bool> kAllEnabled = {true, true, true, true};
  static inline const QList<bool> kAllDisabled = {false, false, false, false};

 protected:
  void Listen() {
    const auto note = [this](const char* what) { return [this, what] { asked += what; }; };
    QObject::connect(form, &mnfrm::OrganisationFormUnloadRequested, form,
                     note("organisation form away"));
    QObject::connect(form, &mnfrm::EvaluationFormUnloadRequested, form,
                     note("evaluation form away"));
    QObject::connect(form, &mnfrm::LoadFailed, form, note("load failed"));
    QObject::connect(form, &mnfrm::EvaluationRequested, form, note("evaluation"));
    QObject::connect(form, &mnfrm::LinkedFilesRequested, form, note("linked files"));
    QObject::connect(form, &mnfrm::OrganisationsRequested, form, note("organisations"));
    QObject::connect(form, &mnfrm::HomePageTakesOver, form, note("home page"));
  }
};

}  // namespace kestrix
