#include "device/serviced/running_tests.hpp"

#include "device/arguments.hpp"
#include "device/diagnostics.hpp"
#include "device/log.hpp"
#include "device/paths.hpp"
#include "device/serviced/any_readable.hpp"

#include <fcntl.h>
#include <nlohmann/json.hpp>
#include <poll.h>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <sys/timerfd.h>
#include <sys/wait.h>

#include <algorithm>
#include <csignal>
#include <cstring>

namespace kova::device {
namespace {

constexpr uint32_t failed = 1; // what a confirmation tells the client
constexpr std::string_view blanks = " \t\r\n\v\f";

namespace code {
enum : uint32_t {
#define REQUEST(name, code) name = code,
#define TEXT_REQUEST(name, code) name = code,
#include "src/frame/requests.def"
#undef REQUEST
#undef TEXT_REQUEST
};
} // namespace code

struct Kind {
  uint32_t launch, abort;
  std::string_view tool; // of the primary instance
};
constexpr Kind kinds[] = {
    {code::mrhd_launch_dlDiag, code::mrhd_abort_dlDiag, "download_diag"},
    {code::mrhd_launch_ulDiag, code::mrhd_abort_ulDiag, "upload_diag"},
    {code::mrhd_launch_udpEchoServer, code::mrhd_shutdown_udpEchoServer, "udpechoplus_server"},
    {code::mrhd_launch_pingDiag, code::mrhd_abort_pingDiag, "ping_diag"},
    {code::mrhd_launch_tracerouteDiag, code::mrhd_abort_tracerouteDiag, "traceroute_diag"},
};

bool is_tool_of(std::string_view kind, std::string_view name) {
  return std::ranges::find(diagnostics_tools, name) != diagnostics_tools.end() &&
         without_instance(name) == kind;
}

std::vector<std::string> words_of(std::string_view line) {
  std::vector<std::string> words;
  while (true) {
    line.remove_prefix(std::min(line.find_first_not_of(blanks), line.size()));
    if (line.empty()) return words;
    const std::size_t length = std::min(line.find_first_of(blanks), line.size());
    words.emplace_back(line.substr(0, length));
    line.remove_prefix(length);
  }
}

void log_device(int64_t pid, const std::string &what, nlohmann::json fields = nlohmann::json::object()) {
  fields["kind"] = "device";
  fields["pid"] = pid;
  fields["what"] = what;
  log_record(std::move(fields));
}

uint32_t refused(const Request &request, const std::string &why) {
  log_device(request.pid, "refused " + std::string(request_name(request.command)) + ": " + why);
  return failed;
}

// A process group of its own, so that what the test starts ends with it; no input, and none of the daemon's signals.
class TestProcess {
public:
  TestProcess() {
    posix_spawnattr_init(&attributes_);
    posix_spawnattr_setflags(&attributes_,
                             POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    posix_spawnattr_setpgroup(&attributes_, 0);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes_, &signals);
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&attributes_, &signals);
    posix_spawn_file_actions_init(&actions_);
    posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  }
  ~TestProcess() {
    posix_spawnattr_destroy(&attributes_);
    posix_spawn_file_actions_destroy(&actions_);
  }
  TestProcess(const TestProcess &) = delete;
  TestProcess &operator=(const TestProcess &) = delete;

  int spawn(pid_t &pid, const std::filesystem::path &program, std::vector<std::string> words) const {
    return posix_spawn(&pid, program.c_str(), &actions_, &attributes_, pointers_to(words).data(), environ);
  }

private:
  posix_spawnattr_t attributes_;
  posix_spawn_file_actions_t actions_;
};

Fd ended_children() {
  sigset_t child;
  sigemptyset(&child);
  sigaddset(&child, SIGCHLD);
  sigprocmask(SIG_BLOCK, &child, nullptr);
  return Fd(signalfd(-1, &child, SFD_CLOEXEC | SFD_NONBLOCK));
}

void drain(const Fd &fd) {
  char bytes[1024];
  while (read(fd.get(), bytes, sizeof bytes) > 0) {
  }
}

} // namespace

RunningTests::RunningTests(std::chrono::milliseconds grace)
    : grace_(grace), children_(ended_children()),
      timer_(timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK)),
      events_(any_readable({children_.get(), timer_.get()})) {
  prctl(PR_SET_CHILD_SUBREAPER, 1);
}

uint32_t RunningTests::handle(const Request &request) {
  for (const Kind &kind : kinds) {
    if (request.command == kind.launch) return launch(kind.tool, request);
    if (request.command == kind.abort) return abort(kind.tool, request);
  }
  return 0;
}

