#include "shell/reqfrm.h"

#include "platform/FileSystem.h"
#include "ui_reqfrm.h"

namespace kestrix {

reqfrm::reqfrm(Context& context) : SessionForm(context), ui_(std::make_unique<Ui::reqfrm>()) {
  ui_->setupUi(this);
  On(ui_->runsetp, &QPushButton::clicked, &reqfrm::runsetp_Click);
}

reqfrm::~reqfrm() = default;

void reqfrm::runsetp_Click() {
  try {
    LeaveWord();
  } catch (const Failure&) {
    // The notice stays, and the user closes it.
    return;
  }
  Q_EMIT ProgramEndRequested();
  UnloadForm();
}

void reqfrm::LeaveWord() {
  const QString path =
      JoinPath(platform().environment.DocumentsFolder(), QStringLiteral("\\ktxopnd.txt"));
  if (files().FileExists(path)) files().ReplaceText(path, QStringLiteral("File closed"));
}

}  // namespace kestrix
