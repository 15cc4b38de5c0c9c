// What the device says about itself. Both management instances report the same device.
#include "platform/nvram.h"
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

using kova::answer;
using kova::answer_whole;
using kova::Key;
using kova::load;
using kova::runtime;
using kova::Section;
using kova::Text;

namespace {

int answer_number(long number, char *buf, unsigned int buflen) {
  char text[24];
  std::snprintf(text, sizeof text, "%ld", number);
  return answer(text, buf, buflen);
}

// Seconds; 0 when the kernel cannot tell.
long up_time() {
  struct sysinfo facts;
  return sysinfo(&facts) == 0 ? static_cast<long>(facts.uptime) : 0;
}

// In units of 1000 bytes, whatever unit the kernel counts in.
int answer_memory(unsigned long (*amount)(const struct sysinfo &), char *buf, unsigned int buflen) {
  struct sysinfo facts;
  if (sysinfo(&facts) != 0) {
    answer("", buf, buflen);
    return -1;
  }
  return answer_number(static_cast<long>(amount(facts) / 1000), buf, buflen);
}

bool is_stored(Key key) {
  return !load(key).empty();
}

} // namespace

#define WHOLE(getter, key)                                                                                   \
  int getter(char *buf, unsigned int buflen) {                                                               \
    return answer_whole(key, buf, buflen);                                                                   \
  }

// clang-format off
WHOLE(               kovaGetTR069DeviceSummary,             "TR_DEVSUM")
WHOLE(               kovaGetTR069Manufacturer,              "TR_MF")
WHOLE(               kovaGetTR069ManufacturerOUI,           "TR_OUI")
WHOLE(               kovaGetTR069ModelName,                 "ProductName")
WHOLE(               kovaGetTR069Description,               "WEB_NAME")
WHOLE(               kovaGetTR069ProductClass,              "TR_ProductClass")
WHOLE(               kovaGetTR069SpecVersion,               "TR_SpecVer")
WHOLE(               kovaGetTR069ProvisioningCode,          "TR_PROVCODE")
STORED(kovaGetTR069AdditionalSoftwareVersion, "TR_AddSoftVer")
STORED(kovaGetTR069MapnQos, "/cwmp/MapnQos")
STORED(kovaGetTR069ModemFirmwareVersion, ::kova::runtime("TR_MODEM_VER"))
CONSTANT(kovaGetTR069SoftwareVersion,           "KovAE_BG_1.8.11.37")
// clang-format on

int kovaGetTR069SerialNumber(char *buf, unsigned int buflen) {
  return answer_whole(runtime(is_stored(runtime("CACHE_SN")) ? "CACHE_SN" : "IMEI"), buf, buflen);
}

// "TR_HardVer" is never a source.
int kovaGetTR069HardwareVersion(char *buf, unsigned int buflen) {
  for (const char *key : {"CACHE_HW_VER", "HW_VER"})
    if (const Text version = load(runtime(key)); !version.empty()) return answer(version, buf, buflen);
  return answer("N/A", buf, buflen);
}

int kovaSetTR069ProvisioningCode(const char *value) {
  kova::store("TR_PROVCODE", kova::text_or_empty(value));
  SyncfromNetworkTime();
  return 0;
}

int kovaSetTR069MapnQos(const char *) {
  return 0;
}

int kovaGetTR069UpTime(char *buf, unsigned int buflen) {
  return answer_number(up_time(), buf, buflen);
}

int kovaGetTR069ConntionTime(char *buf, unsigned int buflen) {
  const long connected_at = std::atol(load(runtime("lte_conn_uptime"))); // NOLINT(cert-err34-c)
  const long now = up_time();
  return answer_number(connected_at > 0 && connected_at < now ? now - connected_at : 0, buf, buflen);
}

int kovaGetTR069MemoryStatusTotal(char *buf, unsigned int buflen) {
  return answer_memory([](const struct sysinfo &facts) -> unsigned long { return facts.totalram; }, buf,
                       buflen);
}

int kovaGetTR069MemoryStatusFree(char *buf, unsigned int buflen) {
  return answer_memory([](const struct sysinfo &facts) -> unsigned long { return facts.freeram; }, buf,
                       buflen);
}

int kovaGetTR069DeviceLog(char *buf, unsigned int) {
  if (buf == nullptr) return -1;
  kova::run("rm -f /tmp/M4412_Log.dat");
  kova::run("/home/www/cgi-bin/maintenance.cgi exportlog");
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
  ifreq about = kova::InterfaceQuery::named(ifname);
  if (!kova::InterfaceQuery().ask(SIOCGIFHWADDR, &about)) return -1;
  unsigned char address[3];
  std::memcpy(address, about.ifr_hwaddr.sa_data, sizeof address);
  std::snprintf(out, 7, "%02X%02X%02X", address[0], address[1], address[2]);
  return 0;
}
