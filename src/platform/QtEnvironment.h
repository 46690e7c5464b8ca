#pragma once

#include "platform/Services.h"

namespace kestrix {

/// The environment of this process and the user's places. It only looks; it sets nothing.
class QtEnvironment : public Environment {
 public:
  [[nodiscard]] QString ApplicationFolder() const override;
  [[nodiscard]] QString ApplicationTitle() const override;
  [[nodiscard]] QString Variable(const QString& name) const override;
  /// The user's documents; the home folder where there is no such folder.
  [[nodiscard]] QString DocumentsFolder() const override;
  [[nodiscard]] QStringList Drives() const override;
};

}  // namespace kestrix
