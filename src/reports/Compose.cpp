#include "reports/Compose.h"

#include <QBuffer>
#include <QImageReader>
#include <algorithm>
#include <array>
#include <type_traits>
#include <utility>

#include "estimation/model/RiskModel.h"
#include "paper/Style.h"
#include "reports/Drawings.h"
#include "reports/Method.h"
#include "reports/Register.h"
#include "store/StoredDate.h"

namespace kestrix::reports {
namespace {

using namespace paper;
using model::Parameter;
using records::Band;
using records::ComputedStage;

constexpr qsizetype kDigestDigits = 12;
constexpr std::array kParameterNames{u"Severity", u"Exposure", u"Occurrence", u"Avoidance"};

// In millimetres.
constexpr QSizeF kMostOfPicture(85, 45);

/// A score as the model takes it; one that no statement gives has no cell.
int Score(qint64 stored) {
  return stored < 0 || stored > model::kGreatestClass ? -1 : static_cast<int>(stored);
}

paper::Cell BandCell(Band band) {
  return {Plain(BandText(band)), ColourOf(band), false};
}

paper::Cell TextCell(const QString& text) {
  return {Plain(text), {}, false};
}

paper::Cell NumberCell(qint64 number) {
  return {Plain(QString::number(number)), {}, true};
}

QString Anchor(const records::Task& task) {
  return QStringLiteral("task-%1").arg(task.id);
}

QString TaskName(const records::Task& task) {
  return task.reference.isEmpty() ? task.title : task.reference + u' ' + task.title;
}

QString TextOr(const QString& text, const QString& otherwise) {
  return text.isEmpty() ? otherwise : text;
}

Block Head(int level, const QString& text, const QString& anchor, bool in_contents = true) {
  return {Heading{level, text, anchor, in_contents}};
}

Block Say(const QString& text) {
  return {Paragraph{Plain(text)}};
}

/// How a class is told: its number and its band, nothing where no statement was chosen.
QString ClassText(const ComputedStage& stage) {
  if (stage.class_band.isEmpty()) return BandText(Band::kNotEstimated);
  return QStringLiteral("%1, %2").arg(stage.class_score).arg(BandText(ClassBandOf(stage)));
}

QString IndexText(const ComputedStage& computed, const records::Stage& stored) {
  const Cell cell = IndexCell(computed, stored);
  if (!computed.estimated) return QStringLiteral("– ") + cell.text;
  return QStringLiteral("%1, %2").arg(cell.text, BandText(IndexBandOf(computed)));
}

/// Composes the sections one after the other.
class Composition {
 public:
  Composition(const Report& report, records::Source& source) : report_(report), source_(source) {}

  void AddCover(std::vector<Block>& cover) {
    cover.push_back(
        {Paragraph{Plain(QStringLiteral("Risk assessment")), Paragraph::Style::kTitle}});
    cover.push_back({Paragraph{Plain(QStringLiteral("of %1, project %2")
                                         .arg(report_.organisation.name, report_.head.number)),
                               Paragraph::Style::kSubtitle}});
    cover.push_back({paper::Rule{}});
    Table facts{{25, 75}, {}, {}, false};
    for (const auto& [name, value] : HeadLines(report_)) {
      facts.rows.push_back({TextCell(name), TextCell(value)});
    }
    cover.push_back({std::move(facts)});
    AddCoverPicture(cover);
    cover.push_back({Paragraph{
        Plain(QStringLiteral("As per ISO/TR 14121-2:2012, in accordance with ISO 12100:2010.")),
        Paragraph::Style::kSmall}});
  }

