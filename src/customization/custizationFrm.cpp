#include "customization/custizationFrm.h"

#include <QEvent>
#include <QSignalBlocker>
#include <array>

#include "formkit/Controls.h"
#include "platform/FileSystem.h"
#include "store/LookupList.h"
#include "store/RecordSources.h"
#include "ui_custizationFrm.h"

namespace kestrix {
namespace {

struct ListChoice {
  const char16_t* name;
  const Select* sql;
};

const std::array kChoices{ListChoice{u"Project stage", &sources::kPrjstage},
                          ListChoice{u"phase of the machine life cycle", &sources::kPhaseMachLife},
                          ListChoice{u"Primary Hazard", &sources::kPrimaryHazard},
                          ListChoice{u"Recommendation type", &sources::kRecommTyp},
                          ListChoice{u"Action by", &sources::kActionBy}};

const QString kFirstChoice = QStringLiteral("Project stage");
const QString kPrimaryHazardChoice = QStringLiteral("Primary Hazard");
const QString kCaption = QStringLiteral("Customize : ");
constexpr int kLongestEntry = 255;

}  // namespace

custizationFrm::custizationFrm(Context& context)
    : SessionForm(context), ui_(std::make_unique<Ui::custizationFrm>()) {
  ui_->setupUi(this);
  for (QComboBox* combo : {ui_->ForCustmnCbo, ui_->HazardType, ui_->ActnByCbo}) {
    combo->lineEdit()->setMaxLength(kLongestEntry);
  }
  On(ui_->ForCustmnCbo, &QComboBox::activated, &custizationFrm::ForCustmnCbo_Click);
  OnGotFocus(ui_->ForCustmnCbo, &custizationFrm::ForCustmnCbo_GotFocus);
  OnLostFocus(ui_->ForCustmnCbo, &custizationFrm::ForCustmnCbo_LostFocus);
  On(ui_->HazardType, &QComboBox::activated, &custizationFrm::HazardType_Click);
  On(ui_->ActnByLst, &QListWidget::itemClicked, &custizationFrm::ActnByLst_Click);
  // The arrow keys select as a click does.
  On(ui_->ActnByLst, &QListWidget::itemSelectionChanged, &custizationFrm::ActnByLst_Click);
  OnLostFocus(ui_->AddrcdTxt, &custizationFrm::AddrcdTxt_LostFocus);
  On(ui_->adddt, &QPushButton::clicked, &custizationFrm::adddt_Click);
  On(ui_->SavRcd, &QPushButton::clicked, &custizationFrm::SavRcd_Click);
  On(ui_->dletedt, &QPushButton::clicked, &custizationFrm::dletedt_Click);
  On(ui_->DeltAll, &QPushButton::clicked, &custizationFrm::DeltAll_Click);
  On(ui_->ext, &QPushButton::clicked, &Form::UnloadForm);
  for (QPushButton* button : {ui_->adddt, ui_->SavRcd, ui_->dletedt, ui_->DeltAll}) {
    button->setMouseTracking(true);
    button->installEventFilter(this);
  }
}

custizationFrm::~custizationFrm() = default;

void custizationFrm::Load() {
  FillListChoices();
  ui_->ForCustmnCbo->setEditText(kFirstChoice);
  session().FileFoundA = files().FileExists(installation().SupportLists());
  session().FileFoundB = files().FileExists(installation().Register());
  session().FileFoundC = files().FileExists(installation().StudyTemplate());
  if (!session().FileFoundA || !session().FileFoundB || !session().FileFoundC) {
    messages().Beep();
    Tell(Icon::kCritical, title::kProgramFilesMissing,
         QStringLiteral("1c. Files missing. contact M/s. BELTROVAN"));
    UnloadForm();
    return;
  }
  WaitCursor wait;
  PassOver([&] { session().ListSql = sources::kPrjstage; },
           [&] { nameDB_.SetDatabaseName(installation().SupportLists()); },
           [&] { OpenRows(session().ListSql); }, [&] { FillBoth(); }, [&] { Rows().MoveFirst(); },
           [&] { SelectEntry(Rows().Text(0)); }, [&] { SetCaption(Choice()); });
  HazardListShowing_ = false;
}

void custizationFrm::Unload() {
  // The text that was to be added goes with its box.
  session().AddPending = false;
}

void custizationFrm::FillListChoices() {
  QStringList names;
  for (const ListChoice& choice : kChoices) names += QString::fromUtf16(choice.name);
  FillCombo(ui_->ForCustmnCbo, names);
}

void custizationFrm::LoadListChoice() {
  for (const ListChoice& choice : kChoices) {
    if (Choice() == QString::fromUtf16(choice.name)) session().ListSql = *choice.sql;
  }
  const WaitCursor wait;
  const bool primary = IsPrimaryHazardChosen();
  PassOver([&] { OpenRows(session().ListSql); }, [&] { ClearLists(); },
           [&] {
             const QStringList entries = lookup::Texts(Rows());
             FillCombo(primary ? ui_->HazardType : ui_->ActnByCbo, entries);
             ui_->ActnByLst->addItems(entries);
           },
           [&] { Rows().MoveFirst(); },
           [&] {
             if (primary) {
               ui_->HazardType->setEditText(Rows().Text(0));
             } else {
               SelectEntry(Rows().Text(0));
             }
           });
}

void custizationFrm::ForCustmnCbo_Click() {
  LoadListChoice();
  SetCaption(Choice());
  ListChoiceText_ = Choice();
  ui_->HazardType->setEnabled(IsPrimaryHazardChosen());
  HazardListShowing_ = false;
}

void custizationFrm::ForCustmnCbo_GotFocus() {
  ListChoiceText_ = Choice();
}

void custizationFrm::ForCustmnCbo_LostFocus() {
  if (Choice() == ListChoiceText_) return;
  ui_->ForCustmnCbo->setEditText(ListChoiceText_);
  ForCustmnCbo_Click();
  Tell(Icon::kInformation, title::kProgram, QStringLiteral("Please select from list."));
  FocusLater(ui_->ForCustmnCbo);
}

void custizationFrm::ActnByLst_Click() {
  // A list that is emptied loses its selection by nobody's click.
  if (ui_->ActnByLst->selectedItems().isEmpty()) return;
  ui_->AddrcdTxt->setText(SelectedEntry());
}

void custizationFrm::HazardType_Click() {
  const QString hazard = ui_->HazardType->currentText();
  PassOver([&] { session().ListSql = sources::HazardTypesOf(hazard); },
           [&] { OpenPlain(session().ListSql); },
           [&] {
             SetCaption(hazard);
             ui_->ActnByLst->clear();
             ui_->ActnByLst->addItems(lookup::Texts(Rows()));
           },
           [&] {
             if (Rows().RecordCount() < 1) return;
             Rows().MoveFirst();
             SelectEntry(Rows().Text(0));
           });
  SetCaption(hazard);
  ui_->HazardType->setEnabled(true);
  HazardListShowing_ = true;
}

bool custizationFrm::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::MouseMove || event->type() == QEvent::Enter ||
      event->type() == QEvent::FocusIn) {
    FollowMouse(watched);
  }
  return SessionForm::eventFilter(watched, event);
}

