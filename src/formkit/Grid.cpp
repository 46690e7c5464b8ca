#include "formkit/Grid.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <utility>

#include "platform/Failure.h"
#include "store/DataControl.h"

namespace kestrix {
namespace {

/// Width of a narrow column for its title, in hundredths, so that a sort of margin is left.
constexpr int kTitleRoom = 130;
constexpr int kRowRoom = 8;

int FieldOrNone(const DataControl& source, const QString& name) {
  try {
    return source.Recordset().FieldIndex(name);
  } catch (const Failure&) {
    return -1;
  }
}

}  // namespace

GridModel::GridModel(DataControl& source, QList<GridColumn> columns, QObject* parent)
    : QAbstractTableModel(parent), source_(source), columns_(std::move(columns)) {
  ReadShape();
  connect(&source, &DataControl::RowsReset, this, &GridModel::Reset);
  connect(&source, &DataControl::RowRemoved, this, &GridModel::TakeOut);
  connect(&source, &DataControl::RowInserted, this, &GridModel::PutIn);
  connect(&source, &DataControl::Shown, this, &GridModel::CurrentRowChanged);
  connect(&source, &DataControl::FieldChanged, this, &GridModel::CurrentRowChanged);
}

void GridModel::ReadShape() {
  rows_ = source_.HasRecordset() ? source_.Recordset().RecordCount() : 0;
  fields_.clear();
  for (const GridColumn& column : columns_) fields_ += FieldOrNone(source_, column.field);
}

void GridModel::Reset() {
  const QScopedValueRollback<bool> changing(changing_, true);
  beginResetModel();
  ReadShape();
  endResetModel();
}

void GridModel::TakeOut(int position) {
  const QScopedValueRollback<bool> changing(changing_, true);
  beginRemoveRows({}, position - 1, position - 1);
  --rows_;
  endRemoveRows();
}

void GridModel::PutIn(int position) {
  const QScopedValueRollback<bool> changing(changing_, true);
  beginInsertRows({}, position - 1, position - 1);
  ++rows_;
  endInsertRows();
}

void GridModel::CurrentRowChanged() {
  if (!source_.HasRecordset()) return;
  const int row = source_.Recordset().AbsolutePosition() - 1;
  if (row < 0 || row >= rows_) return;
  Q_EMIT dataChanged(index(row, 0), index(row, columnCount() - 1));
}

int GridModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_;
}

int GridModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(columns_.size());
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || !source_.HasRecordset()) return {};
  if (role == Qt::ToolTipRole && tool_tip_) return tool_tip_(index.row() + 1);
  if (role != Qt::DisplayRole) return {};
  const int field = fields_.at(index.column());
  if (field < 0) return {};
  try {
    return source_.Recordset().ShownText(index.row() + 1, field);
  } catch (const Failure&) {
    return {};  // a list shows nothing of a row that can't be read
  }
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role != Qt::DisplayRole || orientation != Qt::Horizontal) return {};
  return columns_.at(section).title;
}

Grid::Grid(QWidget* parent) : QTableView(parent) {
  setSelectionMode(SingleSelection);
  setSelectionBehavior(SelectRows);
  setEditTriggers(NoEditTriggers);
  setAlternatingRowColors(true);
  setTabKeyNavigation(false);
  setWordWrap(false);
  setCornerButtonEnabled(false);
  // All rows have one height, so that the number of rows costs nothing.
  verticalHeader()->hide();
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setMinimumSectionSize(1);
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + kRowRoom);
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setSectionsClickable(false);
  connect(this, &QTableView::clicked, this, &Grid::Click);
  connect(this, &QTableView::doubleClicked, this, &Grid::DblClick);
}

void Grid::SetSource(DataControl& source, QList<GridColumn> columns) {
  source_ = &source;
  model_ = new GridModel(source, std::move(columns), this);
  setModel(model_);
  // The titles don't show which row is chosen; by a selection of their own they aren't painted
  // anew whenever it is another one.
  horizontalHeader()->setSelectionModel(new QItemSelectionModel(model_, horizontalHeader()));
  SettleColumns();
  connect(&source, &DataControl::RowsReset, this, [this] { replacement_told_ = false; });
  // Connected behind the model, which has the rows by then.
  connect(&source, &DataControl::RowsReset, this, &Grid::FollowCursor);
  connect(&source, &DataControl::RowRemoved, this, &Grid::FollowCursor);
  connect(&source, &DataControl::RowInserted, this, &Grid::FollowCursor);
  connect(&source, &DataControl::Shown, this, &Grid::FollowCursor);
  connect(&source, &DataControl::RowChanged, this, &Grid::CursorMoved);
  FollowCursor();
}

void Grid::SettleColumns() {
  QHeaderView* header = horizontalHeader();
  int widest = 0;
  for (int column = 0; column < model_->columnCount(); ++column) {
    header->setSectionResizeMode(column, QHeaderView::Interactive);
    header->resizeSection(column, header->sectionSizeHint(column) * kTitleRoom / 100);
    if (header->sectionSize(column) > header->sectionSize(widest)) widest = column;
  }
  header->setSectionResizeMode(widest, QHeaderView::Stretch);
}

