/* A minimal CWMP agent: one SetParameterValues request in its three phases.
 *
 *   agent 192.168.7.1 192.168.7.100 192.168.7.200     moves the LAN and its DHCP pool
 *
 * On a development machine run it on a virtual device, or it works on the machine itself:
 *   kovactl device up; KOVA_DEVICE=DIR LD_PRELOAD=.../kova/libkova_redirect.so ./agent ...
 *
 * Build it against an installed library: see CMakeLists.txt beside it, or
 *   cc agent.c $(pkg-config --cflags --libs kova) */
#include <kova/lan.h>
#include <kova/transaction.h>
#include <stdio.h>
#include <string.h>

struct parameter {
  const char *name;
  kova_getter *get;
  kova_setter *set;
  kova_checker *check;
};

static const struct parameter parameters[] = {
    {"LAN.IPAddress", getTR069LANIPAddress, setTR069LANIPAddress, chkTR069LANIPAddress},
    {"LAN.DHCPPoolStart", getTR069DHCPPoolStartIP, setTR069DHCPPoolStartIP, chkTR069DHCPPoolStartIP},
    {"LAN.DHCPPoolEnd", getTR069DHCPPoolEndIP, setTR069DHCPPoolEndIP, chkTR069DHCPPoolEndIP},
};
enum { count = sizeof parameters / sizeof parameters[0] };

static int set_all(char *values[]) {
  char faults[1024] = ""; /* room for every name of the request */
  int refused = 0;

  /* Phase 1: each value by itself. A request with a refused value ends here. */
  for (int i = 0; i < count; ++i)
    if (parameters[i].check(parameters[i].name, values[i]) != 0) {
      fprintf(stderr, "9007 Invalid parameter value: %s\n", parameters[i].name);
      refused = 1;
    }
  if (refused) return 1;

  /* Phase 2: all values together, once. */
  if (kovaCheckTR069ParameterValues(faults, sizeof faults) != 0) {
    fprintf(stderr, "9007 Invalid parameter value: %s\n", faults);
    return 1;
  }

  /* Phase 3: store. */
  for (int i = 0; i < count; ++i)
    if (parameters[i].set(values[i]) != 0) return 1;
  return 0;
}

int main(int argc, char *argv[]) {
  const int status = argc == count + 1 ? set_all(argv + 1) : 0;
  for (int i = 0; i < count; ++i) {
    char value[256 + 1] = ""; /* a getter fills its buffer without a terminator if it must */
    if (parameters[i].get(value, sizeof value - 1) == 0) printf("%-18s %s\n", parameters[i].name, value);
  }
  return status;
}
