// What every accessor does with a small buffer, with none and without a value, on a device where nearly every
// parameter has one.
#include "fake/fake.hpp"
#include "model/model.hpp"

#include <algorithm>
#include <cctype>
#include <set>
#include <string_view>

using fake::get;
using fake::platform;
using kova::model::parameters;

namespace {

// Answers that are cut to leave room for the terminator.
const std::set<std::string_view> terminated = {
    "kovaGetTR069DLMcsValue",    "kovaGetTR069ULMcsValue",    "kovaGetTR069LTEDnsServer",
    "kovaGetTR069APN1IPAddress", "kovaGetTR069APN2IPAddress", "kovaGetTR069APN3IPAddress",
    "kovaGetTR069APN4IPAddress", "kovaGetTR069WANIPAddress",  "kovaGetUpgradeScript"};
// Answers that are whole or not at all, or do not look at the size.
const std::set<std::string_view> whole = {"kovaGetTR069MCCValue",        "kovaGetTR069MNCValue",
                                          "kovaGetTR069DeviceLog",       "kovaGetCurrentLocalTime",
                                          "kovaGetDaylightSavingsStart", "kovaGetDaylightSavingsEnd"};

class Accessors : public fake::Test {
protected:
  // Whatever is read is a number, a record, a pair and a list.
  Accessors() {
    platform.interfaces = {{"lte0", "100.64.0.9", "255.192.0.0", -1, "00:00:00:00:00:02"}};
    for (int pdn = 0; pdn < 4; ++pdn)
      platform.interfaces.push_back({"lte0pdn" + std::to_string(pdn), "10.0.0.1", "255.0.0.0"});
    platform.mac = "00:00:00:00:00:01";
    platform.files["/var/rate_info"] = "1000: 200 1 2 50 3 4\n990: 100 1 2 40 3 4\n";
    platform.files["/proc/net/route"] = "lte0\t00000000\t01004064\t0003\t0\t0\t0\t00000000\n";
    platform.files["/var/config/tarn_dhcpd.leases"] = "1,mac,ip,host\n";
    platform.files["/tmp/udpEchoServerStatistics"] = std::string(152, '3');
    for (const char *network : {"", "_va0", "_va1", "_va2"})
      platform.files[std::string("/tmp/tr069_wlan0") + network + "_sta_info"] =
          "1: stat_info...\n    aid: 1\n";
    setBindInterface("lte0");
    char buf[4096];
    for (int pass = 0; pass < 2; ++pass) { // a value lets the next one be read
      for (const auto *parameter : parameters())
        if (parameter->get) parameter->get.call(buf, sizeof buf);
      for (const std::string &key : platform.keys_read)
        if (std::isdigit(static_cast<unsigned char>(key[0])) != 0)
          platform.nvram[{key[0] - '0', key.substr(2)}] = "3 3,3,3,3,3,3,3";
        else
          platform.tree[key.substr(key.starts_with("/") ? 1 : 0)] = "3,3,3";
    }
    platform.preset(0, "TR_IF_TYPE=data_pdn /tarn/cell_selection/dedicated_duplex=TDD");
    platform.tree["tarn/cell_selection/dedicated_duplex"] = "TDD";
    platform.tree["tarn/cell_selection/tdd_dedicated_pci_list"] = "3,1300,1";
    platform.tree["tarn/cell_selection/tdd_dedicated_earfcn_list"] = "3,1300";
  }
};

TEST_F(Accessors, FillASmallBufferAndNoMore) {
  int empty = 0, untouched = 0;
  for (const auto *parameter : parameters()) {
    if (!parameter->get) continue;
    SCOPED_TRACE(parameter->path);
    kova_getter *getter = parameter->get.call;
    getter(nullptr, 256);
    if (whole.contains(parameter->get.name)) continue;
    int result = -1;
    constexpr unsigned int ample = 4000;
    const std::string text = get(getter, result, ample);
    EXPECT_EQ(result, 0);
    empty += text.empty() ? 1 : 0;
    untouched += text.size() == ample ? 1 : 0;
    const unsigned int room = terminated.contains(parameter->get.name) ? 1 : 0;
    const auto length = static_cast<unsigned int>(text.size());
    for (const unsigned int buflen : {0U, 1U, length, std::min(length + 1, ample)})
      EXPECT_EQ(get(getter, result, buflen), text.substr(0, std::max(buflen, room) - room)) << buflen;
  }
  EXPECT_EQ(empty, 4) << "more than the passwords and what tells nothing";
  EXPECT_EQ(untouched, 5) << "more than what only applies";
}

TEST_F(Accessors, TakeAMissingValueOrRefuseIt) {
  for (const auto *parameter : parameters()) {
    SCOPED_TRACE(parameter->path);
    const int set = parameter->set ? parameter->set.call(nullptr) : 0;
    const int checked = parameter->check ? parameter->check.call(parameter->path.data(), nullptr) : 0;
    EXPECT_TRUE((set == 0 || set == -1) && (checked == 0 || checked == -1)) << set << checked;
  }
}

} // namespace