void Grid::SetToolTips(std::function<QString(int position)> tip) {
  model_->tool_tip_ = std::move(tip);
}

int Grid::Row() const {
  return currentIndex().row();
}

int Grid::CursorRow() const {
  if (!source_ || !source_->HasRecordset()) return -1;
  const int row = source_->Recordset().AbsolutePosition() - 1;
  return row >= 0 && row < model_->rowCount() ? row : -1;
}

void Grid::FollowCursor() {
  if (!model_ || model_->IsChanging()) return;
  const QScopedValueRollback<bool> following(following_, true);
  const int row = CursorRow();
  if (row < 0) return selectionModel()->clear();
  const QModelIndex there = model_->index(row, std::max(currentIndex().column(), 0));
  selectionModel()->setCurrentIndex(
      there, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void Grid::CursorMoved() {
  FollowCursor();
  if (source_->HasRecordset() && source_->Recordset().AbsolutePosition() >= 1)
    Q_EMIT RowColChange();
  const int row = CursorRow();
  if (row < 0 || row == std::exchange(row_before_, row)) return;
  const auto replaced = source_->Replaced();
  if (replaced && !std::exchange(replacement_told_, true)) TellOf(*replaced);
}

void Grid::TellOf(const Failure& failure) {
  if (failure.IsTold()) return;
  const auto tell = [this, why = failure.description()] { Q_EMIT Trouble(why); };
  QMetaObject::invokeMethod(this, tell, Qt::QueuedConnection);
}

void Grid::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QTableView::currentChanged(current, previous);
  const bool picked = model_ && !following_ && !model_->IsChanging();
  if (!picked || !current.isValid() || current.row() == CursorRow()) return;
  const int row = current.row();
  try {
    source_->Recordset().SetAbsolutePosition(row + 1);
  } catch (const Failure& failure) {
    TellOf(failure);  // the row that is left couldn't be stored, and the cursor stays on it
  }
  // The view goes on to highlight what was picked; the cursor has the last word.
  if (CursorRow() != row)
    QMetaObject::invokeMethod(this, &Grid::FollowCursor, Qt::QueuedConnection);
}

void Grid::focusInEvent(QFocusEvent* event) {
  // A view without a current row takes its first one with the focus, which nobody picked.
  {
    const QScopedValueRollback<bool> following(following_, true);
    QTableView::focusInEvent(event);
  }
  FollowCursor();
}

bool Grid::viewportEvent(QEvent* event) {
  const bool handled = QTableView::viewportEvent(event);
  const auto type = event->type();
  if (type != QEvent::MouseButtonPress && type != QEvent::MouseButtonDblClick &&
      type != QEvent::MouseButtonRelease)
    return handled;
  // The toolkit tells of clicks on rows; the blank part below them is the list's too.
  const auto* mouse = static_cast<QMouseEvent*>(event);
  const bool on_blank = mouse->button() == Qt::LeftButton && !indexAt(mouse->pos()).isValid();
  if (on_blank) FollowCursor();  // the toolkit takes the highlight away
  const bool pressed = std::exchange(blank_pressed_, on_blank && type == QEvent::MouseButtonPress);
  if (on_blank && pressed && type == QEvent::MouseButtonRelease) Q_EMIT Click();
  if (on_blank && type == QEvent::MouseButtonDblClick) Q_EMIT DblClick();
  return handled;
}

void Grid::setPlaceholderText(const QString& text) {
  placeholder_ = text;
  viewport()->update();
}

void Grid::paintEvent(QPaintEvent* event) {
  QTableView::paintEvent(event);
  if (placeholder_.isEmpty() || !model_ || model_->rowCount() > 0) return;
  QPainter painter(viewport());
  painter.setPen(palette().color(QPalette::PlaceholderText));
  const QRect room = viewport()->rect().adjusted(kRowRoom, kRowRoom, -kRowRoom, -kRowRoom);
  painter.drawText(room, Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, placeholder_);
}

void Grid::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (enter && Row() >= 0) {
    Q_EMIT DblClick();
    return;
  }
  if (event->matches(QKeySequence::Copy)) {
    if (Row() >= 0) Q_EMIT CopyRequested(RowText());
    return;
  }
  const bool home = event->key() == Qt::Key_Home;
  if ((home || event->key() == Qt::Key_End) && Row() >= 0)
    return setCurrentIndex(
        model_->index(home ? 0 : model_->rowCount() - 1, currentIndex().column()));
  QTableView::keyPressEvent(event);
}

QString Grid::RowText() const {
  QStringList texts;
  for (int column = 0; column < model_->columnCount(); ++column) {
    texts += model_->index(Row(), column).data().toString();
  }
  return texts.join(u'\t');
}

void Grid::keyboardSearch(const QString& /*search*/) {
  // Searching by letters would read every row.
}

}  // namespace kestrix
