// What the echo server counts.
#include "fake/fake.hpp"

#include <kova/diagnostics.h>
#include <kova/transaction.h>

#include <algorithm>
#include <cstring>

using fake::get;
using fake::platform;
using fake::Strings;

namespace {

class Diagnostics : public fake::Test {};

const std::pair<kova_getter *, std::string> statistics[] = {
    {getTR069UDPEchoConfigPacketsReceived, "TR_UDPECHO_PACKRECV"},
    {getTR069UDPEchoConfigPacketsResponded, "TR_UDPECHO_PACKRESPD"},
    {getTR069UDPEchoConfigBytesReceived, "TR_UDPECHO_BYTERECV"},
    {getTR069UDPEchoConfigBytesResponded, "TR_UDPECHO_BYTERESPD"},
    {getTR069UDPEchoConfigTimeFirstPacketReceived, "TR_UDPECHO_FIPACKREDV"},
    {getTR069UDPEchoConfigTimeLastPacketReceived, "TR_UDPECHO_LAPACKREDV"}};
std::string statistics_file(const std::string &first, const std::string &last) {
  const uint32_t counts[] = {1, 2, 4294967295U, 4};
  char file[152] = {};
  std::memcpy(file, counts, sizeof counts);
  std::copy(first.begin(), first.end(), file + 16);
  std::copy(last.begin(), last.end(), file + 80);
  return {file, sizeof file};
}

TEST_F(Diagnostics, StatisticsComeFromTheFileAndRefreshTheirKeys) {
  const std::string time = "2024-01-02T03:04:05.000006", f64(64, 'f'), l72(72, 'l'),
                    whole = statistics_file(time, "later"), full = statistics_file(f64, l72);
  const std::pair<std::string, Strings> cases[] = {
      {whole + "more", {"1", "2", "4294967295", "4", time, "later"}},
      {full, {"1", "2", "4294967295", "4", f64, l72}},
      {whole.substr(0, 20), {"1", "2", "4294967295", "4", "2024", ""}},
      {whole.substr(0, 4), {"1", "0", "0", "0", "", ""}},
      {"", {"", "", "", "", "", ""}}};
  for (const bool secondary : {false, true}) {
    gSecondaryInstance = secondary ? 1 : 0;
    platform.files["/tmp/sec_udpEchoServerStatistics"] = platform.files["/tmp/udpEchoServerStatistics"] =
        full;
    for (const auto &[file, expected] : cases) {
      platform.files[secondary ? "/tmp/sec_udpEchoServerStatistics" : "/tmp/udpEchoServerStatistics"] = file;
      for (std::size_t i = 0; i < std::size(statistics); ++i) {
        const auto &[getter, key] = statistics[i];
        EXPECT_EQ(get(getter), expected[i]) << file.size() << key;
        EXPECT_EQ(platform.stored(9, (secondary ? "S_" : "") + key), expected[i]);
      }
    }
    platform.files.clear();
    for (const auto &[getter, key] : statistics) {
      platform.done.clear();
      char buf[4];
      EXPECT_EQ(getter(nullptr, sizeof buf) + getter(buf, 0), -2);
      EXPECT_EQ(get(getter), "");
      EXPECT_EQ(platform.done, Strings{"nvram 9 " + std::string(secondary ? "S_" : "") + key + "="});
    }
  }
}

} // namespace
