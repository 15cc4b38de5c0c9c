#pragma once

#include "src/lists/row_list.hpp"

namespace kova::voice {

extern const lists::List speed_dial;

} // namespace kova::voice