  void AddSummary() {
    body_.push_back(Head(1, QStringLiteral("Summary"), QStringLiteral("summary")));
    Table counts{{28, 18, 18, 18, 18},
                 {QStringLiteral("Tasks by band"), QStringLiteral("Index before"),
                  QStringLiteral("Index after"), QStringLiteral("Class before"),
                  QStringLiteral("Class after")},
                 {},
                 false};
    for (const Band band : kBins) {
      const std::size_t bin = BinOf(band);
      counts.rows.push_back({BandCell(band), NumberCell(report_.before.index_bands[bin]),
                             NumberCell(report_.after.index_bands[bin]),
                             NumberCell(report_.before.class_bands[bin]),
                             NumberCell(report_.after.class_bands[bin])});
    }
    body_.push_back({std::move(counts)});
    body_.push_back(
        {Columns{{BandBars(QStringLiteral("By risk index, before"), report_.before.index_bands),
                  BandBars(QStringLiteral("By risk index, after"), report_.after.index_bands)}}});
    body_.push_back(
        {Columns{{BandBars(QStringLiteral("By class, before"), report_.before.class_bands),
                  BandBars(QStringLiteral("By class, after"), report_.after.class_bands)}}});
    body_.push_back({Columns{
        {CountMatrix(QStringLiteral("Risk matrix before: tasks in each cell"), report_.before),
         CountMatrix(QStringLiteral("Risk matrix after: tasks in each cell"), report_.after)}}});
    body_.push_back(Say(QStringLiteral("Open actions: %1, of which overdue on %2: %3.")
                            .arg(report_.open)
                            .arg(WriteDate(report_.options.date))
                            .arg(report_.overdue)));
    AddMissingGlyphs();
    AddFindings();
  }

  void AddMethod() {
    body_.push_back(Head(1, QStringLiteral("Method"), QStringLiteral("method")));
    for (const QString& text : MethodParagraphs()) body_.push_back(Say(text));
    body_.push_back(
        {Columns{{{Drawn(RiskDrawing::Part::kGraph, {}, QStringLiteral("Risk graph"))},
                  {Drawn(RiskDrawing::Part::kMatrix, {}, QStringLiteral("Risk matrix"))}}}});
    for (const Parameter parameter : model::kParameters) {
      Table statements{
          {10, 90},
          {QStringLiteral("Score"), QString::fromUtf16(kParameterNames[model::IndexOf(parameter)])},
          {},
          true};
      int score = model::kFirstStatementBox;
      for (const model::Statement& statement : model::StatementsOf(parameter)) {
        if (statement.enabled) {
          statements.rows.push_back(
              {NumberCell(score), TextCell(StatementText(statement.text.toString()))});
        }
        ++score;
      }
      body_.push_back({std::move(statements)});
    }
  }

  void AddRegister() {
    body_.push_back({PageBreak{true}});
    body_.push_back(Head(1, QStringLiteral("Register"), QStringLiteral("register")));
    Table lines{
        {5.5, 12, 8, 8.5, 11.5, 11.5, 24, 9.5, 8.5, 11.5, 11.5, 8.5},
        {QStringLiteral("Ref."), QStringLiteral("Task"), QStringLiteral("Location"),
         QStringLiteral("Primary hazard"), QStringLiteral("Index before"),
         QStringLiteral("Class before"), QStringLiteral("Recommendation"),
         QStringLiteral("Action by"), QStringLiteral("Action date"), QStringLiteral("Index after"),
         QStringLiteral("Class after"), QStringLiteral("Verdict")},
        {},
        true};
    for (const Entry& entry : report_.entries) {
      const records::Task& task = entry.task;
      lines.rows.push_back({
          {paper::Link(TextOr(task.reference, QStringLiteral("–")), Anchor(task)), {}, false},
          {paper::Link(task.title, Anchor(task)), {}, false},
          TextCell(task.location),
          TextCell(task.hazard),
          {Plain(IndexText(entry.computed.before, task.before)),
           ColourOf(IndexBandOf(entry.computed.before)), false},
          {Plain(ClassText(entry.computed.before)), ColourOf(ClassBandOf(entry.computed.before)),
           false},
          TextCell(task.recommendation),
          TextCell(task.action_by),
          TextCell(task.action_taken ? QStringLiteral("taken") : task.action_date),
          {Plain(IndexText(entry.computed.after, task.after)),
           ColourOf(IndexBandOf(entry.computed.after)), false},
          {Plain(ClassText(entry.computed.after)), ColourOf(ClassBandOf(entry.computed.after)),
           false},
          TextCell(entry.computed.VerdictText()),
      });
    }
    AddTableOrNone(std::move(lines), QStringLiteral("No task."));
    body_.push_back({PageBreak{false}});
  }

  void AddSheets() {
    body_.push_back(Head(1, QStringLiteral("Sheets"), QStringLiteral("sheets")));
    if (report_.entries.empty()) body_.push_back(Say(QStringLiteral("No task.")));
    bool first = true;
    for (const Entry& entry : report_.entries) {
      if (!std::exchange(first, false)) body_.push_back({PageBreak{false}});
      AddSheet(entry);
    }
    body_.push_back({PageBreak{false}});
  }

