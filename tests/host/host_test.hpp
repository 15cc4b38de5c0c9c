// What the tests of the host platform share: a device directory for each, and processes that are unprivileged or short
// of room.
#pragma once

#include "support/processes.hpp"
#include "support/scratch_device.hpp"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
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
