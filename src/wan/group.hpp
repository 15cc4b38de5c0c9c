// The group of the operation mode and the APN profiles.
#pragma once

#include "src/transaction/group.hpp"

namespace kova::wan {

extern const transaction::Group wan_apn_group;

} // namespace kova::wan
