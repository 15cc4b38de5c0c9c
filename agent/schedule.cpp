#include "agent/schedule.hpp"

#include "agent/attributes.hpp"
#include "agent/events.hpp"
#include "agent/names.hpp"
#include "agent/values.hpp"

#include <cstdio>
#include <cstdlib>

namespace kova::agent {
namespace {

// 0 for the unknown time, and for what is none.
std::time_t as_time(const std::string &text) {
  std::tm parts{};
  int length = 0, hours = 0, minutes = 0;
  char sign = '+';
  if (std::sscanf(text.c_str(), "%d-%d-%dT%d:%d:%d%n", &parts.tm_year, &parts.tm_mon, &parts.tm_mday,
                  &parts.tm_hour, &parts.tm_min, &parts.tm_sec, &length) != 6 ||
      parts.tm_year < 1970)
    return 0;
  parts.tm_year -= 1900;
  parts.tm_mon -= 1;
  const std::size_t zone = text.find_first_of("+-", static_cast<std::size_t>(length));
  if (zone != std::string::npos) std::sscanf(text.c_str() + zone, "%c%2d:%2d", &sign, &hours, &minutes);
  const std::time_t offset = (hours * 60L + minutes) * 60;
  return timegm(&parts) - (sign == '-' ? -offset : offset);
}

} // namespace

PeriodicInform periodic_inform(Store &store) {
  return {is_true(read_value(store, parameter::periodic_inform_enable)),
          std::strtol(read_value(store, parameter::periodic_inform_interval).c_str(), nullptr, 10),
          as_time(read_value(store, parameter::periodic_inform_time))};
}

std::time_t next_periodic(const PeriodicInform &periodic, std::time_t begin, std::time_t after) {
  if (!periodic.enabled || periodic.interval <= 0) return 0;
  const std::time_t reference = periodic.reference != 0 ? periodic.reference : begin;
  const std::time_t phase = ((after - reference) % periodic.interval + periodic.interval) % periodic.interval;
  return after - phase + periodic.interval;
}

void settle_scheduled_informs(Store &store, std::time_t now) {
  const auto scheduled =
      store.read([](const Transaction &reading) { return reading.entries(stored::schedule); });
  for (const auto &[record, key] : scheduled) {
    if (std::strtoll(record.c_str() + std::string_view(stored::schedule).size(), nullptr, 10) > now) break;
    store.change([&record = record, &key = key](Transaction &change) {
      change.erase(record);
      add_event(change, event::scheduled);
      add_event(change, event::m_schedule_inform, key);
    });
  }
}

} // namespace kova::agent
