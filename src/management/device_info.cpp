// What the device says about itself. Both management instances report the same device.
#include "platform/keys.hpp"
#include "src/frame/interface_query.hpp"
#include "src/frame/rows.hpp"
#include "src/frame/shell.hpp"

#include <kova/management.h>
#include <kova/time.h>
#include <sys/sysinfo.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>

namespace kova::management {

namespace {

using facts = struct sysinfo;

// Seconds; 0 when the kernel cannot tell.
long up_time() {
  facts now;
  return sysinfo(&now) == 0 ? static_cast<long>(now.uptime) : 0;
}

// In units of 1000 bytes, whatever unit the kernel counts in.
template <typename Amount>
int answer_memory(Amount facts::*amount, char *buf, unsigned int buflen) {
  facts now;
  if (sysinfo(&now) == 0) return answer_number(now.*amount / 1000, buf, buflen);
  answer("", buf, buflen);
  return -1;
}

// Where the store has no memory for a copy, the caller's buffer is as it was.
int answer_model(Key key, char *buf, unsigned int buflen) {
  const OwnedText model = load_whole(key);
  return model.writable() != nullptr ? answer(model, buf, buflen) : 0;
}

int set_and_synchronise(Key key, const char *value, const Condition &) {
  set_as_given(key, value);
  SyncfromNetworkTime();
  return 0;
}

int ignore(Key, const char *, const Condition &) {
  return 0;
}

} // namespace

} // namespace kova::management

using namespace kova;
using namespace kova::management;

#include "src/management/device_info.def"

int kovaGetTR069SerialNumber(char *buf, unsigned int buflen) {
  const OwnedText serial = load_whole(runtime(key::serial_number));
  return is_empty(serial) ? answer_whole(runtime("IMEI"), buf, buflen) : answer(serial, buf, buflen);
}

// "TR_HardVer" is never a source.
int kovaGetTR069HardwareVersion(char *buf, unsigned int buflen) {
  for (const char *key : {"CACHE_HW_VER", "HW_VER"})
    if (const Text version = load(runtime(key)); !version.empty()) return answer(version, buf, buflen);
  return answer("N/A", buf, buflen);
}

int kovaGetTR069UpTime(char *buf, unsigned int buflen) {
  return answer_number(up_time(), buf, buflen);
}

int kovaGetTR069ConntionTime(char *buf, unsigned int buflen) {
  const long connected_at = std::atol(load(runtime("lte_conn_uptime"))); // NOLINT(cert-err34-c)
  const long now = up_time();
  return answer_number(connected_at > 0 && connected_at < now ? now - connected_at : 0, buf, buflen);
}

int kovaGetTR069DeviceLog(char *buf, unsigned int) {
  if (buf == nullptr) return -1;
  run("rm -f /tmp/M4412_Log.dat");
  run("/home/www/cgi-bin/maintenance.cgi exportlog");
  FILE *log = popen("cat /tmp/M4412_Log.dat", "r");
  if (log == nullptr) return 0;
  char piece[1024];
  while (std::fgets(piece, sizeof piece, log) != nullptr)
    std::strcat(buf, piece);
  pclose(log);
  return 0;
}

int kova_getManufacturerMac(const char *ifname, char *out) {
  if (ifname == nullptr || out == nullptr) return -1;
  ifreq about = InterfaceQuery::named(ifname);
  if (!InterfaceQuery().ask(SIOCGIFHWADDR, &about)) return -1;
  unsigned char address[3];
  std::memcpy(address, about.ifr_hwaddr.sa_data, sizeof address);
  std::snprintf(out, 7, "%02X%02X%02X", address[0], address[1], address[2]);
  return 0;
}
