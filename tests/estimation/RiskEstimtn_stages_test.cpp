// The two stages: how a stored path comes back, how the stages switch, and what closing writes.
#include <gmock/gmock.h>

#include "estimation/EstimationTest.h"

namespace kestrix {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const char* const kToAfterTip = "Click to estimation risk after recommendations";
const char* const kToBeforeTip = "Click to estimation risk before recommendations";

class RiskEstimtnStagesTest : public EstimationTest {
 protected:
  const QStringList kTwo{"S1, Slight", "F1, F2", "O3, High", "A2, Impossible"};

  [[nodiscard]] static Fields BothStages(const QStringList& before, const QStringList& after) {
    Fields fields = Levels(before);
    fields.insert(Levels(after, true));
    return fields;
  }
  void ExpectLook(bool after) {
    EXPECT_EQ(TextOf("RskBfrAftrChk"), after ? "   Risk estimation after recommendations"
                                             : "   Risk estimation before recommendations");
    EXPECT_EQ(TextOf("RsltDsplRiskLbl"),
              after ? "Data selected for Risk estimation after recommendations"
                    : "Data selected for Risk estimation before recommendations");
    for (const char* name : {"RskBfrAftrChk", "RsltDsplRiskLbl"}) {
      EXPECT_EQ(BackOf(name), after ? 0x80FF80U : 0xFFC080U) << name;
      EXPECT_EQ(TipOf(name), after ? kToBeforeTip : kToAfterTip) << name;
    }
    EXPECT_EQ(IsChecked("RskBfrAftrChk"), after);
    // The start line tells the stage by its colour.
    const QImage graph = Control<QWidget>("RiskGraph").grab().toImage();
    int orange = 0;
    int green = 0;
    for (int x = 0; x < graph.width() / 8; ++x) {
      for (int y = 0; y < graph.height(); ++y) {
        orange += graph.pixelColor(x, y) == QColor(0xFF8000);
        green += graph.pixelColor(x, y) == QColor(0x00FF00);
      }
    }
    EXPECT_EQ(orange > 0, !after);
    EXPECT_EQ(green > 0, after);
  }
};

TEST_F(RiskEstimtnStagesTest, OpensInTheBeforeStageWithItsFirstCaption) {
  OpenOn({});
  EXPECT_EQ(TextOf("RskBfrAftrChk"), "Risk estimation before recommendations")
      << "without the blanks that the first switch brings";
  EXPECT_EQ(TextOf("RsltDsplRiskLbl"), "Data selected for Risk estimation before recommendations");
  EXPECT_EQ(TipOf("RskBfrAftrChk"), kToAfterTip);
  EXPECT_EQ(TipOf("RsltDsplRiskLbl"), kToAfterTip);
  EXPECT_EQ(BackOf("RskBfrAftrChk"), 0xFFC080U);
  EXPECT_FALSE(IsChecked("RskBfrAftrChk"));
  EXPECT_EQ(Window().windowTitle().trimmed(), "KESTRIX : Risk estimation form");
}

TEST_F(RiskEstimtnStagesTest, FirstFocusGoesToSeverityAndShowsItsStatements) {
  session.ActiveParameterBox = "avoidanceCbo";
  OpenOn({});
  EXPECT_EQ(FocusName(), "SevertyCbo");
  EXPECT_EQ(session.ActiveParameterBox, "SevertyCbo");
  EXPECT_EQ(TextOf("HzrdDscptnLbl"), "Hazard description : Severity");
  EXPECT_EQ(TextOf("Chk_1"), " Scratches, bruises that are cured by first aid or similar");
  EXPECT_EQ(BackOf("SerChkStd"), 0xFFFF80U);
  EXPECT_EQ(BackOf("SerScrStd"), 0xFFFF80U);
}

TEST_F(RiskEstimtnStagesTest, TaskThatNobodyEstimatedOpensEmptyAndChangesOnlyItsPictureNames) {
  GivenTask({{"PicBfrRcmdtn", ""}, {"PicAftrRcmdtn", ""}, {"FuntnTaskMachry", "Feed"}});
  auto row = RowInFile();
  OpenForm();
  EXPECT_EQ(LevelTexts(), QStringList({"Reset", "", "", ""}));
  EXPECT_THAT(LitLines(), IsEmpty());
  EXPECT_EQ(StatementLabels(), QStringList({"Severty :Reset", "Exposure :N.A.", "Occurrence :N.A.",
                                            "Avoidance :N.A."}));
  EXPECT_EQ(ScoreLabels(), QStringList({"0", "0", "0", "0"}));
  EXPECT_EQ(TextOf("HasRiskRdsLbl"), "No Risk");
  EXPECT_EQ(TextOf("RskTxtLbl"), "No Risk");
  EXPECT_EQ(TextOf("RskTxtLbl2"), "No Risk");
  EXPECT_EQ(TextOf("RBIMatrixLbl"), "No Risk");
  row["PicBfrRcmdtn"] = row["PicAftrRcmdtn"] = "NoPicSlted.jpg";
  EXPECT_EQ(SavedRow(), row);
  Close();
  EXPECT_EQ(SavedRow(), row);
}

TEST_F(RiskEstimtnStagesTest, StoredBeforePathComesBackAndTheAfterPathOnlyOnASwitch) {
  Fields fields = BothStages(kPathToFour, kTwo);
  fields.insert({{"RiskIndex", 1}, {"RiskIndexAftr", 5}});
  OpenOn(fields);
  EXPECT_EQ(LevelTexts(), kPathToFour);
  EXPECT_EQ(OpenBoxes(), kBoxes);
  EXPECT_THAT(LitLines(), ElementsAre("SV1", "SH3", "FV1", "FH3", "OAng3", "AH4"));
  EXPECT_THAT(LitLabels(), ElementsAre("RILbl4"));
  EXPECT_EQ(TextOf("RiskIdxBRsltDsp"), "4");
  EXPECT_EQ(TextOf("RiskIdxARsltDsp"), "5");
  EXPECT_EQ(TextOf("HasRiskRdsLbl"), "No");
  EXPECT_EQ(SavedIndexes(), QStringList({"4", "5"})) << "as the rules give it now";
  ToAfterStage();
  EXPECT_EQ(LevelTexts(), kTwo);
  EXPECT_THAT(LitLines(), ElementsAre("SV2", "SEH1_2", "OAng1", "AH2"));
  EXPECT_THAT(LitLabels(), ElementsAre("RILb2"));
  EXPECT_EQ(SavedIndexes(), QStringList({"4", "2"}));
  EXPECT_EQ(SavedLevels(), kPathToFour);
  EXPECT_EQ(SavedLevels(true), kTwo);
}

TEST_F(RiskEstimtnStagesTest, BothSwitchesTurnCaptionsColoursTipsAndTheStartByMouseAndKeys) {
  OpenOn(BothStages(kPathToFour, kTwo));
  const auto expect_after = [this](bool after) {
    ExpectLook(after);
    EXPECT_EQ(LevelTexts(), after ? kTwo : kPathToFour);
  };
  ToAfterStage();
  expect_after(true);
  ToBeforeStage();
  expect_after(false);
  // The caption of the results is a second switch.
  for (const bool after : {true, false}) {
    Click("RsltDsplRiskLbl");
    expect_after(after);
  }
  Focus("RsltDsplRiskLbl");
  PressKey(Qt::Key_Space);
  expect_after(true);
  PressKey(Qt::Key_Return);
  expect_after(false);
  Focus("RskBfrAftrChk");
  PressKey(Qt::Key_Space);
  expect_after(true);
}

TEST_F(RiskEstimtnStagesTest, SwitchMakesSeverityTheParameterInHand) {
  OpenOn(BothStages(kPathToFour, kTwo));
  Focus("occurrenceCbo");
  EXPECT_EQ(session.ActiveParameterBox, "occurrenceCbo");
  ToAfterStage();
  EXPECT_EQ(session.ActiveParameterBox, "SevertyCbo");
  EXPECT_EQ(TextOf("HzrdDscptnLbl"), "Hazard description : Severity");
  EXPECT_EQ(BackOf("SerScrStd"), 0xFFFF80U);
  EXPECT_NE(BackOf("OCrScrStd"), 0xFFFF80U);
}

TEST_F(RiskEstimtnStagesTest, SwitchToAnUnsetStageEmptiesTheGraphAndKeepsTheIndexes) {
  Fields fields = Levels(kPathToFour);
  fields["RiskIndex"] = 4;
  OpenOn(fields);
  ToAfterStage();
  EXPECT_EQ(LevelTexts(), QStringList({"Reset", "", "", ""}));
  EXPECT_EQ(OpenBoxes(), QStringList{"SevertyCbo"});
  EXPECT_THAT(LitLines(), IsEmpty());
  EXPECT_THAT(LitLabels(), IsEmpty());
  EXPECT_EQ(TextOf("RiskIdxBRsltDsp"), "4");
  EXPECT_EQ(TextOf("RskTxtLbl"), "Medium Risk");
  EXPECT_EQ(TextOf("HasRiskRdsLbl"), "Yes") << "an after index that is still 0 counts";
  ToBeforeStage();
  EXPECT_EQ(LevelTexts(), kPathToFour);
  EXPECT_THAT(LitLabels(), ElementsAre("RILbl4"));
  EXPECT_EQ(SavedLevels(true), kNoLevels);
}

TEST_F(RiskEstimtnStagesTest, StatementsScoresAndMatrixFollowTheStage) {
  OpenOn({{"1Chk_OptnSltd", 4},
          {"Chk_OptnSe", " worst"},
          {"2Chk_OptnSltd", 5},
          {"3Chk_OptnSltd", 5},
          {"4Chk_OptnSltd", 5},
          {"1Chk_OptnSltdAftr", 1},
          {"2Chk_OptnSltdAftr", 2},
          {"Chk_OptnExAftr", " seldom"}});
  EXPECT_EQ(MarkedCell(), "Rsk20");
  EXPECT_EQ(ScoreLabels(), QStringList({"4", "5", "5", "5"}));
  EXPECT_EQ(session.ClassBefore, 15);
  ToAfterStage();
  EXPECT_EQ(MarkedCell(), "Rsk1");
  EXPECT_EQ(ScoreLabels(), QStringList({"1", "2", "0", "0"}));
  EXPECT_EQ(TextOf("ExChkStdStd"), "Exposure : seldom");
  EXPECT_EQ(CheckedStatements(), QList<int>{1});
  EXPECT_EQ(session.SeverityBefore, 1) << "the values of the stage on show, whichever it is";
  EXPECT_EQ(session.ClassBefore, 2);
  ToBeforeStage();
  EXPECT_EQ(MarkedCell(), "Rsk20");
  EXPECT_EQ(CheckedStatements(), QList<int>{4});
}

TEST_F(RiskEstimtnStagesTest, StageThatIsLeftBySwitchIsNotSaved) {
  OpenOn({});
  Pick("SevertyCbo", "S1, Slight");
  ToAfterStage();
  EXPECT_EQ(SavedLevels(), QStringList({"S1, Slight", "N.A.", "N.A.", "N.A."}))
      << "the exposure that was given and never clicked doesn't reach the row";
  ToBeforeStage();
  EXPECT_EQ(LevelTexts(), QStringList({"S1, Slight", "F1, F2", "", ""}));
  EXPECT_EQ(SavedLevels()[1], "N.A.");
}

TEST_F(RiskEstimtnStagesTest, FieldsBehindAChangedLevelComeBackWithASwitch) {
  OpenOn(Levels(kPathToFour));
  Pick("ExposureCbo", "F2, Frequent");
  EXPECT_EQ(LevelTexts(), QStringList({"S2, Serious", "F2, Frequent", "", ""}));
  EXPECT_EQ(Saved("RiskIndex"), "4");
  ToAfterStage();
  ToBeforeStage();
  EXPECT_EQ(LevelTexts(), kPathToSix);
  EXPECT_EQ(Saved("RiskIndex"), "6") << "the end of the replayed path stores its index";
}

TEST_F(RiskEstimtnStagesTest, StaleAvoidanceBehindAnEndedPathFiresItsRule) {
  OpenOn(Levels({"S1, Slight", "F1, F2", "O1, Low", "A2, Impossible"}));
  EXPECT_EQ(Saved("RiskIndex"), "2");
  EXPECT_THAT(LitLines(), ElementsAre("SV2", "SEH1_2", "NoneLn2", "OAng0", "AH2"));
  EXPECT_THAT(LitLabels(), ElementsAre("RILb2"));
  EXPECT_EQ(TextOf("avoidanceCbo"), "A2, Impossible");
  EXPECT_FALSE(IsEnabled("avoidanceCbo"));
}

TEST_F(RiskEstimtnStagesTest, LevelsBehindAnUnsetSeverityComeBackAllTheSame) {
  OpenOn(Levels({"Reset", "F2, Frequent", "O3, High", "A2, Impossible"}));
  EXPECT_EQ(LevelTexts(), QStringList({"Reset", "F2, Frequent", "O3, High", "A2, Impossible"}));
  EXPECT_THAT(LitLines(), ElementsAre("OAng5", "AH6"));
  EXPECT_EQ(Saved("RiskIndex"), "6");
}

TEST_F(RiskEstimtnStagesTest, ClosingBlanksTheLevelsBehindAChangedOneAndKeepsTheIndex) {
  Fields fields = Levels(kPathToFour);
  fields["RiskIndex"] = 4;
  OpenOn(fields);
  Pick("SevertyCbo", "S1, Slight");
  Close();
  EXPECT_EQ(SavedLevels(), QStringList({"S1, Slight", "F1, F2", "N.A.", "N.A."}));
  EXPECT_EQ(Saved("RiskIndex"), "4");
  OpenForm();
  EXPECT_THAT(LitLines(), ElementsAre("SV2", "SEH1_2"));
  EXPECT_EQ(TextOf("RiskIdxBRsltDsp"), "4");
  Pick("SevertyCbo", "S2, Serious");
  EXPECT_EQ(SavedLevels()[1], "F1, F2");
  Close();
  EXPECT_EQ(SavedLevels(), QStringList({"S2, Serious", "N.A.", "N.A.", "N.A."}))
      << "an empty exposure is the unset word";
}

TEST_F(RiskEstimtnStagesTest, ClosingInTheAfterStageLeavesTheBeforeLevelsAsTheClicksWroteThem) {
  OpenOn({});
  Pick("SevertyCbo", "S1, Slight");
  ToAfterStage();
  PickLevels({"S1, Slight", "", "O2, Midium"});
  Close();
  EXPECT_EQ(SavedLevels(), QStringList({"S1, Slight", "N.A.", "N.A.", "N.A."}));
  EXPECT_EQ(SavedLevels(true), QStringList({"S1, Slight", "F1, F2", "O2, Midium", "N.A."}));
}

TEST_F(RiskEstimtnStagesTest, ClosingNeitherAsksNorTouchesIndexAndStatements) {
  OpenOn(Levels(kPathToFour));
  ChooseStatement("ExposureCbo", 3);
  auto row = SavedRow();
  Close();
  EXPECT_EQ(SavedRow(), row);
  EXPECT_THAT(desk.messages.Shown(), IsEmpty());
}

TEST_F(RiskEstimtnStagesTest, DoneUnloadsAndThenShowsTheTasks) {
  OpenOn({});
  Close();
  EXPECT_EQ(steps, QStringList{"unloaded"}) << "the close box shows nothing";
  OpenForm();
  steps.clear();
  Click("clsfrm");
  EXPECT_EQ(steps, QStringList({"unloaded", "done"}));
}

TEST_F(RiskEstimtnStagesTest, ClosingClearsThePicturesAndGoesToTheApplicationFolder) {
  desk.files.ChangeFolder(installation.Outside(QString()));
  OpenOn({});
  EXPECT_TRUE(ShowsPicture("ImgBfore"));
  dialog.FileName = "a picture.jpg";
  bool cleared = false;
  QObject::connect(form_, &RiskEstimtn::Unloaded,
                   [&] { cleared = !ShowsPicture("ImgBfore") && !ShowsPicture("ImgAfter"); });
  Click("clsfrm");
  EXPECT_TRUE(cleared);
  EXPECT_EQ(desk.files.CurrentFolder(), installation.Folder());
  EXPECT_EQ(dialog.FileName, "1");
}

TEST_F(RiskEstimtnStagesTest, HalfDoneEstimationIsLeftAndFoundAgain) {
  OpenOn({});
  PickLevels({"S2, Serious", "F2, Frequent", "O1, Low"});
  Click("clsfrm");
  EXPECT_EQ(SavedLevels(), QStringList({"S2, Serious", "F2, Frequent", "O1, Low", "N.A."}));
  EXPECT_EQ(Saved("RiskIndex"), "0");
  OpenForm();
  EXPECT_EQ(LevelTexts(), QStringList({"S2, Serious", "F2, Frequent", "O1, Low", ""}));
  EXPECT_EQ(OpenBoxes(), kBoxes);
  EXPECT_THAT(LitLines(), ElementsAre("SV1", "SH3", "FV2", "FH4", "OAng4"));
  Pick("avoidanceCbo", "A2, Impossible");
  EXPECT_EQ(Saved("RiskIndex"), "4");
}

// Every stored combination of level texts, whatever left it there.

/// What the rules make of stored level texts, step by step and told apart from the form.
class Replay {
 public:
  Replay(QStringList stored, int index) : stored_(std::move(stored)), index_(index) { Run(); }

