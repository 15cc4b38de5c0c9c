// The tables of all families, read as the data model.
#include "model/read.hpp"
#include "src/diagnostics/diagnostics_rows.hpp"
#include "src/lan/wifi_rows.hpp"

#include <array>

namespace kova::model {
namespace {

namespace wifi {
using namespace kova::wifi;
constexpr Row rows[] = {
#include "src/lan/wifi.def"
};
} // namespace wifi

namespace diagnostics {
using namespace kova::diagnostics;
constexpr Row rows[] = {
#include "src/diagnostics/diagnostics.def"
};
} // namespace diagnostics

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
      wifi::rows, diagnostics::rows, management::rows, device_info::rows, radio::rows, time::rows, sas::rows,
  };
  return all;
}

} // namespace kova::model
