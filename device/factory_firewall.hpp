// Factory settings of the packet filters, the access control, the routes and the telephone line.
#pragma once

#include <span>
#include <utility>

namespace kova::device {

std::span<const std::pair<const char *, const char *>> firewall_settings();
std::span<const std::pair<const char *, const char *>> telephone_settings();

} // namespace kova::device
