#include "formkit/Grid.h"

#include <QHeaderView>
#include <QPaintEvent>
#include <QScrollBar>
#include <QSignalSpy>

#include "FormKitTest.h"
#include "formkit/FieldBinding.h"
#include "store/DataControl.h"
#include "store/RecordSources.h"
#include "support/TestInstallation.h"

namespace kestrix {
namespace {

/// How high the parts are that were painted of some widgets.
class PaintedHeights : public QObject {
 public:
  int Of(const QWidget* widget) const { return heights_.value(widget); }
  void Clear() { heights_.clear(); }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Paint)
      heights_[watched] += static_cast<QPaintEvent*>(event)->region().boundingRect().height();
    return QObject::eventFilter(watched, event);
  }

 private:
  QHash<const QObject*, int> heights_;
};

/// Five tasks of a project in a grid, with a box bound to their title.
class GridTest : public FormKitTest {
 protected:
  void SetUp() override {
    place.GivenStudy(1);
    place.GivenTasks(1, "P1", 5);
    form = &MakeForm("form");
    form->resize(500, 400);
    source = new DataControl("dtsorce2", form);
    source->SetDatabaseName(place.Study(1));
    source->SetRecordSource(sources::RiskSql("P1"));
    grid = &form->Add<Grid>("DB1");
    grid->SetSource(*source, {{"Ref.No.", "RefNo"},
                              {"Functions and Task ", "FuntnTaskMachry"},
                              {"nunberauto", "nunberauto"}});
    title = &form->AddBox("title");
    new FieldBinding(*source, "FuntnTaskMachry", title);
    QObject::connect(grid, &Grid::RowColChange, form, [this] { log += "row " + title->text(); });
    QObject::connect(grid, &Grid::Click, form, [this] { log += "click"; });
    QObject::connect(grid, &Grid::DblClick, form, [this] { log += "double"; });
    source->Refresh();
    Show(*form);
    log.clear();
  }

  [[nodiscard]] Recordset& Rows() const { return source->Recordset(); }
  /// The rows that are highlighted, each once.
  [[nodiscard]] QList<int> Highlighted() const {
    QList<int> rows;
    const auto selected = grid->selectionModel()->selectedRows();
    for (const QModelIndex& index : selected) rows += index.row();
    return rows;
  }

  TestInstallation place;
  PlainForm* form = nullptr;
  DataControl* source = nullptr;
  Grid* grid = nullptr;
  QLineEdit* title = nullptr;
};

TEST_F(GridTest, ShowsTheColumnsOfAllRowsAndHighlightsTheCurrentOne) {
  EXPECT_EQ(RowsShownIn("DB1").value(1), QStringList({"0", "Task 2", "2"}));
  EXPECT_EQ(RowsShownIn("DB1").size(), 5);
  EXPECT_EQ(grid->model()->headerData(1, Qt::Horizontal).toString(), "Functions and Task ");
  EXPECT_EQ(Highlighted(), QList<int>({0}));
  EXPECT_EQ(grid->Row(), 0);
}

TEST_F(GridTest, ClickMovesTheCursorAndTellsRowBeforeClick) {
  ClickRow("DB1", 2);
  EXPECT_EQ(Rows().AbsolutePosition(), 3);
  EXPECT_EQ(log, Log({"row Task 3", "click"}));
  EXPECT_EQ(Highlighted(), QList<int>({2}));
  EXPECT_EQ(TextOf("title"), "Task 3");
  ClickRow("DB1", 2);
  EXPECT_EQ(log.mid(2), Log({"click"})) << "the current row is no change";
}

TEST_F(GridTest, ClickBelowTheLastRowIsAClickThatMovesNothing) {
  ClickRow("DB1", 1);
  log.clear();
  const QPoint below = grid->viewport()->rect().bottomLeft() + QPoint(10, -3);
  ASSERT_FALSE(grid->indexAt(below).isValid());
  const QPoint spot = grid->viewport()->mapTo(form, below);
  QTest::mouseClick(form->windowHandle(), Qt::LeftButton, Qt::NoModifier, spot);
  Settle();
  EXPECT_EQ(log, Log({"click"}));
  QTest::mouseDClick(form->windowHandle(), Qt::LeftButton, Qt::NoModifier, spot);
  Settle();
  EXPECT_EQ(log, Log({"click", "click", "double"}));
  EXPECT_EQ(Rows().AbsolutePosition(), 2);
  EXPECT_EQ(Highlighted(), QList<int>({1}));
}

