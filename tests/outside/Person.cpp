#include "outside/Person.h"

#include <gtest/gtest.h>
#include <sys/prctl.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QLocalSocket>
#include <QPoint>
#include <QSettings>
#include <QStandardPaths>
#include <QTest>
#include <csignal>

namespace kestrix {
namespace {

constexpr int kTimeLimit = 20'000;  // milliseconds

void Tool(const QStringList& arguments) {
  QProcess::execute("xdotool", arguments);
}

/// The window that the manager takes for the active one; empty where there is no manager.
QString ManagersWindow() {
  QProcess tool;
  tool.start("xdotool", {"getactivewindow"});
  if (!tool.waitForFinished(kTimeLimit) || tool.exitCode() != 0) return {};
  return QString::fromLatin1(tool.readAllStandardOutput()).trimmed();
}

QRect PlaceOf(const QJsonObject& what) {
  return {what["x"].toInt(), what["y"].toInt(), what["width"].toInt(), what["height"].toInt()};
}

}  // namespace

QString Person::WhyNot(XServer::Manager manager) {
  if (QStandardPaths::findExecutable("xdotool").isEmpty()) return "xdotool isn't installed";
  return XServer::WhyNot(manager);
}

Person::Person(const QString& family, const QStringList& variables, const QStringList& arguments)
    : family_(family), variables_(variables), arguments_(arguments) {}

Person::~Person() {
  Kill();
}

bool Person::Start() {
  ++starts_;
  program_ = std::make_unique<QProcess>();
  program_->setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
  program_->setProcessChannelMode(QProcess::ForwardedChannels);
  program_->setWorkingDirectory(place_.path());
  QStringList environment = QProcess::systemEnvironment();
  environment += {"QT_QPA_PLATFORM=xcb", "XDG_CONFIG_HOME=" + place_.filePath("config"),
                  "XDG_RUNTIME_DIR=" + place_.path(), "HOME=" + place_.path(), "LC_ALL=C.UTF-8",
                  // The desktop's bus leaks a block of its own there.
                  "ASAN_OPTIONS=detect_leaks=0", "QT_PLUGIN_PATH=" KESTRIX_WATCH_PLUGINS,
                  QStringLiteral("QT_QPA_GENERIC_PLUGINS=kestrixwatch:%1/watch%2")
                      .arg(place_.path())
                      .arg(starts_)};
  program_->setEnvironment(environment + variables_);
  program_->start(Path("KestrixStudy"), arguments_);
  return Sees([this] { return !Window("frmMain").isEmpty(); });
}

void Person::Kill() {
  if (!program_ || program_->state() == QProcess::NotRunning) return;
  program_->kill();
  program_->waitForFinished(kTimeLimit);
}

bool Person::Ended() {
  return program_->waitForFinished(kTimeLimit) && program_->exitStatus() == QProcess::NormalExit &&
         program_->exitCode() == 0;
}

QJsonObject Person::Look() const {
  QLocalSocket socket;
  socket.connectToServer(place_.filePath(QStringLiteral("watch%1").arg(starts_)));
  if (!socket.waitForConnected(kTimeLimit)) return {};
  socket.write("\n");
  QByteArray answer;
  while (!answer.endsWith('\n')) {
    if (!socket.bytesAvailable() && !socket.waitForReadyRead(kTimeLimit)) return {};
    answer += socket.readAll();
  }
  return QJsonDocument::fromJson(answer).object();
}

QJsonObject Person::Window(const QString& name) const {
  const QJsonArray windows = Look()["windows"].toArray();
  for (const QJsonValue window : windows)
    if (window["name"].toString() == name) return window.toObject();
  return {};
}

QJsonObject Person::Control(const QString& name) const {
  QJsonObject best;
  int best_rank = -1;
  // What stands in the front answers the hand at once; a menu is in the front while it is open.
  const auto is_front = [](const QJsonValue& window) {
    return window["active"].toBool() || window["class"].toString() == "QMenu";
  };
  const QJsonArray windows = Look()["windows"].toArray();
  for (const QJsonValue window : windows) {
    const QJsonArray controls = window["controls"].toArray();
    for (const QJsonValue control : controls) {
      if (control["name"].toString() != name) continue;
      const int rank = (control["visible"].toBool() ? 2 : 0) + (is_front(window) ? 1 : 0);
      if (rank <= best_rank) continue;
      best_rank = rank;
      best = control.toObject();
      best["front"] = is_front(window);
    }
  }
  return best;
}

QString Person::Text(const QString& name) const {
  return Control(name)["text"].toString();
}

QString Person::Active() const {
  return Look()["active"].toString();
}

QString Person::Focus() const {
  return Look()["focus"].toString();
}

QJsonObject Person::BoxWindow() const {
  const QJsonArray windows = Look()["windows"].toArray();
  for (const QJsonValue window : windows)
    if (window["class"].toString() == "QMessageBox") return window.toObject();
  return {};
}

QString Person::Box() const {
  const QJsonObject box = BoxWindow();
  const QJsonArray controls = box["controls"].toArray();
  for (const QJsonValue control : controls)
    if (control["name"].toString() == "qt_msgbox_label")
      return box["title"].toString() + '|' + control["text"].toString();
  return {};
}

bool Person::Sees(const std::function<bool()>& wanted) const {
  return QTest::qWaitFor(wanted, kTimeLimit);
}

bool Person::SeesActive(const QString& window) const {
  return Sees([&] { return Active() == window; });
}

bool Person::SeesFocus(const QString& control) const {
  return Sees([&] { return Focus() == control; });
}

bool Person::SeesBox(const QString& title_and_text) const {
  return Sees([&] { return Box() == title_and_text; });
}

bool Person::SeesText(const QString& control, const QString& text) const {
  return Sees([&] { return Text(control) == text; });
}

bool Person::Click(const QString& control) {
  QJsonObject found;
  const auto is_there = [&] {
    // A window that is just coming up moves: twice the same is where it stays.
    const QJsonObject before = std::exchange(found, Control(control));
    return found["visible"].toBool() && found["enabled"].toBool() && found["front"].toBool() &&
           PlaceOf(before) == PlaceOf(found);
  };
  if (!Sees(is_there)) return false;
  ClickAt(PlaceOf(found).center());
  return true;
}

void Person::ClickAt(const QPoint& place) {
  Tool({"mousemove", QString::number(place.x()), QString::number(place.y()), "click", "1"});
}

void Person::Press(const QStringList& keys) {
  AwaitKeyboard();
  Tool(QStringList{"key", "--delay", "30"} + keys);
}

void Person::Type(const QString& text) {
  AwaitKeyboard();
  Tool({"type", "--delay", "30", text});
}

bool Person::BringUp(const QString& window) {
  Do("windowactivate", Window(window));
  return SeesActive(window);
}

bool Person::BringUpBox() {
  Do("windowactivate", BoxWindow());
  return Sees([this] { return BoxWindow()["active"].toBool(); });
}

void Person::AwaitKeyboard() const {
  const auto has_keyboard = [this] {
    const QJsonObject look = Look();
    QJsonObject active;
    for (const QJsonValue window : look["windows"].toArray()) {
      if (window["active"].toBool()) active = window.toObject();
      // An open box takes every key, and it doesn't have them the moment that it shows.
      if (window["class"].toString() == "QMessageBox" && !window["active"].toBool()) return false;
    }
    if (active.isEmpty()) return false;
    // A window manager's own keys, as Alt+F4, go to the window that it takes for the active one,
    // and it learns of the focus a moment after the window itself.
    const QString managed = ManagersWindow();
    return managed.isEmpty() || managed == active["id"].toString();
  };
  if (!Sees(has_keyboard)) ADD_FAILURE() << "no window of the program has the keyboard";
}

bool Person::Minimise(const QString& window) {
  return Sees([&] { return Do("windowminimize", Window(window)); });
}

bool Person::Do(const QString& command, const QJsonObject& window) {
  QProcess tool;
  tool.start("xdotool",
             {"search", "--all", "--onlyvisible", "--pid", QString::number(program_->processId()),
              "--name", window["title"].toString().trimmed(), command});
  return tool.waitForFinished(kTimeLimit) && tool.exitStatus() == QProcess::NormalExit &&
         tool.exitCode() == 0;
}

QString Person::Path(const QString& tail) const {
  return family_ + "/KestrixStudy/" + tail;
}

QString Person::Setting(const QString& key) const {
  const QSettings settings(place_.filePath("config/KestrixStudy/KestrixStudy.conf"),
                           QSettings::IniFormat);
  return settings.value("Settings/" + key).toString();
}

}  // namespace kestrix
