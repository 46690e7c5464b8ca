// The form as a whole: its controls, its look and its reach.
#include <gmock/gmock.h>

#include <QAccessible>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyleOptionComboBox>

#include "estimation/EstimationTest.h"
#include "estimation/RiskGraphView.h"
#include "formkit/Controls.h"

namespace kestrix {
namespace {

using ::testing::IsEmpty;

class RiskEstimtnTest : public EstimationTest {
 protected:
  void OpenWithLongestStatements() {
    OpenAndPick(kPathToSix);
    ChooseStatement("SevertyCbo", 4);
    ChooseStatement("ExposureCbo", 5);
    ChooseStatement("occurrenceCbo", 5);
    ChooseStatement("avoidanceCbo", 3);
  }
  [[nodiscard]] static QPalette DarkTheme() {
    QPalette palette;
    for (const auto role : {QPalette::Window, QPalette::Base, QPalette::Button}) {
      palette.setColor(role, QColor(0x2B2B2B));
    }
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
      palette.setColor(role, QColor(0xEEEEEE));
    }
    return palette;
  }
};

TEST_F(RiskEstimtnTest, EveryControlIsFoundByItsName) {
  OpenOn({});
  for (const char* name :
       {"SevertyCbo",      "ExposureCbo",     "occurrenceCbo",  "avoidanceCbo",  "Chk_1",
        "Chk_2",           "Chk_3",           "Chk_4",          "Chk_5",         "HzrdDscptnLbl",
        "SerChkStd",       "ExChkStdStd",     "OcrChkStd",      "AvrChkStd",     "SerScrStd",
        "ExScrStd",        "OCrScrStd",       "AvrScrStd",      "HzrdScrLbl",    "svertyScorLbl",
        "RiskIdxBRsltDsp", "RiskIdxARsltDsp", "RskTxtLbl",      "RskTxtLbl2",    "RiskShape1",
        "RiskShape2",      "HasRiskRdsLbl",   "Label8",         "RBIMatrixLbl",  "RbiMatxShape",
        "RiskIdxBRslt",    "RiskIdxARslt",    "Label40",        "Label41",       "Label7",
        "RestartBtn",      "clsfrm",          "RskBfrAftrChk",  "ImgSltdDwgBfr", "ImgSltdDwgAfter",
        "ImgBfore",        "ImgAfter",        "RsltDsplRiskLbl"}) {
    EXPECT_TRUE(IsVisible(name)) << name;
  }
}

TEST_F(RiskEstimtnTest, FixedTextsAreAsTheyMustBe) {
  OpenOn({});
  const QMap<QString, QString> texts{{"RiskIdxBRslt", "Risk Index. Before recommendations"},
                                     {"RiskIdxARslt", "Risk Index. After recommendations"},
                                     {"Label40", "Risk Matrix"},
                                     {"Label41", "Class (Cl.)  "},
                                     {"Label7", "Cl = F + O + A"},
                                     {"Label8", "Has the Risk been adequately reduced?: "},
                                     {"RestartBtn", "Restart"},
                                     {"clsfrm", "Done"},
                                     {"SevertyLbl", "Severity (Se)"},
                                     {"ExposureLbl", "Frequency of exposure"},
                                     {"occurrenceLbl", "Probability of occurrence hazard event"},
                                     {"avoidanceLbl", "Possibility of avoidance"},
                                     {"RiskIndexLbl", "Risk Index."}};
  for (auto text = texts.keyValueBegin(); text != texts.keyValueEnd(); ++text) {
    EXPECT_EQ(TextOf(text->first), text->second);
  }
}

TEST_F(RiskEstimtnTest, TabLeadsThroughTheWholeFormAndBack) {
  OpenWithLongestStatements();
  Focus("SevertyCbo");
  // The statements are those of avoidance by then, whose box had the focus last.
  for (const char* name :
       {"SevertyCbo", "ExposureCbo", "occurrenceCbo", "avoidanceCbo", "Chk_1", "Chk_3", "Chk_5",
        "RestartBtn", "RskBfrAftrChk", "ImgBfore", "ImgSltdDwgBfr", "ImgAfter", "ImgSltdDwgAfter",
        "RsltDsplRiskLbl", "clsfrm", "SevertyCbo"}) {
    EXPECT_EQ(FocusName(), name);
    PressTab();
  }
  Focus("ExposureCbo");
  PressShiftTab();
  EXPECT_EQ(FocusName(), "SevertyCbo");
}

TEST_F(RiskEstimtnTest, EverythingFitsASmallScreenWithoutScrolling) {
  OpenWithLongestStatements();
  form_->resize(1012, 700);
  Settle();
  EXPECT_EQ(form_->size(), QSize(1012, 700));
  for (const QString& box : kBoxes) {
    Focus(box);
    const auto areas = form_->findChildren<QScrollArea*>();
    for (const QScrollArea* area : areas) {
      EXPECT_EQ(area->verticalScrollBar()->maximum(), 0)
          << area->objectName().toStdString() << " with " << box.toStdString();
      EXPECT_EQ(area->horizontalScrollBar()->maximum(), 0) << area->objectName().toStdString();
    }
  }
}

TEST_F(RiskEstimtnTest, NoTextIsCutOff) {
  OpenWithLongestStatements();
  for (const QSize size : {QSize(1024, 700), QSize(1280, 800), QSize(1920, 1080)}) {
    form_->resize(size);
    Settle();
    const auto labels = form_->findChildren<QLabel*>();
    for (const QLabel* label : labels) {
      if (label->text().isEmpty() || !label->isVisible()) continue;
      const int needed =
          label->wordWrap() ? label->heightForWidth(label->width()) : label->sizeHint().height();
      EXPECT_GE(label->height(), needed) << label->objectName().toStdString() << size.width();
      if (!label->wordWrap()) {
        EXPECT_GE(label->width(), label->sizeHint().width())
            << label->objectName().toStdString() << size.width();
      }
    }
    for (const QString& name : kBoxes) {
      const auto& box = Control<QComboBox>(name);
      const QRect room = box.lineEdit()->contentsRect();
      for (const QString& item : ItemsOf(name)) {
        EXPECT_LE(box.fontMetrics().horizontalAdvance(item) + 4, room.width())
            << item.toStdString() << size.width();
      }
    }
    for (int n = 1; n <= 5; ++n) {
      const auto& box = Control<QCheckBox>(QStringLiteral("Chk_%1").arg(n));
      EXPECT_GE(box.height(), box.heightForWidth(box.width())) << n << " " << size.width();
    }
  }
}

TEST_F(RiskEstimtnTest, GraphKeepsItsPlaceWhateverIsChosen) {
  OpenOn({});
  form_->resize(1024, 700);
  Settle();
  const QRect graph = Control<QWidget>("RiskGraph").geometry();
  const QRect matrix = Control<QWidget>("RiskMatrix").geometry();
  PickLevels(kPathToSix);
  ChooseStatement("occurrenceCbo", 5);
  EXPECT_EQ(Control<QWidget>("RiskGraph").geometry(), graph);
  EXPECT_EQ(Control<QWidget>("RiskMatrix").geometry(), matrix);
}

TEST_F(RiskEstimtnTest, RequiredColoursStayReadableInLightAndDark) {
  const QPalette light = QApplication::palette();
  OpenOn({{"RiskIndex", 6}, {"RiskIndexAftr", 3}, {"1Chk_OptnSltd", 4}, {"2Chk_OptnSltd", 5}});
  for (const QPalette& theme : {light, DarkTheme()}) {
    QApplication::setPalette(theme);
    for (const bool after : {true, false}) {
      Control<QPushButton>("RskBfrAftrChk").setChecked(after);
      Settle();
      for (const char* name : {"RsltDsplRiskLbl", "SerChkStd", "SerScrStd", "ExChkStdStd",
                               "RskTxtLbl", "RskTxtLbl2", "RBIMatrixLbl"}) {
        const auto& label = Control<QLabel>(name);
        const QWidget* filled = &label;
        while (!filled->autoFillBackground()) filled = filled->parentWidget();
        EXPECT_GE(Contrast(label.palette().color(label.foregroundRole()),
                           filled->palette().color(filled->backgroundRole())),
                  4.5)
            << name;
      }
      const auto& toggle = Control<QPushButton>("RskBfrAftrChk");
      EXPECT_GE(Contrast(toggle.palette().color(QPalette::ButtonText),
                         toggle.palette().color(QPalette::Button)),
                4.5);
    }
  }
  QApplication::setPalette(light);
}

TEST_F(RiskEstimtnTest, StageColourIsSeenOnTheToggle) {
  OpenOn({});
  for (const bool after : {false, true}) {
    if (after) ToAfterStage();
    const auto& toggle = Control<QPushButton>("RskBfrAftrChk");
    const QImage image = form_->grab().toImage();
    const QColor seen = image.pixelColor(toggle.mapTo(form_.data(), QPoint(30, 14)));
    EXPECT_NEAR(seen.hue(), QColor(after ? 0x80FF80 : 0xFFC080).hue(), 8);
    EXPECT_GT(seen.saturation(), 40);
  }
}

TEST_F(RiskEstimtnTest, AssistiveToolsReadNamesAndResults) {
  OpenOn({{"RiskIndex", 6}, {"1Chk_OptnSltd", 4}, {"2Chk_OptnSltd", 5}});
  const auto face_of = [this](const QString& control) {
    return QAccessible::queryAccessibleInterface(&Control<QWidget>(control));
  };
  const auto name_of = [&](const char* control) {
    return face_of(control)->text(QAccessible::Name);
  };
  // Of a box that is picked from they read the text, and the label that it is tied to.
  const QStringList labels{"Severity (Se)", "Frequency of exposure",
                           "Probability of occurrence hazard event", "Possibility of avoidance"};
  for (int i = 0; i < 4; ++i) {
    const auto relations = face_of(kBoxes[i])->relations(QAccessible::Label);
    ASSERT_EQ(relations.size(), 1) << kBoxes[i].toStdString();
    EXPECT_EQ(relations[0].first->text(QAccessible::Name), labels[i]);
  }
  EXPECT_EQ(name_of("RiskGraph"), "Risk graph");
  EXPECT_EQ(name_of("RiskMatrix"), "Risk Matrix");
  EXPECT_EQ(name_of("ImgBfore"), "Picture before recommendations");
  EXPECT_EQ(name_of("ImgAfter"), "Picture after recommendations");
  EXPECT_EQ(Control<QWidget>("RiskMatrix").accessibleDescription(),
            "Class 5, severity 4: Medium Risk");
}

TEST_F(RiskEstimtnTest, CornerTellsTheTaskInItsRoom) {
  const QString title = QString("Loading of the press table by hand ").repeated(6).trimmed();
  GivenTask({{"RefNo", "1.1"}, {"FuntnTaskMachry", "First"}});
  installation.GivenTask(
      kStudy, {{"Project_Number", "P-1"}, {"RefNo", "01.10"}, {"FuntnTaskMachry", title}});
  GivenTaskInHand(kStudy, "P-1");
  OpenForm();
  EXPECT_EQ(TextOf("TaskLbl"), "Task 1 of 2\nReference number 1.1\nFirst");
  Close();
  task.source.Recordset().MoveNext();
  OpenForm();
  const auto& label = Control<QLabel>("TaskLbl");
  EXPECT_EQ(label.toolTip(), "Task 2 of 2\nReference number 01.10\n" + title);
  EXPECT_EQ(label.accessibleName(), label.toolTip());
  EXPECT_TRUE(label.text().startsWith("Task 2 of 2\nReference number 01.10\nLoading of"));
  EXPECT_TRUE(label.text().endsWith(u'…')) << label.text().toStdString();
  EXPECT_LE(label.heightForWidth(label.width()), label.height());
  EXPECT_LT(label.geometry().bottom(), Control<QWidget>("clsfrm").geometry().top());
}

// Right to left the graph is drawn as ever, and so its columns stay below their boxes.
TEST_F(RiskEstimtnTest, BoxesStandOverTheirColumnsInEitherDirection) {
  for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
    QGuiApplication::setLayoutDirection(direction);
    OpenOn({});
    form_->resize(1012, 700);
    Settle();
    auto& graph = Control<RiskGraphView>("RiskGraph");
    for (std::size_t column = 0; column < 4; ++column) {
      const auto& box = Control<QComboBox>(kBoxes[static_cast<qsizetype>(column)]);
      const QRectF place = graph.WidgetRectOf(risk_graph::kColumns[column]);
      const int middle = box.mapTo(graph.window(), box.rect().center()).x();
      EXPECT_NEAR(middle, graph.mapTo(graph.window(), place.center().toPoint()).x(), 40)
          << column << " direction " << direction;
      QStyleOptionComboBox option;
      option.initFrom(&box);
      option.editable = true;
      const QRect arrow =
          box.style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxArrow, &box);
      EXPECT_FALSE(arrow.intersects(box.lineEdit()->geometry()));
    }
    Close();
    Exec(Study(), "DELETE FROM Risk_records");
  }
  QGuiApplication::setLayoutDirection(Qt::LeftToRight);
}

TEST_F(RiskEstimtnTest, FormOpensAgainOnTheSameTask) {
  GivenTask();
  for (int round = 0; round < 3; ++round) {
    OpenForm();
    Pick("SevertyCbo", round % 2 == 0 ? "None." : "S2, Serious");
    Click("clsfrm");
  }
  EXPECT_EQ(Saved("SevertyCbo"), "None.");
  EXPECT_EQ(steps.count("done"), 3);
}

}  // namespace
}  // namespace kestrix
