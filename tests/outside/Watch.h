#pragma once

#include <QGenericPlugin>
#include <QLocalServer>

namespace kestrix {

/// Sits inside the shipped program while a test works it from outside, and tells what a person sees
/// there: one question, one answer. It shows what stands on the screen and where; it never touches
/// the program, whose keys and clicks come from the display.
class Watch : public QObject {
  Q_OBJECT

 public:
  /// Answers on the local socket at `path`; every line that comes in is answered with one line.
  explicit Watch(const QString& path);

 private:
  void Answer();

  QLocalServer server_;
};

/// What the program's toolkit loads by name: kestrixwatch:<path of the socket>.
class WatchPlugin : public QGenericPlugin {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "watch.json")

 public:
  QObject* create(const QString& name, const QString& path) override;
};

}  // namespace kestrix
