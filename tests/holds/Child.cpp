#include "Child.h"

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QElapsedTimer>
#include <exception>
#include <utility>

#include "platform/Failure.h"

namespace kestrix::holds {
namespace {

/// Nobody waits longer for a child, whatever happens to it. Sanitizers make them slow.
constexpr unsigned kTimeLimitSeconds = 100;

[[noreturn]] void RunChild(int fd, const Child::Work& work) {
  ::alarm(kTimeLimitSeconds);
  const Teller tell(fd);
  int code = 1;
  try {
    work(tell);
    code = 0;
  } catch (const Failure& failure) {
    tell(QStringLiteral("Failure %1: %2").arg(failure.number()).arg(failure.description()));
  } catch (const std::exception& error) {
    tell(QStringLiteral("Exception: ") + QString::fromUtf8(error.what()));
  }
  // Without the ends of the parent's objects, which aren't ours to end.
  ::_exit(code);
}

}  // namespace

void Teller::operator()(const QString& line) const {
  const QByteArray bytes = line.toUtf8() + '\n';
  const auto size = static_cast<size_t>(bytes.size());
  // One call: a line is there whole or not at all.
  if (::write(fd_, bytes.constData(), size) != bytes.size()) ::_exit(2);
}

StartLine::StartLine() {
  int ends[2];
  if (::pipe(ends) != 0) return;
  reading_ = Descriptor(ends[0]);
  writing_ = Descriptor(ends[1]);
}

void StartLine::Wait() const {
  // The child holds a copy of the writing end, which would keep the line down for ever.
  ::close(writing_.get());
  char byte = 0;
  while (::read(reading_.get(), &byte, 1) > 0) continue;
}

void StartLine::Lift() {
  writing_ = Descriptor();
}

Child::Child(const Work& work) {
  int ends[2];
  if (::pipe(ends) != 0) return;
  reading_ = Descriptor(ends[0]);
  Descriptor writing(ends[1]);
  pid_ = ::fork();
  if (pid_ == 0) {
    reading_ = Descriptor();
    RunChild(writing.get(), work);
  }
}

Child::Child(Child&& other) noexcept
    : pid_(std::exchange(other.pid_, -1)),
      reading_(std::move(other.reading_)),
      rest_(std::move(other.rest_)),
      told_(std::move(other.told_)),
      end_(std::move(other.end_)),
      well_(other.well_) {}

Child::~Child() {
  if (pid_ > 0) Kill();
}

bool Child::Read() {
  char block[65536];
  const ssize_t got = ::read(reading_.get(), block, sizeof block);
  if (got <= 0) return false;
  rest_.append(block, static_cast<qsizetype>(got));
  for (qsizetype end = rest_.indexOf('\n'); end >= 0; end = rest_.indexOf('\n')) {
    told_ += QString::fromUtf8(rest_.left(end));
    rest_.remove(0, end + 1);
  }
  return true;
}

bool Child::ListenFor(int lines, int microseconds) {
  QElapsedTimer clock;
  clock.start();
  while (told_.size() < lines) {
    const qint64 left = microseconds * 1000LL - clock.nsecsElapsed();
    if (left <= 0) return true;
    const timespec patience{left / 1'000'000'000, left % 1'000'000'000};
    pollfd waiting{reading_.get(), POLLIN, 0};
    if (::ppoll(&waiting, 1, &patience, nullptr) > 0 && !Read()) return false;
  }
  return true;
}

void Child::Kill() {
  ::kill(pid_, SIGKILL);
  while (Read()) continue;
  Reap();
}

bool Child::WaitForEnd() {
  if (pid_ > 0) {
    while (Read()) continue;
    Reap();
  }
  return well_;
}

void Child::Reap() {
  int status = 0;
  ::waitpid(pid_, &status, 0);
  pid_ = -1;
  well_ = WIFEXITED(status) && WEXITSTATUS(status) == 0;
  if (WIFSIGNALED(status)) end_ = QStringLiteral("killed by signal %1").arg(WTERMSIG(status));
  if (WIFEXITED(status)) {
    end_ =
        well_ ? QStringLiteral("ended") : QStringLiteral("ended with %1").arg(WEXITSTATUS(status));
  }
}

}  // namespace kestrix::holds
