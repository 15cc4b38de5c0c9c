// The tables of all families, read as the data model.
#include "model/read.hpp"
#include "src/accounts/web_rows.hpp"
#include "src/diagnostics/diagnostics_rows.hpp"
#include "src/lan/lan_rows.hpp"
#include "src/lan/wifi_rows.hpp"
#include "src/security/filters_rows.hpp"
#include "src/time/time_rows.hpp"
#include "src/voice/voice_rows.hpp"
#include "src/wan/apn_rows.hpp"
#include "src/wan/dmz_rows.hpp"

#include <deque>
#include <string>

namespace kova::model {
namespace {

namespace wifi {
using namespace kova::wifi;
constexpr Row rows[] = {
#include "src/lan/wifi.def"
};
} // namespace wifi

namespace lan {
using namespace kova::lan;
constexpr Row rows[] = {
#include "src/lan/ethernet.def"
#include "src/lan/lan.def"
#include "src/lan/management.def"
};
} // namespace lan

namespace wan {
using namespace kova::wan;
constexpr Row rows[] = {
#include "src/wan/apn.def"
#include "src/wan/connection.def"
#include "src/wan/dmz.def"
#include "src/wan/oper_mode.def"
#include "src/wan/wan_setting.def"
};
} // namespace wan

namespace diagnostics {
using namespace kova::diagnostics;
constexpr Row rows[] = {
#include "src/diagnostics/diagnostics.def"
};
} // namespace diagnostics

namespace filters {
using namespace kova::security;
constexpr Row rows[] = {
#include "src/security/filters.def"
};
} // namespace filters

namespace firewall {
constexpr Row rows[] = {
#include "src/security/firewall.def"
};
} // namespace firewall

namespace routes {
constexpr Row rows[] = {
#include "src/wan/routes.def"
};
} // namespace routes

namespace voice {
using namespace kova::voice;
constexpr Row rows[] = {
#include "src/voice/voice.def"
};
} // namespace voice

namespace snmp {
constexpr Row rows[] = {
#include "src/accounts/snmp.def"
};
} // namespace snmp

namespace watchdog {
constexpr Row rows[] = {
#include "src/accounts/watchdog.def"
};
} // namespace watchdog

namespace web {
using namespace kova::web;
constexpr Row rows[] = {
#include "src/accounts/web.def"
};
} // namespace web

namespace management {
constexpr Row rows[] = {
#include "src/management/acs.def"
};
} // namespace management

namespace device_info {
constexpr Row rows[] = {
#include "src/management/device_info.def"
};
} // namespace device_info

namespace radio {
constexpr Row rows[] = {
#include "src/radio/radio.def"
#include "src/radio/rates.def"
};
} // namespace radio

namespace time {
using namespace kova::time;
constexpr Row rows[] = {
#include "src/time/time.def"
};
} // namespace time

namespace sas {
constexpr Row rows[] = {
#include "src/sas/sas.def"
};
} // namespace sas

} // namespace

std::span<const std::span<const Row>> tables() {
  static constexpr std::span<const Row> all[] = {
      wifi::rows,    lan::rows,      wan::rows,    diagnostics::rows, management::rows, device_info::rows,
      filters::rows, firewall::rows, routes::rows, voice::rows,       snmp::rows,       watchdog::rows,
      web::rows,     radio::rows,    time::rows,   sas::rows,
  };
  return all;
}

std::string_view joined(std::initializer_list<std::string_view> pieces) {
  static std::deque<std::string> texts;
  std::string &text = texts.emplace_back();
  for (std::string_view piece : pieces)
    text += piece;
  return text;
}

} // namespace kova::model
