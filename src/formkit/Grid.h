#pragma once

#include <QAbstractTableModel>
#include <QList>
#include <QString>
#include <QTableView>
#include <functional>

namespace kestrix {

class DataControl;
class Failure;

struct GridColumn {
  QString title;
  QString field;
};

/// The rows of a data control as a table to pick from. It reads only the rows that are looked at. A
/// column whose field the record source doesn't have is empty.
class GridModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  GridModel(DataControl& source, QList<GridColumn> columns, QObject* parent = nullptr);
  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                    int role) const override;
  /// True while rows come or go. What moves the current row of a view then is no pick.
  [[nodiscard]] bool IsChanging() const { return changing_; }

 private:
  void Reset();
  void TakeOut(int position);
  void PutIn(int position);
  void CurrentRowChanged();
  void ReadShape();

  friend class Grid;
  DataControl& source_;
  std::function<QString(int position)> tool_tip_;
  QList<GridColumn> columns_;
  QList<int> fields_;  ///< of each column; -1 for one that the record source doesn't have
  int rows_ = 0;
  bool changing_ = false;
};

/// A list of rows whose highlighted row is the current row of its data control: picking one moves
/// the cursor, and a move of the cursor, by whomever, moves the highlight. It is never typed into.
/// A pick that can't leave its row falls back to the cursor, and says why.
class Grid : public QTableView {
  Q_OBJECT
  /// Switched by the rules of forms; nothing is ever typed into the grid.
  Q_PROPERTY(bool AllowUpdate READ AllowUpdate WRITE SetAllowUpdate)
  /// What a list without rows says in grey.
  Q_PROPERTY(QString placeholderText READ placeholderText WRITE setPlaceholderText)

 public:
  explicit Grid(QWidget* parent = nullptr);

  /// Called once. `source` must outlive the grid or be a child of the same form.
  void SetSource(DataControl& source, QList<GridColumn> columns);
  [[nodiscard]] bool AllowUpdate() const { return allow_update_; }
  void SetAllowUpdate(bool allow) { allow_update_ = allow; }
  [[nodiscard]] QString placeholderText() const { return placeholder_; }
  void setPlaceholderText(const QString& text);
  /// What the pointer over the row at `position` (from 1) is told. Called after SetSource.
  void SetToolTips(std::function<QString(int position)> tip);
  /// The row within the grid, from 0; -1 without one.
  [[nodiscard]] int Row() const;

  void keyboardSearch(const QString& search) override;

 Q_SIGNALS:
  /// The cursor of the data control came to stand on another row. Bound controls show it already.
  void RowColChange();
  /// A row was clicked, which is the current one already, or the blank part below the rows.
  void Click();
  /// The same twice, or Enter was pressed on a row.
  void DblClick();
  /// The current row is to be copied: its columns, with tabs between them.
  void CopyRequested(const QString& row);
  /// Why a pick couldn't leave its row, or why the rows are no longer those of the file. It comes
  /// after the event in hand.
  void Trouble(const QString& why);

 protected:
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void focusInEvent(QFocusEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool viewportEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void SettleColumns();
  void FollowCursor();
  void CursorMoved();
  [[nodiscard]] QString RowText() const;
  void TellOf(const Failure& failure);
  [[nodiscard]] int CursorRow() const;

  DataControl* source_ = nullptr;
  GridModel* model_ = nullptr;
  QString placeholder_;
  bool allow_update_ = true;
  bool following_ = false;
  bool blank_pressed_ = false;  ///< below the rows; the release makes it a click
  int row_before_ = -1;
  bool replacement_told_ = false;  ///< of the rows that are open
};

}  // namespace kestrix
