// The lists of rows against a plain statement of what they do: each operation compared in answer, in what was done and
// in everything that is stored.
#include "rows.hpp"

#include <kova/voice.h>

#include <algorithm>
#include <random>

using fake::list_of;
using fake::platform;
using fake::rows_of;
using fake::Strings;

namespace {

struct Value {
  std::string text;
  int code = 0; // what its check answers
};

struct Table {
  kova_row_add *add;
  kova_row_setter *set;
  kova_row_getter *get;
  kova_row_delete *remove;
  std::string key, mirror, placeholder;
  std::string enable, mode, refused_mode;
  std::size_t kept_by_set;
  std::vector<Value> values;
  bool whole = false; // not only the first 255 characters are worked on
  int duplicate = -1;
  std::string service{};
};

const std::string comment(32, 'c');

// clang-format off
const std::vector<Value>
    macs = {{"02:00:00:00:00:01"}, {"03:00:00:00:00:01", -1}}, urls = {{"example.org"}, {"!", -1}},
    ipv4 = {{"192.168.1.10,,,,8.8.8.8,,80,,1,web"}, {"192.168.1.11,,,,8.8.8.8,,80,,1,web"},
            {"192.168.1.10,192.168.1.200,65534,65535,100.100.100.100,100.100.100.200,10000,20000,1," + comment},
            {" ,,,,,,,,1,1", -1}, {"", -1}},
    ipv6 = {{"2001:db8::1,,,,::1,,,,6,"}, {"2001:db8::1,,80,,::1,,,,6,", -1}},
    access = {{"7,10.0.0.1,,0"}, {"5,10.0.0.1,,0", -1}},
    routes = {{"192.168.1.254,10.0.0.0,255.0.0.0,0"}, {",10.0.0.0,255.0.0.0,1"}, {"", 1}, {",10.0.0.0,255.0.0.0,0", 3}},
    dials = {{"3,555123,office"}, {"5,,", -1}};

#define FILTER(family, colour, white, keys, mirror, blank, mode, refused, kept, values) \
  {kovaadd##family##colour##FilterSetting, kovaSet##family##colour##FilterRules, kovaGet##family##Filter##white##Rules, \
   kovadel##family##colour##FilterSetting, keys "Filter" #white "Rules", mirror, blank, keys "FilterEnable", mode, refused, \
   kept, values}
const Table tables[] = {
    FILTER(MAC, Black, , "MAC", "WlanMACFilterRules", " ", "MACFilterMode", "1", 255, macs),
    FILTER(MAC, White, White, "MAC", "WlanMACFilterWhiteRules", " ", "MACFilterMode", "0", 255, macs),
    FILTER(URL, Black, , "URL", "", " ", "URLFilterMode", "1", 63, urls),
    FILTER(URL, White, White, "URL", "", " ", "URLFilterMode", "0", 63, urls),
    FILTER(IP, Black, , "IPPort", "", " ,,,,,,,,1,1", "DefaultIPPortFilterPolicy", "1", 255, ipv4),
    FILTER(IP, White, White, "IPPort", "", " ,,,,,,,,1,1", "DefaultIPPortFilterPolicy", "0", 255, ipv4),
    FILTER(IPV6, Black, , "IPPort6", "", " ,,,,,,,,1,1", "DefaultIPPort6FilterPolicy", "1", 255, ipv6),
    FILTER(IPV6, White, White, "IPPort6", "", " ,,,,,,,,1,1", "DefaultIPPort6FilterPolicy", "0", 255, ipv6),
    {kovaaddACLSettings, kovaSetACLSettingsRules, kovaGetACLSettingsRules, kovadelACLSettings,
     "AclRules", "", "4, ,,0", "AclEnable", "", "", 255, access},
    {kovaAddXRouteRulesRule, kovaSetXRouteRulesRule, kovaGetXRouteRulesRule, kovaDelXRouteRulesRule,
     "static_route_key", "", " , , ,0", "", "", "", 63, routes, true, 10, "ce_route"},
    {kovaaddQuickdialRule, kovaSetQuickdialRule, kovaGetQuickdialRule, kovadelQuickdialRule,
     "SPEEDDialLists", "", " ,,", "", "", "", 63, dials}};
// clang-format on

// The statement: a store, a list as a vector of rows, and what must have been done.
class Reference {
public:
  Reference(const Table &list, fake::Store before) : store(std::move(before)), table(list) {}
  fake::Store store;
  Strings done;

  int add() {
    if (is_off() || is_locked()) return -1;
    Strings rows = rows_of(beginning(table.whole));
    rows.push_back(table.placeholder);
    write(list_of(rows));
    return 0;
  }

