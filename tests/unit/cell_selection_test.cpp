// Scan mode, locked cells, locked ranges and preferred frequencies.
#include "fake/fake.hpp"

#include <kova/radio.h>

#include <algorithm>

using fake::get;
using fake::platform;
using fake::Strings;

namespace {

constexpr const char *duplex_key = "/tarn/cell_selection/dedicated_duplex";
const std::string directory = "tarn/cell_selection/";

class Cells : public fake::Test {
protected:
  Cells() {
    platform.bands = {1, 3, 41, 7};
    platform.band_records = {{1, {0, 1, 0, 599}}, {3, {0, 3, 1200, 1949}}, {41, {1, 41, 39650, 41589}}};
    use_duplex("FDD");
    platform.tree[directory + "scan_mode"] = "1";
  }
  // Every path gives back what it took.
  ~Cells() override {
    EXPECT_EQ(platform.tree_opened, 0) << "tree left open";
    if (platform.lte_daemon) {
      EXPECT_EQ(std::ranges::count(platform.lte_asked, "bye"),
                std::ranges::count(platform.lte_asked, "client"));
    }
  }
  static void use_duplex(const std::string &duplex) {
    platform.nvram[{0, duplex_key}] = platform.tree[directory + "dedicated_duplex"] = duplex;
  }
};

constexpr const char *none = nullptr;

// What a setter does inside its bracket, without openings of the tree.
Strings inside(kova_setter *set, const char *value, int expected = 0) {
  fake::effect(set, value, expected);
  const Strings done = platform.written();
  EXPECT_TRUE(done.size() >= 2 && done.front() == "bracket start" && done.back() == "bracket end");
  return done.size() < 2 ? done : Strings{done.begin() + 1, done.end() - 1};
}

// The checkers have brackets, too.
int check_cells(const char *value) {
  return kovaChkTR069PciLock("name", value);
}
int check_ranges(const char *value) {
  return kovaChkTR069PciOnlyLock("name", value);
}
int check_frequencies(const char *value) {
  return kovaChkTR069FreqPreferred("name", value);
}

Strings stored(const std::string &leaf, const std::string &value) {
  return {"tree /" + directory + leaf + "=" + value, "request 0x10000003"};
}

std::string repeat(int times, const std::function<std::string(int)> &piece, const char *between = ";") {
  std::string text;
  for (int i = 0; i < times; ++i)
    text += (i > 0 ? between : "") + piece(i);
  return text;
}

TEST_F(Cells, SupportedBandsOfTheDuplexModeThatFit) {
  struct {
    const char *duplex;
    int size;
    const char *expected;
  } const cases[] = {{"FDD", 64, "|1|3|"}, {"FDD", 6, "|1|3|"}, {"FDD", 5, "|1|"}, {"FDD", 3, "|"},
                     {"FDD", 1, ""},       {"TDD", 64, "|41|"}, {"", 64, ""},      {"FDDx", 64, "|1|3|"}};
  for (const auto &[duplex, size, expected] : cases) {
    SCOPED_TRACE(std::string(duplex) + " in " + std::to_string(size));
    use_duplex(duplex);
    char out[65];
    std::fill(std::begin(out), std::end(out), '#');
    EXPECT_EQ(getSupportBands(out, size), 0);
    EXPECT_STREQ(out, expected);
    EXPECT_EQ(out[size], '#');
  }
  use_duplex("FDD");
  platform.bands = {300, 1, 3}; // each band is tried on its own
  platform.band_records[300] = {0, 300, 70000, 70001};
  char out[6];
  EXPECT_EQ(getSupportBands(out, 5), 0);
  EXPECT_STREQ(out, "|1|");
  platform.bands.clear();
  for (uint16_t band = 1; band < 256; ++band)
    platform.bands.push_back(static_cast<uint16_t>(65000 + band)), platform.band_records[65000 + band] = {};
  char many[64];
  EXPECT_EQ(getSupportBands(many, sizeof many), 0);
  EXPECT_EQ(std::string(many).size(), 61U);
}

TEST_F(Cells, SupportedBandsCannotBeHad) {
  char out[64] = "as it was";
  EXPECT_EQ(getSupportBands(nullptr, 64), 0);
  EXPECT_EQ(getSupportBands(out, 0), 0);
  EXPECT_EQ(getSupportBands(out, -7), -7);
  EXPECT_TRUE(platform.lte_asked.empty());
  const fake::Platform ready = platform;
  for (void (*fail)() : {+[] { platform.lists_bands = false; }, +[] { platform.nvram.clear(); },
                         +[] { platform.lte_daemon = false; }}) {
    platform = ready;
    fail();
    EXPECT_EQ(getSupportBands(out, 64), -1);
    EXPECT_EQ(check_cells("1300,1") + check_frequencies("3,1300"), -2);
  }
}

TEST_F(Cells, AFailureOfTheTreeIsAnsweredWithItsCode) {
  struct {
    kova_getter *get;
    kova_setter *set;
    const char *value, *leaf;
  } const settings[] = {
      {kovaGetTR069ScanMode, kovaSetTR069ScanMode, "pcilock", "scan_mode"},
      {kovaGetTR069PciLock, kovaSetTR069PciLock, "1300,1", "fdd_dedicated_pci_list"},
      {kovaGetTR069FreqPreferred, kovaSetTR069FreqPreferred, "3,1300", "fdd_dedicated_earfcn_list"},
      {kovaGetTR069PciOnlyLock, kovaSetTR069PciOnlyLock, "1,2", "dedicated_pci_range"}};
  platform.tree_failure = -5;
  for (const auto &[getter, set, value, leaf] : settings) {
    SCOPED_TRACE(leaf);
    const auto expect_failure = [&, getter = getter] {
      int result = 0;
      EXPECT_EQ(get(getter, result), getter == kovaGetTR069ScanMode ? "unknown" : "");
      EXPECT_EQ(result, -5);
    };
    platform.tree_opens = true;
    platform.tree_refuses[directory + leaf] = true;
    EXPECT_EQ(std::ranges::count(inside(set, value, -5), "request 0x10000003"), 0);
    platform.tree.erase(directory + leaf);
    expect_failure();
    platform.tree_opens = false;
    EXPECT_EQ(std::ranges::count(inside(set, value, -5), "request 0x10000003"), 0);
    expect_failure();
  }
  EXPECT_EQ(platform.written()[2], "console init ucfg failed\n");
  platform.tree_opens = true; // neither the mode nor the duplex mode can be read
  EXPECT_EQ(inside(kovaSetTR069ScanMode, "pcilock", -5), Strings{});
  platform.tree.clear();
  EXPECT_EQ(inside(kovaSetTR069PciLock, "1300,1", -5), Strings{});
}

TEST_F(Cells, ListsHaveTheirPlaces) {
  const auto cells = [](int count) {
    return repeat(count, [](int i) { return "1300," + std::to_string(i + 1); });
  };
  const auto triples = [](int count) {
    return repeat(count, [](int i) { return "3,1300," + std::to_string(i + 1); });
  };
  const std::pair<std::string, std::string> locked[] = {
      {cells(20), triples(19)},
      {cells(10000), triples(19)},
      {";;;;" + cells(19), triples(19)},               // empty pieces take no place
      {"0,1;1300,0;" + cells(18), triples(17)},        // dropped pairs do
      {cells(19) + ";1300,504;77777,1", triples(19)}}; // beyond the last place nothing is judged
  for (const auto &[value, list] : locked) {
    EXPECT_EQ(inside(check_cells, value.c_str()), Strings{});
    EXPECT_EQ(inside(kovaSetTR069PciLock, value.c_str()), stored("fdd_dedicated_pci_list", list));
  }
  for (const int count : {21, 10000}) {
    const std::string value = repeat(count, [](int) { return "1,2"; });
    EXPECT_EQ(check_ranges(value.c_str()) + kovaSetTR069PciOnlyLock(value.c_str()), 0);
    EXPECT_EQ(platform.tree[directory + "dedicated_pci_range"], value.substr(0, 6143));
  }
  const auto channel = [](int i) { return std::to_string(1300 + i); };
  const auto group = [&](int count) { return "3," + repeat(count, channel, ","); };
  const auto pairs = [&](int count) { return repeat(count, [&](int i) { return "3," + channel(i); }); };
  struct {
    std::string value, stored, read;
  } const preferred[] = {{group(20), pairs(20), group(20)},
                         {group(10000), pairs(20), group(20)},
                         {group(21) + ";3,1330;1,5", pairs(20) + ";1,5", group(20) + ";1,5"}};
  for (const auto &[value, list, read] : preferred) {
    EXPECT_EQ(inside(check_frequencies, value.c_str()), Strings{});
    EXPECT_EQ(inside(kovaSetTR069FreqPreferred, value.c_str()), stored("fdd_dedicated_earfcn_list", list));
    EXPECT_EQ(get(kovaGetTR069FreqPreferred), read);
  }
  platform.band_records[7] = {0, 8, 2750, 3449}; // a record of another band
  for (kova_setter *refuses : {check_frequencies, kovaSetTR069FreqPreferred})
    EXPECT_EQ(inside(refuses, "7,2800", -1), Strings{});
}

TEST_F(Cells, PreferredBandsAndTheLengthOfTheirList) {
  for (int band = 101; band <= 121; ++band)
    platform.band_records[band] = {0, band, 1, 9};
  platform.bands.clear();
  for (uint16_t band = 101; band <= 114; ++band) // as many as the supported bands' text holds
    platform.bands.push_back(band);
  const auto value = [](int bands) {
    return repeat(bands, [](int i) { return std::to_string(101 + i) + ",1,2,3,4"; });
  };
  EXPECT_EQ(kovaSetTR069FreqPreferred(value(14).c_str()), 0);
  const std::string &list = platform.tree[directory + "fdd_dedicated_earfcn_list"];
  EXPECT_EQ(list.size(), 251U); // whole pairs within 255 characters
  EXPECT_TRUE(list.ends_with(";111,1;111,2")) << list;
  EXPECT_EQ(kovaSetTR069FreqPreferred(value(15).c_str()), -1); // band 115 is not supported
  // A stored 21st band is not shown, and the 20th is.
  platform.tree[directory + "fdd_dedicated_earfcn_list"] =
      repeat(21, [](int i) { return std::to_string(101 + i) + ",1"; });
  EXPECT_EQ(get(kovaGetTR069FreqPreferred), repeat(20, [](int i) { return std::to_string(101 + i) + ",1"; }));
}

TEST_F(Cells, PreferredBandsOfOneDuplexMode) {
  platform.bands = {1, 3, 41};
  platform.band_records[3].duplex = 1;
  platform.nvram[{0, duplex_key}] = "TDD";
  EXPECT_EQ(inside(kovaSetTR069FreqPreferred, "41,40000;3,1300"),
            stored("tdd_dedicated_earfcn_list", "41,40000;3,1300"));
  platform.tree[directory + "fdd_dedicated_earfcn_list"] = "1,5";
  EXPECT_EQ(get(kovaGetTR069FreqPreferred), "1,5"); // the tree is in the other mode
  platform.tree[directory + "dedicated_duplex"] = "TDD";
  EXPECT_EQ(get(kovaGetTR069FreqPreferred), "41,40000;3,1300");

  // A daemon that changes its mind: the checker takes bands of both modes, the setter does not.
  const auto after_the_list = [](int duplex) {
    platform.lte_asked.clear();
    platform.band_records[41].duplex = 1;
    platform.watch = [duplex] {
      if (std::ranges::count(platform.lte_asked, "bye") > 0) platform.band_records[41].duplex = duplex;
    };
  };
  after_the_list(0);
  EXPECT_EQ(check_frequencies("41,40000;3,1300"), 0);
  after_the_list(0);
  EXPECT_EQ(inside(kovaSetTR069FreqPreferred, "41,40000;3,1300", -1), Strings{});
  after_the_list(7);
  EXPECT_EQ(inside(kovaSetTR069FreqPreferred, "41,40000", -1), Strings{});
}

// C libraries differ in where strtok_r stands after the last token.
TEST_F(Cells, ListsEndWithTheirLastPieceOnEveryCLibrary) {
  platform.tokens_end_in_null = true;
  EXPECT_EQ(kovaSetTR069PciOnlyLock("10;20"), 0);
  EXPECT_EQ(platform.tree[directory + "dedicated_pci_range"], "10,10;20,20");
  EXPECT_EQ(kovaSetTR069PciLock("1300,5;1301,6"), 0);
  EXPECT_EQ(get(kovaGetTR069PciLock), "1300,5;1301,6");
  EXPECT_EQ(kovaSetTR069FreqPreferred("3,1300;1,5"), 0);
  EXPECT_EQ(get(kovaGetTR069FreqPreferred), "3,1300;1,5");
  EXPECT_GT(platform.tokens_left, 0) << "no end was found";
}

} // namespace
