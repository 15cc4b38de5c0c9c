// The diagnostics tests that agents ask for, as processes: at most one of each program, started without a
// shell.
#pragma once

#include "device/serviced/loop.hpp"
#include "device/serviced/records.hpp"

#include <sys/types.h>

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace kova::device {

class RunningTests {
public:
  // Time to end after being asked to; then a test is killed.
  explicit RunningTests(Loop &loop, std::chrono::milliseconds grace = std::chrono::seconds(2));
  RunningTests(const RunningTests &) = delete;
  RunningTests &operator=(const RunningTests &) = delete;

  // Starts or stops a test where the request is about one. Answers 0, or 1 for one that was refused or could
  // not be started.
  uint32_t handle(const Request &request);
  // Runs the loop until none runs.
  void stop_all();

private:
  using Clock = std::chrono::steady_clock;
  using Words = std::vector<std::string>;
  struct Launch {
    Words words;
    uint32_t asking_pid;
  };
  struct Test {
    pid_t pid = 0; // 0: does not run
    uint32_t asking_pid = 0;
    std::optional<Clock::time_point> kill_at;
    std::optional<Launch> next; // waits for the end of the running one
    bool running() const { return pid != 0; }
  };

  uint32_t launch(std::string_view kind, const Request &request);
  uint32_t abort(std::string_view kind, const Request &request);
  bool start(const std::string &tool, const Launch &launch);
  void stop(Test &test);
  void look_after();
  bool reap(const std::string &tool, Test &test);
  void kill_overdue();
  bool any_running() const;

  Loop &loop_;
  const std::chrono::milliseconds grace_;
  std::map<std::string, Test> tests_; // by program
  Signal child_ended_;
  Timer overdue_;
};

} // namespace kova::device
