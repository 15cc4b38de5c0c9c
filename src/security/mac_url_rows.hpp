// The checks of MAC and URL rows, as their lists call them: 0, or -1.
#pragma once

namespace kova::security {

int check_mac_row(const char *value, int position);
int check_url_row(const char *value, int position);

} // namespace kova::security
