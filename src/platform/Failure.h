#pragma once

#include <QString>
#include <stdexcept>

namespace kestrix {

/// The one kind of error that travels through the program. `number` is what rules test,
/// `description` is what a person reads. It is thrown for what the world does to us (a missing
/// file, a full disk, a row that somebody else changed), never for a mistake of our own.
class Failure : public std::runtime_error {
 public:
  Failure(int number, const QString& description)
      : std::runtime_error(description.toStdString()), number_(number), description_(description) {}

  [[nodiscard]] int number() const { return number_; }
  [[nodiscard]] const QString& description() const { return description_; }

  /// Whether the person has read it already. Whoever shows failures leaves out such a one.
  [[nodiscard]] bool IsTold() const { return told_; }
  void SetTold() { told_ = true; }

 private:
  int number_;
  QString description_;
  bool told_ = false;
};

/// The numbers that the program gives to failures. A rule that looks at a number names it from
/// here.
namespace failure {
inline constexpr int kInvalidCall = 5;    ///< also: no window of that title
inline constexpr int kOverflow = 6;       ///< a product left the range of a 16-bit integer
inline constexpr int kTypeMismatch = 13;  ///< a text that is no number or no date
inline constexpr int kFileNotFound = 53;
inline constexpr int kDeviceError = 57;  ///< reading or writing failed
inline constexpr int kFileExists = 58;
inline constexpr int kDiskFull = 61;
inline constexpr int kPermissionDenied = 70;
inline constexpr int kDiskNotReady = 71;
inline constexpr int kPathNotFound = 76;
inline constexpr int kObjectNotSet = 91;  ///< a data control that has no rows opened yet
inline constexpr int kInvalidPicture = 481;
inline constexpr int kInvalidPosition = 3001;  ///< a position outside the rows
inline constexpr int kNoCurrentRow = 3021;
inline constexpr int kDuplicate = 3022;  ///< a unique index refused the row
inline constexpr int kCannotOpen = 3051;
inline constexpr int kSyntax = 3075;  ///< the SQL text is not well formed
inline constexpr int kNoSuchField = 3265;
inline constexpr int kTooLong = 3163;     ///< a text longer than its column
inline constexpr int kRowDeleted = 3167;  ///< somebody else deleted the row
inline constexpr int kRowChanged = 3197;  ///< somebody else changed the same field
inline constexpr int kRefused = 3314;     ///< a rule of the table refused the row
inline constexpr int kReadOnly = 3027;
inline constexpr int kLocked = 3260;        ///< somebody else holds the file for too long
inline constexpr int kNotADatabase = 3343;  ///< damaged, or not a file of this system
}  // namespace failure

}  // namespace kestrix
