/* frame: what every accessor family stands on: the accessor shapes, the management instance, the
 * service-control channel, CPE events, and the network and host look-ups.
 *
 * All functions are plain C and are to be called from one thread. A NULL text is taken as the empty text,
 * where nothing else is said. */
#ifndef KOVA_FRAME_H
#define KOVA_FRAME_H

#include <stdint.h>

/* Between these two stand a header's exported declarations; everything else in the library is hidden. */
#ifdef __cplusplus
#define KOVA_BEGIN_EXPORTS                                                                                   \
  extern "C" {                                                                                               \
  _Pragma("GCC visibility push(default)")
#define KOVA_END_EXPORTS                                                                                     \
  _Pragma("GCC visibility pop")                                                                              \
  }
#else
#define KOVA_BEGIN_EXPORTS _Pragma("GCC visibility push(default)")
#define KOVA_END_EXPORTS _Pragma("GCC visibility pop")
#endif

KOVA_BEGIN_EXPORTS

/* ---- Accessor shapes ----------------------------------------------------------------------------------- */

/* Writes the value as text into buf, padded with NULs up to buflen. A value of buflen characters or more
 * fills buf without a terminator, where nothing else is said: give room for 256 bytes. 0, or -1 on failure.
 * A setting of the key/value store that was never stored reads as "". */
typedef int kova_getter(char *buf, unsigned int buflen);
/* Stores the value: 0, or -1 when it is refused (nothing is stored then). */
typedef int kova_setter(const char *value);
/* Judges one value of a request: 0, or -1 when it is refused. Checkers of grouped parameters park the
 * accepted pair for the batch validation (transaction/transaction.h). paramName is the full parameter
 * name. */
typedef int kova_checker(const char *paramName, const char *value);

/* ---- Process-wide state -------------------------------------------------------------------------------- */

/* 1: every accessor serves the secondary management instance, with its own keys, tools and events. */
extern uint32_t gSecondaryInstance;
/* Interface to which the agent is bound, at most 31 characters; empty: not bound. */
extern char gBindInterface[32];

/* Selects the secondary instance for the life of the process. */
void setSecondaryInstance(void);
/* Keeps the first 31 characters of ifname; NULL or "" means not bound. */
void setBindInterface(const char *ifname);

/* ---- Shared routines ----------------------------------------------------------------------------------- */

/* Receives every debug message and discards it: the place for a debugger's breakpoint. */
void dbg_trace(const char *format, ...) __attribute__((format(printf, 1, 2)));
/* Runs cmd in a shell and collects its output in out, which the caller has zeroed. Output that does not
 * fit is dropped from the first line (or 255-character piece of a line) that does not fit whole. Returns
 * out, or NULL with out untouched when the command could not be started or is NULL. */
char *shell_cmd(const char *cmd, char *out, int outlen);
/* Removes leading and trailing newlines in place; returns s. */
char *trim_string_newline(char *s);
/* Is this the first run since the agent's executable changed? 1 yes (from now on it is not), 0 no, -1
 * unknown. */
int isFTR(void);
/* To be called once at the agent's start: corrects settings that earlier firmware left behind. 0, or
 * isFTR's -1. */
int init_parameters(void);
/* Writes one line to the system log, cut at 255 characters. */
void sasSyslogMessage(const char *format, ...) __attribute__((format(printf, 1, 2)));

/* ---- Service-control channel --------------------------------------------------------------------------- */

/* Results of the msg_ calls. */
enum {
  MSG_ERR_ARGUMENT = -1001,  /* a required argument is NULL, or a size is too small */
  MSG_ERR_NO_DAEMON = -1002, /* the socket file does not exist */
  MSG_ERR_SOCKET = -1003,
  MSG_ERR_CLOEXEC = -1004,
  MSG_ERR_CONNECT = -1005,
  MSG_ERR_ANNOUNCE = -1006, /* the connect announcement could not be sent */
  MSG_ERR_PEER_CLOSED = -1008,
  MSG_ERR_SEND = -1009,       /* a record could not be sent whole */
  MSG_ERR_NO_CONFIRM = -1010, /* no confirmation within 10 seconds */
  MSG_ERR_WRONG_CONFIRM = -1011,
  MSG_ERR_RECEIVE = -1012,
  MSG_ERR_TIMEOUT = -1013,
  MSG_ERR_CLOSED = -1015, /* the handle is closed */
  MSG_ERR_SHORT_HEADER = -1016,
  MSG_ERR_NOT_FOR_US = -1017 /* a record for another client type */
};

typedef struct {
  uint32_t pid, clientType;
  int32_t fd; /* -1: closed */
} MsgHandle;

/* A 36-byte header in the host's byte order, then `length` payload bytes. The caller owns a buffer large
 * enough. */
__extension__ typedef struct {
  uint32_t magic; /* the bytes 'M','R','H','D' */
  uint32_t sourcePid, sourceType, destinationType;
  uint32_t command, confirm, cookie, wordData, length;
  unsigned char payload[];
} MsgRecord;

int msg_handleInit(uint32_t clientType, MsgHandle *handle); /* 0, or -1001 .. -1006 */
void msg_handleCleanup(MsgHandle *handle);
void msg_init(MsgRecord *rec, uint32_t destinationType,
              uint32_t command); /* clears the header, not the payload */
