// A device directory of a test's own, and processes that use it.
#pragma once

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <new>
#include <string>

class TempDevice : public ::testing::Test {
protected:
  TempDevice() {
    std::string name = (std::filesystem::temp_directory_path() / "kova-test-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) std::abort();
    top = name;
    choose(device);
  }
  ~TempDevice() override {
    unsetenv("KOVA_DEVICE");
    set_writable(true);
    std::filesystem::remove_all(top);
  }

  void choose(const std::string &name) const { setenv("KOVA_DEVICE", (top / name).c_str(), 1); }
  std::filesystem::path store() const { return top / device / "store"; }

  void set_writable(bool writable) const {
    const auto mode = std::filesystem::perms(writable ? 0755 : 0555);
    for (const auto &dir : {top / device, store()})
      if (std::filesystem::exists(dir)) std::filesystem::permissions(dir, mode);
  }

  std::filesystem::path top;
  static constexpr auto device = "device";
};

// A child that runs `work`. Expectations that fail in it make it fail.
inline pid_t start(const std::function<void()> &work) {
  const pid_t child = fork();
  if (child != 0) return child;
  prctl(PR_SET_PDEATHSIG, SIGKILL); // a test that is aborted leaves nobody behind
  work();
  _exit(::testing::Test::HasFailure() ? 1 : 0);
}

inline bool succeeded(pid_t child) {
  int status = 0;
  return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

inline bool is_running(pid_t child) {
  siginfo_t ended = {};
  return waitid(P_PID, static_cast<id_t>(child), &ended, WEXITED | WNOHANG | WNOWAIT) == 0 &&
         ended.si_pid == 0;
}

inline void kill_now(pid_t child) {
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
}

// Whoever runs the tests, permissions bind the child that calls this. It owns the files below `top`, or another does
// (which only root can arrange).
enum class Files { own, of_another };
inline void become_unprivileged(const std::filesystem::path &top, Files files) {
  if (geteuid() != 0) return;
  constexpr uid_t nobody = 65534;
  std::filesystem::permissions(top, std::filesystem::perms(0755));
  for (const auto &file : std::filesystem::recursive_directory_iterator(top))
    ASSERT_EQ(0, chown(file.path().c_str(), files == Files::own ? nobody : 0, 0));
  ASSERT_EQ(0, setgid(nobody));
  ASSERT_EQ(0, setuid(nobody));
}

// No file can grow beyond the size, as on a disk that is full.
inline void limit_file_size(rlim_t size) {
  struct sigaction ignore = {};
  ignore.sa_handler = SIG_IGN;
  sigaction(SIGXFSZ, &ignore, nullptr);
  rlimit limit = {};
  getrlimit(RLIMIT_FSIZE, &limit);
  limit.rlim_cur = size;
  setrlimit(RLIMIT_FSIZE, &limit);
}

template <class Work>
std::string console_of(Work work) {
  ::testing::internal::CaptureStderr();
  work();
  return ::testing::internal::GetCapturedStderr();
}

// A number that this process and its children share.
class SharedNumber {
public:
  SharedNumber()
      : number_(new (mmap(nullptr, sizeof(std::atomic<int>), PROT_READ | PROT_WRITE,
                          MAP_SHARED | MAP_ANONYMOUS, -1, 0)) std::atomic<int>(0)) {}
  ~SharedNumber() { munmap(number_, sizeof *number_); }
  SharedNumber(const SharedNumber &) = delete;
  SharedNumber &operator=(const SharedNumber &) = delete;
  std::atomic<int> &operator*() { return *number_; }

private:
  std::atomic<int> *number_;
};

// Kills the writer in the middle of its work: a moment after it has acknowledged so many writes.
inline void kill_after(pid_t writer, const std::atomic<int> &acknowledged, int count, int microseconds) {
  while (acknowledged < count)
    usleep(50);
  usleep(static_cast<useconds_t>(microseconds));
  kill_now(writer);
}
