#pragma once

#include <gtest/gtest.h>

#include <QDir>
#include <QJsonArray>
#include <QPoint>
#include <QRect>
#include <QSet>
#include <utility>

#include "outside/Person.h"
#include "support/TestInstallation.h"

namespace kestrix {

inline QRect Place(const QJsonObject& what) {
  return {what["x"].toInt(), what["y"].toInt(), what["width"].toInt(), what["height"].toInt()};
}

/// An installation of the test's own and a display, before which people sit. The parameter is the
/// display's window manager.
class OutsideTest : public ::testing::TestWithParam<XServer::Manager> {
 public:
  static std::string NameOf(const ::testing::TestParamInfo<XServer::Manager>& info) {
    return info.param == XServer::Manager::kOpenbox ? "WithManager" : "Bare";
  }

 protected:
  static void SetUpTestSuite() {
    family_ = std::make_unique<QTemporaryDir>();
    QProcess install;
    install.start(KESTRIX_CMAKE, {"--install", KESTRIX_BUILD, "--prefix", family_->path()});
    install.waitForFinished(120'000);
  }
  static void TearDownTestSuite() { family_.reset(); }

  void SetUp() override {
    const QString why_not = Person::WhyNot(GetParam());
    if (!why_not.isEmpty()) GTEST_SKIP() << why_not.toStdString();
    ASSERT_TRUE(QFile::exists(family_->filePath("KestrixStudy/KestrixStudy")));
    // A fresh copy of the installation for each test.
    QProcess copy;
    copy.start("cp", {"-a", family_->path() + "/.", place_.path()});
    copy.waitForFinished(60'000);
    OpenDisplay({1280, 800});
  }

  void OpenDisplay(const QSize& size) {
    display_.reset();
    display_ = std::make_unique<XServer>(GetParam(), size);
    ASSERT_TRUE(display_->Ready());
    screen_ = QRect(QPoint(), size);
  }
  [[nodiscard]] std::unique_ptr<Person> Sit(const QStringList& variables = {},
                                            const QStringList& arguments = {}) const {
    return std::make_unique<Person>(place_.path(), variables, arguments);
  }
  [[nodiscard]] QString Path(const QString& tail) const {
    return place_.filePath("KestrixStudy/RskAsmtFld/" + tail);
  }
  [[nodiscard]] QStringList Organisations() const {
    return TestInstallation::Column(Path("orgtn.mdb"), "SELECT OrgName FROM orgtn");
  }
  [[nodiscard]] QList<QStringList> Study(const QString& query) const {
    return TestInstallation::Sql(Path("risk_esmatn1.mdb"), query);
  }

  // Steps that many tests go; each stands where the next one begins.
  static void OpenOrganisations(Person& person) {
    // A window that shows hasn't the keyboard yet.
    ASSERT_TRUE(person.SeesActive("frmMain"));
    person.Press({"ctrl+h"});
    ASSERT_TRUE(person.SeesActive("Orgfrm"));
  }
  static void AddOrganisation(Person& person, const QString& name) {
    ASSERT_NO_FATAL_FAILURE(OpenOrganisations(person));
    ASSERT_TRUE(person.Click("addorncmd"));
    ASSERT_TRUE(person.SeesFocus("orgnmecbotxt"));
    person.Type(name);
    person.Press({"Tab"});
    ASSERT_TRUE(person.SeesActive("mnfrm"));
  }
  static void AddProject(Person& person, const QString& number) {
    ASSERT_TRUE(person.Click("NwESINo"));
    ASSERT_TRUE(person.SeesFocus("ESI_No_temp"));
    person.Type(number);
    person.Press({"Tab"});
    ASSERT_TRUE(person.SeesFocus("PrjStgCbo"));
    ASSERT_EQ(person.Text("ESI_No"), number);
  }
  static void AddTask(Person& person, const QString& title) {
    person.Press({"alt+a"});
    ASSERT_TRUE(person.Sees([&] {
      return person.Focus() == "FuntnTaskMachry" &&
             person.Control("FuntnTaskMachry")["selection"] == "None.";
    }));
    person.Type(title);
    person.Press({"Tab"});
    ASSERT_TRUE(person.SeesFocus("HazrdLoctn"));
  }
  static void OpenTasks(Person& person) {
    person.Press({"alt+r"});
    ASSERT_TRUE(person.SeesActive("RiskEvalFrm_1"));
  }
  void GoToTasks(Person& person) {
    ASSERT_TRUE(person.Start());
    ASSERT_NO_FATAL_FAILURE(AddOrganisation(person, "Press shop"));
    ASSERT_NO_FATAL_FAILURE(AddProject(person, "P-1"));
    ASSERT_NO_FATAL_FAILURE(OpenTasks(person));
    ASSERT_NO_FATAL_FAILURE(AddTask(person, "Load the press"));
  }
  void GoToEstimation(Person& person) {
    ASSERT_NO_FATAL_FAILURE(GoToTasks(person));
    ASSERT_TRUE(person.Click("RiskEsmtBtn"));
    ASSERT_TRUE(person.SeesActive("RiskEstimtn"));
    ASSERT_TRUE(person.SeesFocus("SevertyCbo"));
  }
  /// Opens the list of the box that has the focus and takes an entry by the keyboard alone.
  static void PickByKeys(Person& person, const QString& box, int downs, const QString& wanted) {
    ASSERT_TRUE(person.SeesFocus(box));
    QStringList keys = {"alt+Down", "Home"};
    for (int i = 0; i < downs; ++i) keys += "Down";
    person.Press(keys + QStringList{"Return"});
    ASSERT_TRUE(person.SeesText(box, wanted));
  }
  /// Opens the list of a box and takes an entry by the mouse alone.
  static void PickByMouse(Person& person, const QString& box, const QString& wanted) {
    ASSERT_TRUE(person.Click(box));
    QRect entry;
    const auto is_there = [&] {
      // A list that is just coming up moves: twice the same is where it stays.
      const QRect before = std::exchange(entry, QRect());
      const QJsonArray list = person.Control(box)["list"].toArray();
      for (const QJsonValue item : list)
        if (item["text"].toString() == wanted) entry = Place(item.toObject());
      return entry.isValid() && entry == before;
    };
    ASSERT_TRUE(person.Sees(is_there)) << qPrintable(box);
    person.ClickAt(entry.center());
    ASSERT_TRUE(person.SeesText(box, wanted));
    ASSERT_TRUE(person.SeesFocus(box));
  }
  /// Tab goes once around all that can take the focus, and comes back.
  static void WalkAround(Person& person, const QString& window) {
    const QString first = person.Focus();
    QSet<QString> reached = {first};
    for (int step = 0; step < 80; ++step) {
      const QString before = person.Focus();
      person.Press({"Tab"});
      ASSERT_TRUE(person.Sees([&] { return person.Focus() != before; }))
          << "stuck on " << qPrintable(before);
      ASSERT_EQ(person.Box(), "") << "behind " << qPrintable(before);
      reached += person.Focus();
      if (person.Focus() == first) break;
    }
    EXPECT_EQ(person.Focus(), first) << "the way round doesn't end in " << qPrintable(window);
    const QJsonArray controls = person.Window(window)["controls"].toArray();
    for (const QJsonValue control : controls) {
      if (!control["takes_focus"].toBool() || !control["visible"].toBool() ||
          !control["enabled"].toBool())
        continue;
      EXPECT_TRUE(reached.contains(control["name"].toString()))
          << qPrintable(control["name"].toString()) << " isn't reached in " << qPrintable(window);
    }
  }
  /// Every window is whole on the screen, nothing written on the front one is cut off, and none of
  /// its buttons has to be scrolled to.
  void LookOver(const Person& person, const QString& window) {
    ASSERT_TRUE(person.SeesActive(window));
    EXPECT_TRUE(person.Sees([&] {
      return screen_.contains(Place(person.Window(window)["frame"].toObject()));
    })) << qPrintable(window)
        << " isn't whole on the screen";
    const QJsonArray controls = person.Window(window)["controls"].toArray();
    EXPECT_FALSE(controls.isEmpty());
    for (const QJsonValue control : controls) {
      EXPECT_FALSE(control["cut"].toBool())
          << qPrintable(control["name"].toString()) << " of " << qPrintable(window)
          << " is cut: " << qPrintable(control["text"].toString());
      if (control["class"] != "QPushButton" || !control["visible"].toBool()) continue;
      EXPECT_EQ(Place(control["seen"].toObject()), Place(control.toObject()))
          << qPrintable(control["name"].toString()) << " of " << qPrintable(window);
    }
  }

  QTemporaryDir place_;
  std::unique_ptr<XServer> display_;
  QRect screen_;

 private:
  static inline std::unique_ptr<QTemporaryDir> family_;
};

/// What only a window manager gives: title bars, minimising, a way from one program to the other.
class ManagedTest : public OutsideTest {};

}  // namespace kestrix
