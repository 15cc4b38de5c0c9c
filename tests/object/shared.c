/* What library and executable share by name: the exported data, with an executable at a fixed address, and the traces, which
 * an executable may take. */
#include <kova/frame.h>
#include <kova/transaction.h>
#include <kova/wan.h>
#include <stdio.h>
#include <string.h>

#define EXPECT(condition)                                                                                    \
  if (!(condition)) {                                                                                        \
    printf("not so: %s\n", #condition);                                                                      \
    return 1;                                                                                                \
  }

static int traces;
void dbg_trace(const char *format, ...) {
  (void)format;
  traces++;
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

  traces = 0;
  EXPECT(tarnIsL3Vpn() == 0);
  EXPECT(traces > 0);
  return 0;
}