  int set(int index, const Value &value) {
    if (is_off() || is_locked()) return -1;
    Strings rows = rows_of(beginning(false));
    const auto position = static_cast<long long>(index) - 1;
    if (position >= static_cast<long long>(rows.size())) return -1;
    if (value.code != 0) return value.code;
    for (std::size_t i = 0; i < rows.size(); ++i)
      if (static_cast<long long>(i) != position && rows[i] == value.text) return table.duplicate;
    for (std::size_t i = 0; i < rows.size(); ++i)
      rows[i] = static_cast<long long>(i) == position ? value.text : rows[i].substr(0, table.kept_by_set);
    write_in_service(list_of(rows));
    return 0;
  }

  int remove(int index) {
    if (is_locked()) return -1;
    Strings rows = rows_of(beginning(table.whole));
    const auto position = static_cast<long long>(index) - 1;
    if (position >= static_cast<long long>(rows.size())) return -1;
    if (position >= 0) rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(position));
    for (std::string &row : rows)
      row.resize(std::min<std::size_t>(row.size(), 63));
    write_in_service(list_of(rows));
    return 0;
  }

  std::string get(int index, int &code) const {
    const Strings rows = rows_of(beginning(table.whole));
    const bool present = index >= 1 && index <= static_cast<int>(rows.size());
    code = table.whole && !present ? -1 : 0;
    if (present) return rows[static_cast<std::size_t>(index - 1)].substr(0, table.whole ? 255 : 256);
    return code == 0 ? "" : std::string(256, '#');
  }

private:
  std::string stored(const std::string &key) const {
    const auto found = store.find({0, key});
    return found == store.end() ? "" : found->second;
  }
  std::string beginning(bool whole) const {
    return whole ? stored(table.key) : stored(table.key).substr(0, 255);
  }
  bool is_off() const { return !table.enable.empty() && stored(table.enable) != "1"; }
  bool is_locked() const { return !table.mode.empty() && stored(table.mode) == table.refused_mode; }
  void write(const std::string &text) {
    for (const std::string &key : {table.key, table.mirror})
      if (!key.empty()) {
        store[{0, key}] = text;
        done.push_back(std::string("nvram 0 ").append(key).append("=").append(text));
      }
  }
  void write_in_service(const std::string &text) {
    if (!table.service.empty()) done.push_back(fake::event(table.service + " stop"));
    write(text.substr(0, table.whole ? std::string::npos : 2047));
    if (!table.service.empty()) done.push_back(fake::event(table.service + " start"));
  }
  const Table &table;
};

enum Operation { add_row, remove_row, get_row, set_row };

void compare(const Table &table, Operation operation, int index = 0, const Value &value = {}) {
  platform.done.clear();
  Reference expected(table, platform.nvram);
  if (operation == add_row) {
    EXPECT_EQ(table.add(), expected.add()) << "add";
  } else if (operation == remove_row) {
    EXPECT_EQ(table.remove(index), expected.remove(index)) << "delete " << index;
  } else if (operation == get_row) {
    int code = 0;
    const std::string text = expected.get(index, code);
    EXPECT_EQ(fake::row(table.get, index, 256, code), text) << "get " << index;
  } else {
    EXPECT_EQ(table.set(index, value.text.c_str()), expected.set(index, value))
        << "set " << index << " " << value.text;
  }
  EXPECT_EQ(platform.done, expected.done);
  EXPECT_EQ(platform.nvram, expected.store);
}

class RowList : public fake::Test {
protected:
  RowList() {
    platform.nvram = {{{0, "lan_ip"}, "192.168.1.1"}, {{0, "lan_netmask"}, "255.255.255.0"}};
    platform.rule = [](int, const std::string &value, int) { return value == "!" ? -2 : 0; };
  }
};

TEST_F(RowList, EveryListIsEditedAsItIsDescribed) {
  for (const Table &table : tables)
    for (const std::string enable : {"1", "0"})
      for (const std::string mode : {"0", "1"}) {
        SCOPED_TRACE(table.key + " enable " + enable + " mode " + mode);
        std::string &list = platform.nvram[{0, table.key}] = "";
        platform.nvram[{0, table.enable}] = enable;
        platform.nvram[{0, table.mode}] = mode;
        compare(table, add_row);
        list += ";" + std::string(100, 'x') + ";" + table.placeholder;
        compare(table, add_row);
        for (const Value &value : table.values)
          compare(table, set_row, 3, value);
        compare(table, remove_row, 1);
        for (const int index : {1, 2, 4})
          compare(table, get_row, index);
      }
}

