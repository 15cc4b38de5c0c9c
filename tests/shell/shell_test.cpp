// No value ever becomes shell syntax: every accessor of the model with hostile values from every side, and whatever
// command line comes of it is run by a real shell.
#include "fake/fake.hpp"
#include "model/model.hpp"
#include "sandbox.hpp"

#include <kova/accounts.h>
#include <kova/management.h>
#include <kova/time.h>
#include <kova/transaction.h>

#include <set>

namespace kova::test {
namespace {

using fake::platform;

const std::string hostile_values[] = {
    // passed by the markup check
    "`pwn`",
    "$pwn ${pwn:=`pwn`} & pwn ; pwn #",
    "a\npwn\n",
    "`pwn`" + std::string(300, '`'),
    "pwn" + std::string(300, '$'),
    // refused by it
    "$(pwn)",
    "\"; pwn; \"",
    "'; pwn; '",
    "\\pwn\\",
    "\\\"; pwn; \\\"",
    "pwn | pwn > pwned < pwned",
    "`pwn`" + std::string(247, '"') + "pwn" + std::string(100, '\\'),
};
// They reach what depends on a value that is in order.
const std::string plain_values[] = {"", "0", "1", "2", "10.1.2.3", "Requested"};

class Shell : public fake::Test {
protected:
  // Everything with this value, on a platform where all that can be read reads as the other one.
  void sweep(const std::string &value, const std::string &stored, bool hostile) {
    SCOPED_TRACE("the value " + value + ", stored " + stored);
    hostile_ = hostile;
    ready_ = {};
    ready_.otherwise = stored;
    ready_.judges = false;
    ready_.files["/tmp/voip-call-status.txt"] = "Idle";
    ready_.uptime = 1000000;
    if (!hostile) // APN profiles that go together: the first carries data, the others are off
      for (const char profile : std::string("12345678")) {
        const std::string path = std::string("tarn/cm_config/apnprofile/apn") + profile;
        ready_.tree[path + "/enable"] = profile == '1' ? "1" : "0";
        ready_.tree[path + "/apply_to"] = "0";
      }
    ready_.interfaces = {{stored, "10.1.2.3", "255.0.0.0", 100, "02:11:22:33:44:55"}};
    platform = ready_;
    setBindInterface(stored.c_str());
    for (const model::Parameter *parameter : model::parameters())
      call(*parameter, value.c_str());
    for (const model::Parameter *parameter : model::parameters())
      if (parameter->check) parameter->check.call(parameter->path.data(), value.c_str());
    validate();
    for (const model::RowList &list : model::lists())
      call(list, value.c_str());
    call_others(value);
  }

  // The beginnings of what was run.
  bool ran(const std::string &beginning) const {
    const auto line = lines_.lower_bound(beginning);
    return line != lines_.end() && line->starts_with(beginning);
  }
  std::size_t texts_followed() const { return texts_followed_; }

private:
  void call(const model::Parameter &parameter, const char *value) {
    if (parameter.check) {
      parameter.check.call(parameter.path.data(), value);
      validate();
    }
    if (parameter.set) parameter.set.call(value);
    take();
    std::string answer(4096, '\0');
    if (parameter.get) parameter.get.call(answer.data(), 255);
    take();
  }

  void call(const model::RowList &list, const char *value) {
    if (list.add) list.add.call();
    if (list.set) list.set.call(1, value);
    list.rows();
    if (list.remove) list.remove.call(1);
    take();
  }

  // What no path is bound to.
  void call_others(const std::string &value) {
    sasSyslogMessage("%s", value.c_str());
    take(value);
    kova_trigger_cpe_event(value.c_str());
    take(value);
    for (const int event : {0, 1, 2, 3, 4, 5, 6})
      kovaSendTR069CpeEvent(event % KOVA_CLASS_MAX, static_cast<unsigned int>(event));
    for (const int mode : {1, 2})
      backup_restore_settings(mode);
    for (kova_setter *set :
         {setTR069PingWatchdogEnable, setTR069PingWatchdogIPAddress, setTR069PingWatchdogTimeout})
      set(value.c_str());
    init_parameters();
    kova_nat_cfg_changed();
    SyncfromNetworkTime();
    char interface[64] = {};
    get_default_route_if(interface, sizeof interface);
    take();
  }

  void validate() {
    std::string faults(1 << 14, '\0');
    kovaCheckTR069ParameterValues(faults.data(), static_cast<int>(faults.size()));
  }

  // Judges the commands since the last time. A setter that logs has stored just before what it logs; the text is given
  // for what logs it otherwise.
  void take(const std::string &text = "") {
    std::string before;
    for (const std::string &done : platform.done) {
      if (done.starts_with("run "))
        judge(done.substr(4), before.starts_with("nvram ") ? "set " + before.substr(sizeof "nvram 0") : text);
      before = done;
    }
    for (const std::string &line : platform.piped)
      judge(line, text);
    platform = ready_;
  }

  void judge(const std::string &line, const std::string &text) {
    if (!lines_.insert(line).second || !hostile_) return;
    const Sandbox::Outcome outcome = sandbox_.run(line);
    EXPECT_FALSE(outcome.intruded) << line;
    if (line.find("pwn") == std::string::npos) return;
    EXPECT_EQ(outcome.text, text.substr(0, 255)) << line;
    ++texts_followed_;
  }

  const Sandbox sandbox_;
  fake::Platform ready_;
  bool hostile_ = false;
  std::set<std::string> lines_;
  std::size_t texts_followed_ = 0;
};

TEST_F(Shell, RunsNoValueAndChangesNone) {
  for (gSecondaryInstance = 0; gSecondaryInstance < 2; ++gSecondaryInstance) {
    for (const std::string &value : plain_values)
      for (const std::string &stored : plain_values)
        sweep(value, stored, false);
    for (const std::string &hostile : hostile_values) {
      sweep(hostile, hostile, true);
      for (const std::string &plain : plain_values) {
        sweep(hostile, plain, true);
        sweep(plain, hostile, true);
      }
    }
  }
  EXPECT_GT(texts_followed(), 150U) << "did the setters run?";
  for (const char *beginning : {"/etc/sysconfig/script/ntp.sh envTZ",
                                "/etc/sysconfig/script/firewall_clear_rule.sh SIP",
                                "/home/www/cgi-bin/maintenance.cgi exportlog",
                                "/usr/bin/test_cpeevent notify ce_system_reboot",
                                "/usr/bin/test_cpeevent notify ce_sec_tr069_start",
                                "cat /tmp/M4412_Log.dat",
                                "cp /proc/wlan0-va2/sta_info ",
                                "logger -p 5 -t easycwmpd \"set SAS_FCCID=",
                                "rm -f /tmp/M4412_Log.dat",
                                "rm -rf /var/log/.backup_settings",
                                "route | awk ",
                                "sc disable 1",
                                "sc ipchg",
                                "sleep 2; kern eth phyr",
                                "test_cpeevent call \"ce_ipv4_nat stop\"",
                                "test_cpeevent call \"ce_set_mtu\"",
                                "test_cpeevent call \"ce_snmp_start\"",
                                "test_cpeevent call \"ce_vpn stop\"",
                                "test_cpeevent call \"ce_webservice_reinit\"",
                                "test_cpeevent call \"fw_sip_rule\"",
                                "test_cpeevent call 'ce_oper_mode stop'",
                                "test_cpeevent call 'ce_set_mtu'",
                                "ucfg set config lan eth ENABLE 0; brctl "})
    EXPECT_TRUE(ran(beginning)) << beginning;
}

} // namespace
} // namespace kova::test
