/* channel: the service-control channel: its message layer, and the requests to the daemon. */
#ifndef KOVA_CHANNEL_H
#define KOVA_CHANNEL_H

#include <kova/accessors.h>
#include <stdint.h>

KOVA_BEGIN_EXPORTS

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

KOVA_END_EXPORTS

#endif
