// A device in a directory of its own, which goes with the test, and its daemon with it. Without the radio
// feed, unless the test takes KOVA_FEED out of the environment.
#pragma once

#include "device/device.hpp"

#include <gtest/gtest.h>
#include <kova/frame.h>
#include <nlohmann/json.hpp>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

namespace kova::test {

namespace fs = std::filesystem;

class TemporaryDevice {
public:
  // below: directories between the temporary one and the device's.
  explicit TemporaryDevice(const fs::path &below = "device") {
    std::string name = (fs::temp_directory_path() / "kova-device-test-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("mkdtemp");
    top_ = name;
    directory_ = top_ / below;
    setenv("KOVA_FEED", "off", 1);
    select();
  }
  ~TemporaryDevice() {
    select();
    try {
      device::down();
    } catch (const std::exception &) { // the test made it no device
    }
    fs::remove_all(top_);
    unsetenv("KOVA_DEVICE");
  }
  TemporaryDevice(const TemporaryDevice &) = delete;
  TemporaryDevice &operator=(const TemporaryDevice &) = delete;

  void select() const { setenv("KOVA_DEVICE", directory_.c_str(), 1); }
  const fs::path &directory() const { return directory_; }
  fs::path top() const { return top_; }

  // Starts a process on this device. The stores keep their files open for the life of a process, so whatever
  // uses them does so in a process of its own.
  template <typename Work>
  pid_t start(Work work) const {
    const pid_t child = fork();
    if (child != 0) return child;
    const int failures_of_parent = failures();
    select();
    try {
      work();
    } catch (const std::exception &error) {
      ADD_FAILURE() << error.what();
    }
    _exit(failures() > failures_of_parent ? 1 : 0);
  }
  template <typename Work>
  bool run(Work work) const {
    return ended_well(start(work));
  }
  static bool ended_well(pid_t child) {
    int status = 0;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
  }
  void bring_up() const {
    ASSERT_TRUE(run([] { device::up(); }));
  }

  // Records of the device's log; every line must be one.
  std::vector<nlohmann::json> log(const std::string &kind) const {
    std::vector<nlohmann::json> records;
    std::ifstream file(directory_ / "log/device.log");
    for (std::string line; std::getline(file, line);)
      if (auto record = nlohmann::json::parse(line); record.at("kind") == kind)
        records.push_back(std::move(record));
    return records;
  }

private:
  static int failures() {
    return ::testing::UnitTest::GetInstance()->current_test_info()->result()->total_part_count();
  }

  fs::path top_, directory_;
};

// Waits for it, at most a minute.
template <typename Condition>
bool eventually(Condition holds) {
  for (int i = 0; i < 6000; i++) {
    if (holds()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return false;
}

// What a request for confirmation is answered with.
inline int confirmed(uint32_t command, const std::string &text) {
  MsgHandle handle{};
  EXPECT_EQ(msg_handleInit(2, &handle), 0);
  alignas(MsgRecord) std::array<char, 1024> room{};
  auto *record = reinterpret_cast<MsgRecord *>(room.data());
  msg_init(record, 1, command);
  msg_setData(record, text.data(), static_cast<uint32_t>(text.size()));
  const int result = msg_sendComfirm(&handle, record);
  msg_handleCleanup(&handle);
  return result;
}

} // namespace kova::test
