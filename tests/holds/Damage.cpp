#include "Damage.h"

#include <algorithm>
#include <array>

namespace kestrix::holds {
namespace {

constexpr int kPage = 4096;
constexpr int kPageHeader = 12;
constexpr int kHead = 200;

/// Mostly where formats keep their headers: in the first bytes, and in those of each page.
int PlaceIn(const QByteArray& bytes, Chance& chance) {
  const auto last = static_cast<int>(bytes.size()) - 1;
  switch (chance.Between(1, 3)) {
    case 1:
      return chance.Between(0, std::min(last, kHead));
    case 2: {
      const int page = chance.Between(0, last / kPage);
      return std::min(page * kPage + chance.Between(0, kPageHeader), last);
    }
    default:
      return chance.Between(0, last);
  }
}

int LengthFrom(const QByteArray& bytes, int place, Chance& chance) {
  return chance.Between(1, std::min(512, static_cast<int>(bytes.size()) - place));
}

QByteArray ByChance(int length, Chance& chance) {
  QByteArray bytes(length, '\0');
  for (char& byte : bytes) byte = static_cast<char>(chance.Between(0, 255));
  return bytes;
}

QString FlipBits(QByteArray& bytes, Chance& chance) {
  const int bits = chance.Between(1, 16);
  for (int i = 0; i < bits; ++i) {
    const int place = PlaceIn(bytes, chance);
    bytes[place] = static_cast<char>(bytes[place] ^ (1 << chance.Between(0, 7)));
  }
  return QStringLiteral("%1 bits flipped").arg(bits);
}

QString CutOff(QByteArray& bytes, Chance& chance) {
  bytes.truncate(chance.OneIn(2) ? PlaceIn(bytes, chance)
                                 : chance.Between(0, static_cast<int>(bytes.size())));
  return QStringLiteral("cut off at %1").arg(bytes.size());
}

QString Overwrite(QByteArray& bytes, Chance& chance) {
  const int place = PlaceIn(bytes, chance);
  const int length = LengthFrom(bytes, place, chance);
  const int kind = chance.Between(1, 3);
  const QByteArray by = kind == 1   ? QByteArray(length, '\0')
                        : kind == 2 ? QByteArray(length, '\xFF')
                                    : ByChance(length, chance);
  bytes.replace(place, length, by);
  return QStringLiteral("%1 bytes overwritten at %2").arg(length).arg(place);
}

QString ClaimTooMuch(QByteArray& bytes, Chance& chance) {
  static const std::array<QByteArray, 8> kClaims = {QByteArray("\xFF"),
                                                    QByteArray("\x7F"),
                                                    QByteArray("\xFF\xFF"),
                                                    QByteArray("\x7F\xFF"),
                                                    QByteArray("\xFF\xFF\xFF\xFF"),
                                                    QByteArray("\x7F\xFF\xFF\xFF"),
                                                    QByteArray("\x00\x00\xFF\xFF", 4),
                                                    QByteArray("\x80\x00\x00\x00", 4)};
  const QByteArray& claim = kClaims[static_cast<size_t>(chance.Between(0, 7))];
  const int place = PlaceIn(bytes, chance);
  bytes.replace(place, claim.size(), claim);
  return QStringLiteral("claims %1 at %2").arg(QString::fromLatin1(claim.toHex())).arg(place);
}

/// A letter or digit for another: names of tables and columns, tags, numbers written out.
QString Misspell(QByteArray& bytes, Chance& chance) {
  int place = PlaceIn(bytes, chance);
  const auto is_letter = [](char c) { return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'z'); };
  while (place < bytes.size() && !is_letter(bytes[place])) ++place;
  if (place < bytes.size()) bytes[place] = static_cast<char>(chance.Between(0x20, 0x7E));
  return QStringLiteral("misspelt at %1").arg(place);
}

QString TakeOut(QByteArray& bytes, Chance& chance) {
  const int place = PlaceIn(bytes, chance);
  const int length = LengthFrom(bytes, place, chance);
  bytes.remove(place, length);
  return QStringLiteral("%1 bytes taken out at %2").arg(length).arg(place);
}

QString Double(QByteArray& bytes, Chance& chance) {
  const int place = PlaceIn(bytes, chance);
  const int length = LengthFrom(bytes, place, chance);
  const QByteArray part = bytes.mid(place, length);
  bytes.insert(place, chance.OneIn(4) ? part.repeated(200) : part);
  return QStringLiteral("%1 bytes doubled at %2").arg(length).arg(place);
}

QString SwapBlocks(QByteArray& bytes, Chance& chance) {
  const int block = chance.OneIn(2) ? kPage : 512;
  const auto blocks = static_cast<int>(bytes.size()) / block;
  if (blocks < 2) return Overwrite(bytes, chance);
  const int a = chance.Between(0, blocks - 1);
  const int b = chance.Between(0, blocks - 1);
  const QByteArray kept = bytes.mid(a * block, block);
  bytes.replace(a * block, block, bytes.mid(b * block, block));
  bytes.replace(b * block, block, kept);
  return QStringLiteral("blocks %1 and %2 of %3 swapped").arg(a).arg(b).arg(block);
}

QString AnotherKind(QByteArray& bytes, Chance& chance) {
  static const std::array<QByteArray, 9> kKinds = {
      QByteArray(),
      QByteArray("Just a text.\n"),
      QByteArray("SQLite format 3\0", 16),
      QByteArray("PK\x03\x04\x14\0\0\0\x08\0", 10),
      QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\x08\x06\0\0\0", 29),
      QByteArray("GIF89a\xFF\xFF\xFF\xFF\xF7\0\0,", 14),
      QByteArray("BM\xFF\xFF\xFF\x7F\0\0\0\0\x36\0\0\0\x28\0\0\0\xFF\xFF\0\0\xFF\xFF\0\0\1\0\x20\0",
                 30),
      QByteArray("P6 65535 65535 255\n"),
      QByteArray("<html><table><tr><td colspan=99999999><table>")};
  const int kind = chance.Between(0, 8);
  bytes = kKinds[static_cast<size_t>(kind)];
  if (chance.OneIn(2)) bytes += ByChance(chance.Between(1, 5000), chance);
  return QStringLiteral("of the other kind %1").arg(kind);
}

}  // namespace

Damaged Damage(const QByteArray& whole, Chance& chance) {
  using Kind = QString (*)(QByteArray&, Chance&);
  static constexpr std::array<Kind, 12> kKinds = {
      FlipBits, FlipBits, CutOff,  Overwrite, ClaimTooMuch, ClaimTooMuch,
      Misspell, Misspell, TakeOut, Double,    SwapBlocks,   AnotherKind};
  Damaged damaged{whole, {}};
  do {
    if (damaged.bytes.isEmpty()) break;
    const Kind kind = kKinds[static_cast<size_t>(chance.Between(0, int(kKinds.size()) - 1))];
    damaged.how += kind(damaged.bytes, chance) + QStringLiteral("; ");
  } while (chance.OneIn(3));
  return damaged;
}

}  // namespace kestrix::holds
