#pragma once

#include <QIcon>

namespace kestrix {

/// What a command's picture shows.
enum class Drawing { kFolder, kOpenFolder, kNewFolder, kDisk, kPage, kPencil, kHouse };

/// A picture of lines in the colour of the text beside it, so that it is seen on light and on dark
/// desktops and on a highlighted row, and sharp at any scale. It never looks for a file nor for the
/// desktop's icon theme, which takes longer than all else at the start, and looks the same on all
/// desktops.
[[nodiscard]] QIcon DrawnIcon(Drawing drawing);

}  // namespace kestrix
