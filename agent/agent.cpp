#include "agent/agent.hpp"

#include "agent/attributes.hpp"
#include "agent/boot.hpp"
#include "agent/connection_request.hpp"
#include "agent/control.hpp"
#include "agent/events.hpp"
#include "agent/log.hpp"
#include "agent/methods.hpp"
#include "agent/names.hpp"
#include "agent/schedule.hpp"
#include "agent/status.hpp"
#include "agent/stun.hpp"
#include "agent/transfers.hpp"
#include "device/background.hpp"
#include "device/file_system.hpp"
#include "device/paths.hpp"
#include "device/process.hpp"
#include "platform/host/nvram_admin.hpp"

#include <kova/frame.h>
#include <unistd.h>
#include <uv.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

namespace kova::agent {
namespace {

constexpr std::uint64_t tick_milliseconds = 1000;

// A program that does one thing and ends, so that what that needs (TLS, long messages) is gone when the agent
// waits.
class Task {
public:
  using Done = std::function<void(bool well)>;

  bool runs() const { return process_ != nullptr; }

  void start(uv_loop_t *loop, const std::vector<std::string> &words, bool outlives_agent, Done done) {
    // Beside this program.
    const std::string program =
        std::filesystem::read_symlink("/proc/self/exe").parent_path() / "kova-cwmp-task";
    std::vector<char *> arguments{const_cast<char *>(program.c_str())};
    for (const std::string &word : words)
      arguments.push_back(const_cast<char *>(word.c_str()));
    arguments.push_back(nullptr);
    uv_stdio_container_t streams[3]{};
    streams[0].flags = UV_IGNORE;
    for (int stream : {STDOUT_FILENO, STDERR_FILENO}) {
      streams[stream].flags = UV_INHERIT_FD;
      streams[stream].data.fd = STDERR_FILENO;
    }
    uv_process_options_t options{};
    options.file = program.c_str();
    options.args = arguments.data();
    options.stdio = streams;
    options.stdio_count = 3;
    if (outlives_agent) options.flags = UV_PROCESS_DETACHED;
    options.exit_cb = [](uv_process_t *process, std::int64_t status, int signal) {
      auto *task = static_cast<Task *>(process->data);
      const Done finished = std::move(task->done_);
      task->close();
      finished(status == 0 && signal == 0);
    };
    outlives_agent_ = outlives_agent;
    done_ = std::move(done);
    process_ = new uv_process_t{};
    process_->data = this;
    if (const int failed = uv_spawn(loop, process_, &options); failed != 0) {
      const Done finished = std::move(done_);
      close();
      log("cannot start " + program + ": " + uv_strerror(failed));
      finished(false);
    }
  }

  void abandon() {
    if (process_ != nullptr && !outlives_agent_) uv_process_kill(process_, SIGTERM);
  }

private:
  // The loop has it until it is closed.
  void close() {
    uv_close(reinterpret_cast<uv_handle_t *>(std::exchange(process_, nullptr)),
             [](uv_handle_t *handle) { delete reinterpret_cast<uv_process_t *>(handle); });
  }

  uv_process_t *process_ = nullptr;
  bool outlives_agent_ = false;
  Done done_;
};

// A boot starts the agent as it runs now.
void keep_options(const Options &options) {
  std::vector<std::string> words = words_of(options);
  if (options.port) words.push_back("--port=" + std::to_string(*options.port));
  device::write_file(device::arguments_of(own_daemon()), device::text_of_words(words));
}

class Agent {
public:
  Agent(const Options &options) : options_(options), store_(store_file()) {
    begin_anew_after_reset(store_);
    note_bootstrap(store_);
    note_boot(store_);
    resume_transfers(store_);
    uv_loop_init(&loop_);
    loop_.data = this;
    listen();
    stun_ =
        std::make_unique<Stun>(&loop_, store_, [this] { connection_requested("UDP connection request"); });
    for (uv_signal_t &signal : signals_)
      uv_signal_init(&loop_, &signal);
    constexpr int numbers[] = {SIGTERM, SIGINT, SIGHUP, SIGUSR1};
    for (std::size_t i = 0; i < std::size(numbers); ++i)
      uv_signal_start(
          &signals_[i],
          [](uv_signal_t *handle, int number) {
            if (number != SIGUSR1) return uv_stop(handle->loop);
            auto *agent = static_cast<Agent *>(handle->loop->data);
            agent->wanted_now_ = true;
            agent->tick();
          },
          numbers[i]);
    uv_timer_init(&loop_, &timer_);
    uv_timer_start(
        &timer_, [](uv_timer_t *timer) { static_cast<Agent *>(timer->loop->data)->tick(); }, 0,
        tick_milliseconds);
  }

