#pragma once

#include <QIcon>

namespace kestrix {

/// The risk matrix in small: the picture on the button that leads to the risk estimation. It is
/// drawn from the matrix itself, sharp at any scale of the desktop.
[[nodiscard]] QIcon MatrixIcon();

}  // namespace kestrix
