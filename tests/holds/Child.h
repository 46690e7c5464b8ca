#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <functional>

#include "platform/Descriptor.h"

namespace kestrix::holds {

/// What a child process has in hand to tell its parent.
class Teller {
 public:
  explicit Teller(int fd) : fd_(fd) {}
  /// Tells one line at once; a line that was told is told even when the process is killed next.
  void operator()(const QString& line) const;

 private:
  int fd_;
};

/// A line behind which any number of children wait until it is lifted, so that they start as one.
class StartLine {
 public:
  StartLine();
  /// In a child: returns when the parent has lifted the line.
  void Wait() const;
  /// In the parent: lets all go.
  void Lift();

 private:
  Descriptor reading_;
  Descriptor writing_;
};

/// A forked process that does some work and tells line by line what it has done. Its parent can
/// kill it at any moment. It ends without the ends of its parent's objects; a Failure or another
/// exception that leaves the work is told as a last line, "Failure <number>: <description>".
class Child {
 public:
  using Work = std::function<void(const Teller&)>;

  explicit Child(const Work& work);
  /// Kills it when it is still there.
  ~Child();
  Child(Child&& other) noexcept;
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;
  Child& operator=(Child&&) = delete;

  /// Listens until at least `lines` lines were told, or for that many microseconds at most. False
  /// when it ended meanwhile.
  bool ListenFor(int lines, int microseconds);
  /// Everything that was told so far. A line that was cut off isn't told.
  [[nodiscard]] const QStringList& Told() const { return told_; }

  /// Kills it without a warning, and hears what it told until then.
  void Kill();
  /// Listens until its end. True when it came to it by itself and without a complaint.
  bool WaitForEnd();
  /// In words for a person: "ended", "ended with 1", "killed by signal 11".
  [[nodiscard]] QString HowItEnded() const { return end_; }

 private:
  bool Read();
  void Reap();

  int pid_ = -1;
  Descriptor reading_;
  QByteArray rest_;
  QStringList told_;
  QString end_;
  bool well_ = false;
};

}  // namespace kestrix::holds
