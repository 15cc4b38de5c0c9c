// How the service daemon starts, stops and replaces tests.
#include "device/log.hpp"
#include "diag/agent.hpp"

#include <fstream>
#include <iterator>

namespace kova::test {
namespace {

class Control : public Agent {
protected:
  // In place of a program of the device.
  void install(const std::string &name, const std::string &script) const {
    const fs::path path = device_.directory() / "root/bin" / name;
    fs::remove(path);
    std::ofstream(path) << "#!/bin/sh\n" << script;
    fs::permissions(path, fs::perms::owner_all);
  }
  std::string text_of(const std::string &name) const {
    std::ifstream file(device_.top() / name);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  // Ignores what asks it to end.
  void install_stubborn(const std::string &name) const {
    install(name, "trap '' TERM\necho up >> '" + (device_.top() / name).string() +
                      "'\nsleep 60 & wait\nsleep 60\n");
  }
  bool is_up(const std::string &name, std::size_t times) const {
    return eventually([&] { return text_of(name).size() == 3 * times; });
  }
};

std::vector<Setting> long_ping() {
  return {SETTING(IPPingDiagnosticsHost, "127.0.0.1"), SETTING(IPPingDiagnosticsCount, "1000"),
          SETTING(IPPingDiagnosticsState, "Requested")};
}

// The test has begun its work: the host's ping runs too.
bool has_child(pid_t run) {
  return eventually([&] {
    const std::string id = std::to_string(run);
    std::ifstream file("/proc/" + id + "/task/" + id + "/children");
    return file.peek() != std::ifstream::traits_type::eof();
  });
}

constexpr uint32_t launch_ping = 0x10000016, abort_ping = 0x10000017;

TEST_F(Control, AnyOtherChangeStopsATestWithoutAResult) {
  for (const bool secondary : {false, true})
    as_agent(secondary, [&] {
      request(long_ping());
      ASSERT_TRUE(eventually([&] { return runs_of(tool("ping_diag")).size() == 1; }));
      const pid_t run = runs_of(tool("ping_diag"))[0];
      ASSERT_TRUE(has_child(run));
      request({SETTING(IPPingDiagnosticsCount, "7")});
      EXPECT_TRUE(comes_into_log(tool("ping_diag") + " stopped"));
      for (const char *kind : {"command", "device"}) {
        const LogRecord last = device_.log(kind).back();
        EXPECT_EQ(last.at(last.contains("asker") ? "asker" : "pid"), std::to_string(getpid()));
      }
      EXPECT_TRUE(is_gone(run));
      EXPECT_EQ(stored("PINGDIAG_STATE") + stored("PINGDIAG_SUC_CNT"), "Requested");
      request({SETTING(IPPingDiagnosticsCount, "8")}); // nothing left to stop
    });
}

TEST_F(Control, ALaunchReplacesTheRunningTestOfItsProgramOnly) {
  as_agent(false, [&] {
    request(long_ping());
    EXPECT_EQ(confirmed(launch_ping, "/bin/sec_ping_diag -S -H 127.0.0.1 -c 1000 -W 1000 -s 56"), 0);
    ASSERT_TRUE(eventually([&] { return runs_of("ping_diag").size() == 1; }));
    const pid_t first = runs_of("ping_diag")[0], others = runs_of("sec_ping_diag").at(0);
    ASSERT_TRUE(has_child(first));
    request({SETTING(IPPingDiagnosticsCount, "1"), SETTING(IPPingDiagnosticsState, "Requested")});
    EXPECT_EQ(end_state("PINGDIAG"), "Complete");
    EXPECT_EQ(stored("PINGDIAG_SUC_CNT"), "1");
    EXPECT_TRUE(is_gone(first));
    EXPECT_FALSE(is_gone(others));
    device::down();
    EXPECT_TRUE(is_gone(others));
  });
}

TEST_F(Control, AFastTestDoesNotLoseItsStateToTheRequestThatStartedIt) {
  as_agent(false, [&] {
    for (const char *before : {"None", "Requested"}) { // "Requested": left by a test that was aborted
      store("DLDIAG_STATE", before);
      mrhd_launch_dlDiag("/bin/download_diag -u http://127.0.0.1:1/");
      store("DLDIAG_STATE", "Requested");
      EXPECT_EQ(end_state("DLDIAG"), "Error_InitConnectionFailed");
      std::this_thread::sleep_for(100ms);
      EXPECT_EQ(stored("DLDIAG_STATE"), "Error_InitConnectionFailed");
    }
  });
}

TEST_F(Control, WordsReachTheProgramAsTheyAreAndNoShell) {
  as_agent(false, [&] {
    // None of them stands on the command line, which everybody sees.
    install("download_diag", "{ echo \"$@\"; tr '\\0' '|'; } > '" + (device_.top() / "new").string() +
                                 "'\nmv '" + (device_.top() / "new").string() + "' '" +
                                 (device_.top() / "words").string() + "'\n");
    const std::string trap = (device_.top() / "trap").string();
    const std::vector<std::pair<std::string, std::string>> urls{
        {"http://h/$(touch<" + trap + ")", "-u|http://h/$(touch<" + trap + ")|"},
        {"`touch\t" + trap + "`", "-u|`touch|" + trap + "`|"},
        {"a'b\"c\\ : *\n>&2", "-u|a'b\"c\\|:|*|>&2|"},
    };
    for (const auto &one : urls) {
      request({SETTING(DownloadDiagnosticsURL, one.first), SETTING(DownloadDiagnosticsState, "Requested")});
      EXPECT_TRUE(eventually([&] { return text_of("words") == "-\n/bin/download_diag|" + one.second; }))
          << one.first << text_of("words");
    }
    EXPECT_FALSE(fs::exists(trap));
  });
}

TEST_F(Control, OnlyTheProgramsOfARequestRun) {
  as_agent(false, [&] {
    for (const char *line : {"/bin/sh -c true", "ping_diag -H h", "/bin/../bin/ping_diag",
                             "/bin/download_diag -u http://h/", " "})
      EXPECT_EQ(confirmed(launch_ping, line), 1) << line;
    EXPECT_EQ(confirmed(launch_ping, std::string("/bin/ping_diag\0-H", 17)), 1);
    EXPECT_EQ(confirmed(abort_ping, "sh"), 1);
    EXPECT_TRUE(is_logged("refused launch_pingDiag: /bin/sh is none of its programs"));
    EXPECT_TRUE(is_logged("refused abort_pingDiag: sh is none of its programs"));
    EXPECT_TRUE(device_.log("command").empty());
    fs::remove(device_.directory() / "root/bin/ping_diag");
    EXPECT_EQ(confirmed(launch_ping, "/bin/ping_diag"), 1);
    EXPECT_TRUE(is_logged("cannot start ping_diag: No such file"));
  });
}

TEST_F(Control, AStubbornTestIsKilledAndHoldsUpNobody) {
  as_agent(false, [&] {
    install_stubborn("ping_diag");
    ASSERT_EQ(confirmed(launch_ping, "/bin/ping_diag 1"), 0);
    ASSERT_TRUE(is_up("ping_diag", 1));
    for (int i = 2; i <= 50; i++) // the last one comes to run, after the first
      ASSERT_EQ(confirmed(launch_ping, "/bin/ping_diag " + std::to_string(i)), 0);
    ASSERT_TRUE(eventually([&] { return device_.log("command").back().at("args") == R"(["50"])"; }));
    EXPECT_TRUE(comes_into_log("ping_diag killed"));
    const auto runs = runs_of("ping_diag");
    EXPECT_LT(runs.size(), 50U);
    ASSERT_TRUE(is_up("ping_diag", runs.size()));
    EXPECT_EQ(confirmed(launch_ping, "/bin/ping_diag 51"), 0);
    EXPECT_EQ(confirmed(abort_ping, "ping_diag"), 0); // the one that waits too
    EXPECT_TRUE(eventually([&] { return is_gone(runs.back()); }));
    EXPECT_EQ(runs_of("ping_diag").size(), runs.size());
    EXPECT_EQ(confirmed(launch_ping, "/bin/ping_diag"), 0);
    ASSERT_TRUE(is_up("ping_diag", runs.size() + 1));
    device::down();
    EXPECT_TRUE(is_gone(runs_of("ping_diag").back()));
  });
}

TEST_F(Control, TestsEndWithADaemonThatIsKilled) {
  as_agent(false, [&] {
    request(long_ping());
    ASSERT_TRUE(eventually([&] { return runs_of("ping_diag").size() == 1; }));
    const pid_t run = runs_of("ping_diag")[0];
    ASSERT_TRUE(has_child(run));
    kill(device::status().serviced.value(), SIGKILL);
    EXPECT_TRUE(eventually([&] { return is_gone(run); }));
  });
}

} // namespace
} // namespace kova::test
