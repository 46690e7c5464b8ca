#include "store/DataControl.h"

#include "store/Database.h"

namespace kestrix {
namespace {

const QString kProvider = QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=");

}  // namespace

DataControl::DataControl(const QString& name, QObject* parent) : QObject(parent) {
  setObjectName(name);
}

QString DataControl::ConnectionStringFor(const QString& database_path) {
  return kProvider + database_path;
}

void DataControl::SetConnectionString(const QString& connection_string) {
  connection_string_ = connection_string;
  database_name_ =
      connection_string.startsWith(kProvider) ? connection_string.mid(kProvider.size()) : QString();
}

std::exception_ptr DataControl::LetGoOfRows() {
  std::exception_ptr lost_edit;
  try {
    if (recordset_) recordset_->Close();
  } catch (const Failure&) {
    lost_edit = std::current_exception();
  }
  recordset_.reset();
  return lost_edit;
}

void DataControl::Refresh() {
  // The new rows are opened all the same; the caller hears of a lost edit behind that.
  const std::exception_ptr lost_edit = LetGoOfRows();
  try {
    if (!database_ || database_->path() != database_name_ || !database_->IsTheFileAtItsPath()) {
      database_.reset();
      database_ = std::make_shared<Database>(database_name_);
    }
    if (!record_source_.text.isEmpty()) {
      recordset_ = std::make_unique<class Recordset>(database_, record_source_);
      Forward();
    }
  } catch (const Failure&) {
    Announce();
    throw;
  }
  Announce();
  if (lost_edit) std::rethrow_exception(lost_edit);
}

void DataControl::Close() {
  const std::exception_ptr lost_edit = LetGoOfRows();
  database_.reset();
  Announce();
  if (lost_edit) std::rethrow_exception(lost_edit);
}

std::optional<Failure> DataControl::Replaced() const {
  if (!database_ || database_->IsTheFileAtItsPath()) return std::nullopt;
  return database_->Replaced();
}

Recordset& DataControl::Recordset() const {
  if (!recordset_) {
    throw Failure(failure::kObjectNotSet,
                  QStringLiteral("%1 has no records opened.").arg(objectName()));
  }
  return *recordset_;
}

void DataControl::Forward() {
  using Rows = class Recordset;
  connect(recordset_.get(), &Rows::RowsReset, this, &DataControl::RowsReset);
  connect(recordset_.get(), &Rows::RowRemoved, this, &DataControl::RowRemoved);
  connect(recordset_.get(), &Rows::RowInserted, this, &DataControl::RowInserted);
  connect(recordset_.get(), &Rows::Shown, this, &DataControl::Shown);
  connect(recordset_.get(), &Rows::RowChanged, this, &DataControl::RowChanged);
  connect(recordset_.get(), &Rows::FieldChanged, this, &DataControl::FieldChanged);
  connect(recordset_.get(), &Rows::EditLost, this, &DataControl::EditLost);
}

void DataControl::Announce() {
  Q_EMIT RowsReset();
  Q_EMIT Shown();
  Q_EMIT RowChanged();
}

}  // namespace kestrix
