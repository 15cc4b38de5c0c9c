// The eleven rule lists against a plain statement of what they do: random operations on random texts, compared after
// each step in answer, in what was done and in everything that is stored.
#include "rows.hpp"

#include <kova/voice.h>

#include <algorithm>
#include <random>

using fake::list_of;
using fake::platform;
using fake::rows_of;
using fake::Strings;

namespace {

enum class Kind { mac, url, plain, acl, dial };

// A value for a row: what its check answers by itself, and what that check appends to the list.
struct Value {
  std::string text;
  int code = 0;
  std::string appended{};
};
using Values = std::vector<Value>;

struct Table {
  const char *name;
  kova_row_add *add;
  kova_row_setter *set;
  kova_row_getter *get;
  kova_row_delete *remove;
  Kind kind;
  std::string key, mirror, placeholder;
  std::string enable, mode, refused_mode;
  std::size_t kept_by_set;
  Values values;
  bool whole = false; // not only the first 255 characters are worked on
  int duplicate = -1;
  std::string service{};
};

const std::string comment(32, 'c');

// clang-format off
// '!' is what the scripted rules refuse.
const Values macs = {
    {"02:00:00:00:00:01"}, {"02:00:00:00:00:0a"}, {"02:00:00:00:00:0A"}, {"02:11:22:33:44:55"}, {"0b:22:33:44:55:66"},
    {" "}, {"03:00:00:00:00:01", -1}, {"02:00:00:00:00:0!", -1}, {"", -1}};
const Values urls = {
    {"example.org"}, {"Example.ORG"}, {"EXAMPLE.org"}, {"key"}, {"KEY"}, {" "}, {"x<y", -1}, {"!", -1},
    {std::string(63, 'u')}, {std::string(64, 'u')}, {std::string(4000, 'v')}};
const Values ipv4 = {
    {"192.168.1.10,,,,8.8.8.8,,80,,1,web"}, {"192.168.1.11,,,,8.8.8.8,,80,,1,web"},
    {"192.168.1.10,192.168.1.200,65534,65535,100.100.100.100,100.100.100.200,10000,20000,1," + comment},
    {"192.168.1.10,192.168.1.201,65534,65535,100.100.100.100,100.100.100.200,10000,20000,1," + comment},
    {" ,,,,,,,,1,1", -1}, {"", -1}, {"192.168.1.10,,,,8.8.8.8,,80,,1,!", -1}, {";;;", -1}};
const Values ipv6 = {
    {"2001:db8::1,,,,::1,,,,6,"}, {"2001:db8::2,,,,::1,,,,6,"},
    {"2001:db8:aaaa::1,2001:db8:aaaa::2,1,2,2001:db8:bbbb::1,2001:db8:bbbb::2,1,2,1," + comment},
    {"2001:db8::1,,80,,::1,,,,6,", -1}, {" ,,,,,,,,1,1", -1}};
const Values access_rows = {
    {"7,10.0.0.1,,0"}, {"7,10.0.0.1,10.0.0.9,0"}, {"8,10.0.0.1,,0"},
    {"7,2001:DB8:0::1,,0", 0, "7,2001:db8::1,,0"}, {"7,2001:db8::1,,0", 0, "7,2001:db8::1,,0"},
    {"8,2001:db8::1,2001:db8:0::1,0", 0, "8,2001:db8::1,,0"}, {"4,::2,::3,0", 0, "4,::2,::3,0"},
    {"4,::3,::2,0", -1}, {"5,10.0.0.1,,0", -1}, {"4, ,,!", -1}, {"", -1}};
const Values route_rows = {
    {"192.168.1.254,10.0.0.0,255.0.0.0,0"}, {"192.168.1.254,11.0.0.0,255.0.0.0,0"}, {",10.0.0.0,255.0.0.0,1"},
    {"192.168.1.254,10.0.0.0,255.0.0.0,", 1}, {",10.0.0.0,255.0.0.0,0", 3}, {"1.1.1.1,10.0.0.0,!,0", 8}, {"", 1}};
const Values dial_rows = {
    {"3,555123,office"}, {"3,555124,"}, {"4,555123,home"}, {"4,555123,office"}, {"16,1,"}, {"7,8," + comment},
    {"9,8," + comment}, {"03,0555123,"}, {"!,1,", -1}, {"5,,", -1}, {"5,6", -1}, {"", -1}};

#define LIST(family, colour, white, kind, keys, mirror, blank, mode, refused, kept, values)                  \
  {keys " " #colour, kovaadd##family##colour##FilterSetting, kovaSet##family##colour##FilterRules,           \
   kovaGet##family##Filter##white##Rules, kovadel##family##colour##FilterSetting, Kind::kind,                \
   keys "Filter" #white "Rules", mirror, blank, keys "FilterEnable", mode, refused, kept, values}
#define LISTS(family, kind, keys, mirror, mirror_white, blank, mode, kept, values)                           \
  LIST(family, Black, , kind, keys, mirror, blank, mode, "1", kept, values),                                 \
  LIST(family, White, White, kind, keys, mirror_white, blank, mode, "0", kept, values)
const Table tables[] = {
    LISTS(MAC, mac, "MAC", "WlanMACFilterRules", "WlanMACFilterWhiteRules", " ", "MACFilterMode", 255, macs),
    LISTS(URL, url, "URL", "", "", " ", "URLFilterMode", 63, urls),
    LISTS(IP, plain, "IPPort", "", "", " ,,,,,,,,1,1", "DefaultIPPortFilterPolicy", 255, ipv4),
    LISTS(IPV6, plain, "IPPort6", "", "", " ,,,,,,,,1,1", "DefaultIPPort6FilterPolicy", 255, ipv6),
    {"access", kovaaddACLSettings, kovaSetACLSettingsRules, kovaGetACLSettingsRules, kovadelACLSettings,
     Kind::acl, "AclRules", "", "4, ,,0", "AclEnable", "", "", 255, access_rows},
    {"routes", kovaAddXRouteRulesRule, kovaSetXRouteRulesRule, kovaGetXRouteRulesRule, kovaDelXRouteRulesRule,
     Kind::plain, "static_route_key", "", " , , ,0", "", "", "", 63, route_rows, true, 10, "ce_route"},
    {"speed dial", kovaaddQuickdialRule, kovaSetQuickdialRule, kovaGetQuickdialRule, kovadelQuickdialRule,
     Kind::dial, "SPEEDDialLists", "", " ,,", "", "", "", 63, dial_rows}};
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
    if (const int code = judge(value, position); code != 0) return code;
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

  int judge(const Value &value, long long position) {
    switch (table.kind) {
    case Kind::mac:
      return repeats_mac(value.text) ? -1 : value.code;
    case Kind::url:
      return value.code != 0 || repeats_url(value.text, position) ? -1 : 0;
    case Kind::acl:
      if (value.appended.empty()) return value.code;
      if (position == 0 && rows_of(stored(table.key)).size() > 15) return -1;
      write(stored(table.key) + (stored(table.key).empty() ? "" : ";") + value.appended);
      return 0;
    case Kind::dial:
      return value.code != 0 || repeats_number(value.text, position) ? -1 : 0;
    default:
      return value.code;
    }
  }
  // The list that the mode chooses, whichever is being set.
  std::string chosen() const {
    return stored(table.mode.substr(0, 3) + (stored(table.mode) == "0" ? "FilterRules" : "FilterWhiteRules"));
  }
  bool repeats_mac(const std::string &value) const {
    const Strings rows = rows_of(chosen());
    return chosen().size() >= 272 || std::find(rows.begin(), rows.end(), value) != rows.end();
  }
  bool repeats_url(const std::string &value, long long position) const {
    const Strings rows = rows_of(chosen());
    for (std::size_t i = 0; i < rows.size(); ++i)
      if (strcasecmp(rows[i].c_str(), value.c_str()) == 0 && static_cast<long long>(i) != position - 1)
        return true;
    return rows.size() > 15;
  }
  bool repeats_number(const std::string &value, long long position) const {
    const Strings rows = rows_of(stored(table.key));
    Strings fields = rows_of(value, ',');
    for (std::size_t i = 0; i < rows.size(); ++i) {
      Strings other = rows_of(rows[i], ',');
      other.resize(2);
      if (static_cast<long long>(i) != position && (other[0] == fields[0] || other[1] == fields[1]))
        return true;
    }
    return false;
  }

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

class RandomOperations {
public:
  RandomOperations(const Table &list, unsigned int seed) : table_(list), random_(seed) {}

  void step(int number) {
    if (number % 25 == 0) scramble();
    platform.done.clear();
    Reference expected(table_, platform.nvram);
    switch (below(8)) {
    case 0:
    case 1:
      EXPECT_EQ(table_.add(), expected.add()) << "add";
      break;
    case 2:
    case 3: {
      const int row = index();
      EXPECT_EQ(table_.remove(row), expected.remove(row)) << "delete " << row;
      break;
    }
    case 4: {
      const int row = index();
      int code = 0;
      const std::string text = expected.get(row, code);
      EXPECT_EQ(fake::row(table_.get, row, 256, code), text) << "get " << row;
      break;
    }
    default: {
      const int row = index();
      const Value &value = table_.values[below(table_.values.size())];
      EXPECT_EQ(table_.set(row, value.text.c_str()), expected.set(row, value))
          << "set " << row << " " << value.text;
    }
    }
    EXPECT_EQ(platform.done, expected.done);
    EXPECT_EQ(platform.nvram, expected.store);
  }

private:
  std::size_t below(std::size_t limit) {
    return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_);
  }
  int index() {
    constexpr int odd[] = {0, -1, INT_MAX, INT_MIN, 256, 257};
    const int rows = firewall_getRuleNums(platform.nvram[{0, table_.key}].c_str());
    return below(8) == 0 ? odd[below(std::size(odd))]
                         : static_cast<int>(below(static_cast<std::size_t>(rows) + 2)) + 1;
  }
  std::string any_row() {
    constexpr std::size_t lengths[] = {0, 1, 62, 63, 64, 100, 254, 255, 256};
    const std::size_t choice = below(10);
    if (choice == 0) return "";
    if (choice == 1) return std::string(lengths[below(std::size(lengths))], 'x');
    return choice < 5 ? table_.placeholder
                      : table_.values[below(std::min<std::size_t>(4, table_.values.size()))].text;
  }
  std::string any_list() {
    constexpr std::size_t counts[] = {0, 0, 1, 2, 3, 8, 15, 16, 17, 40};
    Strings rows(counts[below(std::size(counts))]);
    std::generate(rows.begin(), rows.end(), [&] { return any_row(); });
    std::string text = list_of(rows);
    const std::size_t cut = below(12);
    if (cut < 2) text.resize(std::min<std::size_t>(text.size(), 255 + cut)); // on the edge of what is read
    if (cut == 2) text.assign(below(300), ';');
    return text;
  }
  void scramble() {
    platform.nvram[{0, table_.key}] = any_list();
    for (const std::string family : {"MAC", "URL"}) // a row is judged by the list that the mode chooses
      for (const std::string &key : {family + "FilterRules", family + "FilterWhiteRules"})
        if (key != table_.key) platform.nvram[{0, key}] = any_list();
    if (!table_.enable.empty()) platform.nvram[{0, table_.enable}] = below(5) == 0 ? "0" : "1";
    if (!table_.mode.empty()) platform.nvram[{0, table_.mode}] = Strings{"0", "1", "", "2"}[below(4)];
  }
  const Table &table_;
  std::mt19937 random_;
};

class RuleList : public fake::Test {
protected:
  RuleList() {
    platform.nvram = {{{0, "lan_ip"}, "192.168.1.1"}, {{0, "lan_netmask"}, "255.255.255.0"}};
    platform.rule = [](int, const std::string &value, int) {
      return value.find('!') == std::string::npos ? 0 : -2;
    };
  }
};

TEST_F(RuleList, RandomOperationsAgreeWithThePlainStatement) {
  for (const Table &table : tables) {
    SCOPED_TRACE(table.name);
    RandomOperations operations(table, 20);
    for (int step = 0; step < 2500 && !HasFailure(); ++step)
      operations.step(step);
  }
}

TEST_F(RuleList, TheBufferIsEmptiedAndNeverOverrun) {
  for (const Table &table : tables) {
    SCOPED_TRACE(table.name);
    platform.nvram[{0, table.key}] = "first;second";
    for (const unsigned int length : {0U, 1U, 5U, 6U, 7U, 100U}) {
      const std::string whole = "second";
      const std::size_t fits =
          table.whole && length > 0 ? length - 1 : length; // routes are always terminated
      EXPECT_EQ(fake::row(table.get, 2, length), whole.substr(0, fits)) << length;
    }
    EXPECT_EQ(table.get(1, nullptr, 0), table.whole ? -1 : 0);
    EXPECT_EQ(table.set(1, nullptr), table.set(1, ""));
  }
}

TEST_F(RuleList, OnlyAddingReportsAStoreThatFails) {
  for (const Table &table : tables) {
    SCOPED_TRACE(table.name);
    platform.nvram[{0, table.enable}] = "1";
    platform.nvram[{0, table.key}] = "";
    for (const std::string &key : {table.key, table.mirror}) {
      if (key.empty()) continue;
      platform.refused_key = key;
      EXPECT_EQ(table.add(), -1) << key;
      EXPECT_EQ(table.set(0, table.values[0].text.c_str()), 0) << key;
      EXPECT_EQ(table.remove(0), 0) << key;
    }
    platform.refused_key.clear();
  }
}

} // namespace
