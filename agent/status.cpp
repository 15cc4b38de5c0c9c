#include "agent/status.hpp"

#include "agent/names.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <random>

namespace kova::agent {

using Json = nlohmann::json;

SessionStatus last_session(const Transaction &store) {
  const auto text = store.get(stored::session);
  if (!text) return {};
  const Json json = Json::parse(*text);
  return {json.at("number"),
          json.at("running"),
          json.at("begin"),
          json.at("end"),
          json.at("events"),
          json.at("failure"),
          std::chrono::milliseconds(json.value("milliseconds", 0L)),
          json.value("recent", std::vector<std::time_t>())};
}

SessionStatus SessionStatus::follow(std::vector<std::string> its_events) const {
  SessionStatus next{number + 1, true, std::time(nullptr), 0, std::move(its_events), "", duration, recent};
  std::erase_if(next.recent,
                [&](std::time_t before) { return before + 60 <= next.begin || before > next.begin; });
  next.recent.push_back(next.begin);
  return next;
}

unsigned SessionStatus::in_minute_before(std::time_t time) const {
  return static_cast<unsigned>(
      std::ranges::count_if(recent, [time](std::time_t began) { return began + 60 > time; }));
}

void put(Transaction &change, const SessionStatus &session) {
  const Json json{{"number", session.number},
                  {"running", session.running},
                  {"begin", session.begin},
                  {"end", session.end},
                  {"events", session.events},
                  {"failure", session.failure},
                  {"milliseconds", session.duration.count()},
                  {"recent", session.recent}};
  change.put(stored::session, json.dump(-1, ' ', false, Json::error_handler_t::replace));
}

Retries retries(const Transaction &store) {
  const auto text = store.get(stored::retries);
  if (!text) return {};
  const Json json = Json::parse(*text);
  return {json.at("count"), json.at("earliest")};
}

void clear_retries(Transaction &change) {
  change.erase(stored::retries);
}

void add_retry(Transaction &change, unsigned least_wait, long asked_for) {
  constexpr unsigned most_doublings = 9;
  constexpr long longest_asked_for = 24L * 60 * 60;
  const unsigned count = retries(change).count + 1;
  const long least = static_cast<long>(least_wait) << std::min(count - 1, most_doublings);
  std::random_device source;
  const long wait = std::uniform_int_distribution<long>(least, 2 * least)(source);
  const std::time_t earliest = std::time(nullptr) + std::max(wait, std::min(asked_for, longest_asked_for));
  change.put(stored::retries, Json{{"count", count}, {"earliest", earliest}}.dump());
}

} // namespace kova::agent
