/* What library and executable share by name: the exported data, with an executable at a fixed address, and the traces, which
 * an executable may take. */
#include <errno.h>
#include <fcntl.h>
#include <kova/frame.h>
#include <kova/radio.h>
#include <kova/transaction.h>
#include <kova/wan.h>
#include <stdarg.h>
#include <stdio.h>
#include <string.h>
#include <sys/sysinfo.h>

#define EXPECT(condition)                                                                                    \
  if (!(condition)) {                                                                                        \
    printf("not so: %s\n", #condition);                                                                      \
    return 1;                                                                                                \
  }

static char trace[512];
void dbg_trace(const char *format, ...) {
  va_list values;
  va_start(values, format);
  vsnprintf(trace, sizeof trace, format, values);
  va_end(values);
}

/* The rate sampler's file is there, and the machine tells nothing of itself: no error number is negative in a trace. */
int open(const char *path, int flags, ...) {
  return strcmp(path, "/var/rate_info") == 0 ? fileno(tmpfile()) : openat(AT_FDCWD, path, flags, 0600);
}
__extension__ int sysinfo(struct sysinfo *facts) {
  (void)facts;
  errno = -1;
  return -1;
}

int main(void) {
  char faults[256] = "";

  EXPECT(gSecondaryInstance == 0);
  setSecondaryInstance();
  EXPECT(gSecondaryInstance == 1);

  setBindInterface("lte0pdn0");
  EXPECT(strcmp(gBindInterface, "lte0pdn0") == 0);

  /* Parked by the executable, judged and released by the library: DHCP mode 2 is always refused. */
  pvcl_set_slot(&gPVCL.dhcpServerEnable, "Name", "2");
  gPVCL.lanTouched = 1;
  EXPECT(kovaCheckTR069ParameterValues(faults, sizeof faults) == -1);
  EXPECT(strcmp(faults, "Name") == 0);
  EXPECT(gPVCL.lanTouched == 0 && gPVCL.dhcpServerEnable.name == NULL);

  trace[0] = '\0';
  EXPECT(tarnIsL3Vpn() == 0);
  EXPECT(trace[0] != '\0');
  char rate[256] = "";
  EXPECT(kovaGetTR069WANDLCurRateValue(rate, sizeof rate) == 0 && strcmp(rate, "N/A") == 0);
  EXPECT(strstr(trace, "Fail to get sysinfo,errno:4294967295, reason:") != NULL);
  return 0;
}
