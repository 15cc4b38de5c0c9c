// What the tests of the host platform share: a device directory for each, and writers that are unprivileged, short of
// room, or killed.
#pragma once

#include "support/processes.hpp"
#include "support/scratch_device.hpp"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <filesystem>
#include <new>
#include <string>

using namespace kova::test;

class HostTest : public ::testing::Test {
protected:
  const ScratchDevice device;
};

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
