// Runs programs in turn, each a number of times, and prints for each the median of its wall time in
// milliseconds: from before its start to its end, or to the first screen that it told. A told peak
// of the memory, in kilobytes, is printed behind it.
//
// kestrix_bench_process <times> <command…> [:: <command…>]…
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>
#include <vector>

namespace {

struct Run {
  double milliseconds = 0;
  double kilobytes = 0;
};

long long Now() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return now.tv_sec * 1'000'000'000LL + now.tv_nsec;
}

[[noreturn]] void Fail(const char* why, const char* program) {
  std::fprintf(stderr, "%s: %s\n", program, why);
  std::exit(1);
}

/// Its output goes nowhere, as that of the other side does, but for what the first screen tells.
Run RunOnce(std::vector<char*> command) {
  const bool tells = std::getenv("KESTRIX_FIRST_SCREEN") != nullptr;
  command.push_back(nullptr);
  int ends[2];
  if (pipe(ends) != 0) Fail("no pipe", command[0]);
  const long long begin = Now();
  const pid_t child = fork();
  if (child == 0) {
    if (tells) {
      setenv("LD_PRELOAD", std::getenv("KESTRIX_FIRST_SCREEN"), 1);
      dup2(ends[1], STDOUT_FILENO);
    } else {
      dup2(open("/dev/null", O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
    }
    close(ends[0]);
    close(ends[1]);
    execvp(command[0], command.data());
    _exit(127);
  }
  close(ends[1]);
  std::string told;
  char block[4096];
  for (ssize_t got = 0; (got = read(ends[0], block, sizeof block)) > 0;) {
    told.append(block, static_cast<size_t>(got));
  }
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  const long long end = Now();
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) Fail("it failed", command[0]);
  if (!tells) return {static_cast<double>(end - begin) / 1e6, 0};
  long long screen = 0;
  long kilobytes = 0;
  int windows = 0;
  const char* line = std::strstr(told.c_str(), "first-screen ");
  if (line == nullptr ||
      std::sscanf(line, "first-screen %lld %ld %d", &screen, &kilobytes, &windows) != 3 ||
      windows != 1) {
    Fail("it showed no screen, or more than one window", command[0]);
  }
  return {static_cast<double>(screen - begin) / 1e6, static_cast<double>(kilobytes)};
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  const int times = std::atoi(argv[1]);
  std::vector<std::vector<char*>> commands(1);
  for (int i = 2; i < argc; ++i) {
    if (std::strcmp(argv[i], "::") == 0) {
      commands.emplace_back();
    } else {
      commands.back().push_back(argv[i]);
    }
  }
  std::vector<std::vector<Run>> runs(commands.size());
  // One more round at the beginning finds the files in memory; and the sides take turns, so that
  // what else the machine does meets all of them.
  for (int round = 0; round <= times; ++round) {
    for (size_t i = 0; i < commands.size(); ++i) {
      const Run run = RunOnce(commands[i]);
      if (round > 0) runs[i].push_back(run);
    }
  }
  for (const auto& mine : runs) {
    std::vector<double> milliseconds;
    std::vector<double> kilobytes;
    for (const Run& run : mine) {
      milliseconds.push_back(run.milliseconds);
      kilobytes.push_back(run.kilobytes);
    }
    std::printf("%.3f %.0f\n", Median(milliseconds), Median(kilobytes));
  }
  return 0;
}
