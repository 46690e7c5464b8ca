#include "support/SystemCalls.h"

#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <vector>

namespace kestrix {
namespace {

constexpr auto kNumber = static_cast<uint32_t>(offsetof(seccomp_data, nr));
/// The low half of the flags of openat; all that we ask for stands there.
constexpr auto kOpenFlags = static_cast<uint32_t>(offsetof(seccomp_data, args) + 2 * 8);
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__);

/// Steps of the little program that the system runs ahead of each call.
class Filter {
 public:
  void Load(uint32_t offset) { Add(BPF_LD | BPF_W | BPF_ABS, offset); }
  void Mask(uint32_t bits) { Add(BPF_ALU | BPF_AND | BPF_K, bits); }
  /// Runs the next `steps` only if what was loaded equals `value`.
  void IfEqual(uint32_t value, uint8_t steps) {
    Add(BPF_JMP | BPF_JEQ | BPF_K, value);
    steps_.back().jf = steps;
  }
  void End(uint32_t with) { Add(BPF_RET | BPF_K, with); }

  bool Install() {
    End(SECCOMP_RET_ALLOW);
    sock_fprog program = {};
    program.len = static_cast<unsigned short>(steps_.size());
    program.filter = steps_.data();
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
  }

 private:
  void Add(int code, uint32_t value) {
    steps_.push_back({.code = static_cast<uint16_t>(code), .jt = 0, .jf = 0, .k = value});
  }

  std::vector<sock_filter> steps_;
};

}  // namespace

bool DieAtRename() {
  Filter filter;
  filter.Load(kNumber);
  for (const long call : {
#ifdef SYS_rename
           static_cast<long>(SYS_rename),
#endif
#ifdef SYS_renameat
           static_cast<long>(SYS_renameat),
#endif
           static_cast<long>(SYS_renameat2)}) {
    filter.IfEqual(static_cast<uint32_t>(call), 1);
    filter.End(SECCOMP_RET_KILL_PROCESS);
  }
  return filter.Install();
}

bool RefuseUnnamedFiles() {
  Filter filter;
  filter.Load(kNumber);
  filter.IfEqual(static_cast<uint32_t>(SYS_openat), 4);
  filter.Load(kOpenFlags);
  filter.Mask(O_TMPFILE);
  filter.IfEqual(O_TMPFILE, 1);
  filter.End(SECCOMP_RET_ERRNO | EOPNOTSUPP);
  return filter.Install();
}

bool CanLimitSystemCalls() {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(DieAtRename() && RefuseUnnamedFiles() ? 0 : 1);
  int status = 0;
  return child > 0 && ::waitpid(child, &status, 0) == child && WIFEXITED(status) &&
         WEXITSTATUS(status) == 0;
}

}  // namespace kestrix
