// The management server's settings, kept across a configuration reset.
#pragma once

#include "kovactl/output.hpp"

namespace kova::ctl {

ExitStatus back_up_settings(const Output &output);
ExitStatus restore_settings(const Output &output);

} // namespace kova::ctl
