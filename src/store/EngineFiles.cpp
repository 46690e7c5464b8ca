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

using Delete = decltype(sqlite3_vfs::xDelete);

Delete EngineDelete() {
  static const Delete call = sqlite3_vfs_find(nullptr)->xDelete;
  return call;
}

/// A journal can name any file as the one that is to go with it. The names of an open database and
/// of its journals lie in one piece of the engine's memory; one that was read from a file stands
/// alone.
int DeleteJournal(sqlite3_vfs* files, const char* path, int sync_folder) {
  if (sqlite3_filename_database(path) == path) return SQLITE_OK;
  return EngineDelete()(files, path, sync_folder);
}

bool GuardTheEngine() {
  sqlite3_vfs* files = sqlite3_vfs_find(nullptr);
  constexpr int kHasSystemCalls = 3;
  if (files == nullptr || files->iVersion < kHasSystemCalls || EngineDelete() == nullptr) {
    return false;
  }
  files->xDelete = DeleteJournal;
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
