// What an agent's start may have to put right.
#include "platform/keys.hpp"
#include "src/frame/settings.hpp"

#include <kova/frame.h>
#include <sys/stat.h>
#include <unistd.h>

int isFTR(void) {
  constexpr int no = 0, yes = 1, unknown = -1;
  constexpr const char *tag_key = "TR_TAG"; // one tag for both instances: they are one executable
  kova::Text executable;
  if (readlink("/proc/self/exe", executable.chars, kova::Text::size - 1) < 0) return unknown;
  struct stat facts;
  if (stat(executable, &facts) != 0) return unknown;

  const kova::NumberText modified(facts.st_mtime);
  char recorded[32];
  kova::load(tag_key, recorded);
  if (kova::equal(recorded, modified)) return no;
  kova::store(tag_key, modified);
  return yes;
}

int init_parameters(void) {
  const int first_run = isFTR();
  if (first_run != 1) return first_run;
  // Earlier firmware shipped an inform interval of 3000 seconds; ACS fleets expect 300.
  char interval[15];
  kova::load(kova::key::inform_interval, interval);
  if (kova::leading_number(interval) == 3000) {
    kova::store(kova::key::inform_interval, "300");
    kova::store("S_TR_INFORM_INTERVAL", "300");
  }
  return 0;
}
