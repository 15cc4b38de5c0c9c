// Processes of a test: children that run a part of it.
#pragma once

#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <exception>

namespace kova::test {

// Whether an expectation failed since there were so many results. A child inherits its parent's: they are not its own.
inline int results_so_far() {
  const auto *test = testing::UnitTest::GetInstance()->current_test_info();
  return test == nullptr ? 0 : test->result()->total_part_count();
}
inline bool failed_since(int count) {
  const auto *test = testing::UnitTest::GetInstance()->current_test_info();
  for (int i = count; i < results_so_far(); i++)
    if (test->result()->GetTestPartResult(i).failed()) return true;
  return false;
}

// A child that runs `work`; expectations that fail in it make it fail. The stores keep their files open for the life of
// a process, so whatever looks at them afresh does so in a process of its own.
template <class Work>
pid_t start(Work &&work) {
  const int before = results_so_far();
  const pid_t child = fork();
  if (child != 0) return child;
  prctl(PR_SET_PDEATHSIG, SIGKILL); // a test that is aborted leaves nobody behind
  try {
    work();
  } catch (const std::exception &error) {
    ADD_FAILURE() << error.what();
  }
  _exit(failed_since(before) ? 1 : 0);
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

// Waits until it holds, with a bound that only a hanging test meets.
template <class Condition>
bool eventually(Condition &&holds) {
  for (int i = 0; i < 6000; i++) {
    if (holds()) return true;
    usleep(10'000);
  }
  return false;
}

} // namespace kova::test
