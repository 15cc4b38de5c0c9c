// The values that the library's checkers have parked for the batch validation.
#pragma once

namespace kova::request {

// A request that a checker refuses does not come to the batch validation, which would empty the list.
void forget_pending_values();

} // namespace kova::request