  [[nodiscard]] const QStringList& stored() const { return stored_; }
  [[nodiscard]] const QStringList& texts() const { return texts_; }
  [[nodiscard]] const QStringList& open() const { return open_; }
  [[nodiscard]] int index() const { return index_; }
  [[nodiscard]] QString label() const { return label_; }
  [[nodiscard]] QSet<QString> lit() const { return lit_; }

 private:
  static inline const QStringList kBoxes{"SevertyCbo", "ExposureCbo", "occurrenceCbo",
                                         "avoidanceCbo"};
  static inline const QMap<QString, QString> kExposureOf{
      {"F1, F2", "S1, Slight"}, {"F1, Seldom", "S2, Serious"}, {"F2, Frequent", "S2, Serious"}};
  static inline const QStringList kLabels{"RILbl0", "RILb1",  "RILb2", "RILbl3",
                                          "RILbl4", "RILbl5", "RILbl6"};

  void Run() {
    if (stored_[0] != "Reset") {
      texts_[0] = stored_[0];
      Severity();
    }
    // A severity without a hazard has cleared the fields behind it by now.
    for (int box = 1; box <= 3; ++box) {
      if (stored_[box] == "N.A.") continue;
      texts_[box] = stored_[box];
      if (box == 1) Exposure();
      if (box == 2) Occurrence();
      if (box == 3) Avoidance();
    }
    open_.removeDuplicates();
    open_.sort();
  }
  void Severity() {
    if (texts_[0] == "None.") {
      stored_ = QStringList{"None.", "N.A.", "N.A.", "N.A."};
      lit_ = {"SV2", "SV3", "NoneLn", "NoneLn2"};
      End(0);
    } else if (texts_[0] == "S1, Slight") {
      lit_ = {"SV2", "SEH1_2"};
      texts_[1] = "F1, F2";
      open_ += {kBoxes[1], kBoxes[2]};
    } else if (texts_[0] == "S2, Serious") {
      lit_ = {"SV1", "SH3"};
      open_ += kBoxes[1];
    }
  }
  void Exposure() {
    // The line of "F1, F2" is one of severity's: only the label goes out behind another text.
    label_.clear();
    lit_.remove("NoneLn2");
    if (texts_[0].isEmpty() || kExposureOf.value(texts_[1]) != texts_[0]) return;
    if (texts_[1] == "F1, F2") lit_ += "SEH1_2";
    if (texts_[1] == "F1, Seldom") lit_ += {"FV1", "FH3"};
    if (texts_[1] == "F2, Frequent") lit_ += {"FV2", "FH4"};
    open_ += kBoxes[2];
    open_.removeAll(kBoxes[3]);
    texts_[2].clear();
    texts_[3].clear();
  }
  void Occurrence() {
    static const QMap<QString, QStringList> kLines{{"F1, F2", {"OAng0", "OH2", "OAng1"}},
                                                   {"F1, Seldom", {"OAng2", "OH3", "OAng3"}},
                                                   {"F2, Frequent", {"OAng4", "OH4", "OAng5"}}};
    label_.clear();
    lit_.remove("NoneLn2");
    const auto level = QStringList{"O1, Low", "O2, Midium", "O3, High"}.indexOf(texts_[2]);
    if (level < 0 || !kLines.contains(texts_[1])) return;
    lit_ += kLines[texts_[1]][level];
    if (texts_[1] == "F1, F2" && level == 0) {
      lit_ += "NoneLn2";
      End(0);
    } else {
      open_ += kBoxes[3];
    }
  }
  void Avoidance() {
    label_.clear();
    // Both ends of a node rise with it: the row of the exposure, that of the occurrence, one for
    // A2.
    const auto exposure = QStringList{"F1, F2", "F1, Seldom", "F2, Frequent"}.indexOf(texts_[1]);
    const auto occurrence = QStringList{"O1, Low", "O2, Midium", "O3, High"}.indexOf(texts_[2]);
    const auto avoidance = QStringList{"A1, Possible", "A2, Impossible"}.indexOf(texts_[3]);
    if (exposure < 0 || occurrence < 0 || avoidance < 0) return;
    static const int kIndex[3][3][2] = {
        {{-1, 2}, {0, 1}, {1, 2}}, {{1, 2}, {2, 3}, {3, 4}}, {{3, 4}, {4, 5}, {5, 6}}};
    const int index = kIndex[exposure][occurrence][avoidance];
    if (index < 0) return;
    lit_ += QString(avoidance == 0 ? "AAng%1" : "AH%1").arg(index);
    End(index);
  }
  void End(int index) {
    index_ = index;
    label_ = kLabels[index];
  }

