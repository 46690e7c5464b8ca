#pragma once

#include <QByteArray>
#include <QString>
#include <functional>
#include <memory>

#include "paper/Layout.h"
#include "records/FileSource.h"
#include "reports/Report.h"

namespace kestrix::preview {

/// What is asked for: one project, told in one way.
struct Wish {
  records::Organisation organisation;
  QString project;
  reports::Options options;
};

/// A report with its pages. It is made on a thread of its own and never changed afterwards.
struct Made {
  std::shared_ptr<records::FileSource> source;
  reports::Report report;
  paper::Document document;
  std::unique_ptr<paper::Layout> layout;
  QString failure;    ///< one sentence where nothing could be made
  bool whole = true;  ///< false while only the cover is there
};
using MadeReport = std::shared_ptr<const Made>;

/// The cover alone, which needs no look at pictures and linked files.
[[nodiscard]] MadeReport MakeCover(const Installation& installation, const Wish& wish);
/// The whole report. Null once `is_stopped` says so.
[[nodiscard]] MadeReport MakeWhole(const Installation& installation, const Wish& wish,
                                   const std::function<bool()>& is_stopped);

}  // namespace kestrix::preview