  void AddActions() {
    body_.push_back(Head(1, QStringLiteral("Actions"), QStringLiteral("actions")));
    Table actions{
        {18, 14, 10, 22, 36},
        {QStringLiteral("Action by"), QStringLiteral("Action date"), QStringLiteral("Reference"),
         QStringLiteral("Task"), QStringLiteral("Recommendation")},
        {},
        true};
    for (const Entry* entry : OpenActions(report_)) {
      const records::Task& task = entry->task;
      const QString date = TextOr(task.action_date, QStringLiteral("no date"));
      actions.rows.push_back(
          {TextCell(task.action_by),
           {entry->overdue ? Bold(date + QStringLiteral(" overdue")) : Plain(date), {}, false},
           {paper::Link(TextOr(task.reference, QStringLiteral("–")), Anchor(task)), {}, false},
           TextCell(task.title),
           TextCell(task.recommendation)});
    }
    AddTableOrNone(std::move(actions), QStringLiteral("No open action."));
  }

  void AddResidual() {
    body_.push_back(Head(1, QStringLiteral("Residual risks"), QStringLiteral("residual")));
    Table risks{{10, 30, 20, 20, 20},
                {QStringLiteral("Reference"), QStringLiteral("Task"), QStringLiteral("Index"),
                 QStringLiteral("Class"), QStringLiteral("Estimated")},
                {},
                true};
    for (const Entry& entry : report_.entries) {
      if (!IsResidual(entry.computed)) continue;
      const bool after = entry.computed.after.estimated;
      const ComputedStage& stage = entry.computed.Final();
      risks.rows.push_back(
          {{paper::Link(TextOr(entry.task.reference, QStringLiteral("–")), Anchor(entry.task)),
            {},
            false},
           TextCell(entry.task.title),
           {Plain(IndexText(stage, after ? entry.task.after : entry.task.before)),
            ColourOf(IndexBandOf(stage)), false},
           {Plain(ClassText(stage)), ColourOf(ClassBandOf(stage)), false},
           TextCell(after ? QStringLiteral("after the recommendation")
                          : QStringLiteral("before it only"))});
    }
    AddTableOrNone(std::move(risks), QStringLiteral("No estimated risk above Low."));
    const auto unknown = std::ranges::count_if(report_.entries, [](const Entry& entry) {
      return HigherBandOf(entry.computed.Final()) == Band::kNotEstimated;
    });
    if (unknown > 0) {
      body_.push_back({Paragraph{
          Bold(QStringLiteral("Not estimated: %1. What remains of their risk isn't known.")
                   .arg(unknown == 1 ? QStringLiteral("1 task")
                                     : QStringLiteral("%1 tasks").arg(unknown)))}});
    }
  }

  void AddFiles() {
    body_.push_back(Head(1, QStringLiteral("Files"), QStringLiteral("files")));
    Table files{{30, 15, 55},
                {QStringLiteral("File"), QStringLiteral("Bytes"), QStringLiteral("SHA-256")},
                {},
                true};
    for (const reports::Link& link : report_.links) {
      files.rows.push_back(
          {TextCell(link.link.path),
           link.facts.exists ? NumberCell(link.facts.bytes)
                             : paper::Cell{Bold(QStringLiteral("missing")), {}, false},
           {{{QString::fromLatin1(link.facts.sha256), Face::kTyped, {}}}, {}, false}});
    }
    AddTableOrNone(std::move(files), QStringLiteral("No linked file."));
  }

  void AddSignOff() {
    std::vector<Block> rows{Head(1, QStringLiteral("Sign-off"), QStringLiteral("sign-off"))};
    for (const char16_t* who : {u"Prepared", u"Checked", u"Approved"}) {
      rows.push_back({paper::Rule{14}});
      rows.push_back(
          {Paragraph{Plain(QString::fromUtf16(who) + QStringLiteral(" (name, date, signature)")),
                     Paragraph::Style::kSmall}});
    }
    body_.push_back({Together{std::move(rows)}});
  }

  [[nodiscard]] std::vector<Block> TakeBody() { return std::move(body_); }

