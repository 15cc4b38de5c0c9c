// The diagnostics tests that agents ask for, as processes: at most one of each program, started without a shell.
#pragma once

#include "device/fd.hpp"
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
  explicit RunningTests(std::chrono::milliseconds grace = std::chrono::seconds(2));
  RunningTests(const RunningTests &) = delete;
  RunningTests &operator=(const RunningTests &) = delete;

  // Starts or stops a test where the request is about one. Answers 0, or 1 for one that was refused or could
  // not be started.
  uint32_t handle(const Request &request);
  // Readable when look_after has something to do: a test has ended, or its time is up.
  int events() const { return events_.get(); }
  void look_after();
  // Returns when none runs.
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
    std::optional<Clock::time_point> kill_at;
    std::optional<Launch> next; // waits for the end of the running one
    bool running() const { return pid != 0; }
  };

  uint32_t launch(std::string_view kind, const Request &request);
  uint32_t abort(std::string_view kind, const Request &request);
  bool start(const std::string &tool, const Launch &launch);
  void stop(Test &test);
  bool reap(const std::string &tool, Test &test);
  void kill_overdue();
  void set_timer();
  bool any_running() const;

  const std::chrono::milliseconds grace_;
  std::map<std::string, Test> tests_; // by program
  Fd children_, timer_, events_;
};

} // namespace kova::device