void msg_setWordData(MsgRecord *rec, uint32_t word);
void msg_setData(MsgRecord *rec, const void *bytes, uint32_t count); /* at most 2048 bytes are taken */
int msg_send(MsgHandle *handle, MsgRecord *rec);
/* Sends and waits at most 10 seconds; the daemon's result, or a negative code. */
int msg_sendComfirm(MsgHandle *handle, MsgRecord *rec);
/* Reads one record into buf, which holds size bytes; the number of bytes received, or a negative code. A
 * payload of more than 2012 bytes is left in the socket. */
int msg_receive(MsgHandle *handle, void *buf, int size);
int msg_receiveWithTimeout(MsgHandle *handle, void *buf, int size,
                           int seconds); /* below 1 second: 10 seconds */

/* Requests to the service-control daemon. Without a daemon they do nothing. */
void mrhd_flush_lte_network(void);
void mrhd_restart_wifi(void);
void mrhd_restart_dhcp_server(void);
void mrhd_update_apncfg(void);
void mrhd_restart_Wan_ACL(void);
void mrhd_opermode_network_restart(void);
void restartPingWatchdog(void); /* sends nothing: the watchdog's own service restarts it */
/* A text of 1 to 256 characters: a tool's command line to launch, its bare name to stop. Other texts are
 * not sent. */
void mrhd_launch_dlDiag(const char *commandLine);
void mrhd_abort_dlDiag(const char *tool);
void mrhd_launch_ulDiag(const char *commandLine);
void mrhd_abort_ulDiag(const char *tool);
void mrhd_launch_udpEchoServer(const char *commandLine);
void mrhd_shutdown_udpEchoServer(const char *tool);
void mrhd_launch_pingDiag(const char *commandLine);
void mrhd_abort_pingDiag(const char *tool);
void mrhd_launch_tracerouteDiag(const char *commandLine);
void mrhd_abort_tracerouteDiag(const char *tool);

/* ---- CPE events and small look-ups --------------------------------------------------------------------- */

enum { KOVA_CLASS_MAX = 3, KOVA_EVT_MAX = 7 };
/* Methods: 0 "notify", 1 "call", 2 "is_busy". Events: 0 system reboot, 1 system reset, 2 agent stop, 3
 * agent start, 4 agent configuration changed, 5 web service re-init, 6 denial-of-service filter. 0, or -1
 * for any other number. */
int kovaSendTR069CpeEvent(int method, unsigned int event);
/* Delivers a free-form event text of 1 to 234 characters. */
void kova_trigger_cpe_event(const char *event);
/* Announces changed NAT settings; in the VPN mode the IPv4 NAT service is restarted, which takes 3
 * seconds. */
void kova_nat_cfg_changed(void);
int kova_get_oper_mode(void);     /* operation mode 0 .. 3, 0 when it is not set */
kova_getter kovaGetUpgradeScript; /* path of the firmware update script; always terminated */
kova_getter kovaGetTR069If;       /* interface of the management traffic; -1 and "" while it has none */

/* ---- Network and host look-ups ------------------------------------------------------------------------- */

typedef struct {
  unsigned char mac[6];
  unsigned char ip[4];
} LanInfo;

int get_interface_ip(const char *ifname, char *out, int outlen); /* dotted IPv4 address; 0, or -1 */
/* Interface of the default route, or the empty text; out is zeroed by the caller. Always 0. */
int get_default_route_if(char *out, int outlen);
int check_net_interface(const char *ifname); /* 0: it exists, -1 */
/* Host of "scheme://host[:port][/path]", at most 255 characters; 0, or -1 for a text that is empty or has
 * no "//". */
int get_hostname_from_http_url(const char *url, char *out, int outlen);
int hostname_type(const char *host); /* 2: digits and dots only, 1: a name, -1: empty */
/* Interface whose own network holds the IPv4 address: 0 found, 1 none does, -1 the kernel cannot tell or
 * the address is empty. */
int get_route_ifname(const char *ip, char *out, int outlen);
int getLanSpeed(const char *ifname); /* Mbit/s, -1 without a link */
const char *getLanIfName(void);      /* the LAN bridge */
/* The neighbours on the LAN bridge. There is no capacity: list must have room for every line of the ARP
 * table. */
void getLanInfoList(LanInfo *list, int *count);
/* 0, or -1 when value holds markup or shell quoting, plain or percent-encoded. ";" and "&" are allowed. */
int checkXSSattack(const char *value);
int _getOperationMode(void); /* operation mode 0, 1 or 2; mode 3 reads as 0 */
/* 1 when a and b, and a and c, lie in the same network under mask, else 0. */
int IPRangeCheck(const char *a, const char *mask, const char *b, const char *c);
int checkDHCPRelayIsNotSupport(
    void); /* 1: the operation mode with its VPN rules DHCP relay out, 0: it is possible */
/* Field number index (from 0) of a comma-separated text, which is split in place; empty fields do not
 * count. NULL when there are fewer. */
char *getparametersInfo(char *s, int index);
char *getnetparametersInfo(char *s, int index);
/* Formats a byte count as "N bytes", "N KB", "N.NN MB" or "N.NN GB". */
void changeUnit(const char *count, char *out, int outlen);
/* Traffic counter of "eth0", "wlan0" or "lte0pdn": 0 received bytes, 1 received packets, 2 sent bytes, 3
 * sent packets. Byte counts carry a unit in the first form; an unknown name or index reads as 0. The caller
 * frees the text, which is NULL only without memory. */
char *getInterfaceStatistic(const char *ifname, int index);
char *getInterfaceStatistic_unitnochange(const char *ifname, int index);
int getWanIfName(void); /* 1: data runs over eth0.1, 2: over eth0.2, 0: neither */

KOVA_END_EXPORTS

#endif