 private:
  void AddTableOrNone(Table table, const QString& none) {
    if (table.rows.empty()) return body_.push_back(Say(none));
    body_.push_back({std::move(table)});
  }

  void AddMissingGlyphs() {
    MissingGlyphs missing;
    for (const Entry& entry : report_.entries) {
      VisitFields(entry.task, [&missing](QStringView /*name*/, const auto& value) {
        if constexpr (std::is_same_v<std::decay_t<decltype(value)>, QString>) missing.Look(value);
      });
    }
    for (const auto& [name, value] : HeadLines(report_)) missing.Look(value);
    if (missing.Count() == 0) return;
    body_.push_back(Say(QStringLiteral("Characters that no font of this machine shows, and that "
                                       "stand as boxes on these pages: %1.")
                            .arg(missing.Count())));
  }

  void AddFindings() {
    body_.push_back(Head(2, QStringLiteral("What the checks found"), QStringLiteral("findings")));
    Table findings{{10, 25, 35, 30},
                   {QStringLiteral("Severity"), QStringLiteral("Task"), QStringLiteral("Finding"),
                    QStringLiteral("Advice")},
                   {},
                   true};
    for (const checks::Finding& finding : report_.findings) {
      const QString where = finding.task
                                ? finding.reference.value_or(QString()) + u' ' + *finding.task
                                : finding.file.value_or(QString());
      Text place = finding.id ? paper::Link(where, QStringLiteral("task-%1").arg(*finding.id))
                              : Plain(where);
      findings.rows.push_back({TextCell(TextOf(finding.severity)),
                               {std::move(place), {}, false},
                               TextCell(finding.says),
                               TextCell(finding.advice)});
    }
    AddTableOrNone(std::move(findings), QStringLiteral("The checks found nothing."));
  }

  /// Only JPEG can be unpacked to the size in which it is printed.
  [[nodiscard]] static bool IsTooLarge(QSize pixels) {
    constexpr qint64 kMost = 32'000'000;
    return qint64{pixels.width()} * pixels.height() > kMost;
  }

  [[nodiscard]] static bool IsChosen(const QString& picture) {
    return !picture.isEmpty() && !picture.endsWith(u"NoPicSlted.jpg");
  }

  [[nodiscard]] Picture PictureOf(const QString& name, const records::FileFacts& facts,
                                  QSizeF most) {
    Picture picture{{}, {}, most, name, {}, false};
    if (!IsChosen(name)) {
      picture.missing = QStringLiteral("No picture");
      return picture;
    }
    if (!facts.exists) {
      picture.missing = QStringLiteral("%1: the file isn't there").arg(name);
      return picture;
    }
    records::Source* source = &source_;
    const records::Organisation of = report_.organisation;
    picture.read = [source, of, name] { return source->ReadPicture(of, name); };
    QByteArray bytes = picture.read();
    QBuffer buffer(&bytes);
    QImageReader reader(&buffer);
    picture.pixels = reader.size();
    picture.is_photograph = reader.format() == "jpeg";
    if (reader.transformation() & QImageIOHandler::TransformationRotate90) {
      picture.pixels.transpose();
    }
    if (picture.pixels.isEmpty()) {
      picture.missing = QStringLiteral("%1: this is no picture").arg(name);
    } else if (!picture.is_photograph && IsTooLarge(picture.pixels)) {
      picture.missing = QStringLiteral("%1: the picture is too large, %2 by %3 dots")
                            .arg(name)
                            .arg(picture.pixels.width())
                            .arg(picture.pixels.height());
      picture.read = {};
    }
    return picture;
  }

  void AddCoverPicture(std::vector<Block>& cover) {
    for (const reports::Link& link : report_.links) {
      if (!link.facts.exists) continue;
      records::Source* source = &source_;
      const QString path = link.link.path;
      Picture picture{QImageReader(path).size(),
                      [source, path] { return source->ReadFile(path); },
                      {160, 100},
                      link.link.title,
                      {},
                      true};
      if (picture.pixels.isEmpty()) continue;
      cover.push_back({std::move(picture)});
      return;
    }
  }

