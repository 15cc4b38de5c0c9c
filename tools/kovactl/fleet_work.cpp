#include "kovactl/fleet_work.hpp"

#include "device/error.hpp"
#include "device/fd.hpp"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <iostream>
#include <map>
#include <thread>

namespace kova::ctl {
namespace {

volatile std::sig_atomic_t signals_seen = 0;

// The signals end no system call of the workers: only the one who waits for these looks at them.
class Interruptions {
public:
  Interruptions() {
    signals_seen = 0;
    struct sigaction action = {};
    action.sa_handler = [](int) { signals_seen = signals_seen + 1; };
    for (std::size_t i = 0; i < numbers.size(); ++i)
      sigaction(numbers[i], &action, &before_[i]);
  }
  ~Interruptions() { restore(); }
  Interruptions(const Interruptions &) = delete;
  Interruptions &operator=(const Interruptions &) = delete;
  void restore() const {
    for (std::size_t i = 0; i < numbers.size(); ++i)
      sigaction(numbers[i], &before_[i], nullptr);
  }

private:
  static constexpr std::array numbers{SIGINT, SIGTERM};
  std::array<struct sigaction, numbers.size()> before_{};
};

struct Worker {
  std::size_t result;
  device::Fd out, messages;
};

device::Fd scratch_file() {
  device::Fd file(memfd_create("kovactl", MFD_CLOEXEC));
  if (!file) device::fail("cannot keep the output of a device");
  return file;
}

std::string content(const device::Fd &file) {
  std::string text(static_cast<std::size_t>(std::max<off_t>(lseek(file.get(), 0, SEEK_END), 0)), '\0');
  const ssize_t length = pread(file.get(), text.data(), text.size(), 0);
  text.resize(static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
  return text;
}

// Out of reach of the terminal's signals, which are the waiting process's.
[[noreturn]] void be_worker(const Worker &worker, const std::filesystem::path &device,
                            const std::string &serial, bool json, const DeviceWork &work) {
  setpgid(0, 0);
  const device::Fd nothing(open("/dev/null", O_RDONLY | O_CLOEXEC));
  dup2(nothing.get(), STDIN_FILENO);
  dup2(worker.out.get(), STDOUT_FILENO);
  dup2(worker.messages.get(), STDERR_FILENO);
  select_device(device);
  const Output output(json, "never");
  ExitStatus status = Failure;
  try {
    status = work(serial, output);
  } catch (const std::exception &error) {
    status = output.failure(error.what());
  }
  std::cout.flush();
  std::cerr.flush();
  std::fflush(nullptr);
  _exit(status);
}

void show_progress(const Output &output, std::size_t done, std::size_t all, std::size_t failed) {
  constexpr std::size_t width = 30;
  std::string bar(done * width / std::max<std::size_t>(all, 1), '#');
  bar.resize(width, '.');
  output.progress("[" + bar + "] " + std::to_string(done) + " of " + std::to_string(all) +
                  (failed == 0 ? "" : ", " + std::to_string(failed) + " failed"));
}

} // namespace

Json DeviceResult::answer() const {
  Json value = Json::parse(out, nullptr, false);
  return value.is_discarded() ? Json(out) : value;
}

WorkDone on_each_device(const Fleet &fleet, const std::vector<std::string> &serials, const Output &output,
                        const DeviceWork &work) {
  WorkDone done;
  std::map<pid_t, Worker> workers;
  const std::size_t most_workers = std::size_t{2} * std::max(std::thread::hardware_concurrency(), 1U);
  std::size_t next = 0, ended = 0, failed = 0;
  const Interruptions interruptions;
  done.results.reserve(serials.size());
  while (true) {
    done.interrupted = signals_seen > 0 && next < serials.size();
    if (workers.size() < most_workers && next < serials.size() && !done.interrupted) {
      Worker worker{next, scratch_file(), scratch_file()};
      std::cout.flush();
      const pid_t process = fork();
      if (process < 0) device::fail("cannot fork");
      if (process == 0) {
        interruptions.restore();
        be_worker(worker, fleet.device(serials[next]), serials[next], output.json(), work);
      }
      done.results.push_back({serials[next++], Failure, "", ""});
      workers.emplace(process, std::move(worker));
      continue;
    }
    if (workers.empty()) break;
    int status = 0;
    const pid_t process = waitpid(-1, &status, 0);
    if (process < 0 && signals_seen > 1)
      for (const auto &[running, worker] : workers)
        kill(-running, SIGTERM);
    const auto worker = workers.find(process);
    if (worker == workers.end()) continue;
    DeviceResult &result = done.results[worker->second.result];
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : Failure;
    result.out = content(worker->second.out);
    result.messages = content(worker->second.messages);
    if (WIFSIGNALED(status)) result.messages += "ended by signal " + std::to_string(WTERMSIG(status)) + "\n";
    workers.erase(worker);
    failed += result.well() ? 0U : 1U;
    show_progress(output, ++ended, serials.size(), failed);
  }
  output.progress("");
  return done;
}

ExitStatus report_failures(const Output &output, const WorkDone &done) {
  Table failures;
  for (const DeviceResult &result : done.results)
    if (!result.well())
      failures.push_back(
          {{result.serial + ": " + result.messages.substr(0, result.messages.find('\n')), Style::Alarm}});
  output.complain(failures);
  if (done.interrupted) output.note("interrupted: the other devices are left as they are");
  return failures.empty() && !done.interrupted ? Success : Failure;
}

} // namespace kova::ctl
