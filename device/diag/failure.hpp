// Why a test has no result: the state that it leaves, and a reason for a person.
#pragma once

#include <stdexcept>
#include <string>

namespace kova::diag {

namespace state {
constexpr const char *complete = "Complete", *requested = "Requested",
                     *cannot_resolve = "Error_CannotResolveHostName",
                     *no_connection = "Error_InitConnectionFailed", *no_response = "Error_NoResponse",
                     *transfer_failed = "Error_TransferFailed", *login_failed = "Error_LoginFailed",
                     *timeout = "Error_Timeout", *too_many_hops = "Error_MaxHopCountExceeded",
                     *internal = "Error_Internal", // this device cannot do it
                         *other = "Error_Other";   // what was asked for cannot be done
}

struct Failure : std::runtime_error {
  Failure(const char *left_state, const std::string &reason)
      : std::runtime_error(reason), state(left_state) {}
  const char *state;
};

} // namespace kova::diag
