// A scratch device that a test boots; its daemon ends with the test.
#pragma once

#include "device/device.hpp"
#include "support/device_log.hpp"
#include "support/processes.hpp"
#include "support/scratch_device.hpp"

#include <gtest/gtest.h>
#include <kova/frame.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace kova::test {

namespace fs = std::filesystem;

class BootedDevice : public ScratchDevice {
public:
  using ScratchDevice::ScratchDevice;
  ~BootedDevice() {
    select();
    try {
      device::down();
    } catch (const std::exception &) { // the test made it no device
    }
  }

  // A process on this device.
  template <typename Work>
  pid_t start(Work work) const {
    return test::start([&] {
      select();
      work();
    });
  }
  template <typename Work>
  bool run(Work work) const {
    return succeeded(start(work));
  }
  void bring_up() const {
    ASSERT_TRUE(run([] { device::up(); }));
  }

  std::vector<LogRecord> log(const std::string &kind) const {
    return log_records(directory() / "log/device.log", kind);
  }
};

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
