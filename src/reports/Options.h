#pragma once

#include <QDate>
#include <QString>
#include <array>
#include <optional>
#include <utility>

namespace kestrix::reports {

enum class Kind { kFull, kRegister, kSheets, kActions, kResidual, kChanges };
enum class Paper { kA4, kA3, kLetter };
enum class Only { kAll, kOpen, kMedium, kHigh, kNotReduced };
enum class Order { kReference, kRisk, kPhase, kLocation };

// The words of the options, as the command takes them; the window shows them with a capital.
inline constexpr std::array kKindWords{u"full",    u"register", u"sheets",
                                       u"actions", u"residual", u"changes"};
inline constexpr std::array kPaperWords{u"A4", u"A3", u"Letter"};
inline constexpr std::array kOnlyWords{u"all", u"open", u"medium", u"high", u"not-reduced"};
inline constexpr std::array kOrderWords{u"reference", u"risk", u"phase", u"location"};

/// The value that `word` names, or nothing.
template <class Value, std::size_t size>
[[nodiscard]] std::optional<Value> ValueNamed(const std::array<const char16_t*, size>& words,
                                              const QString& word) {
  for (std::size_t i = 0; i < size; ++i) {
    if (word == QStringView(words[i])) return static_cast<Value>(i);
  }
  return std::nullopt;
}

/// What a report is to be.
struct Options {
  Kind kind = Kind::kFull;
  Paper paper = Paper::kA4;
  Only only = Only::kAll;
  Order order = Order::kReference;
  QString number;    ///< of the document
  QString revision;  ///< of the document
  QDate date;        ///< on the cover; it decides what is overdue
};

}  // namespace kestrix::reports
