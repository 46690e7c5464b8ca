#pragma once

#include <QByteArrayView>
#include <QString>
#include <QVariant>

struct sqlite3_stmt;

namespace kestrix {

class Database;

/// One prepared statement. It never stays in the middle of its rows: a Statement that has gone, or
/// was reset, holds no lock on the file.
class Statement {
 public:
  /// Fails with kSyntax, or as reading the file can.
  Statement(Database& database, const QString& sql);
  ~Statement();
  Q_DISABLE_COPY_MOVE(Statement)

  /// Parameters count from 1.
  void Bind(int parameter, const QVariant& value);
  /// True while there is a row. Fails as the change or the reading of a file can.
  bool Step();
  void Reset();

  [[nodiscard]] int ColumnCount() const;
  [[nodiscard]] QVariant Column(int column) const;
  [[nodiscard]] qint64 Integer(int column) const;
  [[nodiscard]] QString Text(int column) const;
  /// The same bytes as the file holds them; valid until the next step.
  [[nodiscard]] QByteArrayView Utf8(int column) const;
  /// The table and field that a column of the result comes from; empty for an expression.
  [[nodiscard]] QString TableOf(int column) const;
  [[nodiscard]] QString FieldOf(int column) const;
  [[nodiscard]] QString DeclaredTypeOf(int column) const;

 private:
  Database& database_;
  sqlite3_stmt* statement_ = nullptr;
};

}  // namespace kestrix
