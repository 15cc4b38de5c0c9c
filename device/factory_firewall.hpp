// Factory settings of the packet filters, the access control, the routes, the telephone line, the accounts and the
// spectrum access.
#pragma once

#include <span>
#include <utility>

namespace kova::device {

std::span<const std::pair<const char *, const char *>> firewall_settings();
std::span<const std::pair<const char *, const char *>> telephone_settings();
std::span<const std::pair<const char *, const char *>> access_settings();

} // namespace kova::device
