// An agent on a device of its own: sends whole requests, as agents do, and looks at what the tests leave.
#pragma once

#include "device/booted_device.hpp"
#include "platform/nvram.h"

#include <arpa/inet.h>
#include <kova/diagnostics.h>
#include <kova/transaction.h>
#include <netinet/in.h>

#include <array>
#include <chrono>
#include <functional>
#include <thread>

namespace kova::test {

using namespace std::chrono_literals;

struct Setting {
  kova_checker *check;
  kova_setter *set;
  std::string value;
};
#define SETTING(name, value)                                                                                 \
  Setting {                                                                                                  \
    chkTR069##name, setTR069##name, value                                                                    \
  }

// All checkers, the batch validation, all setters.
inline void request(const std::vector<Setting> &settings) {
  for (const Setting &setting : settings)
    EXPECT_EQ(setting.check("parameter", setting.value.c_str()), 0) << setting.value;
  std::array<char, 256> faults{};
  EXPECT_EQ(kovaCheckTR069ParameterValues(faults.data(), faults.size()), 0) << faults.data();
  for (const Setting &setting : settings)
    EXPECT_EQ(setting.set(setting.value.c_str()), 0);
}

inline std::string got(kova_getter *getter) {
  std::array<char, 256> text{};
  EXPECT_EQ(getter(text.data(), text.size()), 0);
  return text.data();
}

// A key of the run-time section, of the instance that this process is: "PINGDIAG_STATE".
inline std::string key(const std::string &name) {
  return (gSecondaryInstance != 0 ? "S_TR_" : "TR_") + name;
}
inline std::string stored(const std::string &name) {
  std::array<char, 256> text{};
  nvram_bufget_string(9, key(name).c_str(), text.data(), text.size());
  return text.data();
}
inline void store(const std::string &name, const std::string &value) {
  EXPECT_EQ(nvram_bufset(9, key(name).c_str(), value.c_str()), 0);
}

// The instance's program: "sec_ping_diag" for "ping_diag".
inline std::string tool(const std::string &name) {
  return (gSecondaryInstance != 0 ? "sec_" : "") + name;
}

// The state when the test has left one.
inline std::string end_state(const std::string &test) {
  EXPECT_TRUE(eventually([&] { return stored(test + "_STATE") != "Requested"; })) << test;
  return stored(test + "_STATE");
}

class Agent : public ::testing::Test {
protected:
  BootedDevice device_;

  // Each in a process of its own, as the instances are.
  void as_agent(bool secondary, const std::function<void()> &work) {
    EXPECT_TRUE(device_.run([&] {
      device::up();
      if (secondary) setSecondaryInstance();
      work();
    }));
  }

  bool is_logged(const std::string &what) const {
    for (const auto &record : device_.log("device"))
      if (record.at("what").starts_with(what)) return true;
    return false;
  }
  bool comes_into_log(const std::string &what) const {
    return eventually([&] { return is_logged(what); });
  }
  // Process of each run of the program, in their order.
  std::vector<pid_t> runs_of(const std::string &program) const {
    std::vector<pid_t> runs;
    for (const auto &record : device_.log("command"))
      if (record.at("program") == program) runs.push_back(std::stoi(record.at("process")));
    return runs;
  }
};

// Both the program and what it started.
inline bool is_gone(pid_t run) {
  return kill(-run, 0) != 0;
}

} // namespace kova::test