/// The tool tips name what a click would act on at this moment.
void custizationFrm::FollowMouse(const QObject* button) {
  const QString entry =
      SelectedEntry().isEmpty() ? QStringLiteral("'NOT SELECTED'") : SelectedEntry();
  if (button == ui_->adddt) {
    ui_->adddt->setToolTip(QStringLiteral("Click to add records under - ") + Choice());
  } else if (button == ui_->DeltAll) {
    ui_->DeltAll->setToolTip(QStringLiteral("Click to delete all records from - ") + Choice());
  } else if (button == ui_->dletedt) {
    ui_->dletedt->setToolTip(QStringLiteral("Delete selected record - ") + entry);
  } else if (button == ui_->SavRcd) {
    ui_->SavRcd->setToolTip(QStringLiteral("Save edited record - ") + entry);
  }
}

/// Fails on an empty list.
void custizationFrm::OpenRows(const Select& sql) {
  OpenPlain(sql);
  Rows().MoveFirst();
}

void custizationFrm::OpenPlain(const Select& sql) {
  nameDB_.SetRecordSource(sql);
  nameDB_.Refresh();
}

void custizationFrm::FillBoth() {
  ui_->ActnByLst->clear();
  const QStringList entries = lookup::Texts(Rows());
  FillCombo(ui_->ActnByCbo, entries);
  ui_->ActnByLst->addItems(entries);
  if (!IsPrimaryHazardChosen() || HazardListShowing_) return;
  const QString kept = ui_->HazardType->currentText();
  FillCombo(ui_->HazardType, entries);
  ui_->HazardType->setEditText(kept);
}

void custizationFrm::ClearLists() {
  for (QComboBox* combo : {ui_->ActnByCbo, ui_->HazardType}) FillCombo(combo, {});
  ui_->ActnByLst->clear();
}

QString custizationFrm::Choice() const {
  return ui_->ForCustmnCbo->currentText();
}

bool custizationFrm::IsPrimaryHazardChosen() const {
  return Choice() == kPrimaryHazardChoice;
}

/// What is marked in the list. The entry that only has the list's focus isn't selected.
QString custizationFrm::SelectedEntry() const {
  const QList<QListWidgetItem*> items = ui_->ActnByLst->selectedItems();
  return items.isEmpty() ? QString() : items.first()->text();
}

void custizationFrm::SelectEntry(const QString& text) {
  const QSignalBlocker no_click(ui_->ActnByLst);
  ui_->ActnByLst->setCurrentItem(ui_->ActnByLst->findItems(text, Qt::MatchExactly).value(0));
}

/// Whether the types that are shown are those of `hazard`: the one that was picked, or the one that
/// was typed since and that new types go below.
bool custizationFrm::IsShownHazard(const QString& hazard) const {
  return ui_->ActnFrmLbl->text() == kCaption + hazard || ui_->HazardType->currentText() == hazard;
}

void custizationFrm::SetCaption(const QString& subject) {
  ui_->ActnFrmLbl->setText(kCaption + subject);
  ui_->ActnByLst->setAccessibleName(ui_->ActnFrmLbl->text());
  ui_->ActnByCbo->setAccessibleName(ui_->ActnFrmLbl->text());
}

}  // namespace kestrix
