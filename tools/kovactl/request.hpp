// The words of request/, which kovactl puts on the command line.
#pragma once

#include "request/paths.hpp"
#include "request/request.hpp"
#include "request/request_text.hpp"
#include "request/shortened.hpp"

namespace kova::ctl {

using namespace request;

} // namespace kova::ctl
