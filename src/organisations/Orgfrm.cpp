#include "organisations/Orgfrm.h"

#include <QEvent>

#include "formkit/Controls.h"
#include "platform/FileSystem.h"
#include "ui_Orgfrm.h"

namespace kestrix {

using namespace organisations;

namespace {

constexpr auto kTag = "Tag";
constexpr int kNameLength = 255;

/// A menu entry underlines the letter behind an ampersand; a doubled one stands for itself.
QString AsEntry(QString name) {
  return name.replace(u'&', QStringLiteral("&&"));
}
QString FromEntry(QString caption) {
  return caption.replace(QStringLiteral("&&"), QStringLiteral("&"));
}

}  // namespace

Orgfrm::Orgfrm(Context& context)
    : SessionForm(context), ui_(std::make_unique<Ui::Orgfrm>()), register_(context, this) {
  ui_->setupUi(this);
  // Names are typed into the text box, which lies over the combo's own line.
  ui_->orgnmecbo->lineEdit()->setReadOnly(true);
  ui_->orgnmecbo->lineEdit()->setMaxLength(kNameLength);
  for (QObject* face :
       {static_cast<QObject*>(ui_->orgnmecbo), static_cast<QObject*>(ui_->orgnmecbo->lineEdit()),
        static_cast<QObject*>(ui_->orgnmecbotxt)}) {
    face->installEventFilter(this);
  }
  On(ui_->orgnmecbo, &QComboBox::activated, &Orgfrm::orgnmecbo_Click);
  On(ui_->orgnmecbotxt, &QLineEdit::textChanged, &Orgfrm::orgnmecbotxt_Change);
  OnLostFocus(ui_->orgnmecbotxt, &Orgfrm::orgnmecbotxt_LostFocus);
  On(ui_->clsd, &QPushButton::clicked, &Orgfrm::clsd_Click);
  On(ui_->addorncmd, &QPushButton::clicked, &Orgfrm::addorncmd_Click);
  On(ui_->delte, &QPushButton::clicked, &Orgfrm::delte_Click);
  On(ui_->clsed, &QPushButton::clicked, &Form::UnloadForm);
  On(ui_->fle, &QMenu::aboutToShow, &Orgfrm::fle_Click);
  On(ui_->hstry, &QAction::triggered, &Orgfrm::hstry_Click);
}

Orgfrm::~Orgfrm() = default;

void Orgfrm::Load() {
  try {
    files().ChangeFolder(installation().ApplicationFolder());
    session().OrgDbPath = installation().Register();
    ListNames(register_.Open(session().OrgDbPath));
    session().OrgEntryMode = kIdle;
    ui_->orgnmecbotxt->setText(Name());
  } catch (const Failure&) {
    Tell(Icon::kCritical, title::kFilesMissing,
         QStringLiteral("More files required run setup/Installed Files missing"));
    UnloadForm();
    Q_EMIT ProjectFormUnloadRequested();
    Q_EMIT LoadFailed();
  }
}

/// The combo lists the names, and its text stays.
void Orgfrm::ListNames(const QStringList& names) {
  const QString name = Name();
  FillCombo(ui_->orgnmecbo, names);
  SetName(name);
}

QString Orgfrm::Name() const {
  return ui_->orgnmecbo->currentText();
}

void Orgfrm::SetName(const QString& name) {
  ui_->orgnmecbo->setEditText(name);
}

bool Orgfrm::IsAdding() const {
  return ui_->addorncmd->property(kTag).toString() == u'1';
}

/// A restore below this form, or another user, has changed the register. A name that is listed no
/// more is no choice any more. Not below a command whose message is up: it stands on its row.
void Orgfrm::ReadRegisterAgain() {
  if (deleting_ || register_.Organisations().HasPendingEdit()) return;
  const auto listed = [this] { return ui_->orgnmecbo->findText(Name(), Qt::MatchExactly) >= 0; };
  const bool was_listed = listed();
  ListNames(register_.Open(session().OrgDbPath));
  if (!was_listed || listed()) return;
  SetName(kNoOrganisation);
  ui_->orgnmecbotxt->setText(kNoOrganisation);
}

void Orgfrm::Activate() {
  try {
    ReadRegisterAgain();
    if (register_.Count() == 0) {
      ui_->addorncmd->setEnabled(true);
      ui_->clsed->setEnabled(true);
    } else if (IsAdding()) {
      ui_->clsed->setEnabled(false);
      ui_->clsd->setEnabled(true);
      session().StudyConnected = 0;
    }
  } catch (const Failure&) {
    // The register got lost meanwhile: the buttons stay as they are.
  }
}

void Orgfrm::Deactivate() {
  TakeFrontBack();
}

void Orgfrm::Unload() {
  Q_EMIT Closing();
  session().OrgEntryMode = kIdle;
}

bool Orgfrm::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::MouseButtonDblClick) {
    // The text box is the face of the combo, except while a name is typed into it.
    const bool typing = watched == ui_->orgnmecbotxt && !ui_->orgnmecbotxt->isReadOnly();
    if (!typing) {
      Guarded([this] { clsd_Click(); });
      return true;
    }
  }
  return SessionForm::eventFilter(watched, event);
}