  QStringList stored_;
  QStringList texts_{"Reset", "", "", ""};
  QStringList open_{"SevertyCbo"};
  QSet<QString> lit_;
  QString label_;
  int index_;
};

class EveryStoredCombinationTest : public EstimationTest {
 protected:
  void ExpectReplayed(const QStringList& levels, bool after) {
    constexpr int kIndexBefore = 9;
    const Replay expected(levels, kIndexBefore);
    const std::string what = (after ? "after: " : "before: ") + levels.join("; ").toStdString();
    const QStringList lit = LitLines();
    EXPECT_EQ(QSet<QString>(lit.begin(), lit.end()), expected.lit()) << what;
    EXPECT_EQ(LitLabels().join(","), expected.label()) << what;
    // A page shows the same of these levels as the form.
    const RiskMarks marks = MarksOf(after ? model::Stage::kAfter : model::Stage::kBefore,
                                    {levels[0], levels[1], levels[2], levels[3]}, 0, 0);
    EXPECT_EQ(marks.LitLines(), lit) << what;
    EXPECT_EQ(marks.LitIndexLabels(), LitLabels()) << what;
    EXPECT_EQ(LevelTexts(), expected.texts()) << what;
    QStringList open = OpenBoxes();
    open.sort();
    EXPECT_EQ(open, expected.open()) << what;
    const QMap<QString, QString> row = SavedRow();
    QStringList stored;
    for (int i = 0; i < 4; ++i) stored += row[LevelField(i, after)];
    EXPECT_EQ(stored, expected.stored()) << what;
    EXPECT_EQ(row[after ? "RiskIndexAftr" : "RiskIndex"], QString::number(expected.index()))
        << what;
  }
  template <class Act>
  static int ForEach(const QStringList& severities, const QStringList& exposures,
                     const QStringList& occurrences, const QStringList& avoidances, Act act) {
    int count = 0;
    for (const QString& severity : severities) {
      for (const QString& exposure : exposures) {
        for (const QString& occurrence : occurrences) {
          for (const QString& avoidance : avoidances) {
            act({severity, exposure, occurrence, avoidance});
            ++count;
          }
        }
      }
    }
    return count;
  }

