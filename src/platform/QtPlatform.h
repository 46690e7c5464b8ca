#pragma once

#include <QClipboard>
#include <QGuiApplication>

#include "platform/Messages.h"
#include "platform/QtClock.h"
#include "platform/QtFileDialogs.h"
#include "platform/QtFileSystem.h"
#include "platform/QtPrinting.h"
#include "platform/Services.h"
#include "platform/XDesktopWindows.h"

namespace kestrix {

/// Message boxes of the desktop. A box lies over the window in front and holds the program until it
/// is answered; boxes may stand over one another. Texts are shown as they are, never as markup:
/// names that a user typed are part of them.
class QtMessages : public Messages {
 public:
  Button Show(const Message& message) override;
  void Beep() override;
};

/// Starts companions and hands documents to the desktop's opener. A companion is the file of that
/// name in the current folder and nothing else: no search path takes part. A document is only ever
/// handed to the opener as its one argument, as a full path, so that no name of a file is taken for
/// an option or run as a program. What is started lives on by itself.
class QtShell : public Shell {
 public:
  void StartCompanion(const QString& name) override;
  using Shell::OpenDocument;
  void OpenDocument(const QString& path, const std::function<void()>& failed) override;
  void OpenPage(const QString& path, const QString& place) override;
};

/// The user's settings of this application in the place that the desktop gives for them. A value is
/// on the disk when Save returns. A place that can't be written is passed over: nothing that is
/// kept here is worth a message.
class QtSettings : public SettingsStore {
 public:
  [[nodiscard]] QString Get(const QString& section, const QString& key,
                            const QString& default_value) const override;
  void Save(const QString& section, const QString& key, const QString& value) override;
};

/// The clipboard that all programs of the desktop share.
class QtClipboard : public Clipboard {
 public:
  void Clear() override { QGuiApplication::clipboard()->clear(); }
  void SetText(const QString& text) override { QGuiApplication::clipboard()->setText(text); }
  [[nodiscard]] QString Text() const override { return QGuiApplication::clipboard()->text(); }
};

/// The environment of this process and the user's places. It only looks; it sets nothing.
class QtEnvironment : public Environment {
 public:
  [[nodiscard]] QString ApplicationFolder() const override;
  [[nodiscard]] QString ApplicationTitle() const override;
  [[nodiscard]] QString Variable(const QString& name) const override;
  /// The user's documents; the home folder where there is no such folder.
  [[nodiscard]] QString DocumentsFolder() const override;
  [[nodiscard]] QStringList Drives() const override;
};

/// Owns the services of a Qt desktop for the whole run and hands them out. It is made once, after
/// the application object, and outlives every form. It decides nothing.
class QtPlatform {
 public:
  QtPlatform() = default;
  Q_DISABLE_COPY_MOVE(QtPlatform)

  [[nodiscard]] Platform& platform() { return platform_; }

 private:
  QtMessages messages_;
  QtFileSystem files_;
  QtShell shell_;
  XDesktopWindows windows_;
  QtSettings settings_;
  QtFileDialogs dialogs_;
  QtPrinting printing_;
  QtClipboard clipboard_;
  QtClock clock_;
  QtEnvironment environment_;
  Platform platform_{messages_, files_,    shell_,     windows_, settings_,
                     dialogs_,  printing_, clipboard_, clock_,   environment_};
};

}  // namespace kestrix
