// The web login's hashes, scripted so that what was hashed shows.
#include "fake.hpp"
#include "platform/nvram.h"
#include "platform/webs.h"

#include <cstring>

using fake::platform;

char *update_rand_char() {
  return strdup("salt");
}

int gen_weblogin_passwd(const char *password, const char *salt, int saltLength, char *hash, int size) {
  EXPECT_EQ(static_cast<std::size_t>(saltLength), std::strlen(salt));
  EXPECT_EQ(size, 32);
  volatile char *last = hash + 63; // a sanitizer looks at the touch
  *last = *last;
  std::snprintf(hash, 64, "hash(%.50s,%s)", password, salt);
  return 0;
}

void tarn_log_type0(int event, int severity, int module) {
  platform.done.push_back("event " + std::to_string(event) + " " + std::to_string(severity) + " " +
                          std::to_string(module));
}
