// The shipped program, used as a person uses it: installed, on a real display with and without a
// window manager, by mouse and keyboard, and looked at from outside.

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QProcess>

#include "outside/OutsideTest.h"

namespace kestrix {
namespace {

/// What the display knows of the picture of the window with that title.
QString PictureOnDisplay(const QString& title) {
  QProcess tool;
  tool.start("xprop", {"-name", title, "_NET_WM_ICON"});
  tool.waitForFinished();
  return QString::fromUtf8(tool.readAllStandardOutput()).section(u'\n', 0, 0);
}

TEST_P(OutsideTest, FirstStartPutsTheFrameWithItsPictureInItsPlace) {
  const auto person = Sit();
  ASSERT_TRUE(person->Start());
  ASSERT_TRUE(person->SeesActive("frmMain"));
  const QPoint at = Place(person->Window("frmMain")["frame"].toObject()).topLeft();
  EXPECT_NEAR(at.x(), 67, 1);
  EXPECT_NEAR(at.y(), 67, 1);
  EXPECT_EQ(Place(person->Window("frmMain")).size(), QSize(433, 433));
  EXPECT_EQ(person->Text("sbStatusBarPanel1"), " KESTRIX : Risk Assessment Software  ");
  EXPECT_TRUE(person->Sees([] {
    return PictureOnDisplay(" KESTRIX : Risk Assessment Software  ").contains("128 x 128");
  }));
}

TEST_P(OutsideTest, TheMainJobIsDoneWithMouseAndKeysAndIsOnTheDisk) {
  const auto person = Sit();
  ASSERT_NO_FATAL_FAILURE(GoToTasks(*person));
  // The reference number, then the date by its mask, key by key.
  person->Press({"shift+Tab", "shift+Tab"});
  ASSERT_TRUE(person->SeesFocus("RefNo"));
  person->Press({"ctrl+a"});
  person->Type("x");
  person->Press({"Tab"});
  ASSERT_TRUE(person->SeesBox("BELTROVAN|Enter number."));
  person->Press({"Return"});
  ASSERT_TRUE(person->SeesFocus("RefNo"));
  person->Press({"ctrl+a"});
  person->Type("3.5");
  person->Press({"shift+Tab"});
  ASSERT_TRUE(person->SeesText("RefNo", "03.50"));
  ASSERT_TRUE(person->SeesFocus("dateOfRcd"));
  const QStringList masks = {"3_/__/____", "31/__/____", "31/0_/____", "31/02/____"};
  for (qsizetype i = 0; i < masks.size(); ++i) {
    person->Type(QStringLiteral("3102").mid(i, 1));
    ASSERT_TRUE(person->SeesText("dateOfRcd", masks[i]));
  }
  person->Type("2013");
  ASSERT_TRUE(person->SeesText("dateOfRcd", "31/02/2013"));
  // A click on the way out is answered by the message, and doesn't fall through it.
  ASSERT_TRUE(person->Click("ClsedDg"));
  ASSERT_TRUE(person->SeesBox("BELTROVAN|Enter data. (dd/mm/yyyy)"));
  person->Press({"Return"});
  ASSERT_TRUE(person->SeesFocus("dateOfRcd"));
  EXPECT_EQ(person->Active(), "RiskEvalFrm_1");
  person->Press({"ctrl+a", "BackSpace"});
  person->Type("28022013");
  person->Press({"Tab"});
  ASSERT_TRUE(person->SeesFocus("RefNo"));
  // A hazard from its list.
  for (int i = 0; i < 5 && person->Focus() != "PhaseMachn"; ++i) person->Press({"Tab"});
  ASSERT_NO_FATAL_FAILURE(
      PickByKeys(*person, "PhaseMachn", 2, person->Control("PhaseMachn")["items"][2].toString()));
  const QString phase = person->Text("PhaseMachn");
  // The estimation, by the keyboard alone.
  for (int i = 0; i < 40 && person->Focus() != "RiskEsmtBtn"; ++i) person->Press({"Tab"});
  person->Press({"space"});
  ASSERT_TRUE(person->SeesActive("RiskEstimtn"));
  ASSERT_NO_FATAL_FAILURE(PickByKeys(*person, "SevertyCbo", 2, "S2, Serious"));
  person->Press({"Tab"});
  ASSERT_NO_FATAL_FAILURE(PickByKeys(*person, "ExposureCbo", 1, "F2, Frequent"));
  person->Press({"Tab"});
  ASSERT_NO_FATAL_FAILURE(PickByKeys(*person, "occurrenceCbo", 2, "O3, High"));
  person->Press({"Tab"});
  ASSERT_NO_FATAL_FAILURE(PickByKeys(*person, "avoidanceCbo", 1, "A2, Impossible"));
  EXPECT_TRUE(person->SeesText("RiskIdxBRsltDsp", "6"));
  for (int i = 0; i < 8 && person->Focus() != "Chk_5"; ++i) person->Press({"Tab"});
  person->Press({"space"});
  EXPECT_TRUE(person->SeesText("AvrScrStd", "5"));
  ASSERT_TRUE(person->Click("RskBfrAftrChk"));
  EXPECT_TRUE(person->SeesText("SevertyCbo", "Reset"));
  ASSERT_TRUE(person->Click("clsfrm"));
  ASSERT_TRUE(person->SeesActive("RiskEvalFrm_1"));
  EXPECT_TRUE(person->SeesText("RIBRtxt", "6 (High Risk)"));
  ASSERT_TRUE(person->Click("ClsedDg"));
  ASSERT_TRUE(person->SeesActive("mnfrm"));
  EXPECT_EQ(
      Study("SELECT Project_Number, dateOfRcd, RefNo, FuntnTaskMachry, PhaseMachn, "
            "SevertyCbo, ExposureCbo, occurrenceCbo, avoidanceCbo, RiskIndex, "
            "\"4Chk_OptnSltd\" FROM Risk_records"),
      (QList<QStringList>{{"P-1", "28/02/2013", "03.50", "Load the press", phase, "S2, Serious",
                           "F2, Frequent", "O3, High", "A2, Impossible", "6", "5"}}));
}

TEST_P(OutsideTest, BothStagesAreEstimatedWithTheMouseAlone) {
  const auto person = Sit();
  ASSERT_NO_FATAL_FAILURE(GoToEstimation(*person));
  const auto graph_says = [&](const QString& words) {
    return person->Sees([&] { return person->Control("RiskGraph")["description"] == words; });
  };
  ASSERT_NO_FATAL_FAILURE(PickByMouse(*person, "SevertyCbo", "S2, Serious"));
  ASSERT_TRUE(person->Click("Chk_4"));
  ASSERT_TRUE(person->SeesText("SerScrStd", "4"));
  ASSERT_NO_FATAL_FAILURE(PickByMouse(*person, "ExposureCbo", "F1, Seldom"));
  ASSERT_TRUE(person->Click("Chk_3"));
  ASSERT_TRUE(person->SeesText("ExScrStd", "3"));
  ASSERT_NO_FATAL_FAILURE(PickByMouse(*person, "occurrenceCbo", "O3, High"));
  ASSERT_TRUE(person->Click("Chk_5"));
  ASSERT_TRUE(person->SeesText("OCrScrStd", "5"));
  ASSERT_NO_FATAL_FAILURE(PickByMouse(*person, "avoidanceCbo", "A2, Impossible"));
  ASSERT_TRUE(person->Click("Chk_5"));
  ASSERT_TRUE(person->SeesText("AvrScrStd", "5"));
  EXPECT_TRUE(graph_says("S2, Serious; F1, Seldom; O3, High; A2, Impossible: risk index 4"));
  EXPECT_EQ(person->Control("RiskMatrix")["description"], "Class 13, severity 4: High Risk");
  EXPECT_EQ(person->Text("RiskIdxBRsltDsp"), "4");
  // The caption of the results switches to the other stage, and back.
  ASSERT_TRUE(person->Click("RsltDsplRiskLbl"));
  ASSERT_TRUE(person->SeesText("RskBfrAftrChk", "   Risk estimation after recommendations"));
  EXPECT_TRUE(graph_says("Nothing chosen"));
  ASSERT_NO_FATAL_FAILURE(PickByMouse(*person, "SevertyCbo", "S1, Slight"));
  ASSERT_TRUE(person->SeesText("ExposureCbo", "F1, F2"));
  ASSERT_NO_FATAL_FAILURE(PickByMouse(*person, "occurrenceCbo", "O3, High"));
  ASSERT_NO_FATAL_FAILURE(PickByMouse(*person, "avoidanceCbo", "A1, Possible"));
  EXPECT_TRUE(graph_says("S1, Slight; F1, F2; O3, High; A1, Possible: risk index 1"));
  ASSERT_TRUE(person->Click("RsltDsplRiskLbl"));
  ASSERT_TRUE(person->SeesText("RskBfrAftrChk", "   Risk estimation before recommendations"));
  EXPECT_TRUE(graph_says("S2, Serious; F1, Seldom; O3, High; A2, Impossible: risk index 4"));
  // And so does the button.
  ASSERT_TRUE(person->Click("RskBfrAftrChk"));
  EXPECT_TRUE(graph_says("S1, Slight; F1, F2; O3, High; A1, Possible: risk index 1"));
  EXPECT_EQ(person->Text("HasRiskRdsLbl"), "Yes");
  ASSERT_TRUE(person->Click("clsfrm"));
  ASSERT_TRUE(person->SeesActive("RiskEvalFrm_1"));
  EXPECT_TRUE(person->SeesText("RIBRtxt", "4 (Medium Risk)"));
  ASSERT_TRUE(person->Click("ClsedDg"));
  ASSERT_TRUE(person->SeesActive("mnfrm"));
  EXPECT_EQ(Study("SELECT SevertyCbo, ExposureCbo, occurrenceCbo, avoidanceCbo, RiskIndex, "
                  "\"1Chk_OptnSltd\", \"2Chk_OptnSltd\", \"3Chk_OptnSltd\", \"4Chk_OptnSltd\" "
                  "FROM Risk_records"),
            (QList<QStringList>{{"S2, Serious", "F1, Seldom", "O3, High", "A2, Impossible", "4",
                                 "4", "3", "5", "5"}}));
  EXPECT_EQ(Study("SELECT SevertyCboAftr, ExposureCboAftr, occurrenceCboAftr, avoidanceCboAftr, "
                  "RiskIndexAftr FROM Risk_records"),
            (QList<QStringList>{{"S1, Slight", "F1, F2", "O3, High", "A1, Possible", "1"}}));
}

TEST_P(OutsideTest, AProjectNumberIsHeldUntilItCanBeTaken) {
  const auto person = Sit();
  ASSERT_TRUE(person->Start());
  ASSERT_NO_FATAL_FAILURE(AddOrganisation(*person, "Press shop"));
  ASSERT_NO_FATAL_FAILURE(AddProject(*person, "P-1"));
  ASSERT_TRUE(person->Click("NwESINo"));
  ASSERT_TRUE(person->SeesFocus("ESI_No_temp"));
  person->Type(" 2");
  ASSERT_TRUE(person->Click("clsdfrm"));
  ASSERT_TRUE(person->SeesBox("BELTROVAN|Can not begin with a space."));
  person->Press({"Return"});
  ASSERT_TRUE(person->SeesFocus("ESI_No_temp"));
  EXPECT_EQ(person->Active(), "mnfrm");
  person->Press({"ctrl+a", "BackSpace", "Tab"});
  ASSERT_TRUE(person->SeesText("ESI_No_temp", "Enter Project Number."));
  ASSERT_TRUE(person->SeesFocus("ESI_No_temp"));
  person->Press({"ctrl+a"});
  person->Type("P-1");
  person->Press({"Tab"});
  const QString question =
      "BELTROVAN: ERROR|Project No. [P-1] already exists. Wish to enter same Project?";
  ASSERT_TRUE(person->SeesBox(question));
  person->Press({"Return"});  // No is the default
  ASSERT_TRUE(person->SeesFocus("ESI_No_temp"));
  person->Press({"ctrl+a"});
  person->Type("P-1");
  person->Press({"Tab"});
  ASSERT_TRUE(person->SeesBox(question));
  person->Press({"alt+y"});
  ASSERT_TRUE(person->SeesFocus("PrjStgCbo"));
  EXPECT_EQ(person->Text("ESI_No"), "P-1");
  EXPECT_EQ(Study("SELECT Project_Number FROM Project_details"), (QList<QStringList>{{"P-1"}}));
}

TEST_P(OutsideTest, TabReachesEveryFieldAndHasNoDeadEnd) {
  const auto person = Sit();
  ASSERT_TRUE(person->Start());
  ASSERT_NO_FATAL_FAILURE(AddOrganisation(*person, "Press shop"));
  ASSERT_NO_FATAL_FAILURE(AddProject(*person, "P-1"));
  ASSERT_NO_FATAL_FAILURE(WalkAround(*person, "mnfrm"));
  ASSERT_NO_FATAL_FAILURE(OpenTasks(*person));
  ASSERT_NO_FATAL_FAILURE(AddTask(*person, "Load the press"));
  ASSERT_NO_FATAL_FAILURE(WalkAround(*person, "RiskEvalFrm_1"));
}

TEST_P(OutsideTest, DeletingATaskIsAnsweredByTheKeyboard) {
  const auto person = Sit();
  ASSERT_NO_FATAL_FAILURE(GoToTasks(*person));
  ASSERT_NO_FATAL_FAILURE(AddTask(*person, "Unload the press"));
  person->Press({"alt+d"});
  ASSERT_TRUE(person->Sees([&] { return person->Box().contains("Wish to delete task Unload"); }));
  person->Press({"Return"});  // No is the default
  ASSERT_TRUE(person->SeesText("TotAcdRCDDsply", " Recorded task 2 of 2 "));
  ASSERT_TRUE(person->SeesActive("RiskEvalFrm_1"));
  person->Press({"alt+d"});
  ASSERT_TRUE(person->Sees([&] { return !person->Box().isEmpty(); }));
  person->Press({"alt+y"});
  ASSERT_TRUE(person->SeesText("TotAcdRCDDsply", " Recorded task 1 of 1 "));
  EXPECT_EQ(Study("SELECT FuntnTaskMachry FROM Risk_records"),
            (QList<QStringList>{{"Load the press"}}));
}

TEST_P(OutsideTest, EveryFormIsWholeOnTheScreenAtEveryScale) {
  for (const auto& [scale, screen] :
       {std::pair(1.0, QSize(1024, 768)), {1.25, QSize(1280, 800)}, {2.0, QSize(2560, 1600)}}) {
    SCOPED_TRACE(scale);
    ASSERT_NO_FATAL_FAILURE(OpenDisplay(screen));
    const auto person = Sit({QStringLiteral("QT_SCALE_FACTOR=%1").arg(scale)});
    ASSERT_TRUE(person->Start());
    ASSERT_NO_FATAL_FAILURE(LookOver(*person, "frmMain"));
    person->Press({"ctrl+h"});
    ASSERT_NO_FATAL_FAILURE(LookOver(*person, "Orgfrm"));
    ASSERT_TRUE(person->Click("addorncmd"));
    ASSERT_TRUE(person->SeesFocus("orgnmecbotxt"));
    person->Type(QStringLiteral("Shop %1").arg(scale));
    person->Press({"Tab"});
    ASSERT_NO_FATAL_FAILURE(LookOver(*person, "mnfrm"));
    ASSERT_NO_FATAL_FAILURE(AddProject(*person, "P-1"));
    ASSERT_NO_FATAL_FAILURE(OpenTasks(*person));
    ASSERT_NO_FATAL_FAILURE(AddTask(*person, "Load the press"));
    ASSERT_NO_FATAL_FAILURE(LookOver(*person, "RiskEvalFrm_1"));
    ASSERT_TRUE(person->Click("RiskEsmtBtn"));
    ASSERT_NO_FATAL_FAILURE(LookOver(*person, "RiskEstimtn"));
    ASSERT_TRUE(person->Click("clsfrm"));
    ASSERT_TRUE(person->Click("ClsedDg"));
    ASSERT_TRUE(person->Click("LnkDwgs"));
    ASSERT_NO_FATAL_FAILURE(LookOver(*person, "tagdwgsfrm"));
    ASSERT_TRUE(person->Click("cls_1"));
    ASSERT_TRUE(person->Click("clsdfrm"));
    ASSERT_TRUE(person->SeesActive("frmMain"));
    ASSERT_TRUE(person->Click("mnuFile"));
    ASSERT_TRUE(person->Click("custmztnFrm"));
    ASSERT_NO_FATAL_FAILURE(LookOver(*person, "custizationFrm"));
    ASSERT_TRUE(person->Click("ext"));
    ASSERT_TRUE(person->SeesActive("frmMain"));
    person->Press({"ctrl+b"});
    ASSERT_NO_FATAL_FAILURE(LookOver(*person, "BkUpfrm"));
    ASSERT_TRUE(person->Click("clsd"));
    ASSERT_NO_FATAL_FAILURE(LookOver(*person, "opnflddlg"));
  }
}

TEST_P(OutsideTest, AfterAKillTheNextStartFindsTheWork) {
  const auto person = Sit();
  ASSERT_NO_FATAL_FAILURE(GoToTasks(*person));
  ASSERT_TRUE(person->Click("ClsedDg"));
  ASSERT_TRUE(person->SeesActive("mnfrm"));
  person->Kill();
  EXPECT_TRUE(QFile::exists(Path("risk_esmatn1.ldb")));
  ASSERT_TRUE(person->Start());
  ASSERT_NO_FATAL_FAILURE(OpenOrganisations(*person));
  ASSERT_NO_FATAL_FAILURE(PickByKeys(*person, "orgnmecbo", 0, "Press shop"));
  person->Press({"alt+o"});
  ASSERT_TRUE(person->SeesActive("mnfrm"));
  EXPECT_TRUE(person->SeesText("ESI_No", "P-1"));
  ASSERT_TRUE(person->Click("clsdfrm"));
  ASSERT_TRUE(person->SeesActive("frmMain"));
  EXPECT_FALSE(QFile::exists(Path("risk_esmatn1.ldb")));
}

TEST_P(ManagedTest, TheExitStoresTheFramesPlace) {
  const auto person = Sit();
  ASSERT_TRUE(person->Start());
  ASSERT_TRUE(person->SeesActive("frmMain"));
  person->Press({"alt+F4"});
  ASSERT_TRUE(person->Ended());
  EXPECT_NEAR(person->Setting("MainLeft").toInt(), 1000, 15);
  EXPECT_NEAR(person->Setting("MainTop").toInt(), 1000, 15);
  EXPECT_NEAR(person->Setting("MainWidth").toInt(), 6500, 15);
  EXPECT_NEAR(person->Setting("MainHeight").toInt(), 6500, 15);
}

TEST_P(ManagedTest, TheProjectFormHoldsTheFrontWhenTheFrameIsClicked) {
  const auto person = Sit();
  ASSERT_TRUE(person->Start());
  ASSERT_NO_FATAL_FAILURE(AddOrganisation(*person, "Press shop"));
  const QRect frame = Place(person->Window("frmMain"));
  ASSERT_FALSE(Place(person->Window("mnfrm")["frame"].toObject())
                   .contains(QPoint(frame.left() + 5, frame.bottom() - 5)));
  person->ClickAt({frame.left() + 5, frame.bottom() - 5});
  ASSERT_NO_FATAL_FAILURE(AddProject(*person, "P-1"));
  EXPECT_EQ(person->Active(), "mnfrm");
}

TEST_P(ManagedTest, CloseBoxesLoseNothingAndLeaveAWayBack) {
  const auto person = Sit();
  ASSERT_NO_FATAL_FAILURE(GoToEstimation(*person));
  ASSERT_NO_FATAL_FAILURE(PickByKeys(*person, "SevertyCbo", 0, "None."));
  person->Press({"alt+F4"});
  ASSERT_TRUE(person->SeesActive("frmMain"));
  ASSERT_TRUE(person->Window("RiskEvalFrm_1").isEmpty());
  const QRect frame = Place(person->Window("frmMain"));
  person->ClickAt(frame.center());
  ASSERT_TRUE(person->SeesActive("RiskEvalFrm_1"));
  person->Press({"alt+F4"});
  ASSERT_TRUE(person->SeesActive("frmMain"));
  EXPECT_EQ(Study("SELECT FuntnTaskMachry, SevertyCbo FROM Risk_records"),
            (QList<QStringList>{{"Load the press", "None."}}));
  person->Press({"ctrl+h"});
  ASSERT_TRUE(person->SeesActive("mnfrm"));
  person->Press({"alt+F4"});
  ASSERT_TRUE(person->SeesActive("frmMain"));
  EXPECT_FALSE(QFile::exists(Path("risk_esmatn1.ldb")));
  person->Press({"alt+F4"});
  EXPECT_TRUE(person->Ended());
}

TEST_P(ManagedTest, AMinimisedFrameComesBackMaximised) {
  const auto person = Sit();
  ASSERT_TRUE(person->Start());
  ASSERT_TRUE(person->SeesActive("frmMain"));
  // By its name: which window is the active one the window manager tells a moment later.
  ASSERT_TRUE(person->Minimise("frmMain"));
  EXPECT_TRUE(person->Sees([&] {
    const QRect frame = Place(person->Window("frmMain")["frame"].toObject());
    return frame.width() == screen_.width() && frame.height() == screen_.height();
  }));
}

TEST_P(ManagedTest, TheBackupFormComesUpOverTheOrganisationFormAndGivesTheFrontBack) {
  const auto person = Sit();
  ASSERT_TRUE(person->Start());
  ASSERT_NO_FATAL_FAILURE(OpenOrganisations(*person));
  // The organisation form holds the front, and the frame's menu is still at hand.
  person->ClickAt(Place(person->Control("mnuFile")).center());
  ASSERT_TRUE(person->Click("BkupRstorHzp"));
  ASSERT_TRUE(person->Click("Bkup"));
  ASSERT_TRUE(person->SeesActive("BkUpfrm"));
  EXPECT_FALSE(person->Window("Orgfrm").isEmpty());
  ASSERT_TRUE(person->Click("clsed"));
  ASSERT_TRUE(person->SeesActive("Orgfrm"));
}

INSTANTIATE_TEST_SUITE_P(Displays, OutsideTest,
                         ::testing::Values(XServer::Manager::kNone, XServer::Manager::kOpenbox),
                         OutsideTest::NameOf);
INSTANTIATE_TEST_SUITE_P(Displays, ManagedTest, ::testing::Values(XServer::Manager::kOpenbox),
                         OutsideTest::NameOf);

}  // namespace
}  // namespace kestrix

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  const QCoreApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