  void run() { uv_run(&loop_, UV_RUN_DEFAULT); }

  ~Agent() {
    session_.abandon();
    transfer_.abandon();
  }
  Agent(const Agent &) = delete;
  Agent &operator=(const Agent &) = delete;

private:
  void listen() {
    std::string path = store_.get(stored::connection_request_path).value_or("");
    if (path.empty()) path = random_digits(16);
    const auto credentials = [this]() -> Credentials {
      return {read_value(store_, parameter::connection_request_username),
              read_value(store_, parameter::connection_request_password)};
    };
    const auto accept = [this] { connection_requested("connection request"); };
    const auto last_port =
        static_cast<std::uint16_t>(std::stoul(store_.get(stored::connection_request_port).value_or("0")));
    const auto listen_at = [&](std::uint16_t port) {
      listener_ = std::make_unique<ConnectionRequestListener>(port, path, credentials, accept);
    };
    try {
      listen_at(options_.port.value_or(last_port));
    } catch (const std::runtime_error &) {
      if (options_.port || last_port == 0) throw;
      listen_at(0);
    }
    store_.change([&](Transaction &change) {
      change.put(stored::connection_request_path, path);
      change.put(stored::connection_request_port, std::to_string(listener_->port()));
    });
    uv_poll_init(&loop_, &requests_, listener_->poll_fd());
    uv_poll_start(&requests_, UV_READABLE, [](uv_poll_t *poll, int, int) {
      static_cast<Agent *>(poll->loop->data)->listener_->serve();
    });
  }

  void connection_requested(const char *what) {
    log(what);
    store_.change([](Transaction &change) { add_event(change, event::connection_request); });
    wanted_now_ = true;
    uv_timer_start(
        &timer_, [](uv_timer_t *timer) { static_cast<Agent *>(timer->loop->data)->tick(); }, 0,
        tick_milliseconds);
  }

  // The loop is C: what fails is told, and tried again with the next second.
  void tick() {
    try {
      do_what_is_due();
    } catch (const std::exception &error) {
      log(error.what());
    }
  }

  void do_what_is_due() {
    listener_->serve(); // which closes what is silent
    if (!device::is_wanted()) return uv_stop(&loop_);
    if (session_.runs() || leaving_.runs()) return;
    const std::time_t now = std::time(nullptr);
    const bool looks = is_time_to_look(now);
    if (looks) look_at_parameters(now);
    if (url_.empty()) return uv_stop(&loop_);
    if (looks || stun_->keeps_binding()) stun_->settle();
    settle_scheduled_informs(store_, now);
    settle_periodic_inform(now);
    if (leave_if_asked(now)) return;
    start_due_transfer(now);
    start_due_session(now);
  }

  // To look costs a hundred times what waiting does. Some values do not come from the store.
  bool is_time_to_look(std::time_t now) const {
    constexpr std::time_t longest_pause = 5;
    return now < last_look_ || now >= last_look_ + longest_pause || host::store_version() != seen_version_;
  }

  void look_at_parameters(std::time_t now) {
    last_look_ = now;
    seen_version_ = host::store_version();
    url_ = read_value(store_, parameter::url);
    note_bootstrap(store_);
    watch_values(store_);
    settle_diagnostics(store_);
    const PeriodicInform periodic = periodic_inform(store_);
    if (periodic == periodic_) return;
    periodic_ = periodic;
    keep_next_periodic(now, now);
  }

