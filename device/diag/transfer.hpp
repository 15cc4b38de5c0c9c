// The download and the upload test.
#pragma once

#include "device/diag/options.hpp"
#include "device/diag/results.hpp"

namespace kova::diag {

Results download(const Options &options);
Results upload(const Options &options);

} // namespace kova::diag
