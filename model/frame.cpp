#include "model/rows.hpp"

#include <kova/frame.h>

namespace kova::model {
namespace {

// clang-format off
#define MANAGEMENT "InternetGatewayDevice.ManagementServer."

constexpr Parameter rows[] = {
    READ_ONLY(MANAGEMENT "X_KOVA_Interface", String, kovaGetTR069If,
              "", "Interface of the management traffic; a fault while there is none"),
    READ_ONLY(MANAGEMENT "X_KOVA_UpgradeScript", String, kovaGetUpgradeScript,
              "", "Script that installs a firmware image"),
};
// clang-format on

} // namespace

std::span<const Parameter> frame_rows() {
  return rows;
}

} // namespace kova::model
