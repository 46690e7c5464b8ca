#pragma once

#include <QHash>
#include <QMap>
#include <deque>
#include <optional>

#include "platform/FileSystem.h"
#include "platform/Services.h"
#include "support/Printers.h"

namespace kestrix {

/// Records what would have been started. It starts nothing and doesn't look for the files; a test
/// that wants a failure says so.
class FakeShell : public Shell {
 public:
  /// `name` as it was given, and the current folder at that moment.
  struct Started {
    QString name;
    QString folder;
    bool operator==(const Started&) const = default;
  };

  explicit FakeShell(const FileSystem& files) : files_(files) {}

  void StartCompanion(const QString& name) override;
  using Shell::OpenDocument;
  void OpenDocument(const QString& path, const std::function<void()>& failed) override;
  void OpenPage(const QString& path, const QString& place) override {
    OpenDocument(path + u'#' + place);
  }

  /// Every later start and opening fails with `number`; 0 ends that.
  void FailWith(int number) { failure_ = number; }
  [[nodiscard]] const QList<Started>& Companions() const { return companions_; }
  [[nodiscard]] const QList<Started>& Documents() const { return documents_; }

 private:
  void FailIfTold() const;

  const FileSystem& files_;
  QList<Started> companions_;
  QList<Started> documents_;
  int failure_ = 0;
};

/// A desktop with the windows that a test puts on it.
class FakeWindows : public DesktopWindows {
 public:
  void Open(const QString& title) { handles_.insert(title, ++last_handle_); }
  void Close(const QString& title) { handles_.remove(title); }
  /// Titles brought to the front, in order, the failed ones left out.
  [[nodiscard]] const QStringList& Activated() const { return activated_; }
  /// Titles that were to be brought to the front, in order, the failed ones included.
  [[nodiscard]] const QStringList& ActivationsTried() const { return tried_; }

  [[nodiscard]] quint32 Find(const QString& title) override { return handles_.value(title, 0); }
  void Activate(const QString& title) override;

 private:
  QHash<QString, quint32> handles_;
  quint32 last_handle_ = 0;
  QStringList activated_;
  QStringList tried_;
};

/// Settings that live as long as the test.
class FakeSettings : public SettingsStore {
 public:
  [[nodiscard]] QString Get(const QString& section, const QString& key,
                            const QString& default_value) const override {
    return values_.value({section, key}, default_value);
  }
  void Save(const QString& section, const QString& key, const QString& value) override {
    values_.insert({section, key}, value);
  }
  [[nodiscard]] bool Has(const QString& section, const QString& key) const {
    return values_.contains({section, key});
  }
  [[nodiscard]] int Count() const { return static_cast<int>(values_.size()); }

 private:
  QMap<QPair<QString, QString>, QString> values_;
};

/// A queue of choices for the file dialogs that a test expects. A dialog without a choice fails the
/// test and is cancelled; so does one of the wrong kind. A choice that nobody asked for fails it in
/// the destructor.
class FakeFileDialogs : public FileDialogs {
 public:
  struct Shown {
    bool to_save = false;
    FileDialogRequest request;
  };

  FakeFileDialogs() = default;
  FakeFileDialogs(const FakeFileDialogs&) = delete;
  FakeFileDialogs& operator=(const FakeFileDialogs&) = delete;
  ~FakeFileDialogs() override { Verify(); }

  /// The next dialog is an opening one and gives `path`; an empty path is a cancelled dialog.
  void ChooseToOpen(const QString& path) { choices_.push_back({false, path}); }
  /// The next dialog is a saving one and gives `path`; an empty path is a cancelled dialog.
  void ChooseToSave(const QString& path) { choices_.push_back({true, path}); }
  void Verify();
  [[nodiscard]] const QList<Shown>& Requests() const { return shown_; }

  QString Open(const FileDialogRequest& request) override { return Answer(false, request); }
  QString Save(const FileDialogRequest& request) override { return Answer(true, request); }

 private:
  struct Choice {
    bool to_save;
    QString path;
  };
  QString Answer(bool to_save, const FileDialogRequest& request);

  std::deque<Choice> choices_;
  QList<Shown> shown_;
};

/// A printer that keeps the text of what it prints.
class FakePrinting : public Printing {
 public:
  struct Chosen {
    QString title;
    bool selection = false;
    bool operator==(const Chosen&) const = default;
  };

  void CancelDialogs(bool cancel) { cancel_ = cancel; }
  /// Every later use of the printer fails with kDeviceError.
  void BreakPrinter() { broken_ = true; }
  [[nodiscard]] const QList<Chosen>& Dialogs() const { return dialogs_; }
  [[nodiscard]] const QStringList& Printed() const { return printed_; }

  bool ChoosePrinter(const QString& title, bool selection) override;
  void Print(const QTextDocument& document) override;

 private:
  bool cancel_ = false;
  bool broken_ = false;
  QList<Chosen> dialogs_;
  QStringList printed_;
};

class FakeClipboard : public Clipboard {
 public:
  void Clear() override {
    text_.clear();
    ++clears_;
  }
  void SetText(const QString& text) override { text_ = text; }
  [[nodiscard]] QString Text() const override { return text_; }
  [[nodiscard]] int Clears() const { return clears_; }

 private:
  QString text_;
  int clears_ = 0;
};

/// A day that stands still until the test moves it.
class FakeClock : public Clock {
 public:
  void SetToday(QDate today) { today_ = today; }
  [[nodiscard]] QDate Today() const override { return today_; }

 private:
  QDate today_ = QDate(2013, 2, 15);
};

/// A process environment and user places that a test sets. SYSTEMROOT, SYSTEMDRIVE and PROGRAMFILES
/// are "/" and TEMP is the temporary folder unless set.
class FakeEnvironment : public Environment {
 public:
  FakeEnvironment();
  void SetApplicationFolder(const QString& folder) { application_folder_ = folder; }
  void SetApplicationTitle(const QString& title) { application_title_ = title; }
  void SetVariable(const QString& name, const QString& value) { variables_.insert(name, value); }
  void SetDocumentsFolder(const QString& folder) { documents_folder_ = folder; }
  void SetDrives(const QStringList& drives) { drives_ = drives; }

  [[nodiscard]] QString ApplicationFolder() const override { return application_folder_; }
  [[nodiscard]] QString ApplicationTitle() const override { return application_title_; }
  [[nodiscard]] QString Variable(const QString& name) const override {
    return variables_.value(name);
  }
  [[nodiscard]] QString DocumentsFolder() const override { return documents_folder_; }
  [[nodiscard]] QStringList Drives() const override { return drives_; }

 private:
  QString application_folder_;
  QString application_title_ = QStringLiteral("KestrixStudy");
  QString documents_folder_;
  QHash<QString, QString> variables_;
  QStringList drives_ = {QStringLiteral("/")};
};

}  // namespace kestrix
