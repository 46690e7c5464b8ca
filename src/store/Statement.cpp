#include "store/Statement.h"

#include <sqlite3.h>

#include "platform/Failure.h"
#include "store/Database.h"

namespace kestrix {

Statement::Statement(Database& database, const QString& sql) : database_(database) {
  const QByteArray text = sql.toUtf8();
  const char* rest = nullptr;
  database.BeginWork();
  if (sqlite3_prepare_v2(database.handle(), text.constData(), static_cast<int>(text.size()) + 1,
                         &statement_, &rest) != SQLITE_OK) {
    throw database.LastFailure();
  }
  if (statement_ == nullptr || !QByteArray(rest).trimmed().isEmpty()) {
    sqlite3_finalize(statement_);
    throw Failure(failure::kSyntax, QStringLiteral("Not one statement: %1").arg(sql));
  }
}

Statement::~Statement() {
  sqlite3_finalize(statement_);
}

void Statement::Bind(int parameter, const QVariant& value) {
  if (value.isNull()) {
    sqlite3_bind_null(statement_, parameter);
    return;
  }
  switch (value.typeId()) {
    case QMetaType::Bool:
    case QMetaType::Short:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
      sqlite3_bind_int64(statement_, parameter, value.toLongLong());
      return;
    case QMetaType::Double:
      sqlite3_bind_double(statement_, parameter, value.toDouble());
      return;
    default: {
      const QByteArray text = value.toString().toUtf8();
      sqlite3_bind_text(statement_, parameter, text.constData(), static_cast<int>(text.size()),
                        SQLITE_TRANSIENT);
    }
  }
}

bool Statement::Step() {
  switch (sqlite3_step(statement_)) {
    case SQLITE_ROW:
      return true;
    case SQLITE_DONE:
      sqlite3_reset(statement_);
      return false;
    default: {
      const Failure failure = database_.LastFailure();
      sqlite3_reset(statement_);
      throw failure;
    }
  }
}

void Statement::Reset() {
  database_.BeginWork();
  sqlite3_reset(statement_);
}

int Statement::ColumnCount() const {
  return sqlite3_column_count(statement_);
}

QVariant Statement::Column(int column) const {
  switch (sqlite3_column_type(statement_, column)) {
    case SQLITE_NULL:
      return {};
    case SQLITE_INTEGER:
      return QVariant::fromValue<qint64>(sqlite3_column_int64(statement_, column));
    case SQLITE_FLOAT:
      return sqlite3_column_double(statement_, column);
    default:
      return Text(column);
  }
}

qint64 Statement::Integer(int column) const {
  return sqlite3_column_int64(statement_, column);
}

QByteArrayView Statement::Utf8(int column) const {
  const void* text = sqlite3_column_text(statement_, column);
  return {static_cast<const char*>(text), sqlite3_column_bytes(statement_, column)};
}

QString Statement::Text(int column) const {
  return QString::fromUtf8(Utf8(column));
}

QString Statement::TableOf(int column) const {
  return QString::fromUtf8(sqlite3_column_table_name(statement_, column));
}

QString Statement::FieldOf(int column) const {
  return QString::fromUtf8(sqlite3_column_origin_name(statement_, column));
}

QString Statement::DeclaredTypeOf(int column) const {
  return QString::fromUtf8(sqlite3_column_decltype(statement_, column));
}

}  // namespace kestrix
