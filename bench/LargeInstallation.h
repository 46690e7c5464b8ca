#pragma once

#include <QString>
#include <QStringList>

namespace kestrix::bench {

/// Ends the measurement with a sentence.
[[noreturn]] void GiveUp(const QString& why);

/// Runs a program to its end, as a person would have it run.
void RunProgram(const QStringList& words);

/// A new folder with an installation of many busy organisations, numbered from 1: each has a study
/// full of tasks, and pictures. All of it is on the disk when it is there.
class LargeInstallation {
 public:
  static constexpr int kStudies = 200;
  static constexpr int kTasks = 1000;
  static constexpr int kPicturesOfEach = 2;

  explicit LargeInstallation(const QString& folder);

  [[nodiscard]] const QString& Folder() const { return folder_; }
  /// Databases and pictures: all that a backup copies.
  [[nodiscard]] QString Data() const;
  /// From now on only the first `studies` organisations stand in the register.
  void List(int studies) const;

 private:
  void AddFiles(int number) const;

  QString folder_;
};

}  // namespace kestrix::bench
