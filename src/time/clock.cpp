// The clock: network time, the current time, date-time texts.
#include "platform/keys.hpp"
#include "src/frame/rows.hpp"
#include "src/frame/shell.hpp"
#include "src/time/daylight_saving.hpp"

#include <kova/time.h>
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace kova::time {

namespace {

// The script alone synchronises the clock; with its argument it derives the zone text from the settings.
constexpr const char *ntp_script = "/etc/sysconfig/script/ntp.sh",
                     *zone_script = "/etc/sysconfig/script/ntp.sh envTZ";

// Copies at most 31 characters; "%%" reads as "%", any other directive has nothing to format and refuses the text.
bool copy_date_text(const char *text, char (&copy)[32]) {
  std::size_t length = 0;
  for (; *text != '\0'; ++text) {
    if (*text == '%' && *++text != '%') return false;
    if (length < sizeof copy - 1) copy[length++] = *text;
  }
  copy[length] = '\0';
  return true;
}

// A field's number, 0 for a text that is none; kept small enough to reckon with.
int small_number(const char *field) {
  constexpr long bound = 1000000;
  const long number = std::strtol(field, nullptr, 10);
  return static_cast<int>(number < -bound ? -bound : number > bound ? bound : number);
}

int set(Key key, const char *value, Rule rule) {
  return passes(rule, text_or_empty(value)) ? set_as_given(key, value) : -1;
}

int set_daylight_saving(Key key, const char *value, Rule rule) {
  return zone_has_daylight_saving() ? set(key, value, rule) : -1;
}

int synchronise() {
  SyncfromNetworkTime();
  return 0;
}

} // namespace

} // namespace kova::time

using namespace kova;
using namespace kova::time;

#include "src/time/time.def"

int kovaGetCurrentLocalTime(char *buf, unsigned int) {
  if (buf == nullptr) return -1;
  const time_t now = std::time(nullptr);
  tm date;
  localtime_r(&now, &date);
  setDateTime(buf, &date);
  return 0;
}

int SyncfromNetworkTime(void) {
  run(zone_script);
  const Text zone = load("envTZ");
  if (!zone.empty()) {
    setenv("TZ", zone, 1); // NOLINT(concurrency-mt-unsafe): the library is called from one thread
    tzset();
  }
  const int status = std::system(ntp_script); // NOLINT(cert-env33-c): device commands are shell lines
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

int getDateTime(const char *text, struct tm *tm) {
  char copy[32];
  if (tm == nullptr || !copy_date_text(text_or_empty(text), copy)) return -1;
  int fields[6]; // year, month, day, hour, minute, second
  char *rest = nullptr;
  const char *field = strtok_r(copy, " -T:", &rest);
  for (int &number : fields) {
    if (field == nullptr) return -1;
    number = small_number(field);
    field = strtok_r(nullptr, "-T:", &rest);
  }
  *tm = {};
  tm->tm_year = fields[0] - 1900;
  tm->tm_mon = fields[1] - 1;
  tm->tm_mday = fields[2];
  tm->tm_hour = fields[3];
  tm->tm_min = fields[4];
  tm->tm_sec = fields[5];
  tm->tm_isdst = -1;
  return 0;
}

void setDateTime(char *dst, const struct tm *tm) {
  if (dst == nullptr || tm == nullptr) return;
  std::snprintf(dst, Text::size, "%04d-%02d-%02dT%02d:%02d:%02d", tm->tm_year + 1900, tm->tm_mon + 1,
                tm->tm_mday, tm->tm_hour, tm->tm_min, tm->tm_sec);
}
