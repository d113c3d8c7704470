#include "platform/process_launch.h"

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <thread>

extern char** environ;

std::string ownExecutablePath() {
  std::error_code ec;
  const auto p = std::filesystem::read_symlink("/proc/self/exe", ec);
  return ec ? std::string() : p.string();
}

std::string launchDetachedProcess(const std::string& program, const std::vector<std::string>& args) {
  std::vector<std::string> store{program};
  store.insert(store.end(), args.begin(), args.end());
  std::vector<char*> argv;
  for (auto& a : store) argv.push_back(a.data());
  argv.push_back(nullptr);
  posix_spawnattr_t attr;
  posix_spawnattr_init(&attr);
  // Its own process group, so that a signal to this program's group does
  // not end the new window too.
  posix_spawnattr_setflags(&attr, POSIX_SPAWN_SETPGROUP);
  posix_spawnattr_setpgroup(&attr, 0);
  pid_t pid = -1;
  const int rc = posix_spawn(&pid, program.c_str(), nullptr, &attr, argv.data(), environ);
  posix_spawnattr_destroy(&attr);
  if (rc != 0) return "Cannot start " + program + ": " + std::strerror(rc);
  // A thread of its own waits for the new instance, so that it leaves no
  // zombie when it ends before this one.
  std::thread([pid] {
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
  }).detach();
  return {};
}
