#include "support/FakeServices.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTextDocument>

#include "platform/Failure.h"

namespace kestrix {

void FakeShell::FailIfTold() const {
  if (failure_ != 0) throw Failure(failure_, QStringLiteral("The start failed."));
}

void FakeShell::StartCompanion(const QString& name) {
  FailIfTold();
  companions_.append({name, files_.CurrentFolder()});
}

void FakeShell::OpenDocument(const QString& path, const std::function<void()>& /*failed*/) {
  FailIfTold();
  documents_.append({path, files_.CurrentFolder()});
}

void FakeWindows::Activate(const QString& title) {
  tried_.append(title);
  if (!handles_.contains(title))
    throw Failure(failure::kInvalidCall, QStringLiteral("There is no window \"%1\".").arg(title));
  activated_.append(title);
}

void FakeFileDialogs::Verify() {
  for (const Choice& missed : choices_)
    ADD_FAILURE() << "Expected file dialog to " << (missed.to_save ? "save" : "open")
                  << " never came; its choice was " << ::testing::PrintToString(missed.path);
  choices_.clear();
}

QString FakeFileDialogs::Answer(bool to_save, const FileDialogRequest& request) {
  shown_.append({to_save, request});
  if (choices_.empty() || choices_.front().to_save != to_save) {
    ADD_FAILURE() << "Unexpected file dialog to " << (to_save ? "save" : "open") << ": "
                  << ::testing::PrintToString(request.title);
    return {};
  }
  QString path = choices_.front().path;
  choices_.pop_front();
  return path;
}

bool FakePrinting::ChoosePrinter(const QString& title, bool selection) {
  dialogs_.append({title, selection});
  if (broken_) throw Failure(failure::kDeviceError, QStringLiteral("There is no printer."));
  return !cancel_;
}

void FakePrinting::Print(const QTextDocument& document) {
  if (broken_) throw Failure(failure::kDeviceError, QStringLiteral("There is no printer."));
  printed_.append(document.toPlainText());
}

FakeEnvironment::FakeEnvironment() {
  for (const char* root : {"SYSTEMROOT", "SYSTEMDRIVE", "PROGRAMFILES"})
    SetVariable(QString::fromLatin1(root), QStringLiteral("/"));
  SetVariable(QStringLiteral("TEMP"), QDir::tempPath());
}

}  // namespace kestrix