TEST_F(RowList, RandomOperationsAgreeWithThePlainStatement) {
  std::mt19937 random(20);
  const auto below = [&](std::size_t limit) {
    return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
  };
  constexpr int odd[] = {0, -1, INT_MAX, INT_MIN, 256, 257};
  constexpr std::size_t lengths[] = {0, 1, 62, 63, 64, 100, 254, 255, 256},
                        counts[] = {0, 1, 2, 3, 8, 17, 40};
  for (const Table &table : {tables[4], tables[9]}) { // one that reads a beginning, one that reads all
    SCOPED_TRACE(table.key);
    platform.nvram[{0, table.enable}] = "1";
    for (int step = 0; step < 5000 && !HasFailure(); ++step) {
      std::string &list = platform.nvram[{0, table.key}];
      if (step % 25 == 0) {
        Strings rows(counts[below(std::size(counts))]);
        for (std::string &row : rows)
          row = below(4) == 0 ? std::string(lengths[below(std::size(lengths))], 'x')
                              : table.values[below(table.values.size())].text;
        list = list_of(rows);
        if (below(6) == 0)
          list.resize(std::min<std::size_t>(list.size(), 255 + below(2))); // the edge of what is read
        if (below(12) == 0) list.assign(below(300), ';');
      }
      const auto operation = static_cast<Operation>(std::min<std::size_t>(below(6), set_row));
      const auto rows = static_cast<std::size_t>(firewall_getRuleNums(list.c_str()));
      const int index = below(8) == 0 ? odd[below(std::size(odd))] : static_cast<int>(below(rows + 2)) + 1;
      compare(table, operation, index, table.values[below(table.values.size())]);
    }
  }
}

TEST_F(RowList, TheBufferIsEmptiedAndNeverOverrun) {
  for (const Table &table : {tables[0], tables[9]}) {
    platform.nvram[{0, table.key}] = "first;second";
    for (const unsigned int length : {0U, 1U, 6U, 7U, 100U}) {
      const std::string whole = "second"; // routes are always terminated
      EXPECT_EQ(fake::row(table.get, 2, length),
                whole.substr(0, table.whole && length > 0 ? length - 1 : length));
    }
    EXPECT_EQ(table.get(1, nullptr, 0), table.whole ? -1 : 0);
    EXPECT_EQ(table.set(1, nullptr), table.set(1, ""));
  }
}

TEST_F(RowList, OnlyAddingLooksAtWhatTheStoreAnswers) {
  const Table &macs_black = tables[0];
  platform.nvram[{0, macs_black.enable}] = "1";
  for (const std::string &refused : {macs_black.key, macs_black.mirror}) {
    platform.refused_key = refused;
    const bool writes_key = refused != macs_black.key;
    const Strings key = {"nvram 0 " + macs_black.key + "="}, mirror = {"nvram 0 " + macs_black.mirror + "="};
    EXPECT_EQ(macs_black.add(), -1);
    EXPECT_EQ(platform.done,
              writes_key ? Strings{key[0] + " "} : Strings{}); // the mirror stays what the key is
    platform.nvram[{0, macs_black.key}] = "";
    platform.done.clear();
    EXPECT_EQ(macs_black.set(0, macs[0].text.c_str()), 0);
    EXPECT_EQ(macs_black.remove(0), 0);
    EXPECT_EQ(platform.done, writes_key ? (Strings{key[0], key[0]}) : (Strings{mirror[0], mirror[0]}));
    platform.done.clear();
  }
}

// ---- Where a row's check needs the list

TEST_F(RowList, AUrlMayRepeatTheRowBefore) {
  platform.preset(0, "URLFilterEnable=1 URLFilterMode=0 URLFilterRules=one;two;three");
  EXPECT_EQ(kovaSetURLBlackFilterRules(2, "TWO"), -1);
  EXPECT_EQ(kovaSetURLBlackFilterRules(2, "THREE"), -1);
  EXPECT_EQ(kovaSetURLBlackFilterRules(2, "ONE"), 0);
}

TEST_F(RowList, AnIpv6HostIsAppendedBeforeTheRowIsSet) {
  platform.preset(0, "AclEnable=1 AclRules=a;b");
  EXPECT_EQ(kovaSetACLSettingsRules(2, "7,2001:DB8:0::1,,0"), 0);
  EXPECT_EQ(platform.done,
            (Strings{"nvram 0 AclRules=a;b;7,2001:db8::1,,0", "nvram 0 AclRules=a;7,2001:DB8:0::1,,0"}));
  platform.nvram[{0, "AclRules"}] = "1;2;3;4;5;6;7;8;9;10;11;12;13;14;15;16";
  EXPECT_EQ(kovaSetACLSettingsRules(1, "7,::1,,0"), -1); // the first row alone is bounded
  EXPECT_EQ(kovaSetACLSettingsRules(2, "7,::1,,0"), 0);
}

TEST_F(RowList, NoNumberIsDialledTwice) {
  platform.preset(0, "SPEEDDialLists=1,10,a;2,20,b");
  EXPECT_EQ(kovaSetQuickdialRule(2, "1,30,"), -1);
  EXPECT_EQ(kovaSetQuickdialRule(2, "3,10,"), -1);
  EXPECT_EQ(kovaSetQuickdialRule(2, "2,20,c"), 0);
}

} // namespace
