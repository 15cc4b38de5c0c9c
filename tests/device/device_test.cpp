// Life of a device: creation, boot, daemon, reset, removal, and several at once.
#include "booted_device.hpp"
#include "device/factory.hpp"
#include "device/log.hpp"
#include "device/service.hpp"
#include "platform/host/nvram_admin.hpp"
#include "platform/host/tree_admin.hpp"

#include <kova/lan.h>
#include <sys/stat.h>
#include <sys/sysinfo.h>

#include <map>

namespace kova::test {
namespace {

using device::status;

std::string nvram(int section, const std::string &key) {
  return host::nvram_find(section, key).value_or("(none)");
}
void store(int section, const std::string &key, const std::string &value) {
  const host::NvramEntry entry{section, key, value};
  host::nvram_store({&entry, 1});
}

std::vector<std::string> changes(const BootedDevice &device) {
  std::vector<std::string> names;
  for (const auto &record : device.log("device"))
    names.push_back(record.at("what"));
  return names;
}

void expect_complete() {
  const auto now = status();
  EXPECT_TRUE(now.created);
  EXPECT_TRUE(now.booted);
  EXPECT_TRUE(now.serviced);
  for (const auto &entry : device::factory_settings(device::identity_of(now.serial)))
    EXPECT_TRUE(host::nvram_find(entry.section, entry.key)) << entry.key;
  EXPECT_EQ(host::tree_leaves().size(), device::factory_tree().size());
  EXPECT_EQ(nvram(9, "lte_data_state"), "3");
  EXPECT_TRUE(fs::exists(now.directory / "root/var/config/tarn_dhcpd.leases"));
  EXPECT_EQ(system("test_cpeevent call probe"), 0);
}

TEST(Device, FirstUseCreatesAndEachBootClearsTheRunTimeSectionOnly) {
  const BootedDevice device;
  EXPECT_FALSE(status().created);
  EXPECT_TRUE(device.run([] {
    device::up();
    expect_complete();
    EXPECT_EQ(nvram(0, "lan_ip"), "192.168.1.1");
    store(0, "lan_ip", "10.0.0.1");
    store(9, "TR_PINGDIAG_STATE", "Complete");
    device::up();
    EXPECT_EQ(nvram(9, "TR_PINGDIAG_STATE"), "Complete");
    std::ofstream(status().directory / "root/tmp/tr069_left_over") << "x";

    device::down();
    EXPECT_FALSE(status().booted || status().serviced);
    EXPECT_FALSE(fs::exists(status().directory / "root/tmp/mrhd_socket"));
    device::ensure_booted();
    expect_complete();
    EXPECT_EQ(nvram(0, "lan_ip"), "10.0.0.1");
    EXPECT_EQ(nvram(9, "TR_PINGDIAG_STATE"), "(none)");
    EXPECT_FALSE(fs::exists(status().directory / "root/tmp/tr069_left_over"));

    std::ofstream(status().directory / "run/booted") << "an earlier boot of the host\n";
    EXPECT_FALSE(status().booted);
    device::up();
    expect_complete();
  }));
  EXPECT_EQ(changes(device), (std::vector<std::string>{"created", "booted", "stopped", "booted", "booted"}));
}

TEST(Device, ResetReturnsToFactorySettingsAndAnEmptyLog) {
  const BootedDevice device;
  EXPECT_TRUE(device.run([&] {
    device::up();
    store(0, "lan_ip", "10.0.0.1");
    store(0, "not_a_factory_key", "x");
    device::reset();
    expect_complete();
    EXPECT_EQ(nvram(0, "lan_ip"), "192.168.1.1");
    EXPECT_EQ(nvram(0, "not_a_factory_key"), "(none)");
    EXPECT_EQ(changes(device), (std::vector<std::string>{"created", "booted"}));
    // A reset that was interrupted is finished by the next use.
    store(0, "lan_ip", "10.0.0.1");
    std::ofstream(status().directory / "run/resetting") << "";
    device::ensure_booted();
    EXPECT_EQ(nvram(0, "lan_ip"), "192.168.1.1");
  }));
}

TEST(Device, AKillAtAnyInstantOfTheFirstUseLeavesADeviceThatTheNextCompletes) {
  for (int delay = 0; delay <= 60; delay += 6) {
    const BootedDevice device;
    unsetenv("KOVA_FEED"); // it is started too
    const pid_t child = device.start([] { device::up(); });
    std::this_thread::sleep_for(std::chrono::milliseconds(delay));
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    EXPECT_TRUE(device.run([] {
      device::up();
      expect_complete();
    })) << delay;
  }
}

TEST(Device, CreationKeepsWhatTheStoresHold) {
  const BootedDevice device;
  EXPECT_TRUE(device.run([] {
    store(0, "lan_ip", "10.0.0.1");
    host::tree_store(std::vector<host::TreeLeaf>{{"/tarn/cm_config/apnprofile/apn2/mtu", "1400"}});
    device::up();
    expect_complete();
    EXPECT_EQ(nvram(0, "lan_ip"), "10.0.0.1");
    EXPECT_EQ(host::tree_leaves("/tarn/cm_config/apnprofile/apn2/mtu").at(0).second, "1400");
  }));
}

TEST(Device, ConcurrentFirstUsesCreateOnce) {
  const BootedDevice device;
  std::vector<pid_t> users(4);
  for (pid_t &user : users)
    user = device.start([] {
      device::ensure_booted();
      expect_complete();
    });
  for (const pid_t user : users)
    EXPECT_TRUE(succeeded(user));
  EXPECT_EQ(changes(device), (std::vector<std::string>{"created", "booted"}));
}

TEST(Device, ADeadDaemonIsSeenAndOnlyUpStartsItAgain) {
  const BootedDevice device;
  device.bring_up();
  const pid_t first = status().serviced.value();
  kill(first, SIGKILL);
  while (status().serviced)
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  device::ensure_booted();
  EXPECT_FALSE(status().serviced);
  EXPECT_TRUE(status().booted);
  EXPECT_TRUE(fs::exists(device.directory() / "root/tmp/mrhd_socket")); // left behind by the dead one
  device::up();
  EXPECT_TRUE(status().serviced && status().serviced != first);
  EXPECT_EQ(changes(device).back(), "daemon restarted");
}

TEST(Device, DevicesSideBySideDoNotMeet) {
  const BootedDevice one, other;
  one.bring_up();
  other.bring_up();
  EXPECT_TRUE(one.run([] {
    store(0, "lan_ip", "10.0.0.1");
    EXPECT_EQ(system("kern eth phyr"), 0);
  }));
  EXPECT_TRUE(other.run([] { EXPECT_EQ(nvram(0, "lan_ip"), "192.168.1.1"); }));
  EXPECT_EQ(one.log("command").size() - other.log("command").size(), 1U);
  one.select();
  device::down();
  other.select();
  EXPECT_TRUE(status().serviced);
}

TEST(Device, IsNotBootedWhereItCannotBe) {
  const BootedDevice device;
  setenv("KOVA_LIBEXEC", device.top().c_str(), 1);
  EXPECT_THROW(device::up(), std::runtime_error);
  EXPECT_FALSE(status().booted);
  unsetenv("KOVA_LIBEXEC");
}

// Names, and the texts of the files.
std::map<std::string, std::string> contents(const fs::path &directory) {
  std::map<std::string, std::string> all;
  for (const auto &entry : fs::recursive_directory_iterator(directory)) {
    std::ifstream file(entry.path());
    all[entry.path()] = entry.is_regular_file() ? std::string(std::istreambuf_iterator<char>(file), {}) : "";
  }
  return all;
}

TEST(Device, WhatIsNotItsOwnIsNotTouched) {
  const BootedDevice device;
  fs::create_directories(device.directory() / "bin");
  std::ofstream(device.directory() / "bin/mine") << "mine";
  fs::create_symlink("mine", device.directory() / "bin/link");
  const auto before = contents(device.top());
  for (void (*use)() : {+[] { device::up(); }, +[] { device::ensure_booted(); }, +[] { device::down(); },
                        +[] { device::reset(); }, +[] { device::remove(); }, +[] { device::status(); }})
    EXPECT_THROW(use(), std::runtime_error);
  EXPECT_EQ(contents(device.top()), before);
  fs::rename(device.directory(), device.top() / "mine");

  device.bring_up();
  device::down();
  std::ofstream(device.directory() / "bin/script") << "mine";
  device.bring_up();
  EXPECT_TRUE(fs::exists(device.directory() / "bin/script")); // only links are the device's there
  device::down();
  fs::rename(device.directory() / "bin", device.top() / "bin");
  fs::create_directory_symlink(device.top() / "mine/bin", device.directory() / "bin");
  EXPECT_THROW(device::up(), std::runtime_error) << "what is behind a link is another's";
  fs::remove(device.directory() / "bin");
  std::ofstream(device.directory() / "notes") << "mine";
  device::remove();
  EXPECT_EQ(contents(device.directory()).size(), 1U) << "the notes";
  EXPECT_EQ(contents(device.top() / "mine").size(), 3U);
}

TEST(Device, IsRemovedWithItsDaemon) {
  const BootedDevice device;
  device.bring_up();
  const pid_t daemon = status().serviced.value();
  device::remove();
  EXPECT_FALSE(fs::exists(device.directory()));
  EXPECT_TRUE(eventually([&] { return kill(daemon, 0) != 0; }));
  EXPECT_THROW(device::remove(), std::runtime_error);
}

TEST(Device, BelongsToItsUserAlone) {
  const BootedDevice device;
  unsetenv("KOVA_FEED");
  umask(0);
  device.bring_up();
  EXPECT_TRUE(device.run([] {
    const device::Turn turn;
    EXPECT_EQ(system("logger hello; /home/www/cgi-bin/maintenance.cgi exportlog"), 0);
  }));
  umask(022);
  for (const auto &entry : fs::recursive_directory_iterator(device.directory()))
    EXPECT_TRUE(entry.is_symlink() || (entry.status().permissions() & fs::perms(077)) == fs::perms::none)
        << entry.path();
  if (geteuid() != 0) return;
  fs::permissions(device.top(), fs::perms(0755));
  EXPECT_TRUE(device.run([] {
    ASSERT_EQ(setuid(65534), 0);
    EXPECT_THROW(status(), std::runtime_error);
    EXPECT_THROW(device::down(), std::runtime_error);
  }));
}

// In place of the installation's: a daemon that is slow to come up.
TEST(Device, NobodyMeetsADaemonOnItsWayWhoseStarterWasKilled) {
  const BootedDevice device;
  const fs::path libexec = device.top() / "libexec", log = device.top() / "began";
  fs::create_directory(libexec);
  for (const char *name : {"kova-standin", "kova-diag", "kova-serviced"}) {
    std::ofstream(libexec / name) << "#!/bin/sh\necho > '" << log.string() << "'\nsleep 1\necho > '"
                                  << log.string() << ".end'\n";
    fs::permissions(libexec / name, fs::perms::owner_all);
  }
  setenv("KOVA_LIBEXEC", libexec.c_str(), 1);
  const pid_t starter = device.start([] { device::up(); });
  EXPECT_TRUE(eventually([&] { return fs::exists(log); }));
  kill(starter, SIGKILL);
  waitpid(starter, nullptr, 0);
  unsetenv("KOVA_LIBEXEC");
  device.bring_up();
  EXPECT_TRUE(fs::exists(log.string() + ".end"));
}

TEST(Device, TurnsOfReadersAndWriters) {
  using device::Turn;
  constexpr std::chrono::seconds at_once(0), patient(60);
  const BootedDevice device;
  device.bring_up();
  {
    const Turn one(Turn::Kind::reading, at_once), other(Turn::Kind::reading, at_once);
    EXPECT_THROW(Turn(Turn::Kind::changing, at_once), std::runtime_error);
  }
  std::optional<Turn> change(std::in_place, Turn::Kind::changing, at_once);
  try {
    const Turn reading(Turn::Kind::reading, at_once);
    ADD_FAILURE() << "a change is under way";
  } catch (const std::runtime_error &error) {
    EXPECT_NE(std::string(error.what()).find("process " + std::to_string(getpid())), std::string::npos);
  }
  change.reset();
  // Readers that come one after the other do not keep out who waits for all of them.
  std::vector<pid_t> readers(3);
  for (pid_t &reader : readers)
    reader = device.start([] {
      while (true)
        const Turn reading(Turn::Kind::reading, patient);
    });
  for (int i = 0; i < 20; i++)
    EXPECT_NO_THROW(Turn(Turn::Kind::changing, patient));
  for (const pid_t reader : readers) {
    kill(reader, SIGKILL);
    waitpid(reader, nullptr, 0);
  }
}

TEST(Device, ADaemonThatHangsHoldsUpNobody) {
  const BootedDevice device;
  device.bring_up();
  const pid_t daemon = status().serviced.value();
  kill(daemon, SIGSTOP);
  try {
    const device::Turn turn;
    ADD_FAILURE() << "its services would not hear of a change";
  } catch (const std::runtime_error &error) {
    EXPECT_NE(std::string(error.what()).find("(process " + std::to_string(daemon)), std::string::npos);
  }
  const device::Turn reading(device::Turn::Kind::reading);
  EXPECT_TRUE(device.run(device::reboot));
  EXPECT_NE(status().serviced.value_or(daemon), daemon);
}

TEST(Device, AnAgentRunsWhileItHasAServer) {
  const BootedDevice device;
  const device::Daemon &agent = device::management_agents[1];
  const auto runs = [&agent] { return device::daemon_pid(agent).has_value(); };
  device.bring_up();
  EXPECT_FALSE(runs());
  EXPECT_TRUE(device.run([&] {
    store(0, agent.setting, "http://127.0.0.1:1/");
    device::start_agents();
    const auto first = device::daemon_pid(agent);
    ASSERT_TRUE(first);
    device::start_agents();
    EXPECT_EQ(device::daemon_pid(agent), first);
    device::reboot();
    EXPECT_TRUE(runs() && device::daemon_pid(agent) != first);
    device::reset([&] {
      EXPECT_FALSE(runs()) << "its settings are not back yet";
      store(0, agent.setting, "http://127.0.0.1:1/");
    });
    EXPECT_TRUE(runs());
    device::reset();
    EXPECT_FALSE(runs());
  }));
}

TEST(Device, TheLogIsBounded) {
  const BootedDevice device;
  device.bring_up();
  const fs::path log = device::log_file();
  std::ofstream(log, std::ios::app) << std::string(5 << 20, ' ') << '\n';
  const auto size = fs::file_size(log);
  std::vector<pid_t> writers(4);
  for (pid_t &writer : writers)
    writer = device.start([] { device::log_record({{"kind", "event"}, {"pid", getpid()}}); });
  for (const pid_t writer : writers)
    EXPECT_TRUE(succeeded(writer));
  EXPECT_GE(fs::file_size(device::earlier_log_file()), size);
  EXPECT_LT(fs::file_size(log), 1000U);
  EXPECT_FALSE(device.log("event").empty());
}

TEST(Identity, IsTheDevicesOwnAndLasts) {
  const BootedDevice one, other;
  const auto facts = [](const BootedDevice &device) {
    device.select();
    std::map<std::string, std::string> values;
    EXPECT_TRUE(device.run([] {
      for (const char *key : {"CACHE_SN", "IMEI", "imei_infostr", "lan_mac", "wlan_mac"})
        std::ofstream(status().directory / key) << nvram(9, key);
      std::ofstream(status().directory / "user") << nvram(0, "TR_ACS_USER");
    }));
    for (const char *key : {"CACHE_SN", "IMEI", "imei_infostr", "lan_mac", "wlan_mac", "user"})
      std::getline(std::ifstream(device.directory() / key), values[key]);
    return values;
  };
  EXPECT_TRUE(one.run([] { device::up({.serial = "KV-7"}); }));
  other.bring_up();
  const auto ours = facts(one), theirs = facts(other);
  EXPECT_EQ(ours.at("CACHE_SN"), "KV-7");
  EXPECT_EQ(ours.at("user"), "021122-KV100-KV-7");
  for (const auto &[key, value] : ours)
    EXPECT_NE(value, theirs.at(key)) << key;
  EXPECT_NE(ours.at("lan_mac"), ours.at("wlan_mac"));
  one.select();
  EXPECT_TRUE(one.run([] {
    EXPECT_THROW(device::up({.serial = "KV-8"}), std::runtime_error);
    device::reset();
    device::reboot();
  }));
  EXPECT_EQ(facts(one), ours);

  for (const char *serial : {"KV-7", "KV0000000042", "x"}) {
    int sum = 0; // Luhn's
    const std::string imei = device::identity_of(serial).imei;
    ASSERT_EQ(imei.size(), 15U);
    for (std::size_t i = 0; i < imei.size(); i++) {
      const int value = (imei[i] - '0') * (i % 2 == 1 ? 2 : 1);
      sum += value / 10 + value % 10;
    }
    EXPECT_EQ(sum % 10, 0) << imei;
  }
  const BootedDevice none;
  for (const std::string &serial :
       {std::string(), std::string("a b"), std::string(33, 'x'), std::string("$(id)")})
    EXPECT_THROW(device::up({.serial = serial}), std::runtime_error);
  EXPECT_FALSE(fs::exists(none.directory()));
}

TEST(Machine, IsASmallRouterWithItsOwnUpTimeAndLan) {
  const BootedDevice device;
  struct sysinfo facts {};
  unsetenv("KOVA_DEVICE");
  ASSERT_EQ(sysinfo(&facts), 0);
  const auto host_memory = facts.totalram;
  const long host_up_time = facts.uptime;
  device.select();
  device.bring_up();
  ASSERT_EQ(sysinfo(&facts), 0);
  EXPECT_EQ(facts.totalram, 128UL << 20);
  EXPECT_NE(facts.totalram, host_memory);
  EXPECT_LE(facts.freeram, facts.totalram);
  const long up_time = facts.uptime;
  EXPECT_TRUE(up_time > 0 && (up_time < host_up_time || host_up_time < 60));
  EXPECT_TRUE(eventually([&] { return sysinfo(&facts) == 0 && facts.uptime > up_time; }));

  EXPECT_TRUE(device.run([] {
    char mac[256] = "";
    kovaGetTR069LANMacAddress(mac, sizeof mac);
    EXPECT_EQ(mac, device::with_colons(nvram(9, "lan_mac")));
  }));
  EXPECT_EQ(getLanSpeed("eth0"), 1000);
  std::ofstream(device.directory() / "root/var/config/tarn_dhcpd.leases") << "";
  EXPECT_EQ(getLanSpeed("eth0"), -1);
}

} // namespace
} // namespace kova::test
