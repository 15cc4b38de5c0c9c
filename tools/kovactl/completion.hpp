// The text of kovactl.bash, built in.
#pragma once

namespace kova::ctl {

extern const char *const bash_completion;

} // namespace kova::ctl