TEST_F(GridTest, MoveOfTheCursorMovesTheHighlightAndPastTheLastRowThereIsNone) {
  Rows().SetAbsolutePosition(4);
  EXPECT_EQ(log, Log({"row Task 4"}));
  EXPECT_EQ(Highlighted(), QList<int>({3}));
  Rows().MoveLast();
  log.clear();
  Rows().MoveNext();
  EXPECT_EQ(log, Log());
  EXPECT_EQ(Highlighted(), QList<int>());
  EXPECT_EQ(grid->Row(), -1);
  Click("title");
  grid->setFocus();
  Settle();
  EXPECT_EQ(Rows().AbsolutePosition(), Recordset::kPositionPastLast) << "nor does the focus";
  EXPECT_EQ(Highlighted(), QList<int>());
}

TEST_F(GridTest, KeysWalkThroughTheRowsAndEnterIsADoubleClick) {
  grid->setFocus();
  PressKey(Qt::Key_Down);
  PressKey(Qt::Key_Down);
  EXPECT_EQ(log, Log({"row Task 2", "row Task 3"}));
  PressKey(Qt::Key_Return);
  EXPECT_EQ(log.last(), "double");
  PressKey(Qt::Key_Space);
  Type("T");
  EXPECT_EQ(log.size(), 3);
  PressTab();
  EXPECT_EQ(FocusName(), "title");
}

TEST_F(GridTest, DoubleClickTellsOneClickAndOneDoubleClick) {
  DoubleClickRow("DB1", 1);
  EXPECT_EQ(log, Log({"row Task 2", "click", "double"}));
}

TEST_F(GridTest, PendingEditIsSeenInTheGridAndStoredWhenAnotherRowIsPicked) {
  TypeInto("title", "Edited");
  EXPECT_EQ(RowsShownIn("DB1").value(0).value(1), "Edited");
  ClickRow("DB1", 1);
  EXPECT_EQ(place.Column(place.Study(1), "SELECT FuntnTaskMachry FROM Risk_records LIMIT 2"),
            QStringList({"Edited", "Task 2"}));
}

TEST_F(GridTest, PickThatCantLeaveItsRowFallsBackToTheCursorAndSaysWhy) {
  place.Exec(place.Study(1), "CREATE UNIQUE INDEX one ON Risk_records(FuntnTaskMachry)");
  TypeInto("title", "Task 2");
  const QSignalSpy trouble(grid, &Grid::Trouble);
  ClickRow("DB1", 3);
  EXPECT_EQ(trouble.count(), 1);
  EXPECT_EQ(Rows().AbsolutePosition(), 1);
  EXPECT_EQ(Highlighted(), QList<int>({0}));
  EXPECT_EQ(TextOf("title"), "Task 2");
  EXPECT_EQ(grid->Row(), 0);
}

TEST_F(GridTest, RowsThatComeAndGoDontMoveTheCursor) {
  Rows().SetAbsolutePosition(3);
  log.clear();
  Rows().Delete();
  EXPECT_EQ(grid->model()->rowCount(), 4);
  EXPECT_EQ(Highlighted(), QList<int>());
  EXPECT_FALSE(Rows().HasCurrentRow());
  EXPECT_EQ(log, Log());
  Rows().Requery();
  EXPECT_EQ(RowsShownIn("DB1").value(2).value(1), "Task 4");
  EXPECT_EQ(Highlighted(), QList<int>({0}));

  Rows().AddNew();
  Rows().Set("Project_Number", "P1");
  Rows().Set("FuntnTaskMachry", "New");
  EXPECT_EQ(grid->model()->rowCount(), 4);
  Rows().Update();
  EXPECT_EQ(grid->model()->rowCount(), 5);
  EXPECT_EQ(Highlighted(), QList<int>({4}));
  EXPECT_EQ(log.last(), "row New");
}

TEST_F(GridTest, OtherRecordSourceAndNoneAreShown) {
  place.GivenTasks(1, "P2", 2);
  source->SetRecordSource(sources::RiskSql("P2"));
  source->Refresh();
  EXPECT_EQ(grid->model()->rowCount(), 2);
  EXPECT_EQ(Highlighted(), QList<int>({0}));
  source->Close();
  EXPECT_EQ(grid->model()->rowCount(), 0);
  EXPECT_EQ(grid->Row(), -1);
}

TEST_F(GridTest, NothingIsEverTypedIntoIt) {
  EXPECT_TRUE(grid->AllowUpdate());
  grid->setProperty("AllowUpdate", false);
  EXPECT_FALSE(grid->AllowUpdate());
  grid->SetAllowUpdate(true);
  ClickRow("DB1", 1);
  PressKey(Qt::Key_F2);
  Type("x");
  EXPECT_FALSE(grid->isPersistentEditorOpen(grid->currentIndex()));
  EXPECT_EQ(FocusName(), "DB1");
  EXPECT_EQ(RowsShownIn("DB1").value(1).value(1), "Task 2");
}

