#include "device/lock.hpp"

#include "device/error.hpp"
#include "device/file_system.hpp"
#include "platform/host/device_dir.hpp"

#include <fcntl.h>

#include <thread>

namespace fs = std::filesystem;

namespace kova::device {
namespace {

using Clock = std::chrono::steady_clock;

// The bytes of the file that are locked. Everybody passes the door, and who waits for the room stays in it:
// so those who share the room, coming one after the other, do not keep out who wants it alone.
constexpr off_t door = 0, room = 1;

bool set_lock(const Fd &file, short type, off_t byte) {
  struct flock lock = {};
  lock.l_type = type;
  lock.l_whence = SEEK_SET;
  lock.l_start = byte;
  lock.l_len = 1;
  return fcntl(file.get(), F_OFD_SETLK, &lock) == 0;
}

bool set_lock_until(Clock::time_point end, const Fd &file, short type, off_t byte) {
  for (auto pause = std::chrono::microseconds(50); !set_lock(file, type, byte);
       pause = std::min<std::chrono::microseconds>(2 * pause, std::chrono::milliseconds(5))) {
    if ((errno != EAGAIN && errno != EACCES && errno != EINTR) || Clock::now() >= end) return false;
    std::this_thread::sleep_for(pause);
  }
  return true;
}

} // namespace

Lock::Lock(const fs::path &path, Kind kind, std::chrono::seconds patience, const std::string &what) {
  const auto end = Clock::now() + patience;
  const bool alone = kind == Kind::exclusive;
  do {
    file_ = Fd(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, host::private_file));
    if (!file_) fail("cannot open " + path.string());
    const short type = alone ? F_WRLCK : F_RDLCK;
    if (!set_lock_until(end, file_, F_WRLCK, door) || !set_lock_until(end, file_, type, room)) {
      if (errno != EAGAIN && errno != EACCES) fail("cannot lock " + path.string());
      const std::string holder = text_of(path);
      throw std::runtime_error(what + " has been going on for more than " + std::to_string(patience.count()) +
                               " seconds" + (holder.empty() ? "" : ", by process " + holder) +
                               ": given up waiting for it");
    }
    set_lock(file_, F_UNLCK, door);
  } while (!is_at(path, file_.get())); // it was removed meanwhile
  // For who waits; without room on the disk the lock holds all the same.
  const std::string holder = alone ? std::to_string(getpid()) : "";
  [[maybe_unused]] const bool noted =
      ftruncate(file_.get(), 0) == 0 && pwrite(file_.get(), holder.data(), holder.size(), 0) >= 0;
}

} // namespace kova::device
