#include "device/pid_file.hpp"

#include "device/error.hpp"

#include <fcntl.h>
#include <sys/stat.h>

#include <string>

namespace kova::device {
namespace {

struct flock whole_file() {
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  return lock;
}

// The file at the path may be another one by now: its owner removes it when it ends.
bool is_at(const std::filesystem::path &path, int fd) {
  struct stat open_file {
  }, named_file{};
  return fstat(fd, &open_file) == 0 && stat(path.c_str(), &named_file) == 0 &&
         open_file.st_ino == named_file.st_ino && open_file.st_dev == named_file.st_dev;
}

} // namespace

PidFile::PidFile(const std::filesystem::path &path) : path_(path) {
  do {
    file_ = Fd(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666));
    if (!file_) fail("cannot open " + path.string());
    struct flock lock = whole_file();
    if (fcntl(file_.get(), F_SETLK, &lock) != 0)
      throw std::runtime_error("another daemon holds " + path.string());
  } while (!is_at(path, file_.get()));
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
