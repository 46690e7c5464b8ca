#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QMap>
#include <QPixmap>
#include <QPointer>
#include <QPushButton>

#include "estimation/RiskEstimtn.h"
#include "formkit/ClickLabel.h"
#include "formkit/Controls.h"
#include "support/FormTest.h"
#include "support/ReadersHeld.h"

namespace kestrix {

/// A study with one task and the estimation form on it, with what other forms would do on its
/// signals written down. What is stored is read from the file by a connection of its own, after the
/// commit that the evaluation form would do.
class EstimationTest : public FormTest {
 protected:
  static constexpr int kStudy = 7;
  using Fields = QMap<QString, QVariant>;

  void SetUp() override {
    session.ActiveStudyNo = kStudy;
    installation.GivenStudy(kStudy);
  }

  void TearDown() override {
    // Whatever a test has done, the file it leaves is whole.
    readers.reset();
    delete form_.data();
    Settle();
    EXPECT_EQ(Column(Study(), "PRAGMA integrity_check"), QStringList{"ok"});
  }

  [[nodiscard]] QString Study() const { return installation.Study(kStudy); }

  /// The task in hand, with these fields besides the defaults of a new task.
  void GivenTask(const Fields& fields = {}) {
    Fields all{{"Project_Number", "P-1"}};
    all.insert(fields);
    installation.GivenTask(kStudy, all);
    GivenTaskInHand(kStudy, "P-1");
  }
  /// Level texts of one stage, for GivenTask.
  [[nodiscard]] static Fields Levels(const QStringList& texts, bool after = false) {
    Fields fields;
    for (int i = 0; i < 4; ++i) fields[LevelField(i, after)] = texts[i];
    return fields;
  }
  [[nodiscard]] static QString LevelField(int parameter, bool after = false) {
    return kBoxes[parameter] + (after ? "Aftr" : "");
  }

  RiskEstimtn& OpenForm() {
    readers.reset();
    delete form_.data();
    form_ = new RiskEstimtn(context);
    QObject::connect(form_, &RiskEstimtn::Done, [this] { steps += "done"; });
    QObject::connect(form_, &RiskEstimtn::Unloaded, [this] { steps += "unloaded"; });
    if (hold_readers) readers = std::make_unique<ReadersHeld>(*form_);
    form_->LoadForm();
    form_->ShowFormModal();
    Settle();
    LookAt(*form_);
    return *form_;
  }
  void OpenOn(const Fields& fields) {
    GivenTask(fields);
    OpenForm();
  }
  /// A new task's form, with these levels picked.
  void OpenAndPick(const QStringList& levels) {
    OpenOn({});
    PickLevels(levels);
  }
  void Close() {
    CloseBox(*form_);
    LookAtFront();
  }

  /// Picks the levels in their order; an empty text is passed over.
  void PickLevels(const QStringList& texts) {
    for (int i = 0; i < texts.size(); ++i) {
      if (!texts[i].isEmpty()) Pick(kBoxes[i], texts[i]);
    }
  }
  void ToAfterStage() { SetCheck("RskBfrAftrChk", true); }
  void ToBeforeStage() { SetCheck("RskBfrAftrChk", false); }
  void ChooseStatement(const QString& box, int number) {
    Focus(box);
    SetCheck(QStringLiteral("Chk_%1").arg(number), true);
  }

  // What the screen shows.
  [[nodiscard]] QStringList LitLines() const { return GraphProperty("litLines").toStringList(); }
  [[nodiscard]] QStringList LitLabels() const {
    return GraphProperty("litIndexLabels").toStringList();
  }
  [[nodiscard]] QString MarkedCell() const {
    return Control<QWidget>("RiskMatrix").property("markedCell").toString();
  }
  [[nodiscard]] QStringList LevelTexts() const { return TextsOf(kBoxes); }
  [[nodiscard]] QStringList OpenBoxes() const {
    QStringList open;
    for (const QString& box : kBoxes) {
      if (IsEnabled(box)) open += box;
    }
    return open;
  }
  [[nodiscard]] QList<int> CheckedStatements() const {
    QList<int> numbers;
    for (int n = 1; n <= 5; ++n) {
      if (IsChecked(QStringLiteral("Chk_%1").arg(n))) numbers += n;
    }
    return numbers;
  }
  [[nodiscard]] QStringList StatementLabels() const { return TextsOf(kStatementLabels); }
  [[nodiscard]] QStringList ScoreLabels() const { return TextsOf(kScoreLabels); }
  [[nodiscard]] QStringList TextsOf(const QStringList& names) const {
    QStringList texts;
    for (const QString& name : names) texts += TextOf(name);
    return texts;
  }
  [[nodiscard]] bool ShowsPicture(const QString& name) const {
    return !Control<QLabel>(name).pixmap(Qt::ReturnByValue).isNull();
  }
  /// What is shown of two indexes that the graph knows.
  void ExpectBandsAndVerdict(int before, int after) const {
    static const QStringList kBands{"No Risk",     "Low Risk",  "Low Risk", "Medium Risk",
                                    "Medium Risk", "High Risk", "High Risk"};
    static const QList<QRgb> kColours{0x80FF80, 0x80FF80, 0x80FF80, 0xFFC080,
                                      0xFFC080, 0xFF0000, 0xFF0000};
    EXPECT_EQ(TextOf("RiskIdxBRsltDsp"), QString::number(before));
    EXPECT_EQ(TextOf("RiskIdxARsltDsp"), QString::number(after));
    EXPECT_EQ(TextOf("RskTxtLbl"), kBands[before]);
    EXPECT_EQ(TextOf("RskTxtLbl2"), kBands[after]);
    EXPECT_EQ(BackOf("RiskShape1"), kColours[before]);
    EXPECT_EQ(BackOf("RiskShape2"), kColours[after]);
    EXPECT_EQ(TextOf("HasRiskRdsLbl"), before > after   ? "Yes"
                                       : before < after ? "No"
                                       : before == 0    ? "No Risk"
                                                        : "May require further risk reduction.");
  }
  /// The colour in the middle of a shown picture.
  [[nodiscard]] QColor MiddleOf(const QString& name) const {
    const QImage image = Control<QLabel>(name).pixmap(Qt::ReturnByValue).toImage();
    return image.pixelColor(image.width() / 2, image.height() / 2);
  }

