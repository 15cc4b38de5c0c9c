// Over which interface the management server is reached.
#pragma once

namespace kova::management {

inline constexpr int interface_name_size = 32;

// The bind interface when there is one, else the interface of the route to the management server. Left empty when there
// is none; the caller has zeroed it.
void management_interface(char (&name)[interface_name_size]);

} // namespace kova::management
