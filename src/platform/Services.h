#pragma once

#include <QDate>
#include <QString>
#include <QStringList>
#include <functional>

class QTextDocument;

namespace kestrix {

/// Starts other programs and opens documents.
class Shell {
 public:
  virtual ~Shell() = default;
  /// Starts the program file `name` of the current folder, without arguments and without waiting.
  /// Fails with kFileNotFound.
  virtual void StartCompanion(const QString& name) = 0;
  /// Hands a file (a name in the current folder, or a full path) to the desktop's opener for its
  /// type. Never executes the file itself. Fails with kFileNotFound when there is no such file, and
  /// with kInvalidCall when the desktop has no opener. `failed` is told later when the opener ends
  /// with an error, as where no application takes the type.
  virtual void OpenDocument(const QString& path, const std::function<void()>& failed) = 0;
  void OpenDocument(const QString& path) { OpenDocument(path, {}); }
  /// The same for a page with anchors, at the anchor `place`.
  virtual void OpenPage(const QString& path, const QString& place) = 0;
};

/// The top-level windows of all programs on the desktop, by their exact titles.
class DesktopWindows {
 public:
  virtual ~DesktopWindows() = default;
  /// A handle of the window titled `title`, or 0. Where there is no X display it is always 0.
  [[nodiscard]] virtual quint32 Find(const QString& title) = 0;
  /// Brings the window titled `title` to the front. Fails with kInvalidCall when there is none.
  virtual void Activate(const QString& title) = 0;
};

/// What the program remembers of this user between two runs. Values are texts.
class SettingsStore {
 public:
  virtual ~SettingsStore() = default;
  [[nodiscard]] virtual QString Get(const QString& section, const QString& key,
                                    const QString& default_value) const = 0;
  virtual void Save(const QString& section, const QString& key, const QString& value) = 0;
};

/// One file dialog. Filters have the form "All Files (*.*)|*.*|Text (*.txt)|*.txt".
struct FileDialogRequest {
  QString title;
  QString filter;
  int filter_index = 1;  ///< from 1
  QString file_name;
  QString folder;  ///< where it comes up; where there is no such folder, in that of its last use
};

class FileDialogs {
 public:
  virtual ~FileDialogs() = default;
  /// The full path that was chosen, or an empty text when the dialog was cancelled.
  virtual QString Open(const FileDialogRequest& request) = 0;
  virtual QString Save(const FileDialogRequest& request) = 0;
};

class Printing {
 public:
  virtual ~Printing() = default;
  /// Shows the printer dialog. With `selection` it offers the selection, else all of the text.
  /// False when it was cancelled.
  virtual bool ChoosePrinter(const QString& title, bool selection) = 0;
  /// Prints on the printer that was last chosen. Fails with kDeviceError.
  virtual void Print(const QTextDocument& document) = 0;
};

class Clipboard {
 public:
  virtual ~Clipboard() = default;
  virtual void Clear() = 0;
  virtual void SetText(const QString& text) = 0;
  [[nodiscard]] virtual QString Text() const = 0;
};

class Clock {
 public:
  virtual ~Clock() = default;
  [[nodiscard]] virtual QDate Today() const = 0;
};

/// The process environment and the places of the user.
class Environment {
 public:
  virtual ~Environment() = default;
  /// The folder that the program file lies in, without a trailing separator.
  [[nodiscard]] virtual QString ApplicationFolder() const = 0;
  [[nodiscard]] virtual QString ApplicationTitle() const = 0;
  /// SYSTEMROOT, TEMP, SYSTEMDRIVE and PROGRAMFILES always have a value: "/" for the drives and the
  /// program folders, the temporary folder for TEMP, unless the process environment says otherwise.
  [[nodiscard]] virtual QString Variable(const QString& name) const = 0;
  [[nodiscard]] virtual QString DocumentsFolder() const = 0;
  /// The roots of the mounted volumes that a person may store files on, "/" first.
  [[nodiscard]] virtual QStringList Drives() const = 0;
};

/// All services of the desktop, handed by reference to whoever needs one. It owns none of them.
struct Platform {
  class Messages& messages;
  class FileSystem& files;
  Shell& shell;
  DesktopWindows& windows;
  SettingsStore& settings;
  FileDialogs& dialogs;
  Printing& printing;
  Clipboard& clipboard;
  Clock& clock;
  Environment& environment;
};

/// `tail` is a required path with "\" between folders, e.g. "\\RskAsmtFld\\orgtn.mdb"; the result
/// is `folder` with that tail in the separators of this platform.
[[nodiscard]] QString JoinPath(const QString& folder, const QString& tail);

}  // namespace kestrix
