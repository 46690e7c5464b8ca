#include "support/XServer.h"

#include <sys/prctl.h>
#include <xcb/xcb.h>

#include <QCoreApplication>
#include <QStandardPaths>
#include <QTest>
#include <csignal>
#include <cstdlib>

namespace kestrix {
namespace {

constexpr int kTimeLimit = 15'000;    // milliseconds
constexpr int kChildLimit = 100'000;  // milliseconds

/// A program that ends with this one, however this one ends.
std::unique_ptr<QProcess> MakeProgram() {
  auto program = std::make_unique<QProcess>();
  program->setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
  program->setStandardErrorFile(QProcess::nullDevice());
  return program;
}

void End(QProcess* process) {
  if (process == nullptr || process->state() == QProcess::NotRunning) return;
  process->kill();
  process->waitForFinished(kTimeLimit);
}

}  // namespace

namespace xlook {
namespace {

struct Freed {
  void operator()(void* memory) const { std::free(memory); }
};
template <typename T>
using Reply = std::unique_ptr<T, Freed>;

/// A connection for one look.
class Look {
 public:
  Look() : xcb_(::xcb_connect(nullptr, nullptr)) {}
  Look(const Look&) = delete;
  Look& operator=(const Look&) = delete;
  ~Look() { ::xcb_disconnect(xcb_); }

  [[nodiscard]] xcb_connection_t* xcb() const { return xcb_; }
  [[nodiscard]] bool Connected() const { return ::xcb_connection_has_error(xcb_) == 0; }
  [[nodiscard]] xcb_window_t Root() const {
    return ::xcb_setup_roots_iterator(::xcb_get_setup(xcb_)).data->root;
  }
  [[nodiscard]] xcb_window_t Focus() const {
    const Reply<xcb_get_input_focus_reply_t> reply(
        ::xcb_get_input_focus_reply(xcb_, ::xcb_get_input_focus(xcb_), nullptr));
    return reply ? reply->focus : XCB_NONE;
  }
  [[nodiscard]] QByteArray Property(xcb_window_t window, const QByteArray& name) const {
    const Reply<xcb_intern_atom_reply_t> atom(::xcb_intern_atom_reply(
        xcb_, ::xcb_intern_atom(xcb_, 0, static_cast<uint16_t>(name.size()), name.constData()),
        nullptr));
    if (!atom) return {};
    const Reply<xcb_get_property_reply_t> value(::xcb_get_property_reply(
        xcb_, ::xcb_get_property(xcb_, 0, window, atom->atom, XCB_GET_PROPERTY_TYPE_ANY, 0, 1024),
        nullptr));
    if (!value) return {};
    return {static_cast<const char*>(::xcb_get_property_value(value.get())),
            ::xcb_get_property_value_length(value.get())};
  }
  [[nodiscard]] QString Title(xcb_window_t window) const {
    return QString::fromUtf8(Property(window, "WM_NAME"));
  }
  [[nodiscard]] bool Shows(xcb_window_t window) const {
    const Reply<xcb_get_window_attributes_reply_t> reply(::xcb_get_window_attributes_reply(
        xcb_, ::xcb_get_window_attributes(xcb_, window), nullptr));
    return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE &&
           reply->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT;
  }
  /// From the bottom up.
  [[nodiscard]] std::vector<xcb_window_t> Children(xcb_window_t window) const {
    const Reply<xcb_query_tree_reply_t> tree(
        ::xcb_query_tree_reply(xcb_, ::xcb_query_tree(xcb_, window), nullptr));
    if (!tree) return {};
    const xcb_window_t* first = ::xcb_query_tree_children(tree.get());
    return {first, first + ::xcb_query_tree_children_length(tree.get())};
  }
  [[nodiscard]] xcb_window_t Parent(xcb_window_t window) const {
    const Reply<xcb_query_tree_reply_t> tree(
        ::xcb_query_tree_reply(xcb_, ::xcb_query_tree(xcb_, window), nullptr));
    return tree ? tree->parent : XCB_NONE;
  }
  [[nodiscard]] QString TitleAtOrBelow(xcb_window_t window) const {
    QString own = Title(window);
    if (!own.isEmpty()) return own;
    for (const xcb_window_t child : Children(window)) {
      QString below = TitleAtOrBelow(child);
      if (!below.isEmpty()) return below;
    }
    return {};
  }

