#pragma once

#include <QByteArray>

#include "Manual.h"
#include "Pictures.h"

namespace kestrix::help {

/// The help page: the whole manual, with its contents, as one HTML file that holds everything it
/// shows; every heading has its anchor. It has no script and refers to nothing outside of itself,
/// so it can be opened from any folder, also on a machine without a network. It is well-formed XML
/// too. Fails as Pictures does.
[[nodiscard]] QByteArray HelpPage(const Manual& manual, const Pictures& pictures);

}  // namespace kestrix::help
