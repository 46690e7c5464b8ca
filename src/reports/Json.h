#pragma once

#include <QByteArray>
#include <QJsonObject>

#include "reports/Report.h"

namespace kestrix::reports {

/// The report as JSON: the stored value of every field, and what the model makes of it. The schema
/// stands in docs/kestrix.schema.json. The same report gives the same bytes.
[[nodiscard]] QJsonObject ToJson(const Report& report);
[[nodiscard]] QByteArray JsonBytes(const Report& report);
/// SHA-256 of those bytes in hexadecimal digits; pages show the first 12.
[[nodiscard]] QByteArray DigestOf(const QByteArray& json);

}  // namespace kestrix::reports
