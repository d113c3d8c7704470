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
