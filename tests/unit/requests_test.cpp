// Requests to the service daemon, and CPE events.
#include "fake/fake.hpp"

using fake::platform;
using fake::Strings;

namespace {

class Requests : public fake::Test {};

TEST_F(Requests, CarryATextThatIsNeitherEmptyNorTooLong) {
  const std::string longest(256, 't'), too_long(257, 't');
  Strings sent = {"request 0x10000022"};
  mrhd_restart_Wan_ACL();
  for (const auto &[request, code] :
       {std::pair{&mrhd_launch_dlDiag, "0x10000008"}, {&mrhd_abort_tracerouteDiag, "0x10000020"}}) {
    for (const char *text : {static_cast<const char *>(nullptr), "", "t", longest.c_str(), too_long.c_str()})
      request(text);
    sent.push_back(std::string("request ") + code + " t");
    sent.push_back(std::string("request ") + code + " " + longest);
  }
  restartPingWatchdog();
  EXPECT_EQ(platform.done, sent);

  platform.done.clear();
  for (const int takes : {0, 1}) {
    platform.whole_sends = takes;
    mrhd_launch_dlDiag("text");
  }
  platform.daemon = false;
  mrhd_restart_wifi();
  EXPECT_TRUE(platform.done.empty()); // and nobody is told
}

TEST_F(Requests, EventsByNumber) {
  const std::pair<const char *, const char *> events[] = {
      // of the primary and of the secondary instance
      {"ce_system_reboot", "ce_system_reboot"},
      {"ce_system_reset", "ce_system_reset"},
      {"ce_tr069_stop", "ce_sec_tr069_stop"},
      {"ce_tr069_start", "ce_sec_tr069_start"},
      {"ce_tr069_config_changed", "ce_sec_tr069_config_changed"},
      {"ce_webservice_reinit", "ce_webservice_reinit"},
      {"fw_sec_ddos_filter", "fw_sec_ddos_filter"}};
  const char *const methods[] = {"notify", "call", "is_busy"};
  for (gSecondaryInstance = 0; gSecondaryInstance < 2; ++gSecondaryInstance)
    for (int i = 0; i < 21; ++i) {
      const auto &[primary, secondary] = events[i % 7];
      EXPECT_EQ(kovaSendTR069CpeEvent(i / 7, static_cast<unsigned int>(i % 7)), 0);
      EXPECT_EQ(platform.done.back(), std::string("run /usr/bin/test_cpeevent ") + methods[i / 7] + " " +
                                          (gSecondaryInstance == 1 ? secondary : primary));
    }
  platform.done.clear();
  for (const auto &[method, event] : {std::pair{0, 7U}, {3, 0U}, {-1, 0U}})
    EXPECT_EQ(kovaSendTR069CpeEvent(method, event), -1);
  EXPECT_TRUE(platform.done.empty());
}

TEST_F(Requests, EventTextReachesTheToolAsText) {
  const std::string longest(234, '$'), too_long(235, 'e');
  std::string escaped;
  for (std::size_t i = 0; i < longest.size(); ++i)
    escaped += "\\$";
  for (const char *text : {"", longest.c_str(), too_long.c_str(), static_cast<const char *>(nullptr)})
    kova_trigger_cpe_event(text);
  EXPECT_EQ(platform.done, Strings{"run test_cpeevent call \"" + escaped + "\""});
}

} // namespace
