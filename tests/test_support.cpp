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