  void settle_periodic_inform(std::time_t now) {
    if (next_periodic_ == 0 || next_periodic_ > now) return;
    store_.change([](Transaction &change) { add_event(change, event::periodic); });
    keep_next_periodic(next_periodic_, now);
  }

  void keep_next_periodic(std::time_t begin, std::time_t now) {
    next_periodic_ = next_periodic(periodic_, begin, now);
    store_.change(
        [this](Transaction &change) { change.put(stored::next_periodic, std::to_string(next_periodic_)); });
  }

  // A reboot and a reset end this agent, and start another.
  bool leave_if_asked(std::time_t now) {
    if (now < earliest_leave_) return false;
    const char *how = asked_to_leave(store_);
    if (how == nullptr || transfer_.runs()) return false;
    constexpr int patience = 10;
    earliest_leave_ = now + patience;
    leaving_.start(&loop_, words(how), true, [](bool well) {
      if (!well) log("the device did not boot");
    });
    return true;
  }

  void start_due_transfer(std::time_t now) {
    if (transfer_.runs()) return;
    const auto due = store_.read([now](const Transaction &store) { return due_transfer(store, now); });
    if (due) transfer_.start(&loop_, words("transfer", due->record), false, [this](bool) { tick(); });
  }

  void start_due_session(std::time_t now) {
    const auto due = store_.read([this, now](const Transaction &store) {
      const Retries failed = retries(store);
      const bool waits = failed.count > 0 && now < failed.earliest && now >= failed.earliest - longest_wait();
      return !pending_events(store).empty() || has_active_change(store) ? (wanted_now_ || !waits) : false;
    });
    if (!due || (now < first_session_ && !wanted_now_)) return;
    wanted_now_ = false;
    const unsigned long number = store_.read(last_session).number;
    session_.start(&loop_, words("session"), false, [this, number](bool) {
      note_session_that_broke_off(number);
      last_look_ = 0; // the ACS may have set anything
      tick();
    });
  }

  // A boot that this agent's task makes is no part of what the starter asked for.
  static std::time_t time_of_first_session() {
    const char *delay = std::getenv(first_inform_delay);
    const std::time_t time = delay == nullptr ? 0 : std::time(nullptr) + std::strtol(delay, nullptr, 10);
    unsetenv(first_inform_delay);
    return time;
  }

  // A clock that was set back must not hold the agent up for longer than any wait is.
  long longest_wait() const { return 25L * 60 * 60; }

  // A task that was killed has not told how its session went.
  void note_session_that_broke_off(unsigned long number_before) {
    store_.change([&](Transaction &change) {
      SessionStatus status = last_session(change);
      if (status.number > number_before && !status.running) return;
      status.number = number_before + 1;
      status.running = false;
      status.end = std::time(nullptr);
      status.failure = "it broke off";
      put(change, status);
      add_retry(change, options_.least_retry_wait, 0);
    });
  }

  std::vector<std::string> words(const char *what, const std::string &argument = "") const {
    std::vector<std::string> all = words_of(options_);
    if (gSecondaryInstance != 0) all.emplace_back("--secondary");
    all.emplace_back(what);
    if (!argument.empty()) all.push_back(argument);
    return all;
  }

  const Options options_;
  Store store_;
  uv_loop_t loop_{};
  uv_timer_t timer_{};
  uv_poll_t requests_{};
  uv_signal_t signals_[4]{};
  std::unique_ptr<ConnectionRequestListener> listener_;
  std::unique_ptr<Stun> stun_;
  Task session_, transfer_, leaving_;
  bool wanted_now_ = false; // whatever wait there is after a failure
  const std::time_t first_session_ = time_of_first_session();
  std::string url_;
  PeriodicInform periodic_;
  std::time_t next_periodic_ = 0, earliest_leave_ = 0, last_look_ = 0;
  std::size_t seen_version_ = 0;
};

} // namespace

void run_agent(const Options &options) {
  init_parameters();
  Agent agent(options);
  keep_options(options);
  device::announce_ready();
  agent.run();
}

} // namespace kova::agent
