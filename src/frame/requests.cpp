// Requests to the service-control daemon: each opens its own connection, sends one record and closes. Whoever
// asks is not told about a failure: a setting is stored whether or not its service is there to hear of it.
#include "src/frame/channel.hpp"

#include <kova/frame.h>

#include <cstring>

namespace {

using namespace kova::channel;

constexpr std::size_t longest_text = 256;

void request(uint32_t command, const char *text = nullptr) {
  MsgHandle handle;
  if (const int error = msg_handleInit(agent_type, &handle); error != 0) {
    dbg_trace("Fail to init msghandle, error(%d)\n", error);
    return;
  }
  alignas(MsgRecord) unsigned char area[1024] = {};
  auto *rec = reinterpret_cast<MsgRecord *>(area);
  msg_init(rec, daemon_type, command);
  if (text != nullptr) msg_setData(rec, text, static_cast<uint32_t>(std::strlen(text)));
  if (const int error = msg_send(&handle, rec); error != 0) dbg_trace("msg_send() error(%d)\n", error);
  msg_handleCleanup(&handle);
}

// A text that is too long is not sent, not cut: a cut command line would run something else.
void request_with_text(const char *name, uint32_t command, const char *text) {
  if (text == nullptr) return;
  const std::size_t length = std::strlen(text);
  if (length == 0 || length > longest_text) {
    dbg_trace("%s(): the length of launch_cmd is %d\n", name, static_cast<int>(length));
    return;
  }
  request(command, text);
}

} // namespace

#define REQUEST(name, command)                                                                               \
  void name(void) {                                                                                          \
    request(command);                                                                                        \
  }
#define TEXT_REQUEST(name, command)                                                                          \
  void name(const char *text) {                                                                              \
    request_with_text(#name, command, text);                                                                 \
  }
#include "src/frame/requests.def"

void restartPingWatchdog(void) {}
