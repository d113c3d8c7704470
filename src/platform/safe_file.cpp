#include "platform/safe_file.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <random>
#include <sstream>
#include <stdexcept>

void writeFileAtomically(const std::string& filename, const std::string& contents) {
  std::random_device rd;
  // A hidden name beside the target, so that nothing that lists the folder
  // for the target's kind of file (autosave recovery, a file dialog) takes
  // a half-written file for the real one.
  const size_t slash = filename.find_last_of('/');
  const std::string folder = slash == std::string::npos ? std::string() : filename.substr(0, slash + 1);
  const std::string base = slash == std::string::npos ? filename : filename.substr(slash + 1);
  const std::string tmp = folder + "." + base + ".part" + std::to_string(rd() % 1000000);
  const int fd = ::open(tmp.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (fd < 0)
    throw std::runtime_error("Cannot write " + filename + ": " + std::strerror(errno));
  // Held while the file is written, so that removeLeftoverTemporaries in
  // another copy of the program passes it by; it ends with the descriptor.
  ::flock(fd, LOCK_EX | LOCK_NB);
  size_t done = 0;
  while (done < contents.size()) {
    const ssize_t n = ::write(fd, contents.data() + done, contents.size() - done);
    if (n < 0) {
      if (errno == EINTR) continue;
      const int err = errno;
      ::close(fd);
      ::unlink(tmp.c_str());
      throw std::runtime_error("Cannot write " + filename + ": " + std::strerror(err));
    }
    done += static_cast<size_t>(n);
  }
  if (::fsync(fd) != 0 || ::close(fd) != 0) {
    const int err = errno;
    ::unlink(tmp.c_str());
    throw std::runtime_error("Cannot write " + filename + ": " + std::strerror(err));
  }
  if (std::rename(tmp.c_str(), filename.c_str()) != 0) {
    const int err = errno;
    ::unlink(tmp.c_str());
    throw std::runtime_error("Cannot write " + filename + ": " + std::strerror(err));
  }
}

namespace {

// "." + name + ".part" + one to six digits, as writeFileAtomically names them.
bool isOurTemporary(const std::string& file, const std::string& onlyFor) {
  const size_t part = file.rfind(".part");
  if (file.size() < 2 || file[0] != '.' || part == std::string::npos || part < 2) return false;
  const std::string digits = file.substr(part + 5);
  if (digits.empty() || digits.size() > 6 || digits.find_first_not_of("0123456789") != std::string::npos)
    return false;
  return onlyFor.empty() || file.substr(1, part - 1) == onlyFor;
}

}  // namespace

void removeLeftoverTemporaries(const std::string& folder, const std::string& onlyFor) {
  DIR* dir = ::opendir(folder.empty() ? "." : folder.c_str());
  if (!dir) return;
  const std::string prefix = folder.empty() ? std::string() : folder + "/";
  while (const dirent* e = ::readdir(dir)) {
    const std::string name = e->d_name;
    if (!isOurTemporary(name, onlyFor)) continue;
    const std::string path = prefix + name;
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
    if (fd < 0) continue;
    struct stat st {};
    if (::fstat(fd, &st) == 0 && S_ISREG(st.st_mode) && ::flock(fd, LOCK_EX | LOCK_NB) == 0)
      ::unlink(path.c_str());
    ::close(fd);
  }
  ::closedir(dir);
}

std::string readWholeFile(const std::string& filename) {
  std::ifstream in(filename, std::ios::binary);
  if (!in) throw std::runtime_error("Cannot read " + filename + ": " + std::strerror(errno));
  std::ostringstream ss;
  ss << in.rdbuf();
  if (in.bad()) throw std::runtime_error("Cannot read " + filename);
  return ss.str();
}
