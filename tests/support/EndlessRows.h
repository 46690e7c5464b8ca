#pragma once

#include <QByteArray>
#include <QtEndian>

namespace kestrix {

/// The bytes of a database in which the table of this root page leads to its one row more often
/// than anybody could count: twelve levels of pages, each of which names the same next page sixty
/// times. It is well formed to whoever looks at one page at a time. Its pages have 512 bytes.
inline QByteArray WithEndlessRows(QByteArray database, int root) {
  constexpr int kPage = 512;
  constexpr int kLevels = 12;
  constexpr int kChildren = 60;
  const auto put16 = [](char* to, int number) { qToBigEndian(static_cast<quint16>(number), to); };
  const auto put32 = [](char* to, qsizetype number) {
    qToBigEndian(static_cast<quint32>(number), to);
  };
  const qsizetype pages = database.size() / kPage;
  for (int level = 0; level < kLevels; ++level) {
    QByteArray page(kPage, '\0');
    int end = kPage;
    page[0] = 5;  // an inner page
    for (int child = 0; child < kChildren; ++child) {
      end -= 5;
      put32(page.data() + end, pages + 1 + level);
      page[end + 4] = static_cast<char>(child + 1);
      put16(page.data() + 12 + 2 * child, end);
    }
    put16(page.data() + 3, kChildren);
    put16(page.data() + 5, end);
    put32(page.data() + 8, pages + 1 + level);
    if (level == 0) {
      database.replace((root - 1) * kPage, kPage, page);
    } else {
      database += page;
    }
  }
  QByteArray leaf(kPage, '\0');
  leaf[0] = 13;
  put16(leaf.data() + 3, 1);
  put16(leaf.data() + 5, kPage - 5);
  put16(leaf.data() + 8, kPage - 5);
  // Three bytes under key 1: a head of three, and two columns of Null.
  leaf.replace(kPage - 5, 5, QByteArray("\x03\x01\x03\0\0", 5));
  database += leaf;
  put32(database.data() + 28, database.size() / kPage);
  return database;
}

}  // namespace kestrix
