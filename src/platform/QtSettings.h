#pragma once

#include "platform/Services.h"

namespace kestrix {

/// The user's settings of this application in the place that the desktop gives for them. A value is
/// on the disk when Save returns. A place that can't be written is passed over: nothing that is
/// kept here is worth a message.
class QtSettings : public SettingsStore {
 public:
  [[nodiscard]] QString Get(const QString& section, const QString& key,
                            const QString& default_value) const override;
  void Save(const QString& section, const QString& key, const QString& value) override;
};

}  // namespace kestrix
