#pragma once

#include <QByteArray>
#include <QLocalServer>
#include <QString>
#include <functional>

#include "preview/RiskBookRpts.h"

namespace kestrix::preview {

/// One preview an installation and user: the first one answers, a later one hands its request over
/// and ends.
class Front {
 public:
  /// `folder` is the application's folder.
  explicit Front(const QString& folder);

  /// True when one that runs has taken the request.
  [[nodiscard]] bool HandOver(const Request& request) const;
  /// From now on requests of later starts come to `take`.
  void Listen(std::function<void(const Request&)> take);

 private:
  void Receive();

  QString name_;
  QLocalServer server_;
  std::function<void(const Request&)> take_;
};

}  // namespace kestrix::preview
