// How the device is reached: cloud key, nick name, and the web service's HTTPS.
#include "src/frame/rows.hpp"
#include "src/frame/shell.hpp"

#include <kova/radio.h>

#include <cstring>

namespace kova::access {

namespace {

constexpr Rule cloud_key_rule = rule_of(7, 24), nick_name_rule = rule_of(7, 25),
               https_port_rule = rule_of(41, 1), https_rule = rule_of(41, 2);
constexpr OwnKey cloud_key = OWN("TR_CLOUDKEY"), nick_name = OWN("TR_NICKNAME");
constexpr const char *web_filter_event = "fw_sec_ddos_filter";

int set_own(OwnKey key, const char *value, Rule rule) {
  if (!passes_unmarked(rule, text_or_empty(value))) return -1;
  store(key.current(), text_or_empty(value));
  return 0;
}

// Unlike other switches, anything that is not off is on.
const char *switch_digit(const char *value) {
  return strcasestr(value, "FALSE") != nullptr || equal(value, "0") ? "0" : "1";
}

int set_and_restart_web_service(const char *key, const char *value, Rule rule) {
  if (!passes_unmarked(rule, value)) return -1;
  store(key, value);
  kova_trigger_cpe_event("ce_webservice_reinit");
  pause_for(3);
  kova_trigger_cpe_event(web_filter_event);
  kova_trigger_cpe_event("fw_remote_web_access_filter");
  return 0;
}

} // namespace

} // namespace kova::access

using namespace kova;
using namespace kova::access;

int kovaGetTR069CloudkeyValue(char *buf, unsigned int buflen) {
  return answer_stored(cloud_key.current(), buf, buflen);
}
int kovaSetTR069CloudkeyValue(const char *value) {
  return set_own(cloud_key, value, cloud_key_rule);
}

int kovaGetTR069NickNameValue(char *buf, unsigned int buflen) {
  return answer_stored(nick_name.current(), buf, buflen);
}
int kovaSetTR069NickNameValue(const char *value) {
  return set_own(nick_name, value, nick_name_rule);
}

STORED(kovaGetTR069HttpsEnable, "https_enable")
int kovaSetTR069HttpsEnable(const char *value) {
  return is_empty(value) ? -1 : set_and_restart_web_service("https_enable", switch_digit(value), https_rule);
}

STORED(kovaGetTR069HttpsPort, "https_port")
int kovaSetTR069HttpsPort(const char *value) {
  return set_and_restart_web_service("https_port", text_or_empty(value), https_port_rule);
}

STORED(kovaGetTR069HttpsWanEnable, "TR_WEB_LOGIN_ENABLE")
int kovaSetTR069HttpsWanEnable(const char *value) {
  if (is_empty(value)) return -1;
  store("TR_WEB_LOGIN_ENABLE", switch_digit(value));
  kova_trigger_cpe_event(web_filter_event);
  return 0;
}