void Orgfrm::orgnmecbo_Click() {
  if (IsNoName(Name())) {
    ui_->clsd->setEnabled(false);
    ui_->clsed->setEnabled(false);
    return;
  }
  ui_->orgnmecbotxt->setText(Name());
  ui_->orgnmecbotxt->home(false);  // a long name is read from its beginning
  ui_->clsd->setEnabled(true);
  ui_->clsed->setEnabled(false);
}

void Orgfrm::orgnmecbotxt_Change() {
  ui_->clsd->setEnabled(true);
  ui_->clsed->setEnabled(session().OrgEntryMode != kAdding);
}

void Orgfrm::addorncmd_Click() {
  ui_->addorncmd->setProperty(kTag, QStringLiteral("1"));
  ui_->clsd->setProperty(kTag, QStringLiteral("0"));
  session().OrgEntryMode = kAdding;
  SetName(QString());
  ui_->orgnmecbo->setEnabled(false);
  ui_->orgnmecbotxt->setReadOnly(false);
  for (QWidget* command : {ui_->addorncmd, ui_->clsd, ui_->clsed}) command->setEnabled(false);
  FocusLater(ui_->orgnmecbotxt);
  ui_->orgnmecbotxt->setText(Name());
}

void Orgfrm::orgnmecbotxt_LostFocus() {
  const QString name = ui_->orgnmecbotxt->text();
  if (name.startsWith(u' ')) return RefuseLeadingSpace();
  // The placeholder is no organisation, and projects are stored below the name that is kept here.
  session().SelectedOrgName = IsNoName(Name()) ? QString() : Name();
  SetName(name);
  EnteredOrgName_ = name;
  if (session().OrgEntryMode == kIdle) return;
  if (IsNoName(name)) return DemandName();
  try {
    if (session().OrgEntryMode == kAdding && !AddOrganisation(name)) return;
  } catch (const Failure&) {
    return;
  }
  ui_->orgnmecbotxt->setReadOnly(true);
  ui_->orgnmecbo->setEnabled(true);
  ui_->clsd->setEnabled(true);
  ui_->orgnmecbotxt->setText(Name());
}

void Orgfrm::RefuseLeadingSpace() {
  Tell(Icon::kCritical, title::kProgram, QStringLiteral("Can not begin with a space."));
  SetBackColour(ui_->orgnmecbotxt, colour::kWarning);
  FocusLater(ui_->orgnmecbotxt, [this] { ui_->orgnmecbotxt->setSelection(0, 1); });
}

void Orgfrm::DemandName() {
  Tell(Icon::kInformation, QStringLiteral("BELTROVAN: Data required"),
       QStringLiteral("Please enter/select Organization name."));
  FocusLater(ui_->orgnmecbotxt);
  ui_->clsd->setEnabled(false);
  ui_->clsed->setEnabled(false);
}

bool Orgfrm::AddOrganisation(const QString& name) {
  ListNames(register_.ReadNames());
  try {
    register_.Add(name);
  } catch (const Failure& failure) {
    if (failure.number() != failure::kDuplicate) throw;
    OpenDuplicate();
    return false;
  }
  ListNames(register_.ReadNames());
  ui_->clsd->setEnabled(true);
  FocusLater(ui_->clsd);
  ui_->clsed->setEnabled(false);
  session().OrgEntryMode = kIdle;
  clsd_Click();
  return true;
}

/// A name that is known already opens its organisation instead of being refused.
void Orgfrm::OpenDuplicate() {
  Tell(Icon::kCritical, QStringLiteral("BELTROVAN: Duplication"),
       QStringLiteral("Organization name [%1] already exists.").arg(Name()));
  ui_->addorncmd->setProperty(kTag, QStringLiteral("0"));
  session().OrgEntryMode = kIdle;
  session().SelectedOrgName = Name();
  session().ActiveOrgName = Name();
  clsd_Click();
}

void Orgfrm::fle_Click() {
  try {
    ui_->hstry->setText(AsEntry(register_.NameOfLastOpened()));
  } catch (const Failure&) {
    // No organisation has that number any more: the entry keeps its caption.
  }
}

void Orgfrm::hstry_Click() {
  const QString name = FromEntry(ui_->hstry->text());
  if (name.isEmpty()) return;
  try {
    register_.GoTo(name);
  } catch (const Failure&) {
    return;
  }
  SetName(name);
  ui_->orgnmecbotxt->setText(name);
  session().SelectedOrgName = name;
  ui_->clsd->setEnabled(true);
  ui_->clsed->setEnabled(false);
  if (session().OrgEntryMode == kAdding) DropEntry();
  FocusLater(ui_->orgnmecbo);
  clsd_Click();
}

/// A name that was being added is given up; none is numbered as if it had just been added.
void Orgfrm::DropEntry() {
  ui_->addorncmd->setProperty(kTag, QStringLiteral("0"));
  session().OrgEntryMode = kIdle;
  ui_->orgnmecbotxt->setReadOnly(true);
  ui_->orgnmecbo->setEnabled(true);
  ui_->addorncmd->setEnabled(true);
}

}  // namespace kestrix