uint32_t RunningTests::launch(std::string_view kind, const Request &request) {
  constexpr std::string_view directory = "/bin/";
  Launch launch{words_of(request.payload), request.pid};
  if (request.payload.find('\0') != std::string::npos) return refused(request, "a command line with a NUL");
  if (launch.words.empty()) return refused(request, "no command line");
  const std::string &program = launch.words[0];
  if (!program.starts_with(directory) || !is_tool_of(kind, program.substr(directory.size())))
    return refused(request, program + " is none of its programs");
  const std::string tool = program.substr(directory.size());
  Test &test = tests_[tool];
  if (!test.running()) return start(tool, launch) ? 0 : failed;
  stop(test);
  test.next = std::move(launch);
  return 0;
}

uint32_t RunningTests::abort(std::string_view kind, const Request &request) {
  if (!is_tool_of(kind, request.payload))
    return refused(request, request.payload + " is none of its programs");
  const auto test = tests_.find(request.payload);
  if (test == tests_.end() || !test->second.running()) return 0;
  stop(test->second);
  test->second.next.reset();
  return 0;
}

bool RunningTests::start(const std::string &tool, const Launch &launch) {
  Test &test = tests_[tool];
  test = {};
  const int error = TestProcess().spawn(test.pid, on_device(launch.words[0]), launch.words);
  if (error != 0) {
    test.pid = 0;
    log_device(launch.asking_pid, "cannot start " + tool + ": " + std::strerror(error));
    return false;
  }
  log_record({{"kind", "command"},
              {"pid", launch.asking_pid},
              {"program", tool},
              {"args", Words(launch.words.begin() + 1, launch.words.end())},
              {"process", test.pid}});
  return true;
}

void RunningTests::stop(Test &test) {
  if (test.kill_at) return;
  kill(-test.pid, SIGTERM);
  test.kill_at = Clock::now() + grace_;
  set_timer();
}

void RunningTests::look_after() {
  drain(children_);
  drain(timer_);
  for (auto &[tool, test] : tests_)
    if (test.running() && reap(tool, test))
      if (const auto next = std::exchange(test.next, {})) start(tool, *next);
  kill_overdue();
}

// True when the test has ended.
bool RunningTests::reap(const std::string &tool, Test &test) {
  siginfo_t end{};
  const auto id = static_cast<id_t>(test.pid);
  if (waitid(P_PID, id, &end, WEXITED | WNOHANG | WNOWAIT) != 0 || end.si_pid == 0) return false;
  // What it may have left behind is a child of this process by now.
  kill(-test.pid, SIGKILL);
  while (waitpid(-test.pid, nullptr, 0) > 0) {
  }
  nlohmann::json fields{{"program", tool}};
  const bool exited = end.si_code == CLD_EXITED;
  fields[exited ? "status" : "signal"] = end.si_status;
  const std::string how = test.kill_at && !exited ? end.si_status == SIGKILL ? " killed" : " stopped"
                          : exited                ? " ended with status " + std::to_string(end.si_status)
                                                  : " ended by signal " + std::to_string(end.si_status);
  log_device(test.pid, tool + how, std::move(fields));
  test.pid = 0;
  test.kill_at.reset();
  return true;
}

void RunningTests::kill_overdue() {
  for (auto &[tool, test] : tests_)
    if (test.running() && test.kill_at && Clock::now() >= *test.kill_at) {
      kill(-test.pid, SIGKILL);
      test.kill_at = Clock::time_point::max();
    }
  set_timer();
}

void RunningTests::set_timer() {
  auto first = Clock::time_point::max();
  for (const auto &[tool, test] : tests_)
    if (test.running() && test.kill_at) first = std::min(first, *test.kill_at);
  itimerspec when{};
  if (first != Clock::time_point::max()) {
    const auto left = std::max<int64_t>(std::chrono::nanoseconds(first - Clock::now()).count(), 1);
    when.it_value = {left / 1'000'000'000, static_cast<long>(left % 1'000'000'000)};
  }
  timerfd_settime(timer_.get(), 0, &when, nullptr);
}

bool RunningTests::any_running() const {
  return std::ranges::any_of(tests_, [](const auto &entry) { return entry.second.running(); });
}

void RunningTests::stop_all() {
  for (auto &[tool, test] : tests_) {
    test.next.reset();
    if (test.running()) stop(test);
  }
  while (any_running()) {
    pollfd ready{events_.get(), POLLIN, 0};
    poll(&ready, 1, -1);
    look_after();
  }
}

} // namespace kova::device
