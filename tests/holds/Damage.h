#pragma once

#include <QByteArray>
#include <QString>

#include "Chance.h"

namespace kestrix::holds {

/// A file as something went wrong with it, and what that was in words.
struct Damaged {
  QByteArray bytes;
  QString how;
};

/// Damages the content of a file once, or a few times over: bits flipped, cut off, overwritten,
/// lengths and counts that claim far too much, blocks that changed places, a file of another kind.
[[nodiscard]] Damaged Damage(const QByteArray& whole, Chance& chance);

}  // namespace kestrix::holds
