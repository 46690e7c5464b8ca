#pragma once

class QWidget;

namespace kestrix {

/// The window that a box or dialog is to lie over: the modal one in front, else the active one,
/// else none.
[[nodiscard]] QWidget* WindowInFront();

}  // namespace kestrix