  const QStringList kSeverities{"Reset", "None.", "S1, Slight", "S2, Serious"};
  const QStringList kExposures{"N.A.", "F1, F2", "F1, Seldom", "F2, Frequent"};
  const QStringList kOccurrences{"N.A.", "O1, Low", "O2, Midium", "O3, High"};
  const QStringList kAvoidances{"N.A.", "A1, Possible", "A2, Impossible"};
};

TEST_F(EveryStoredCombinationTest, ComesBackAtTheLoad) {
  GivenTask();
  const int count = ForEach(kSeverities, kExposures, kOccurrences, kAvoidances,
                            [this](const QStringList& levels) {
                              Fields fields = Levels(levels);
                              fields["RiskIndex"] = 9;
                              SetFields(fields);
                              OpenForm();
                              ExpectReplayed(levels, false);
                            });
  EXPECT_EQ(count, 4 * 4 * 4 * 3);
}

TEST_F(EveryStoredCombinationTest, ComesBackOnASwitchToEitherStageUnknownTextsIncluded) {
  OpenOn({});
  const QStringList unknown{"S9, Unknown"};
  const int count = ForEach(kSeverities + unknown, kExposures + unknown, kOccurrences + unknown,
                            kAvoidances + unknown, [this](const QStringList& levels) {
                              for (const bool after : {true, false}) {
                                Fields fields = Levels(levels, after);
                                fields[after ? "RiskIndexAftr" : "RiskIndex"] = 9;
                                SetFields(fields);
                                Control<QPushButton>("RskBfrAftrChk").setChecked(after);
                                ExpectReplayed(levels, after);
                              }
                            });
  EXPECT_EQ(count, 5 * 5 * 5 * 4);
}

}  // namespace
}  // namespace kestrix
