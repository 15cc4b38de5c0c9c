// The texts of kovactl.bash and kovactl.zsh, built in.
#pragma once

namespace kova::ctl {

extern const char *const bash_completion;
extern const char *const zsh_completion;

} // namespace kova::ctl
