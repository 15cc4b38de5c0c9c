#include "src/security/manager.hpp"

#include "platform/keys.hpp"

#include <kova/frame.h>

#include <cctype>
#include <cstdio>
#include <cstdlib>

namespace kova::security {

namespace {

// The LAN clients. The look-up knows no capacity: the room is that of the whole neighbour table, and some more for
// those who join meanwhile.
class LanClients {
public:
  LanClients() : list_(static_cast<LanInfo *>(std::calloc(lines() + 64, sizeof(LanInfo)))) {
    if (list_ != nullptr) getLanInfoList(list_, &count_);
  }
  ~LanClients() { std::free(list_); }
  LanClients(const LanClients &) = delete;
  LanClients &operator=(const LanClients &) = delete;
  const LanInfo *begin() const { return list_; }
  const LanInfo *end() const { return list_ + count_; }

private:
  static std::size_t lines() {
    FILE *table = std::fopen("/proc/net/arp", "r");
    if (table == nullptr) return 0;
    char line[128]; // as long as the look-up reads them
    std::size_t count = 0;
    while (std::fgets(line, sizeof line, table) != nullptr)
      ++count;
    std::fclose(table);
    return count;
  }
  LanInfo *list_;
  int count_ = 0;
};

} // namespace

MacText managing_client(Section section) {
  const Text wanted = load({section, key::managing_client});
  MacText mac;
  for (const LanInfo &client : LanClients()) {
    char address[16];
    std::snprintf(address, sizeof address, "%hhu.%hhu.%hhu.%hhu", client.ip[0], client.ip[1], client.ip[2],
                  client.ip[3]);
    if (!equal(address, wanted)) continue;
    std::snprintf(mac.chars, sizeof mac.chars, "%02hhX:%02hhX:%02hhX:%02hhX:%02hhX:%02hhX", client.mac[0],
                  client.mac[1], client.mac[2], client.mac[3], client.mac[4], client.mac[5]);
    break;
  }
  return mac;
}

} // namespace kova::security
