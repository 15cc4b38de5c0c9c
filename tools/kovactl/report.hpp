// How requests and the model itself are shown.
#pragma once

#include "kovactl/output.hpp"
#include "kovactl/request.hpp"

#include <optional>
#include <span>
#include <vector>

namespace kova::ctl {

ExitStatus report(const Output &output, const Reading &reading);
// `records` is what the device was asked to do meanwhile, when that is to be shown.
ExitStatus report(const Output &output, const Setting &setting,
                  const std::optional<std::vector<Json>> &records);
void report(const Output &output, std::span<const model::Parameter *const> parameters);

} // namespace kova::ctl