  // What the file holds.
  void Commit() { task.source.Recordset().Update(); }
  /// The whole row, by field, as the file holds it now.
  [[nodiscard]] QMap<QString, QString> RowInFile() const {
    const QStringList names =
        Column(Study(), "SELECT name FROM pragma_table_info('Risk_records') ORDER BY cid");
    const QStringList values = Sql(Study(), "SELECT * FROM Risk_records").value(0);
    QMap<QString, QString> row;
    for (int i = 0; i < names.size(); ++i) row[names[i]] = values[i];
    return row;
  }
  /// The same behind a commit.
  [[nodiscard]] QMap<QString, QString> SavedRow() {
    Commit();
    return RowInFile();
  }
  [[nodiscard]] QString Saved(const QString& field) { return SavedRow().value(field); }
  [[nodiscard]] QStringList SavedFields(const QStringList& names) {
    const QMap<QString, QString> row = SavedRow();
    QStringList values;
    for (const QString& name : names) values += row.value(name);
    return values;
  }
  [[nodiscard]] QStringList SavedLevels(bool after = false) {
    QStringList names;
    for (int i = 0; i < 4; ++i) names += LevelField(i, after);
    return SavedFields(names);
  }
  [[nodiscard]] QStringList SavedIndexes() { return SavedFields({"RiskIndex", "RiskIndexAftr"}); }
  [[nodiscard]] QStringList SavedScores(bool after = false) {
    QStringList names;
    for (int i = 1; i <= 4; ++i) {
      names += QStringLiteral("%1Chk_OptnSltd%2").arg(i).arg(after ? "Aftr" : "");
    }
    return SavedFields(names);
  }
  [[nodiscard]] QStringList SavedStatements(bool after = false) {
    QStringList names;
    for (const char* tail : {"Se", "Ex", "Oc", "Av"}) {
      names += QStringLiteral("Chk_Optn%1%2").arg(tail, after ? "Aftr" : "");
    }
    return SavedFields(names);
  }
  /// The task as somebody else changes it in the file; the form is not open then.
  void ChangeTask(const QString& set) { Exec(Study(), "UPDATE Risk_records SET " + set); }
  /// Fields of the row in hand, as earlier work on it has left them.
  void SetFields(const Fields& fields) {
    for (auto field = fields.keyValueBegin(); field != fields.keyValueEnd(); ++field) {
      task.source.Recordset().Set(field->first, field->second);
    }
  }

  static inline const QStringList kBoxes{"SevertyCbo", "ExposureCbo", "occurrenceCbo",
                                         "avoidanceCbo"};
  static inline const QStringList kStatementLabels{"SerChkStd", "ExChkStdStd", "OcrChkStd",
                                                   "AvrChkStd"};
  static inline const QStringList kScoreLabels{"SerScrStd", "ExScrStd", "OCrScrStd", "AvrScrStd"};
  static inline const QStringList kPathToFour{"S2, Serious", "F1, Seldom", "O3, High",
                                              "A2, Impossible"};
  static inline const QStringList kPathToSix{"S2, Serious", "F2, Frequent", "O3, High",
                                             "A2, Impossible"};
  static inline const QStringList kNoLevels{"Reset", "N.A.", "N.A.", "N.A."};

  /// Waits for all that is read beside the events, and for what follows from it.
  void WaitForReaders() {
    // One picture may wait for the other.
    for (int picture = 0; picture < 2 && form_; ++picture) {
      ReadersHeld(*form_).LetGoAndWait();
      Settle();
    }
  }

  bool hold_readers = false;             ///< the form opens with its readers held
  std::unique_ptr<ReadersHeld> readers;  ///< those of the form that was opened last
  QStringList steps;                     ///< what was told to other forms, in order
  QPointer<RiskEstimtn> form_;

 private:
  [[nodiscard]] QVariant GraphProperty(const char* name) const {
    return Control<QWidget>("RiskGraph").property(name);
  }
};

}  // namespace kestrix
