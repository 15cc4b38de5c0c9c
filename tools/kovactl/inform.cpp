// inform: asking the management agent for a session.
#include "kovactl/inform.hpp"

#include "agent/control.hpp"
#include "agent/names.hpp"
#include "agent/values.hpp"
#include "device/device.hpp"
#include "kovactl/agent.hpp"
#include "kovactl/command.hpp"
#include "kovactl/commands.hpp"
#include "platform/host/nvram_admin.hpp"
#include "request/request.hpp"

#include <algorithm>

namespace kova::ctl {
namespace {

struct InformOptions {
  std::string event = "6 CONNECTION REQUEST";
  bool wait = false;
  int seconds = 60;
};

std::string joined(const std::vector<std::string> &words) {
  std::string text;
  for (const std::string &word : words)
    text += (text.empty() ? "" : ", ") + word;
  return text;
}

std::string outcome(const agent::SessionStatus &session) {
  return session.running ? "running" : session.failure.empty() ? "well" : "failed: " + session.failure;
}

Json as_json(const agent::SessionStatus &session) {
  return {
      {"begin", agent::utc_time(session.begin)}, {"events", session.events}, {"outcome", outcome(session)}};
}

ExitStatus inform(const Output &output, const InformOptions &options) {
  device::status(); // says so where there is no device to look at
  const unsigned long before = agent::ask_for_session(options.event);
  if (!options.wait) {
    output.json() ? output.print(Json{{"asked", options.event}})
                  : output.print(Table{{{"asked for a session"}}});
    return Success;
  }
  const auto session = agent::await_session(before, std::chrono::seconds(options.seconds));
  if (!session)
    return output.failure("no session has ended within " + std::to_string(options.seconds) + " s");
  if (output.json())
    output.print(as_json(*session));
  else
    output.print(Table{{{joined(session->events)}, {outcome(*session), Style::Bold}}});
  return session->failure.empty() ? Success : Failure;
}

} // namespace

void start_management_agent(const Output &output, const std::string &url) {
  start_agent(output);
  const request::Assignment assignment{agent::parameter::url, url};
  const auto setting = in_turn([&] { return request::set_values(std::span(&assignment, 1)); });
  if (!setting.accepted)
    throw std::runtime_error(setting.faults.empty() ? "the device refuses this URL"
                                                    : setting.faults.front().detail);
  device::start_agents();
}

void stop_management_agent() {
  const host::NvramEntry none{host::configuration_section, agent::own_daemon().setting, ""};
  host::nvram_store(std::span(&none, 1));
}

void follow_management_url(std::span<const request::Assignment> stored) {
  if (std::ranges::find(stored, agent::parameter::url, &request::Assignment::path) != stored.end())
    device::start_agents();
}

Table agent_rows() {
  const agent::AgentStatus status = agent::agent_status();
  if (!status.process && status.last_session.number == 0) return {};
  Table rows{{{"management agent"},
              {status.process ? "running, pid " + std::to_string(*status.process) : "not running"}}};
  if (const auto &last = status.last_session; last.number != 0)
    rows.push_back({{"  last session"},
                    {agent::utc_time(last.begin) + "  " + joined(last.events) + "  " + outcome(last)}});
  if (status.next_periodic != 0)
    rows.push_back({{"  next periodic"}, {agent::utc_time(status.next_periodic)}});
  if (status.retries.count != 0)
    rows.push_back(
        {{"  retries"},
         {std::to_string(status.retries.count) + ", next " + agent::utc_time(status.retries.earliest)}});
  if (!status.connection_request_url.empty())
    rows.push_back({{"  connection requests"}, {status.connection_request_url}});
  return rows;
}

Json agent_json() {
  const agent::AgentStatus status = agent::agent_status();
  Json json{{"pid", status.process ? Json(*status.process) : Json()},
            {"retries", status.retries.count},
            {"connectionRequestURL", status.connection_request_url}};
  json["lastSession"] = status.last_session.number != 0 ? as_json(status.last_session) : Json();
  json["nextPeriodic"] = status.next_periodic != 0 ? Json(agent::utc_time(status.next_periodic)) : Json();
  return json;
}

void add_inform(Commands &commands) {
  auto [command, options] =
      commands.add<InformOptions>("inform", "Ask the management agent for a session now", inform);
  command.option("--event", "EVENT", &options.event, "What it reports (default: 6 CONNECTION REQUEST)");
  const Option wait = command.flag("--wait", options.wait, "Wait for its end, and tell how it went");
  command.option("--timeout", "SECONDS", &options.seconds, "Wait so long at most (default: 60)")
      .needs(wait)
      .check(number_rule);
}

} // namespace kova::ctl
