// What the programs of different hosts write, command lines, and the statistics file.
#include "device/diag/echo_statistics.hpp"
#include "device/diag/failure.hpp"
#include "device/diag/options.hpp"
#include "device/diag/ping.hpp"
#include "device/diag/trace_route.hpp"

#include <gtest/gtest.h>

#include <cstring>
#include <iterator>
#include <map>
#include <sstream>

namespace kova::diag {
namespace {

template <typename Reader>
Reader read(Reader reader, const std::string &text) {
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);)
    reader.take_line(line);
  return reader;
}

TEST(PingAnswers, AreCountedByTheirLines) {
  const Results expected{
      {"SUC_CNT", "2"}, {"FAI_CNT", "3"}, {"AVG_TIME", "12"}, {"MIN_TIME", "4"}, {"MAX_TIME", "20"}};
  EXPECT_EQ(read(PingAnswers(100),
                 "PING 192.0.2.9 (192.0.2.9) 56(84) bytes of data.\n"
                 "64 bytes from 192.0.2.9: icmp_seq=1 ttl=64 time=20.4 ms\n"
                 "64 bytes from 192.0.2.9: icmp_seq=1 ttl=64 time=20.6 ms (DUP!)\n"
                 "From 192.0.2.1 icmp_seq=2 Destination Host Unreachable\n"
                 "64 bytes from 192.0.2.9: icmp_seq=3 ttl=64 time=101 ms\n" // later than allowed
                 "64 bytes from 192.0.2.9: icmp_seq=5 ttl=64 time=3.6 ms\n"
                 "\n--- 192.0.2.9 ping statistics ---\n"
                 "5 packets transmitted, 3 received, +1 duplicates, +1 errors, 40% packet loss, time 4005ms\n"
                 "rtt min/avg/max/mdev = 3.612/41.703/101.001/42.612 ms, pipe 2\n")
                .results(5),
            expected);
  EXPECT_EQ(read(PingAnswers(100), "64 bytes from 192.0.2.9: seq=0 ttl=64 time=4.000 ms\n"
                                   "64 bytes from 192.0.2.9: seq=1 ttl=64 time=20.000 ms\n"
                                   "round-trip min/avg/max = 4.000/12.000/20.000 ms\n")
                .results(5),
            expected);
  EXPECT_EQ(read(PingAnswers(100), "12 bytes from 127.0.0.1: icmp_seq=1 ttl=64\n").results(1)[0].second, "1");
  EXPECT_EQ(PingAnswers(100).results(3)[1], (std::pair<std::string, std::string>("FAI_CNT", "3")));
}

TEST(Route, EndsAtTheHostOrInAFailure) {
  const std::string head =
      "traceroute to host (192.0.2.9), 30 hops max, 38 byte packets\n 1  10.0.0.1  0.4 ms *\n";
  const Route reached = read(Route("192.0.2.9"), head + " 2  *  192.0.2.9  11.0 ms  13.5 ms\n");
  EXPECT_EQ(reached.results(),
            (Results{{"RSP_TIME", "12"}, {"HOPS_NUM", "2"}, {"ROUTEHOPS_HOPHOST", "10.0.0.1;192.0.2.9"}}));
  EXPECT_EQ(reached.hops(), " 1  10.0.0.1  0.4 ms *\n 2  *  192.0.2.9  11.0 ms  13.5 ms\n");
  const std::map<std::string, std::string> failures{
      {" 2  * * *\n", "Error_MaxHopCountExceeded"},
      {" 2  192.0.2.90  4 ms\n", "Error_MaxHopCountExceeded"},
      {" 2  10.0.0.7  3000.1 ms !H  3000.2 ms !H\n", "Error_Other"},
      {"", "Error_MaxHopCountExceeded"},
  };
  for (const auto &[lines, state] : failures) {
    try {
      read(Route("192.0.2.9"), head + lines).results();
      ADD_FAILURE() << lines;
    } catch (const Failure &failure) {
      EXPECT_EQ(failure.state, state) << lines;
    }
  }
}

TEST(Route, ListsTheHostOfEachHop) {
  const std::string host(60, 'a'); // the fourth of them fills the value
  std::string lines = " 1  * * *\n 2  *  192.0.2.1  4 ms  192.0.2.2  4 ms\n";
  for (int hop = 3; hop <= 7; hop++)
    lines += " " + std::to_string(hop) + "  " + host + "  4 ms\n";
  EXPECT_EQ(read(Route(host), lines).results().back().second,
            "*;192.0.2.1;" + host + ";" + host + ";" + host + ";" + host);
}

Options parsed(const std::string &line) {
  std::istringstream words(line);
  std::string program;
  words >> program;
  return options_of(program.substr(program.rfind('/') + 1),
                    {std::istream_iterator<std::string>(words), std::istream_iterator<std::string>()});
}

TEST(CommandLines, OfBothInstances) {
  const Options trace = parsed("/bin/sec_traceroute_diag host 38 -q 3 -m 30 -w 5,3,10 --savetof -S");
  EXPECT_TRUE(trace.secondary && trace.save_to_file && trace.host == "host" && trace.wait_times == "5,3,10");
  EXPECT_TRUE(trace.size == 38 && trace.tries == 3 && trace.max_hops == 30);
  const Options ping = parsed("/bin/ping_diag -H host -c 5times -W 250 -s 56");
  EXPECT_TRUE(!ping.secondary && ping.count == 5 && ping.timeout == 250 && ping.size == 56);
  const Options upload = parsed("/bin/sec_upload_diag -S -u http://host/ -l 1024 -i eth0 -d 46");
  EXPECT_TRUE(upload.secondary && upload.length == 1024 && upload.interface == "eth0" && upload.dscp == 46);
  const Options echo = parsed("/bin/udpechoplus_server -p 7 -i lo -s ::1 -P");
  EXPECT_TRUE(echo.port == 7 && echo.echo_plus && echo.source == "::1");

  for (const char *line : {
           "/bin/ping_diag -H -c 3 -W 1 -s 56",                      // no host
           "/bin/ping_diag -H --help -c 3 -W 1 -s 56",               // a host that looks like an option
           "/bin/ping_diag -H a -H b -c 3 -W 1 -s 56",               // blanks in a host name
           "/bin/ping_diag -H a -c -3 -W 1 -s 56",                   // not numbers
           "/bin/traceroute_diag 38 -q 3 -m 30 -w 5,3,10 --savetof", // the size in the host's place
           "/bin/download_diag -u http://host/ -S",                  // asks for the other instance
           "/bin/download_diag -u http://host/ -d 64",               //
           "/bin/udpechoplus_server",                                //
       }) {
    try {
      parsed(line);
      ADD_FAILURE() << line;
    } catch (const Failure &failure) {
      EXPECT_STREQ(failure.state, "Error_Other");
    }
  }
}

TEST(EchoStatistics, AreARecordOf152Bytes) {
  const EchoStatistics statistics{0x01020304, 2, 3, 4, {1795230796, 123456789}, {}};
  const std::string content = statistics.file_content();
  ASSERT_EQ(content.size(), 152U);
  uint32_t counts[4];
  std::memcpy(counts, content.data(), sizeof counts);
  EXPECT_TRUE(counts[0] == 0x01020304 && counts[1] == 2 && counts[2] == 3 && counts[3] == 4);
  EXPECT_STREQ(content.data() + 16, "2026-11-21T03:13:16.123456Z");
  EXPECT_STREQ(content.data() + 80, "0001-01-01T00:00:00Z");
}

} // namespace
} // namespace kova::diag
