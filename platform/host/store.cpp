#include "platform/host/store.hpp"

#include "platform/host/device_dir.hpp"
#include "platform/host/text_of.hpp"

#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace fs = std::filesystem;

namespace kova::host {

namespace {

constexpr std::size_t map_size = std::size_t{64}
                                 << 20;    // an upper bound; the file is as large as its contents
constexpr off_t lock_file_size = 32 << 10; // slots for some 500 reading processes

// 0, or the system error; the file then has at least this size.
int create_private_file(const std::string &name, off_t size) {
  const int fd = ::open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, private_file);
  if (fd < 0) return errno;
  struct stat status = {};
  int failed = fstat(fd, &status) == 0 ? 0 : errno;
  if (failed == 0 && (status.st_mode & ALLPERMS) != private_file && fchmod(fd, private_file) != 0)
    failed = errno;
  if (failed == 0 && status.st_size < size) failed = posix_fallocate(fd, 0, size);
  ::close(fd);
  return failed;
}

// The lock file is mapped and written through memory: on a full disk a hole in it would be a bus error.
int reserve_lock_file(const fs::path &store) {
  return create_private_file(store.string() + "-lock", lock_file_size);
}

// A store appears under its name only when it is complete: a disk that is full in between would leave half a
// header.
int create_store(const fs::path &store) {
  const std::string fresh = store.string() + "." + std::to_string(getpid()) + ".new";
  MDB_env *environment = nullptr;
  if (const int failed = mdb_env_create(&environment); failed != 0) return failed;
  int failed = create_private_file(fresh, 0);
  if (failed == 0) failed = mdb_env_open(environment, fresh.c_str(), MDB_NOSUBDIR | MDB_NOLOCK, private_file);
  if (failed == 0) failed = mdb_env_sync(environment, 1);
  mdb_env_close(environment);
  if (failed == 0 && link(fresh.c_str(), store.c_str()) != 0 && errno != EEXIST) failed = errno;
  unlink(fresh.c_str());
  return failed;
}

} // namespace

int StoredKey::section_of(std::string_view stored_setting) {
  std::uint32_t sorted = 0;
  std::memcpy(&sorted, stored_setting.data() + any_setting.size(), sizeof sorted);
  return static_cast<int>(ntohl(sorted) ^ sign_bit);
}

const char *reason_text(int answer) {
  switch (answer) {
  case EIO: // LMDB's answer to a page that was written in part
    return "Input/output error, or no space left on device";
  case ENOTEMPTY:
    return "the directory is not a virtual device and not empty";
  case ESTALE:
    return "the directory is a virtual device of another version";
  default:
    return mdb_strerror(answer);
  }
}

Store &Store::of_process() {
  static auto &store = *new Store; // never destroyed: others' exit handlers may still read
  return store;
}

Store::Store() {
  pthread_atfork([] { of_process().mutex_.lock(); }, [] { of_process().mutex_.unlock(); },
                 [] {
                   of_process().forked_ = true;
                   of_process().mutex_.unlock();
                 });
}

void Store::follow_device(Access access) {
  if (forked_) {
    forked_ = false;
    // What the parent opened must not be used here: the reader slot is the parent's, and the file lock that
    // shows others that the store is in use is not inherited. Nor must it be closed: that would free the
    // parent's slot.
    if (environment_ != nullptr) inherited_.push_back({environment_, reader_});
    environment_ = nullptr;
    reader_ = nullptr;
  }
  const char *variable = std::getenv("KOVA_DEVICE");
  const std::string_view named = text_of(variable);
  if (!located_ || named != device_variable_) {
    close();
    device_variable_ = named;
    file_ = store_dir() / "data.mdb";
    located_ = true;
  } else if (environment_ != nullptr && (access == Access::write || clock_ticked()) && removed_from_disk()) {
    close();
  }
}

bool Store::removed_from_disk() const {
  int fd = -1;
  struct stat status = {};
  return mdb_env_get_fd(environment_, &fd) == 0 && fstat(fd, &status) == 0 && status.st_nlink == 0;
}

// The kernel's tick is some milliseconds; asking for it costs a tenth of a system call.
bool Store::clock_ticked() {
  timespec now = {};
  clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
  const bool ticked = now.tv_nsec != last_tick_.tv_nsec || now.tv_sec != last_tick_.tv_sec;
  last_tick_ = now;
  return ticked;
}

// A failed beginning is tried once more with the store opened anew, which clears the slots of killed readers
// and the state after a failed write.
int Store::begin_read() {
  follow_device(Access::read);
  for (bool again = false;; again = true) {
    if (const int failed = open(Access::read); failed != 0) return failed;
    const int failed = reader_ != nullptr ? mdb_txn_renew(reader_)
                                          : mdb_txn_begin(environment_, nullptr, MDB_RDONLY, &reader_);
    if (failed == 0 || again) return failed;
    close();
  }
}

int Store::begin_write(MDB_txn **begun) {
  follow_device(Access::write);
  for (bool again = false;; again = true) {
    if (const int failed = open(Access::write); failed != 0) return failed;
    const int failed = mdb_txn_begin(environment_, nullptr, 0, begun);
    if (failed == 0 || again) return failed;
    close();
  }
}

int Store::open(Access access) {
  const bool writing = access == Access::write;
  if (writing)
    if (const int failed = prepare_store_dir(file_.parent_path()); failed != 0) return failed;
  if (environment_ != nullptr && (writable_ || !writing)) return 0;
  close();
  if (!writing)
    if (const int failed = store_readable(file_.parent_path()); failed != 0)
      return failed == ENOENT ? MDB_NOTFOUND : failed;
  if (::access(file_.c_str(), F_OK) != 0) {
    if (errno != ENOENT && errno != ENOTDIR) return errno;
    if (!writing) return MDB_NOTFOUND;
    if (const int failed = create_store(file_); failed != 0) return failed;
  }
  // The data reach the disk before the page that refers to them: a crash of the machine finds a whole store,
  // and of what was acknowledged it can lose the last change only. The crash of a process loses nothing.
  int failed = reserve_lock_file(file_);
  if (failed == 0) failed = open_environment(MDB_NOMETASYNC);
  writable_ = failed == 0;
  // Without permission to lock there is still reading without a lock: good as long as nobody rewrites the
  // store twice during one look-up.
  if (failed != 0 && !writing) failed = open_environment(MDB_RDONLY | MDB_NOLOCK);
  return failed;
}

int Store::open_environment(unsigned flags) {
  if (const int failed = mdb_env_create(&environment_); failed != 0) return failed;
  int failed = mdb_env_set_mapsize(environment_, map_size);
  if (failed == 0)
    failed = mdb_env_open(environment_, file_.c_str(), MDB_NOSUBDIR | MDB_NOTLS | flags, private_file);
  if (failed == 0) failed = mdb_reader_check(environment_, nullptr);
  if (failed == 0) failed = mdb_txn_begin(environment_, nullptr, MDB_RDONLY, &reader_);
  if (failed == 0) {
    failed = mdb_dbi_open(reader_, nullptr, 0, &database_);
    mdb_txn_reset(reader_);
  }
  if (failed != 0) close();
  return failed;
}

void Store::close() {
  if (reader_ != nullptr) mdb_txn_abort(reader_);
  if (environment_ != nullptr) mdb_env_close(environment_);
  reader_ = nullptr;
  environment_ = nullptr;
}

} // namespace kova::host
