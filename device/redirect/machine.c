// The machine that the device is: its up time and memory, the address of its LAN and the link of its Ethernet
// port.
#include "device/redirect/paths.h"

#include <fcntl.h>
#include <linux/ethtool.h>
#include <linux/sockios.h>
#include <net/if.h>
#include <net/if_arp.h>
#include <stdarg.h>
#include <stdbool.h>
#include <stdio.h>
#include <string.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysinfo.h>
#include <unistd.h>

static const char lan[] = "br0", port[] = "eth0";

typedef struct {
  long started; // second of the host's up time
  unsigned char lan_mac[6];
} Hardware;

// What the device's boot wrote; false without one.
static bool read_hardware(Hardware *hardware) {
  char path[DEVICE_PATH_ROOM + sizeof "/run/hardware"], text[64] = "";
  if (device_directory(path) == NULL) return false;
  strcat(path, "/run/hardware");
  const int file = open(path, O_RDONLY | O_CLOEXEC);
  if (file < 0) return false;
  const ssize_t length = read(file, text, sizeof text - 1);
  close(file);
  unsigned char *mac = hardware->lan_mac;
  return length > 0 && sscanf(text, "%ld %hhx:%hhx:%hhx:%hhx:%hhx:%hhx", &hardware->started, mac, mac + 1,
                              mac + 2, mac + 3, mac + 4, mac + 5) == 7;
}

__extension__ int sysinfo(struct sysinfo *facts) {
  const int result = NEXT(sysinfo)(facts);
  Hardware hardware;
  if (result != 0 || !read_hardware(&hardware)) return result;
  facts->uptime -= hardware.started;
  // Half is taken by the router's own programs, and the rest is as free as the host's.
  const unsigned long total = 128UL << 20;
  const double free_part = (double)facts->freeram / (double)facts->totalram;
  facts->totalram = total;
  facts->freeram = (unsigned long)((double)total * free_part / 2) / 4096 * 4096;
  facts->sharedram = facts->bufferram = facts->totalswap = facts->freeswap = facts->totalhigh =
      facts->freehigh = 0;
  facts->mem_unit = 1;
  return 0;
}

// As long as clients have addresses of the LAN.
static bool has_link(void) {
  char room[DEVICE_PATH_ROOM];
  struct stat leases;
  return stat(device_path("/var/config/tarn_dhcpd.leases", room), &leases) == 0 && leases.st_size > 0;
}

static bool names(const struct ifreq *about, const char *interface) {
  return strncmp(about->ifr_name, interface, IFNAMSIZ) == 0;
}

static bool answer_port(void *command) {
  const unsigned megabits = 1000;
  struct ethtool_value *value = command;
  struct ethtool_cmd *settings = command;
  if (value->cmd == ETHTOOL_GLINK) {
    value->data = has_link();
    return true;
  }
  if (value->cmd != ETHTOOL_GSET) return false;
  settings->speed = (unsigned short)(has_link() ? megabits : 0);
  settings->speed_hi = 0;
  settings->duplex = DUPLEX_FULL;
  return true;
}

int ioctl(int fd, unsigned long request, ...) {
  va_list rest;
  va_start(rest, request);
  void *argument = va_arg(rest, void *);
  va_end(rest);
  Hardware hardware;
  if (request == SIOCGIFHWADDR && names(argument, lan) && read_hardware(&hardware)) {
    struct ifreq *about = argument;
    about->ifr_hwaddr.sa_family = ARPHRD_ETHER;
    memcpy(about->ifr_hwaddr.sa_data, hardware.lan_mac, sizeof hardware.lan_mac);
    return 0;
  }
  if (request == SIOCETHTOOL && names(argument, port) && read_hardware(&hardware) &&
      answer_port(((struct ifreq *)argument)->ifr_data))
    return 0;
  return NEXT(ioctl)(fd, request, argument);
}
