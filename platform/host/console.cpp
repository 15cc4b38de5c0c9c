// The console of a development host is standard error. What it is told is kept too, for whoever asks.
#include "platform/host/console_admin.hpp"
#include "platform/host/latest.hpp"
#include "platform/nvram.h"

#include <unistd.h>

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <string>

namespace {

std::string formatted(const char *format, va_list arguments) {
  va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, arguments);
  std::string text(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
  std::vsnprintf(text.data(), text.size() + 1, format, again);
  va_end(again);
  return text;
}

// Never destroyed: others' exit handlers may still log.
kova::host::Latest<std::string> &lines() {
  static auto &latest = *new kova::host::Latest<std::string>;
  return latest;
}
std::atomic<bool> quiet = false;

} // namespace

std::vector<std::string> kova::host::take_console_lines() {
  return lines().take();
}

void kova::host::console_quiet(bool on) {
  quiet = on;
}

void tarn_log_console(const char *format, ...) {
  if (format == nullptr) return;
  va_list arguments;
  va_start(arguments, format);
  std::string line = formatted(format, arguments);
  va_end(arguments);
  if (line.ends_with('\n')) line.pop_back();
  lines().add(line);
  if (quiet) return;
  line += '\n';
  // One write, so that lines of several processes do not mix. Nobody can be told when it fails.
  [[maybe_unused]] const auto written = write(STDERR_FILENO, line.data(), line.size());
}

void tarn_log_type0(int event, int severity, int module) {
  tarn_log_console("event %d, severity %d, module %d", event, severity, module);
}
