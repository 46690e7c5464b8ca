#pragma once

#include <QString>
#include <optional>

namespace kestrix::checks {

enum class Severity { kNote, kWarning, kError };
/// "note", "warning", "error".
[[nodiscard]] QString TextOf(Severity severity);

/// One thing that a finished assessment shouldn't have. What doesn't apply is nothing: a finding
/// about a file tells of no task.
struct Finding {
  QString rule;
  Severity severity = Severity::kNote;
  QString says;    ///< one sentence: what is so
  QString advice;  ///< one sentence: what to do about it
  std::optional<QString> organisation;
  std::optional<QString> project;
  std::optional<QString> task;  ///< its title
  std::optional<qint64> id;     ///< `nunberauto`
  std::optional<QString> reference;
  std::optional<QString> field;  ///< the stored name of the field
  std::optional<QString> file;
};

}  // namespace kestrix::checks
