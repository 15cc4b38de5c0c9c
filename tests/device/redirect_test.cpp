// Path redirection, linked ahead of libc and preloaded: what a program and its commands see, and what stays
// theirs.
#include "booted_device.hpp"
#include "device/routes.hpp"
#include "platform/host/nvram_admin.hpp"

#include <fcntl.h>
#include <kova/frame.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/un.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <sstream>

namespace kova::test {
namespace {

// Asks the kernel, past every redirection.
bool on_host(const char *path) {
  return syscall(SYS_faccessat, AT_FDCWD, path, F_OK) == 0;
}

std::string text_of(const fs::path &path) {
  std::ostringstream text;
  text << std::ifstream(path).rdbuf();
  return text.str();
}

std::string output_of(const std::string &command) {
  FILE *pipe = popen(command.c_str(), "r");
  std::array<char, 4096> text{};
  const std::size_t length = fread(text.data(), 1, text.size() - 1, pipe);
  EXPECT_EQ(pclose(pipe), 0) << command;
  return std::string(text.data(), length);
}

class Redirect : public ::testing::Test {
protected:
  // A name that a shell or a preload list would take apart, and too long for a socket address.
  const BootedDevice device_{fs::path("it's a \"device\": $(home)") / std::string(120, 'd')};
  void SetUp() override { device_.bring_up(); }
  fs::path root(const std::string &path) const { return device_.directory() / ("root" + path); }
};

TEST_F(Redirect, FilesOfTheDeviceLieBelowItsRoot) {
  const char *path = "/var/config/probe", *other = "/tmp/tr069_probe";
  FILE *file = fopen(path, "w");
  ASSERT_NE(file, nullptr);
  fputs("one", file);
  fclose(file);
  EXPECT_EQ(text_of(root(path)), "one");
  EXPECT_FALSE(on_host(path));
  struct stat about {};
  EXPECT_TRUE(stat(path, &about) == 0 && about.st_size == 3);
  EXPECT_EQ(access(path, R_OK), 0);
  EXPECT_EQ(rename(path, other), 0);
  EXPECT_EQ(text_of(root(other)), "one");
  const int fd = open(other, O_RDONLY);
  EXPECT_GE(fd, 0);
  close(fd);
  EXPECT_EQ(unlink(other), 0);
  EXPECT_FALSE(fs::exists(root(other)));
}

TEST_F(Redirect, WhatIsNotTheDevicesStaysWhereItIs) {
  const fs::path own = device_.top() / "mrhd_socket";
  std::ofstream(own) << "mine";
  EXPECT_TRUE(on_host(own.c_str()));
  EXPECT_EQ(fopen("/var/config/../config/tarn_dhcpd.leases", "r"), nullptr);
  EXPECT_NE(access("/tmp/mrhd_socket.other", F_OK), 0);
  unsetenv("KOVA_DEVICE");
  EXPECT_NE(access("/proc/wlan0/sta_info", F_OK), 0);
  setenv("OWN", "7", 1);
  EXPECT_EQ(WEXITSTATUS(system("exit $OWN")), 7);
}

TEST_F(Redirect, CommandsSeeTheDeviceOnlyAndChangeNothingOfTheHost) {
  setenv("OWN", "7", 1);
  EXPECT_EQ(system("ucfg set config lan eth ENABLE 0; brctl delif br0 eth0; ifconfig eth0 down"), 0);
  EXPECT_EQ(system("/usr/bin/test_cpeevent call ce_tr069_config_changed"), 0);
  EXPECT_EQ(system("test_cpeevent call \"fw_nat_cfg changed\""), 0);
  EXPECT_EQ(system("cp /proc/wlan0/sta_info /tmp/tr069_wlan0_sta_info && rm -f /tmp/M4412_Log.dat"), 0);
  EXPECT_EQ(text_of(root("/tmp/tr069_wlan0_sta_info")), text_of(root("/proc/wlan0/sta_info")));
  EXPECT_FALSE(on_host("/tmp/tr069_wlan0_sta_info"));
  EXPECT_EQ(WEXITSTATUS(system("ls")), 127);
  EXPECT_EQ(output_of("echo \"[$OWN]\""), "[]\n");
  EXPECT_STREQ(getenv("OWN"), "7");
  EXPECT_EQ(output_of("cat /proc/net/arp | grep -c br0"), "2\n");

  const auto commands = device_.log("command");
  ASSERT_EQ(commands.size(), 3U);
  EXPECT_EQ(commands[0].at("args"), R"(["set","config","lan","eth","ENABLE","0"])");
  EXPECT_EQ(commands[2].at("program"), "ifconfig");
  EXPECT_EQ(commands[2].at("pid"), std::to_string(getpid()));
  const auto events = device_.log("event");
  ASSERT_EQ(events.size(), 2U);
  EXPECT_EQ(events[0].at("event"), "ce_tr069_config_changed");
  EXPECT_EQ(events[1].at("event"), "fw_nat_cfg changed");
  EXPECT_NE(system("test_cpeevent push 2>/dev/null"), 0);
}

TEST_F(Redirect, WhoManagesTheDeviceIsANeighbour) {
  EXPECT_TRUE(device_.run([] {
    const std::string manager = host::nvram_find(9, "curr_user_ip").value();
    EXPECT_EQ(output_of("grep -c '^" + manager + " ' /proc/net/arp"), "1\n");
  }));
}

TEST_F(Redirect, TheTelephoneLineIsIdleAndItsProgramsLogWhatTheyAreAsked) {
  EXPECT_EQ(output_of("cat /tmp/voip-call-status.txt /tmp/voip-reg-status.txt"), "Idle\nRegistered\n");
  EXPECT_EQ(system("sc ipchg && /etc/sysconfig/script/firewall_clear_rule.sh SIP && sc disable 1"), 0);
  std::vector<std::string> asked;
  for (const auto &record : device_.log("command"))
    asked.push_back(record.at("program") + record.at("args"));
  EXPECT_EQ(asked, (std::vector<std::string>{R"(sc["ipchg"])", R"(firewall_clear_rule.sh["SIP"])",
                                             R"(sc["disable","1"])"}));
}

TEST_F(Redirect, RouteShowsTheHostsDefaultInterfaceInTheEighthColumn) {
  const std::string found = output_of("route | awk '/default/{print $8; exit}'");
  EXPECT_EQ(found.empty() ? "lo" : found.substr(0, found.size() - 1), device::default_interface());
  EXPECT_EQ(system("route add default gw 192.0.2.1"), 0);
  EXPECT_EQ(device_.log("command").size(), 1U); // the question is not logged
}

TEST_F(Redirect, TheDaemonIsReachedThroughALongNameAndConfirms) {
  EXPECT_EQ(confirmed(0x10000009, std::string("a\xff\0\n", 4)), 0);
  const auto records = device_.log("service");
  ASSERT_EQ(records.size(), 1U);
  EXPECT_EQ(records[0].at("request"), "unknown");
  EXPECT_EQ(records[0].at("command"), "0x10000009");
  EXPECT_EQ(records[0].at("pid"), std::to_string(getpid()));
  EXPECT_EQ(records[0].at("payload"), std::string("a\uFFFD\0\n", 6));
}

TEST_F(Redirect, ADaemonThatTakesNoConnectionIsNotWaitedForWithoutEnd) {
  kill(device::status().serviced.value(), SIGKILL);
  EXPECT_TRUE(device_.run([] {
    const sockaddr_un address{AF_UNIX, "/tmp/mrhd_socket"};
    const auto call = [&address](auto *function) {
      const int made = socket(AF_UNIX, SOCK_STREAM, 0); // open until the process ends
      return function(made, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0 ? made : -1;
    };
    EXPECT_EQ(unlink(address.sun_path), 0);
    EXPECT_EQ(listen(call(bind), 0), 0);
    EXPECT_GE(call(connect), 0);
    EXPECT_EQ(call(connect), -1);
    EXPECT_EQ(errno, EAGAIN);
  }));
}

TEST_F(Redirect, ForeignProgramsTakeItPreloaded) {
  std::ofstream(root("/etc/sysconfig/script/hello.sh")) << "#!/bin/sh\necho \"$0 $1\" > /var/config/said\n";
  fs::permissions(root("/etc/sysconfig/script/hello.sh"), fs::perms::owner_all);
  const std::string preload = "LD_PRELOAD=" REDIRECT_LIBRARY;
  const std::string device = "KOVA_DEVICE=" + device_.directory().string();
  const char *arguments[] = {
      "sh", "-c", "/etc/sysconfig/script/hello.sh you; /usr/bin/test_cpeevent notify bye", nullptr};
  const char *environment[] = {preload.c_str(), device.c_str(), "ASAN_OPTIONS=verify_asan_link_order=0",
                               nullptr};
  pid_t child = 0;
  ASSERT_EQ(posix_spawn(&child, "/bin/sh", nullptr, nullptr, const_cast<char **>(arguments),
                        const_cast<char **>(environment)),
            0);
  EXPECT_TRUE(succeeded(child));
  EXPECT_NE(text_of(root("/var/config/said")).find("hello.sh you"), std::string::npos);
  EXPECT_EQ(device_.log("event").size(), 1U);
}

} // namespace
} // namespace kova::test
