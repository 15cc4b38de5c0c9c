#include "device/pid_file.hpp"

#include "device/error.hpp"
#include "device/file_system.hpp"
#include "platform/host/device_dir.hpp"

#include <fcntl.h>

#include <string>

namespace kova::device {
namespace {

struct flock whole_file() {
  struct flock lock = {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  return lock;
}

} // namespace

PidFile::PidFile(const std::filesystem::path &path) : path_(path) {
  do {
    file_ = Fd(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, host::private_file));
    if (!file_) fail("cannot open " + path.string());
    struct flock lock = whole_file();
    if (fcntl(file_.get(), F_SETLK, &lock) != 0)
      throw std::runtime_error("another daemon holds " + path.string());
  } while (!is_at(path, file_.get())); // its owner removes it when it ends
  const std::string text = std::to_string(getpid()) + "\n";
  if (ftruncate(file_.get(), 0) != 0 || write(file_.get(), text.data(), text.size()) < 0)
    fail("cannot write " + path.string());
}

PidFile::~PidFile() {
  if (stands()) unlink(path_.c_str());
}

bool PidFile::stands() const {
  return is_at(path_, file_.get());
}

std::optional<pid_t> pid_file_owner(const std::filesystem::path &path) {
  const Fd file(open(path.c_str(), O_RDWR | O_CLOEXEC));
  struct flock lock = whole_file();
  if (!file || fcntl(file.get(), F_GETLK, &lock) != 0 || lock.l_type == F_UNLCK) return std::nullopt;
  return lock.l_pid;
}

} // namespace kova::device
