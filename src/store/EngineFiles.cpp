#include "store/EngineFiles.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>

namespace kestrix {
namespace {

// The one device that the engine asks for by itself.
constexpr std::string_view kRandomness = "/dev/urandom";

int OpenPlain(const char* path, int flags, int mode) {
  const int descriptor = open(path, flags | O_NONBLOCK, mode);
  if (descriptor < 0 || path == kRandomness) return descriptor;
  struct stat status {};
  if (fstat(descriptor, &status) == 0 && (S_ISREG(status.st_mode) || S_ISDIR(status.st_mode))) {
    return descriptor;
  }
  close(descriptor);
  errno = ENXIO;
  return -1;
}

bool GuardTheEngine() {
  sqlite3_vfs* files = sqlite3_vfs_find(nullptr);
  constexpr int kHasSystemCalls = 3;
  if (files == nullptr || files->iVersion < kHasSystemCalls) return false;
  const auto call = reinterpret_cast<sqlite3_syscall_ptr>(OpenPlain);
  return files->xSetSystemCall(files, "open", call) == SQLITE_OK;
}

}  // namespace

int OpenByEngine(const QString& path, int flags, sqlite3** handle) {
  static const bool guarded = GuardTheEngine();
  if (!guarded) return SQLITE_CANTOPEN;
  return sqlite3_open_v2(path.toUtf8().constData(), handle, flags, nullptr);
}

}  // namespace kestrix