 private:
  xcb_connection_t* xcb_;
};

/// A small window that asks to be shown until it is.
class Probe {
 public:
  Probe() : window_(::xcb_generate_id(look_.xcb())) {
    ::xcb_create_window(look_.xcb(), XCB_COPY_FROM_PARENT, window_, look_.Root(), 0, 0, 10, 10, 0,
                        XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
  }
  [[nodiscard]] bool IsShown() const {
    ::xcb_map_window(look_.xcb(), window_);
    return look_.Shows(window_);
  }

 private:
  Look look_;
  xcb_window_t window_;
};

}  // namespace
}  // namespace xlook

QString XServer::WhyNot(Manager manager) {
  if (QStandardPaths::findExecutable("Xvfb").isEmpty()) return "Xvfb isn't installed";
  if (manager == Manager::kOpenbox && QStandardPaths::findExecutable("openbox").isEmpty())
    return "openbox isn't installed";
  return {};
}

XServer::XServer(Manager manager, QSize screen)
    : old_display_(qgetenv("DISPLAY")), had_display_(qEnvironmentVariableIsSet("DISPLAY")) {
  ready_ = StartServer(screen) && (manager == Manager::kNone || StartManager());
}

XServer::~XServer() {
  for (const auto& program : programs_) End(program.get());
  End(manager_.get());
  End(server_.get());
  if (had_display_)
    qputenv("DISPLAY", old_display_);
  else
    qunsetenv("DISPLAY");
}

void XServer::Kill() {
  End(server_.get());
}

bool XServer::StartServer(QSize screen) {
  server_ = MakeProgram();
  // The server takes a free number itself and writes it to its output when it is ready. It may not
  // begin anew when its last client leaves: each look at it is a client that comes and goes.
  const QString size = QStringLiteral("%1x%2x24").arg(screen.width()).arg(screen.height());
  server_->start("Xvfb", {"-displayfd", "1", "-screen", "0", size, "-nolisten", "tcp", "-noreset"});
  QByteArray number;
  while (!number.contains('\n')) {
    if (!server_->waitForReadyRead(kTimeLimit)) return false;
    number += server_->readAllStandardOutput();
  }
  display_ = u':' + QString::fromLatin1(number.trimmed());
  qputenv("DISPLAY", display_.toLatin1());
  return true;
}

bool XServer::StartManager() {
  manager_ = MakeProgram();
  manager_->setStandardOutputFile(QProcess::nullDevice());
  manager_->start("openbox", {"--sm-disable"});
  if (!manager_->waitForStarted(kTimeLimit)) return false;
  // It announces itself before it listens to windows, so it is ready when it has shown one.
  xlook::Probe probe;
  return QTest::qWaitFor([&] { return xlook::ManagerRuns() && probe.IsShown(); }, kTimeLimit);
}

QProcess* XServer::OpenWindow(const QString& title, bool old_title, const QString& working_folder,
                              const QString& file) {
  const int before = xlook::CountTitled(title);
  auto program = MakeProgram();
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  if (old_title) environment.insert("KESTRIX_TEST_WINDOW_OLD_TITLE", "1");
  program->setProcessEnvironment(environment);
  if (!working_folder.isEmpty()) program->setWorkingDirectory(working_folder);
  QStringList arguments = {title};
  if (!file.isEmpty()) arguments.append(file);
  program->start(KESTRIX_TEST_WINDOW, arguments);
  if (!QTest::qWaitFor([&] { return xlook::CountTitled(title) > before; }, kTimeLimit))
    return nullptr;
  programs_.push_back(std::move(program));
  return programs_.back().get();
}

void XServer::CloseWindow(QProcess* program) {
  End(program);
}

std::string RunOnDisplay(const QString& filter) {
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert("QT_QPA_PLATFORM", "xcb");
  // The desktop's bus leaks a block of its own there; our leaks show without a display as well.
  environment.insert("ASAN_OPTIONS", environment.value("ASAN_OPTIONS") + ":detect_leaks=0");
  QProcess tests;
  tests.setProcessEnvironment(environment);
  tests.setProcessChannelMode(QProcess::MergedChannels);
  tests.start(QCoreApplication::applicationFilePath(), {"--gtest_filter=" + filter});
  if (!tests.waitForFinished(kChildLimit)) return "the tests didn't come to their end";
  const std::string printed = tests.readAll().toStdString();
  const bool all_passed = tests.exitStatus() == QProcess::NormalExit && tests.exitCode() == 0;
  const bool any_ran = printed.find("[       OK ]") != std::string::npos;
  return all_passed && any_ran ? std::string() : "on a display:\n" + printed;
}

namespace xlook {

bool ManagerRuns() {
  const Look look;
  return look.Connected() && !look.Property(look.Root(), "_NET_SUPPORTING_WM_CHECK").isEmpty() &&
         !look.Property(look.Root(), "_NET_SUPPORTED").isEmpty();
}

int CountTitled(const QString& title) {
  const Look look;
  if (!look.Connected()) return 0;
  int count = 0;
  for (const xcb_window_t window : look.Children(look.Root()))
    if (look.Shows(window) && look.TitleAtOrBelow(window) == title) ++count;
  return count;
}

QString FocusedTitle() {
  const Look look;
  if (!look.Connected()) return {};
  xcb_window_t window = look.Focus();
  while (window > XCB_INPUT_FOCUS_POINTER_ROOT && window != look.Root()) {
    QString title = look.Title(window);
    if (!title.isEmpty()) return title;
    window = look.Parent(window);
  }
  return {};
}

QString TopmostTitle() {
  const Look look;
  if (!look.Connected()) return {};
  const std::vector<xcb_window_t> windows = look.Children(look.Root());
  for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
    QString title = look.Shows(*window) ? look.TitleAtOrBelow(*window) : QString();
    if (!title.isEmpty()) return title;
  }
  return {};
}

}  // namespace xlook
}  // namespace kestrix
