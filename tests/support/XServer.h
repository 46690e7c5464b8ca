#pragma once

#include <QProcess>
#include <QSize>
#include <QString>
#include <memory>
#include <string>
#include <vector>

namespace kestrix {

/// A display of its own for one test, with or without a window manager. While it lives, DISPLAY
/// names it; what it started ends with it.
class XServer {
 public:
  enum class Manager { kNone, kOpenbox };

  /// Why there can be no display here; empty when there can be one.
  [[nodiscard]] static QString WhyNot(Manager manager);

  explicit XServer(Manager manager, QSize screen = {1280, 800});
  XServer(const XServer&) = delete;
  XServer& operator=(const XServer&) = delete;
  ~XServer();

  /// Whether display and manager came up within their time.
  [[nodiscard]] bool Ready() const { return ready_; }
  [[nodiscard]] const QString& Display() const { return display_; }
  /// Ends the server alone, as a crash would; the environment stays.
  void Kill();

  /// Starts the window program with that title and waits until its window shows. `working_folder`
  /// empty is ours. With `old_title` the window is titled without _NET_WM_NAME. The program is
  /// owned by this display; nullptr when no window came.
  QProcess* OpenWindow(const QString& title, bool old_title = false,
                       const QString& working_folder = {}, const QString& file = {});
  /// Ends a program that OpenWindow started.
  void CloseWindow(QProcess* program);

 private:
  [[nodiscard]] bool StartServer(QSize screen);
  [[nodiscard]] bool StartManager();

  QString display_;
  QByteArray old_display_;
  bool had_display_;
  bool ready_ = false;
  // The server is the last to go.
  std::unique_ptr<QProcess> server_;
  std::unique_ptr<QProcess> manager_;
  std::vector<std::unique_ptr<QProcess>> programs_;
};

/// Runs these tests of this very program once more, in a child that shows its windows on the
/// display that DISPLAY names. Empty when at least one ran and none failed, else what was printed.
[[nodiscard]] std::string RunOnDisplay(const QString& filter);

/// Looks at the display that DISPLAY names as a test needs it, apart from what is tested.
namespace xlook {
/// Whether a window manager that keeps a list of windows runs.
[[nodiscard]] bool ManagerRuns();
/// The top-level windows that show and have that title, in the frames of a window manager or not.
[[nodiscard]] int CountTitled(const QString& title);
/// The title of the window with the keyboard, or of the first window above it that has one.
[[nodiscard]] QString FocusedTitle();
/// The title found in the topmost window that shows, at its own or below it.
[[nodiscard]] QString TopmostTitle();
}  // namespace xlook

}  // namespace kestrix
