#include <QElapsedTimer>
#include <array>

#include "command/CommandLine.h"
#include "command/Interruption.h"
#include "reports/Export.h"
#include "store/StoredDate.h"

namespace kestrix::command {
namespace {

using namespace reports;

template <std::size_t size>
QString Listed(const std::array<const char16_t*, size>& words) {
  QStringList list;
  for (const char16_t* word : words) list += QString::fromUtf16(word);
  return list.join(u'|');
}

QCommandLineOption Choice(const QString& name, const QString& description, const QString& words,
                          const char16_t* first) {
  return {name, description, words, QString::fromUtf16(first)};
}

template <class Value, std::size_t size>
Value Chosen(const Call& call, const QString& name,
             const std::array<const char16_t*, size>& words) {
  const QString word = call.options.value(name);
  if (const auto value = ValueNamed<Value>(words, word)) return *value;
  throw WrongUse{QStringLiteral("--%1 takes %2, not %3.").arg(name, Listed(words), word)};
}

Options OptionsOf(const Call& call) {
  Options options;
  options.kind = Chosen<Kind>(call, QStringLiteral("kind"), kKindWords);
  options.paper = Chosen<Paper>(call, QStringLiteral("paper"), kPaperWords);
  options.only = Chosen<Only>(call, QStringLiteral("only"), kOnlyWords);
  options.order = Chosen<Order>(call, QStringLiteral("order"), kOrderWords);
  if (options.kind == Kind::kChanges || call.options.isSet(QStringLiteral("since"))) {
    throw WrongUse{QStringLiteral("This version can't tell changes since a backup set.")};
  }
  options.number = call.options.value(QStringLiteral("number"));
  options.revision = call.options.value(QStringLiteral("revision"));
  options.date = call.today;
  const QString date = call.options.value(QStringLiteral("date"));
  if (!date.isEmpty()) {
    const std::optional<QDate> read = ReadDate(date);
    if (!read) throw WrongUse{QStringLiteral("--date takes dd/mm/yyyy, not %1.").arg(date)};
    options.date = *read;
  }
  return options;
}

/// Tells on a terminal how far the work is, once it takes longer than a second.
class Told {
 public:
  explicit Told(const Call& call) : call_(call) { since_.start(); }
  Told(const Told&) = delete;
  Told& operator=(const Told&) = delete;
  ~Told() {
    if (begun_) call_.errors << '\n';
  }

  bool operator()(int done, int of) {
    constexpr qint64 kPatience = 1000;
    constexpr int kSteps = 50;
    if (!call_.on_terminal || since_.elapsed() < kPatience) return true;
    if (begun_ && done % kSteps != 0 && done != of) return true;
    begun_ = true;
    call_.errors << "\rPage " << done << " of " << of;
    call_.errors.flush();
    return true;
  }

 private:
  const Call& call_;
  QElapsedTimer since_;
  bool begun_ = false;
};

Status MakeReportFile(const Call& call) {
  const QString path = call.options.value(QStringLiteral("o"));
  if (path.isEmpty()) throw WrongUse{QStringLiteral("-o FILE says where the report goes.")};
  if (!HasFormat(path)) {
    throw WrongUse{QStringLiteral("The file's ending tells the format: %1.")
                       .arg(Endings().join(QStringLiteral(", ")))};
  }
  const Options options = OptionsOf(call);
  const records::Organisation of = OrganisationNamed(call.source, call.arguments[0]);
  const Report report = MakeReport(call.source, of, call.arguments[1], options);
  Told told(call);
  const QByteArray bytes =
      BytesFor(path, report, call.source, [&told](int done, int all) { return told(done, all); });
  const std::lock_guard whole(Interruption::Writing());
  WriteWhole(path, bytes);
  return kDone;
}

}  // namespace

Command ReportCommand() {
  return {
      QStringLiteral("report"),
      QStringLiteral("ORGANISATION PROJECT -o FILE"),
      QStringLiteral("The report of a project, in the format that the file's ending tells."),
      2,
      2,
      {{{QStringLiteral("o"), QStringLiteral("output")},
        QStringLiteral("The file to write."),
        QStringLiteral("FILE")},
       Choice(QStringLiteral("kind"), QStringLiteral("What the report holds."), Listed(kKindWords),
              kKindWords[0]),
       Choice(QStringLiteral("paper"), QStringLiteral("The size of a page."), Listed(kPaperWords),
              kPaperWords[0]),
       Choice(QStringLiteral("only"), QStringLiteral("Which tasks it holds."), Listed(kOnlyWords),
              kOnlyWords[0]),
       Choice(QStringLiteral("order"), QStringLiteral("The order of the tasks."),
              Listed(kOrderWords), kOrderWords[0]),
       {QStringLiteral("since"),
        QStringLiteral("The backup set since which changes are told; not in this version."),
        QStringLiteral("SET")},
       {QStringLiteral("number"), QStringLiteral("The document's number."), QStringLiteral("TEXT")},
       {QStringLiteral("revision"), QStringLiteral("The document's revision."),
        QStringLiteral("TEXT")},
       {QStringLiteral("date"),
        QStringLiteral("The date on the cover, which decides what is overdue."),
        QStringLiteral("dd/mm/yyyy")}},
      MakeReportFile};
}

}  // namespace kestrix::command
