#pragma once

#include <QString>
#include <QStringList>
#include <functional>

#include "platform/Failure.h"
#include "store/RecordSources.h"

namespace kestrix::holds {

/// Hears of every Failure that a use of a file ends with.
using Hear = std::function<void(const Failure&)>;

/// True when the work came to a result, false when it ended with a Failure.
template <class Work>
bool Succeeds(Work work, const Hear& hear = {}) {
  try {
    work();
    return true;
  } catch (const Failure& failure) {
    if (hear) hear(failure);
    return false;
  }
}

/// Opens each source of a database, reads all its rows in every way, and, with `writes`, changes
/// some. How many sources could be opened.
int UseDatabase(const QString& file, const QList<Select>& record_sources, bool writes,
                const Hear& hear = {});

}  // namespace kestrix::holds
