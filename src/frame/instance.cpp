// The process-wide state: which management instance and which interface this agent serves.
#include "src/frame/settings.hpp"

#include <kova/frame.h>

#include <cstring>

uint32_t gSecondaryInstance = 0;
char gBindInterface[32] = {};

void setSecondaryInstance(void) {
  gSecondaryInstance = 1;
}

void setBindInterface(const char *ifname) {
  std::strncpy(gBindInterface, kova::text_or_empty(ifname), sizeof gBindInterface - 1);
  gBindInterface[sizeof gBindInterface - 1] = '\0';
}

void dbg_trace(const char *, ...) {}