  void AddSheet(const Entry& entry) {
    const records::Task& task = entry.task;
    body_.push_back(Head(2, TaskName(task), Anchor(task)));
    Table facts{{20, 30, 20, 30}, {}, {}, true};
    const auto pair = [&facts](const QString& a, const QString& b, const QString& c,
                               const QString& d) {
      facts.rows.push_back({TextCell(a), TextCell(b), {Bold(c), {}, false}, TextCell(d)});
    };
    pair(QStringLiteral("Reference"), task.reference, QStringLiteral("Date"), task.date);
    pair(QStringLiteral("Location"), task.location, QStringLiteral("Phase"), task.phase);
    pair(QStringLiteral("Primary hazard"), task.hazard, QStringLiteral("Hazard type"),
         task.hazard_type);
    const bool has_pictures = IsChosen(task.before.picture) || IsChosen(task.after.picture);
    if (!has_pictures) pair(QStringLiteral("Pictures"), QStringLiteral("None"), {}, {});
    body_.push_back({std::move(facts)});
    AddLongText(QStringLiteral("Hazard description"), task.description);
    // Row by row, so that what is compared stands side by side and a page can end between.
    if (has_pictures) AddBeside([&](model::Stage stage) { return StageHead(entry, stage); });
    AddLevels(entry);
    AddBeside([&](model::Stage stage) { return StageResults(entry, stage); });
    AddLongText(QStringLiteral("Recommendation"), task.recommendation);
    Table action{{20, 30, 20, 30}, {}, {}, true};
    action.rows.push_back({TextCell(QStringLiteral("Recommendation type")),
                           TextCell(task.recommendation_type),
                           {Bold(QStringLiteral("Action by")), {}, false},
                           TextCell(task.action_by)});
    action.rows.push_back(
        {TextCell(QStringLiteral("Action date")),
         TextCell(task.action_date + (entry.overdue ? QStringLiteral(" overdue") : QString())),
         {Bold(QStringLiteral("Taken")), {}, false},
         TextCell(task.action_taken ? QStringLiteral("Yes") : QStringLiteral("No"))});
    body_.push_back({std::move(action)});
    body_.push_back(
        {Paragraph{{{QStringLiteral("Has the risk been adequately reduced? "), Face::kPlain, {}},
                    {entry.computed.VerdictText(), Face::kBold, {}}}}});
  }

  void AddLongText(const QString& title, const QString& text) {
    body_.push_back({Heading{3, title, {}, false}});
    for (const QString& paragraph : text.split(u'\n')) {
      if (!paragraph.isEmpty()) body_.push_back(Say(paragraph));
    }
  }

  template <class Blocks>
  void AddBeside(Blocks blocks_of) {
    body_.push_back({Columns{{blocks_of(model::Stage::kBefore), blocks_of(model::Stage::kAfter)}}});
  }

  [[nodiscard]] static const ComputedStage& ComputedOf(const Entry& entry, model::Stage which) {
    return which == model::Stage::kBefore ? entry.computed.before : entry.computed.after;
  }

  [[nodiscard]] std::vector<Block> StageHead(const Entry& entry, model::Stage which) {
    const bool before = which == model::Stage::kBefore;
    return {{Heading{3,
                     before ? QStringLiteral("Before the recommendation")
                            : QStringLiteral("After the recommendation"),
                     {},
                     false}},
            {PictureOf(records::StageOf(entry.task, which).picture,
                       before ? entry.picture_before : entry.picture_after, kMostOfPicture)}};
  }

  void AddLevels(const Entry& entry) {
    Table levels{
        {12, 12, 26, 6, 12, 26, 6},
        {QString(), QStringLiteral("Before"), QStringLiteral("Statement"), QStringLiteral("Score"),
         QStringLiteral("After"), QStringLiteral("Statement"), QStringLiteral("Score")},
        {},
        true};
    for (const Parameter parameter : model::kParameters) {
      const std::size_t i = model::IndexOf(parameter);
      std::vector<paper::Cell> row{{Bold(QString::fromUtf16(kParameterNames[i])), {}, false}};
      for (const records::Stage* stored : {&entry.task.before, &entry.task.after}) {
        row.push_back(TextCell(LevelText(stored->levels[i])));
        row.push_back(TextCell(StatementText(stored->statements[i])));
        row.push_back(TextCell(QString::number(stored->scores[i])));
      }
      levels.rows.push_back(std::move(row));
    }
    body_.push_back({std::move(levels)});
  }