TEST_F(GridTest, WalkOverAllRowsIsPaintedOnce) {
  place.GivenTasks(1, "P2", 1000);
  source->SetRecordSource(sources::RiskSql("P2"));
  source->Refresh();
  log.clear();
  const QSignalSpy changes(grid->model(), &QAbstractItemModel::dataChanged);
  const QSignalSpy moves(grid->selectionModel(), &QItemSelectionModel::currentChanged);
  {
    const Recordset::Walk walk(Rows());
    Rows().MoveFirst();
    for (int i = 0; i < 700; ++i) Rows().MoveNext();
  }
  EXPECT_EQ(log, Log({"row Task 701"}));
  EXPECT_EQ(changes.count(), 1);
  EXPECT_EQ(moves.count(), 1);
  EXPECT_EQ(Highlighted(), QList<int>({700}));
}

/// Counts the rows that a grid asks for.
class CountingModel : public GridModel {
 public:
  using GridModel::GridModel;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override {
    if (role == Qt::DisplayRole) rows.insert(index.row());
    return GridModel::data(index, role);
  }
  mutable QSet<int> rows;
};

TEST_F(GridTest, OnlyRowsThatAreSeenAreRead) {
  place.GivenTasks(1, "P2", 10'000);
  source->SetRecordSource(sources::RiskSql("P2"));
  CountingModel model(*source, {{"Task", "FuntnTaskMachry"}, {"n", "nunberauto"}});
  grid->setModel(&model);
  source->Refresh();
  model.rows.clear();
  grid->repaint();
  Settle();
  const int seen = grid->viewport()->height() / grid->rowHeight(0) + 2;
  EXPECT_GT(model.rows.size(), 3);
  EXPECT_LE(model.rows.size(), seen);

  model.rows.clear();
  grid->scrollTo(model.index(8000, 0));
  grid->repaint();
  EXPECT_LE(model.rows.size(), seen);
  EXPECT_TRUE(model.rows.contains(8000));
}

TEST_F(GridTest, HundredThousandRowsAreThereAtOnce) {
  place.GivenTasks(1, "P2", 100'000);
  source->SetRecordSource(sources::RiskSql("P2"));
  source->Refresh();
  Settle();
  Rows().SetAbsolutePosition(99'000);
  Settle();
  Rows().SetAbsolutePosition(2);
  Settle();
  EXPECT_EQ(grid->Row(), 1);
  // Rows of one height need no look at each of them.
  EXPECT_EQ(grid->verticalHeader()->sectionResizeMode(0), QHeaderView::Fixed);
}

/// The same grid with 300 tasks, on one in the middle of them.
class LongGridTest : public GridTest {
 protected:
  void SetUp() override {
    GridTest::SetUp();
    place.GivenTasks(1, "P3", 300);
    source->SetRecordSource(sources::RiskSql("P3"));
    source->Refresh();
    Settle();
    Rows().SetAbsolutePosition(150);
    Settle();
  }
};

TEST_F(LongGridTest, StepDownPaintsNoTitlesAndFewRows) {
  PaintedHeights painted;
  for (QWidget* widget : {grid->horizontalHeader()->viewport(), grid->viewport()})
    widget->installEventFilter(&painted);
  grid->setFocus();
  Settle();
  painted.Clear();
  int scrolled = -grid->verticalScrollBar()->value();
  PressKey(Qt::Key_Down);
  scrolled += grid->verticalScrollBar()->value();
  EXPECT_EQ(Rows().AbsolutePosition(), 151);
  EXPECT_EQ(scrolled, 1);
  EXPECT_EQ(painted.Of(grid->horizontalHeader()->viewport()), 0);
  EXPECT_GT(painted.Of(grid->viewport()), 0);
  EXPECT_LT(painted.Of(grid->viewport()), grid->viewport()->height() / 2);
}

TEST_F(LongGridTest, ScrollBarMovesTheRowsAndNotTheCursor) {
  grid->verticalScrollBar()->setValue(200);
  Settle();
  EXPECT_EQ(grid->rowAt(0), 200);
  EXPECT_EQ(Rows().AbsolutePosition(), 150);
  grid->verticalScrollBar()->triggerAction(QAbstractSlider::SliderToMaximum);
  Settle();
  EXPECT_EQ(grid->rowAt(grid->viewport()->height() - 1), 299);
}

}  // namespace
}  // namespace kestrix
