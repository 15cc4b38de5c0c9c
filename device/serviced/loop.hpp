// libuv's loop, timers and signals with owners and functions.
#pragma once

#include <uv.h>

#include <chrono>
#include <csignal>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>

namespace kova::device {

inline void expect_done(int result, const std::string &what) {
  if (result < 0) throw std::runtime_error(what + ": " + uv_strerror(result));
}

// A handle lives until the loop has closed it.
struct CloseHandle {
  template <typename Handle>
  void operator()(Handle *handle) const {
    uv_close(reinterpret_cast<uv_handle_t *>(handle),
             [](uv_handle_t *closed) { delete reinterpret_cast<Handle *>(closed); });
  }
};
template <typename Handle>
using Owned = std::unique_ptr<Handle, CloseHandle>;

// Outlives the handles.
class Loop {
public:
  Loop() {
    expect_done(uv_loop_init(&loop_), "cannot wait for events");
    std::signal(SIGPIPE, SIG_IGN); // libuv writes to who has gone, too
  }
  ~Loop() {
    uv_run(&loop_, UV_RUN_DEFAULT); // closes what was given up
    uv_loop_close(&loop_);
  }
  Loop(const Loop &) = delete;
  Loop &operator=(const Loop &) = delete;
  operator uv_loop_t *() { return &loop_; }

  void run() { uv_run(&loop_, UV_RUN_DEFAULT); }
  void run_once() { uv_run(&loop_, UV_RUN_ONCE); }
  void stop() { uv_stop(&loop_); }

private:
  uv_loop_t loop_{};
};

class Timer {
public:
  Timer(Loop &loop, std::function<void()> act) : act_(std::move(act)), handle_(new uv_timer_t{}) {
    uv_timer_init(loop, handle_.get());
    handle_->data = &act_;
  }
  // From now; again and again when there is a `repeat`.
  void start(std::chrono::milliseconds after, std::chrono::milliseconds repeat = {}) {
    const auto run = [](uv_timer_t *handle) { (*static_cast<std::function<void()> *>(handle->data))(); };
    uv_timer_start(handle_.get(), run, static_cast<uint64_t>(after.count()),
                   static_cast<uint64_t>(repeat.count()));
  }
  void stop() { uv_timer_stop(handle_.get()); }
  bool runs() const { return uv_is_active(reinterpret_cast<const uv_handle_t *>(handle_.get())) != 0; }

private:
  std::function<void()> act_;
  Owned<uv_timer_t> handle_;
};

class Signal {
public:
  Signal(Loop &loop, int number, std::function<void()> act)
      : act_(std::move(act)), handle_(new uv_signal_t{}) {
    uv_signal_init(loop, handle_.get());
    handle_->data = &act_;
    const auto run = [](uv_signal_t *handle, int) {
      (*static_cast<std::function<void()> *>(handle->data))();
    };
    expect_done(uv_signal_start(handle_.get(), run, number), "cannot wait for signals");
  }

private:
  std::function<void()> act_;
  Owned<uv_signal_t> handle_;
};

} // namespace kova::device
