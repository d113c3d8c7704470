#include "test_support.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

TTempDir::TTempDir() {
  std::string tmpl = (std::filesystem::temp_directory_path() / "pelwright-test-XXXXXX").string();
  if (!mkdtemp(tmpl.data())) throw std::runtime_error("mkdtemp failed");
  FPath = tmpl;
}

TTempDir::~TTempDir() {
  std::error_code ec;
  std::filesystem::remove_all(FPath, ec);
}

void writeTextFile(const std::string& filename, const std::string& text) {
  std::filesystem::create_directories(std::filesystem::path(filename).parent_path());
  std::ofstream out(filename, std::ios::binary);
  out << text;
}

std::string readTextFile(const std::string& filename) {
  std::ifstream in(filename, std::ios::binary);
  std::stringstream ss;
  ss << in.rdbuf();
  return ss.str();
}

int freeLoopbackPort() {
  const int s = ::socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in addr{};
  addr.sin_family = AF_INET;
  addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  addr.sin_port = 0;
  ::bind(s, reinterpret_cast<sockaddr*>(&addr), sizeof addr);
  socklen_t len = sizeof addr;
  ::getsockname(s, reinterpret_cast<sockaddr*>(&addr), &len);
  const int port = ntohs(addr.sin_port);
  ::close(s);
  return port;
}

bool portAcceptsConnections(int port) {
  const int s = ::socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in addr{};
  addr.sin_family = AF_INET;
  addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  addr.sin_port = htons(static_cast<uint16_t>(port));
  const bool ok = ::connect(s, reinterpret_cast<sockaddr*>(&addr), sizeof addr) == 0;
  ::close(s);
  return ok;
}

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>

#include <chrono>
#include <thread>

extern char** environ;

TChildProcess::TChildProcess(const std::string& program, const std::vector<std::string>& args,
                             const std::vector<std::string>& extraEnv) {
  std::vector<std::string> argStore{program};
  argStore.insert(argStore.end(), args.begin(), args.end());
  std::vector<char*> argv;
  for (auto& a : argStore) argv.push_back(a.data());
  argv.push_back(nullptr);
  std::vector<std::string> envStore;
  for (char** e = environ; *e; ++e) envStore.emplace_back(*e);
  envStore.insert(envStore.end(), extraEnv.begin(), extraEnv.end());
  std::vector<char*> envp;
  for (auto& e : envStore) envp.push_back(e.data());
  envp.push_back(nullptr);
  if (posix_spawn(&FPid, program.c_str(), nullptr, nullptr, argv.data(), envp.data()) != 0)
    throw std::runtime_error("cannot start " + program);
}

TChildProcess::~TChildProcess() {
  if (FPid > 0 && !FReaped) {
    ::kill(FPid, SIGKILL);
    int status = 0;
    ::waitpid(FPid, &status, 0);
  }
}

void TChildProcess::signal(int sig) {
  if (FPid > 0 && !FReaped) ::kill(FPid, sig);
}

bool TChildProcess::waitExit(int timeoutMs, int& status) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
  while (true) {
    const pid_t r = ::waitpid(FPid, &status, WNOHANG);
    if (r == FPid) {
      FReaped = true;
      return true;
    }
    if (std::chrono::steady_clock::now() >= deadline) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
}

bool TChildProcess::running() {
  if (FReaped) return false;
  int status = 0;
  const pid_t r = ::waitpid(FPid, &status, WNOHANG);
  if (r == FPid) FReaped = true;
  return r == 0;
}

bool waitForPort(int port, int timeoutMs) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
  while (std::chrono::steady_clock::now() < deadline) {
    if (portAcceptsConnections(port)) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  return false;
}
