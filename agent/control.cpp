#include "agent/control.hpp"

#include "agent/events.hpp"
#include "agent/names.hpp"
#include "device/service.hpp"

#include <kova/frame.h>

#include <algorithm>
#include <csignal>
#include <stdexcept>
#include <thread>

namespace kova::agent {
namespace {

std::optional<pid_t> agent_process() {
  return device::daemon_pid(own_daemon());
}

} // namespace

const device::Daemon &own_daemon() {
  return device::management_agents[gSecondaryInstance != 0 ? 1 : 0];
}

AgentStatus agent_status() {
  AgentStatus status;
  status.process = agent_process();
  if (!std::filesystem::exists(store_file())) return status;
  Store store(store_file());
  store.read([&status](const Transaction &reading) {
    const auto untold = [](const Event &event) {
      return event.code == event::bootstrap || event.code == event::boot;
    };
    status.informed =
        reading.get(stored::bootstrapped_url) && std::ranges::none_of(pending_events(reading), untold);
    status.last_session = last_session(reading);
    status.retries = retries(reading);
    status.next_periodic = std::stoll(reading.get(stored::next_periodic).value_or("0"));
    status.connection_request_url = reading.get(stored::connection_request_url).value_or("");
    return 0;
  });
  return status;
}

unsigned long ask_for_session(std::string_view event) {
  if (!can_be_asked_for(event))
    throw std::runtime_error("there is no event \"" + std::string(event) + "\" to ask for");
  const auto process = agent_process();
  if (!process) throw std::runtime_error("no agent runs");
  Store store(store_file());
  unsigned long number = 0;
  store.change([&](Transaction &change) {
    number = last_session(change).number;
    add_event(change, event);
  });
  kill(*process, SIGUSR1);
  return number;
}

std::optional<SessionStatus> await_session(unsigned long number_before, std::chrono::seconds patience) {
  Store store(store_file());
  const auto deadline = std::chrono::steady_clock::now() + patience;
  while (std::chrono::steady_clock::now() < deadline) {
    const SessionStatus session = store.read(last_session);
    if (session.number > number_before && !session.running) return session;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  return std::nullopt;
}

} // namespace kova::agent
