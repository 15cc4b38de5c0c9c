#include "device/serviced/running_tests.hpp"

#include "device/diagnostics.hpp"
#include "device/log.hpp"
#include "device/paths.hpp"
#include "device/process.hpp"

#include <sys/prctl.h>
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

std::vector<std::string> words_in(std::string_view line) {
  std::vector<std::string> words;
  while (true) {
    line.remove_prefix(std::min(line.find_first_not_of(blanks), line.size()));
    if (line.empty()) return words;
    const std::size_t length = std::min(line.find_first_of(blanks), line.size());
    words.emplace_back(line.substr(0, length));
    line.remove_prefix(length);
  }
}

void log_device(int64_t pid, const std::string &what, LogFields fields = {}) {
  fields.insert(fields.end(), {{"kind", "device"}, {"pid", pid}, {"what", what}});
  log_record(fields);
}

uint32_t refused(const Request &request, const std::string &why) {
  log_device(request.pid, "refused " + std::string(request_name(request.command)) + ": " + why);
  return failed;
}

// The words go to the program's input, where nobody sees the passwords among them, as a command line would
// show them. A pipe has room for all that one request can bring.
int start_test(pid_t &pid, const std::string &program, const std::vector<std::string> &words,
               uint32_t asking_pid) {
  Pipe input;
  const std::string lines = text_of_words(words);
  if (write(input.writing.get(), lines.data(), lines.size()) != static_cast<ssize_t>(lines.size()))
    return errno;
  return start_program(pid, {.path = program,
                             .words = {words[0], std::string(words_from_input)},
                             .input = input.reading.get(),
                             .variables = {"KOVA_ASKING_PID=" + std::to_string(asking_pid)},
                             .own_group = true});
}

} // namespace

RunningTests::RunningTests(Loop &loop, std::chrono::milliseconds grace)
    : loop_(loop), grace_(grace), child_ended_(loop, SIGCHLD, [this] { look_after(); }),
      overdue_(loop, [this] { kill_overdue(); }) {
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
  Launch launch{words_in(request.payload), request.pid};
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
  test.asking_pid = launch.asking_pid;
  const int error = start_test(test.pid, on_device(launch.words[0]), launch.words, launch.asking_pid);
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
  if (!overdue_.runs()) overdue_.start(grace_);
}

void RunningTests::look_after() {
  for (auto &[tool, test] : tests_)
    if (test.running() && reap(tool, test))
      if (const auto next = std::exchange(test.next, {})) start(tool, *next);
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
  LogFields fields{{"program", tool}, {"asker", test.asking_pid}};
  const bool exited = end.si_code == CLD_EXITED;
  fields.push_back({exited ? "status" : "signal", end.si_status});
  const std::string how = test.kill_at && !exited ? end.si_status == SIGKILL ? " killed" : " stopped"
                          : exited                ? " ended with status " + std::to_string(end.si_status)
                                                  : " ended by signal " + std::to_string(end.si_status);
  log_device(test.pid, tool + how, std::move(fields));
  test.pid = 0;
  test.kill_at.reset();
  return true;
}

void RunningTests::kill_overdue() {
  auto left = Clock::duration::max();
  for (auto &[tool, test] : tests_) {
    if (!test.running() || !test.kill_at) continue;
    const auto until_then = *test.kill_at - Clock::now();
    if (until_then <= Clock::duration::zero())
      kill(-test.pid, SIGKILL);
    else
      left = std::min(left, until_then);
  }
  if (left != Clock::duration::max()) overdue_.start(std::chrono::ceil<std::chrono::milliseconds>(left));
}

bool RunningTests::any_running() const {
  return std::ranges::any_of(tests_, [](const auto &entry) { return entry.second.running(); });
}

void RunningTests::stop_all() {
  for (auto &[tool, test] : tests_) {
    test.next.reset();
    if (test.running()) stop(test);
  }
  while (any_running())
    loop_.run_once();
}

} // namespace kova::device
