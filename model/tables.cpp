// The tables of all families, read as the data model.
#include "model/read.hpp"
#include "src/diagnostics/diagnostics_rows.hpp"
#include "src/lan/lan_rows.hpp"
#include "src/lan/wifi_rows.hpp"
#include "src/wan/apn_rows.hpp"
#include "src/wan/dmz_rows.hpp"

#include <array>

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

} // namespace

std::span<const std::span<const Row>> tables() {
  static constexpr std::span<const Row> all[] = {wifi::rows, lan::rows, wan::rows, diagnostics::rows};
  return all;
}

} // namespace kova::model
