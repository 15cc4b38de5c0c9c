#include "src/frame/shell.hpp"

#include "src/frame/text.hpp"

#include <kova/frame.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace kova {

void escape_for_double_quotes(const char *text, char *out) {
  for (; *text != '\0'; ++text) {
    if (std::strchr("$`\"\\", *text) != nullptr) *out++ = '\\';
    *out++ = *text;
  }
  *out = '\0';
}

void run(const char *command) {
  [[maybe_unused]] const int status =
      std::system(command); // NOLINT(cert-env33-c): device commands are shell lines
}

void pause_for(unsigned int seconds) {
  while (seconds > 0)
    seconds = sleep(seconds); // a signal does not cut it short
}

} // namespace kova

char *shell_cmd(const char *cmd, char *out, int outlen) {
  if (cmd == nullptr) return nullptr;
  FILE *pipe = popen(cmd, "r");
  if (pipe == nullptr) return nullptr;
  const std::size_t room = out != nullptr && outlen > 0 ? static_cast<std::size_t>(outlen) : 0;
  std::size_t total = 0;
  char piece[256];
  while (std::fgets(piece, sizeof piece, pipe) != nullptr) {
    const std::size_t length = std::strlen(piece);
    if (total + length >= room) {
      if (room > 0) out[total] = '\0';
      break;
    }
    std::memcpy(out + total, piece, length + 1);
    total += length;
  }
  pclose(pipe);
  return out;
}

void sasSyslogMessage(const char *format, ...) {
  kova::Text message;
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(message.chars, sizeof message.chars, kova::text_or_empty(format), arguments);
  va_end(arguments);

  char escaped[2 * sizeof message.chars];
  kova::escape_for_double_quotes(message, escaped);
  char command[sizeof escaped + 64];
  std::snprintf(command, sizeof command, "logger -p 5 -t easycwmpd \"%s\"", escaped);
  kova::run(command);
}

// Always terminated, unlike other getters: the path goes straight into a command line.
int kovaGetUpgradeScript(char *buf, unsigned int buflen) {
  if (buf != nullptr) std::snprintf(buf, buflen, "%s", "/etc/sysconfig/script/tr069_fwupdate.sh");
  return 0;
}
