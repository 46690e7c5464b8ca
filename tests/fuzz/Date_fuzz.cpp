// Any text in a date box, whole and keystroke by keystroke.
#include <QDate>

#include "Fuzz.h"
#include "evaluation/DateMask.h"
#include "store/StoredDate.h"

namespace kestrix::fuzz {
namespace {

void CheckRead(const QString& text) {
  const std::optional<QDate> date = ReadDate(text);
  if (!date) return;
  Hold(date->isValid() && date->year() >= 100 && date->year() <= 9999,
       "a date is one of the calendar", text);
  const QString written = WriteDate(*date);
  Hold(written.size() == DateMask::kPlaces, "a date fills the mask", written);
  Hold(ReadDate(written) == date, "a date that was written reads as the same", text);
  // Told from the text alone: the day stands first, and the year last.
  const QString bare = text.trimmed();
  Hold(bare.left(bare[1].isDigit() ? 2 : 1).toInt() == date->day(), "the day stands first", text);
  Hold(bare.right(2).toInt() == date->year() % 100, "the year stands last", text);
}

/// The text that the box shows once it has settled, and what is selected in it.
DateMask::Outcome CheckSettle(const QString& text) {
  const std::optional<DateMask::Outcome> outcome = DateMask::Settle(text);
  Hold(outcome.has_value() != ReadDate(text).has_value(), "a date alone stays as it is", text);
  if (!outcome) return {text, static_cast<int>(text.size()), 0};
  const qsizetype end = outcome->text.size();
  Hold(end > 0, "a box is never left without its mask");
  Hold(outcome->place >= 0 && outcome->selected_length >= 0 &&
           outcome->place + outcome->selected_length <= end,
       "what is selected lies within the text", outcome->text);
  if (outcome->selected_length > 0) {
    Hold(outcome->selected_length == 1 && outcome->place < DateMask::kPlaces &&
             outcome->text[outcome->place] == u'_' &&
             !QStringView(outcome->text).left(outcome->place).contains(u'_'),
         "the first free place is selected", outcome->text);
  } else {
    Hold(!QStringView(outcome->text).left(DateMask::kPlaces).contains(u'_'),
         "nothing is selected only when no place is free", outcome->text);
  }
  const auto again = DateMask::Settle(outcome->text);
  Hold(again && again->text == outcome->text && again->place == outcome->place,
       "a box that has settled stays so", outcome->text);
  return *outcome;
}

/// Types a text into an empty box, each key in place of what is selected.
void TypeIn(const QString& keys) {
  DateMask::Outcome box = CheckSettle({});
  for (const QChar key : keys.left(40)) {
    box.text.replace(box.place, box.selected_length, key);
    box = CheckSettle(box.text);
  }
}

/// Eight digits, whichever, fill the mask and leave its slashes alone.
void TypeDigits(const QString& keys) {
  DateMask::Outcome box = CheckSettle({});
  for (int i = 0; i < 8; ++i) {
    Hold(box.selected_length == 1, "the mask takes eight digits", box.text);
    const ushort key = i < keys.size() ? keys[i].unicode() : 0;
    box.text[box.place] = QChar(u'0' + key % 10);
    box = CheckSettle(box.text);
  }
  Hold(box.text.size() == DateMask::kPlaces && box.text[2] == u'/' && box.text[5] == u'/',
       "the slashes stay in their places", box.text);
}

}  // namespace
}  // namespace kestrix::fuzz

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace kestrix;
  const QString text = fuzz::Input(data, size).RestAsText();
  fuzz::CheckRead(text);
  static_cast<void>(fuzz::CheckSettle(text));
  fuzz::TypeIn(text);
  fuzz::TypeDigits(text);
  return 0;
}
