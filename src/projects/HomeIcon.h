#pragma once

#include <QIcon>

namespace kestrix {

/// A house in a colour that can be seen on light and on dark buttons, for desktops whose icon theme
/// has none.
[[nodiscard]] QIcon HomeIcon();

}  // namespace kestrix
