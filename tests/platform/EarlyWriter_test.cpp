#include "platform/EarlyWriter.h"

#include <fcntl.h>

#include "support/Files.h"

namespace kestrix {
namespace {

/// What it saves is a matter of time; here is what it must never do: harm, hold up, or keep open.
class EarlyWriterTest : public ::testing::Test {
 protected:
  [[nodiscard]] Descriptor NewFile(int number) const {
    const QString path = folder_.filePath(QString::number(number));
    WriteFile(path, QByteArray(5'000, 'e'));
    return Descriptor(::open(path.toUtf8().constData(), O_RDWR | O_CLOEXEC));
  }
  static int LowestFreeNumber() {
    return Descriptor(::open("/", O_RDONLY | O_DIRECTORY | O_CLOEXEC)).get();
  }

  QTemporaryDir folder_;
};

TEST_F(EarlyWriterTest, AnyNumberOfFilesThatAreClosedMeanwhileStayWholeAndNoneStaysOpen) {
  const int before = LowestFreeNumber();
  constexpr int kFiles = 500;
  {
    EarlyWriter writer;
    for (int i = 0; i < kFiles; ++i) writer.Begin(NewFile(i).get());
  }
  EXPECT_EQ(LowestFreeNumber(), before);
  for (int i = 0; i < kFiles; ++i)
    ASSERT_EQ(ReadFile(folder_.filePath(QString::number(i))), QByteArray(5'000, 'e'));
}

TEST_F(EarlyWriterTest, OneThatHasNothingOrLittleToDoEnds) {
  { const EarlyWriter idle; }
  EarlyWriter writer;
  writer.Begin(NewFile(1).get());
  writer.Begin(-1);
}

}  // namespace
}  // namespace kestrix
