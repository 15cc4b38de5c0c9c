// Looking into the device's stores, and editing them, behind the back of the accessors and their rules.
#pragma once

#include "kovactl/output.hpp"
#include "kovactl/request.hpp"

#include <optional>
#include <span>
#include <string>

namespace kova::ctl {

ExitStatus nvram_get(const Output &output, int section, std::span<const std::string> keys);
ExitStatus nvram_set(const Output &output, int section, std::span<const Assignment> values);
ExitStatus nvram_unset(const Output &output, int section, std::span<const std::string> keys);
ExitStatus nvram_list(const Output &output, std::optional<int> section, const std::string &prefix);

ExitStatus tree_get(const Output &output, std::span<const std::string> paths);
ExitStatus tree_set(const Output &output, std::span<const Assignment> values);
ExitStatus tree_list(const Output &output, const std::string &prefix);

} // namespace kova::ctl
