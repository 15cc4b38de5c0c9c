// Life of a device: creation, boot, daemon, reset, and several at once.
#include "booted_device.hpp"
#include "device/factory.hpp"
#include "platform/host/nvram_admin.hpp"
#include "platform/host/tree_admin.hpp"

#include <chrono>
#include <thread>

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
  for (const auto &entry : device::factory_settings())
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
    const pid_t child = device.start(device::up);
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
  std::ofstream(device.directory()) << "in the way";
  EXPECT_THROW(device::up(), std::runtime_error);
  fs::remove(device.directory());
  setenv("KOVA_LIBEXEC", device.top().c_str(), 1);
  EXPECT_THROW(device::up(), std::runtime_error);
  EXPECT_FALSE(status().booted);
  unsetenv("KOVA_LIBEXEC");
}

} // namespace
} // namespace kova::test
