#pragma once

#include "src/lists/row_list.hpp"

namespace kova::security {

extern const lists::List access_list;

} // namespace kova::security
