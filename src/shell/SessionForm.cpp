#include "shell/SessionForm.h"

#include <QShortcut>

#include "shell/Companions.h"
#include "store/LookupList.h"

namespace kestrix {

SessionForm::SessionForm(Context& context) : Form(context.kit), context_(context) {
  connect(new QShortcut(Qt::Key_F1, this), &QShortcut::activated, this,
          [this] { Guarded([this] { companions::OpenChapter(context_, objectName()); }); });
}

bool SessionForm::IsDeletionWished(const QString& question, Icon icon) {
  session().MsgAnswer = Ask(icon, title::kDeleteRecord, question);
  return session().MsgAnswer == Button::kYes;
}

bool SessionForm::RefusesReserved(const QString& entry) {
  if (!lookup::IsReserved(entry)) return false;
  Tell(Icon::kInformation, title::kProgram, QStringLiteral("Cannot be deleted, reserved text."));
  return true;
}

bool SessionForm::LacksText(QWidget* box, const QString& text, const std::optional<QString>& kept) {
  if (text.isEmpty() || kept.has_value()) return false;
  Tell(Icon::kInformation, title::kProgram, QStringLiteral("Enter data."));
  FocusLater(box);
  return true;
}

}  // namespace kestrix