  /// What the levels and statements of a stage come to: in words, and as they are drawn.
  [[nodiscard]] static std::vector<Block> StageResults(const Entry& entry, model::Stage which) {
    const records::Stage& stored = records::StageOf(entry.task, which);
    const ComputedStage& computed = ComputedOf(entry, which);
    const QString index = IndexText(computed, stored);
    const QString score = ClassText(computed);
    Table results{{45, 55}, {}, {}, true};
    const QString when =
        which == model::Stage::kBefore ? QStringLiteral("before") : QStringLiteral("after");
    results.rows.push_back({TextCell(QStringLiteral("Risk index ") + when),
                            {Plain(index), ColourOf(IndexBandOf(computed)), false}});
    results.rows.push_back({TextCell(QStringLiteral("Class Cl ") + when),
                            {Plain(score), ColourOf(ClassBandOf(computed)), false}});
    RiskMarks marks =
        MarksOf(which, stored.levels, Score(stored.scores[0]), Score(computed.class_score));
    // The path as far as it is stored, but no index that isn't estimated.
    if (!computed.estimated) marks.labels = {};
    return {{std::move(results)},
            Drawn(RiskDrawing::Part::kGraph, marks, QStringLiteral("Risk graph: ") + index),
            Drawn(RiskDrawing::Part::kMatrix, marks, QStringLiteral("Risk matrix: ") + score)};
  }

  const Report& report_;
  records::Source& source_;
  std::vector<Block> body_;
};

QString FootOf(const Report& report, const QString& digest) {
  QStringList foot;
  if (!report.options.number.isEmpty()) foot += QStringLiteral("Document ") + report.options.number;
  if (!report.options.revision.isEmpty()) {
    foot += QStringLiteral("Revision ") + report.options.revision;
  }
  foot += QStringLiteral("Project ") + report.head.number;
  foot += digest;
  return foot.join(QStringLiteral(" · "));
}

}  // namespace

QString LevelText(const QString& stored) {
  return stored == model::kOccurrenceMedium ? QStringLiteral("O2, Medium") : stored;
}

QString StatementText(const QString& stored) {
  return stored.startsWith(u' ') ? stored.mid(1) : stored;
}

QString BandText(Band band) {
  static constexpr std::array kForms{u"–", u"○", u"●", u"●●", u"●●●"};
  // Kept on one line: the form without a word says too little.
  return QString::fromUtf16(kForms[BinOf(band)]) + QChar::Nbsp + TextOf(band);
}

Document ComposeCover(const Report& report, records::Source& source) {
  Document document;
  document.title = QStringLiteral("Risk assessment of %1, project %2")
                       .arg(report.organisation.name, report.head.number);
  document.author = report.head.prepared_by;
  document.language = QStringLiteral("en");
  document.subject = report.head.description;
  document.is_whole = false;
  Composition(report, source).AddCover(document.cover);
  document.foot = FootOf(report, QStringLiteral("…"));
  return document;
}

Document Compose(const Report& report, const QByteArray& digest, records::Source& source) {
  Document document = ComposeCover(report, source);
  document.is_whole = true;
  Composition sections(report, source);
  const auto has = [&report](std::initializer_list<Kind> kinds) {
    return std::ranges::find(kinds, report.options.kind) != kinds.end();
  };
  if (has({Kind::kFull})) sections.AddSummary();
  if (has({Kind::kFull})) sections.AddMethod();
  if (has({Kind::kFull, Kind::kRegister})) sections.AddRegister();
  if (has({Kind::kFull, Kind::kSheets})) sections.AddSheets();
  if (has({Kind::kFull, Kind::kActions})) sections.AddActions();
  if (has({Kind::kFull, Kind::kResidual})) sections.AddResidual();
  if (has({Kind::kFull})) sections.AddFiles();
  if (has({Kind::kFull})) sections.AddSignOff();
  document.body = sections.TakeBody();

  QStringList head{report.organisation.name + QStringLiteral(", project ") + report.head.number};
  const QString filter = FilterText(report.options.only);
  if (!filter.isEmpty()) head += filter;
  document.head = head.join(QStringLiteral(" · "));
  document.foot = FootOf(report, QString::fromLatin1(digest.left(kDigestDigits)));
  return document;
}

}  // namespace kestrix::reports
