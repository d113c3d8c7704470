// Helpers shared by the tests: temporary folders, free ports, a running
// headless program.
#pragma once

#include <string>

// A fresh folder under the system's temporary folder, removed with
// everything in it when the object goes.
class TTempDir {
 public:
  TTempDir();
  ~TTempDir();
  TTempDir(const TTempDir&) = delete;
  TTempDir& operator=(const TTempDir&) = delete;
  const std::string& path() const { return FPath; }
  std::string file(const std::string& name) const { return FPath + "/" + name; }

 private:
  std::string FPath;
};

// Writes text to a file, creating folders on the way.
void writeTextFile(const std::string& filename, const std::string& text);
std::string readTextFile(const std::string& filename);

// A port on 127.0.0.1 that was free a moment ago.
int freeLoopbackPort();

// Whether something accepts connections on 127.0.0.1:port.
bool portAcceptsConnections(int port);

#include <sys/types.h>

#include <vector>

// A child process of the program under test, with its own environment
// additions. Killed (SIGKILL) if still running when the object goes.
class TChildProcess {
 public:
  TChildProcess(const std::string& program, const std::vector<std::string>& args,
                const std::vector<std::string>& extraEnv);
  ~TChildProcess();
  TChildProcess(const TChildProcess&) = delete;
  TChildProcess& operator=(const TChildProcess&) = delete;

  pid_t pid() const { return FPid; }
  void signal(int sig);
  // Waits up to timeoutMs for the child to end. True when it ended; its
  // raw wait status is then in `status`.
  bool waitExit(int timeoutMs, int& status);
  bool running();

 private:
  pid_t FPid = -1;
  bool FReaped = false;
};

// Polls until something accepts connections on the port, up to timeoutMs.
bool waitForPort(int port, int timeoutMs);
