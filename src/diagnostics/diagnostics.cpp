// The diagnostics tests' parameters.
#include "src/diagnostics/diagnostics_rows.hpp"
#include "src/diagnostics/keys.hpp"
#include "src/diagnostics/udp_echo_statistics.hpp"
#include "src/frame/rows.hpp"
#include "src/frame/trace.hpp"
#include "src/lists/row_list.hpp"
#include "src/transaction/park.hpp"

#include <kova/accounts.h>
#include <kova/diagnostics.h>
#include <kova/security.h>

namespace kova::diagnostics {

namespace {

// A state's key stands in its row without a section: it is told by a word before the first test.
int tell(OwnKey state_key, char *buf, unsigned int buflen) {
  const Text state = load(runtime(state_key));
  return answer(state.empty() ? "None" : state, buf, buflen);
}
int tell(Key key, char *buf, unsigned int buflen) {
  return answer_stored(key, buf, buflen);
}

int keep(OwnKey state_key, const char *value, const Condition &) {
  return set_as_given(runtime(state_key), value);
}
int keep(Key key, const char *value, const Condition &) {
  return set_as_given(key, value);
}

// What the echo server counts, and where the last reading is kept.
struct Counted {
  OwnKey key;
  EchoStatistic statistic;
};
int answer_statistic(Counted what, char *buf, unsigned int buflen) {
  if (buf == nullptr || buflen == 0) return -1;
  const Text text = read_echo_statistic(what.statistic);
  store(runtime(what.key), text); // every read refreshes the stored copy
  return answer(text, buf, buflen);
}

// Judges a value that takes no part in its group: the tool is not told of it.
int judge(const char *value, bool (*holds)(const char *)) {
  if (value != nullptr && holds(value)) return 0;
  dbg_trace("[TR069]set diagnostics Error, value(%s) error\n", text_or_empty(value));
  return -1;
}

int check(const char *name, const char *value, const Condition &condition, Place place) {
  return judge(value, condition.holds) == 0 ? park(place, name, value) : -1;
}

int check_named(const char *name, const char *value, const Condition &condition, Place place) {
  return name == nullptr ? -1 : check(name, value, condition, place);
}

// Answers the judgement alone, of what an agent asks before it sets it.
int answer_judgement(const char *value, Rule rule) {
  return passes(rule, text_or_empty(value)) ? 0 : -1;
}
int answer_judgement(const char *value, const Condition &condition) {
  return condition.holds(text_or_empty(value)) ? 0 : -1;
}

} // namespace

} // namespace kova::diagnostics

using namespace kova;
using namespace kova::diagnostics;

// An input that is only kept: its tool is not told. A judgement alone.
#define LONE(getter, setter, checker, key, condition)                                                        \
  RESULT(getter, setter, key) KOVA_CHECK(checker, judge(value, (condition).holds))
#define JUDGE(setter, may_be) KOVA_SET(setter, answer_judgement(value, may_be))
#include "src/diagnostics/diagnostics.def"

// The server's switch, whose checker wants the parameter's name.
RESULT(getTR069UDPEchoConfigEnable, setTR069UDPEchoConfigEnable, runtime(key::udp_echo_enable))
KOVA_CHECK(chkTR069UDPEchoConfigEnable,
           check_named(name, value, zero_or_one, {gPVCL.udpEchoTouched, gPVCL.udpEchoEnable}))

int kovaGetDiagnosticsRouteHopsHopHost(int index, char *out, unsigned int outlen) {
  const Text hosts = load("ROUTEHOPS_HOPHOST");
  const int count = firewall_getRuleNums(hosts);
  if (index < 1 || index > count) {
    dbg_trace("Rule index %d out of range %d!\n", index, count);
    return -1;
  }
  if (getNthField(index - 1, hosts, ';', out, static_cast<int>(outlen)) == 0) return 0;
  dbg_trace("Fail to get rule %d from rules '%s'!\n", index, hosts.chars);
  return -1;
}
