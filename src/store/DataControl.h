#pragma once

#include <QObject>
#include <QString>
#include <exception>
#include <memory>
#include <optional>

#include "platform/Failure.h"
#include "store/Recordset.h"

namespace kestrix {

class Database;

/// A form's hold on one source of rows: a database file, a record source and the rows opened from
/// them. It keeps the file open from its first Refresh until it is pointed elsewhere, closed or
/// gone. It tells its listeners in one place what its rows tell, whichever rows it has at the time.
class DataControl : public QObject {
  Q_OBJECT
  Q_PROPERTY(QString ConnectionString READ ConnectionString WRITE SetConnectionString)
  Q_PROPERTY(QString DatabaseName READ DatabaseName WRITE SetDatabaseName)
  Q_PROPERTY(QString RecordSource READ RecordSource)

 public:
  /// `name` is the control's objectName.
  explicit DataControl(const QString& name, QObject* parent = nullptr);

  /// "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + the full path of a database.
  [[nodiscard]] static QString ConnectionStringFor(const QString& database_path);

  [[nodiscard]] QString ConnectionString() const { return connection_string_; }
  void SetConnectionString(const QString& connection_string);
  /// The full path of a database, for lists and the register.
  [[nodiscard]] QString DatabaseName() const { return database_name_; }
  void SetDatabaseName(const QString& path) { database_name_ = path; }
  [[nodiscard]] QString RecordSource() const { return record_source_.text; }
  void SetRecordSource(const Select& select) { record_source_ = select; }

  /// Opens the database, when it isn't the one that is open, and the rows of the record source,
  /// when there is one, and stands on the first row. Commits the pending edit of the rows it had.
  /// Fails as Database and Recordset do; the control then has no rows.
  void Refresh();
  /// Commits the pending edit and lets go of the rows and the file. Fails as Recordset::Close does,
  /// having let go all the same.
  void Close();

  /// What is to be said when the file of the rows was replaced or deleted since it was opened.
  [[nodiscard]] std::optional<Failure> Replaced() const;

  [[nodiscard]] bool HasRecordset() const { return recordset_ != nullptr; }
  /// The rows. Fails with kObjectNotSet before a successful Refresh.
  [[nodiscard]] class Recordset& Recordset() const;

 Q_SIGNALS:
  void RowsReset();
  void RowRemoved(int position);
  void RowInserted(int position);
  void Shown();
  void RowChanged();
  void FieldChanged(int field);
  void EditLost(Failure& failure);

 private:
  [[nodiscard]] std::exception_ptr LetGoOfRows();
  void Forward();
  void Announce();

  QString connection_string_;
  QString database_name_;
  Select record_source_;
  std::shared_ptr<Database> database_;
  std::unique_ptr<class Recordset> recordset_;
};

}  // namespace kestrix
