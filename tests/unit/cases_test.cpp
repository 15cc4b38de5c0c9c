// Calls of accessors and what must come of them, read from cases/*.txt:
//
//   given oper_mode=2 9:lan_mac=001A2B ...      a device on which this is stored, and nothing else; all kinds of words below
//   and oper_mode=1                             changes the device
//   kovaGetX()  kovaGetX(4)                     asks a getter, by default with room for 256 characters
//   setTR069X("value")  chkTR069X(NULL)         asks a setter, or a checker
//   batch()                                     the batch validation of what the checkers have parked
//
// Behind " -> " stand the answer and what was done for it, in order, without what was read and asked of the LTE daemon. An
// answer "#" is a buffer that was left as it was. In words and values, \s is a blank, \n a new line and \t a tab.
#include "model/model.hpp"
#include "rows.hpp"
#include "support/match.hpp"

#include <kova/transaction.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

using fake::platform;

namespace {

std::string unescaped(std::string text) {
  for (const auto &[escape, meaning] : {std::pair{"\\s", " "}, {"\\n", "\n"}, {"\\t", "\t"}})
    for (std::size_t at; (at = text.find(escape)) != std::string::npos;)
      text.replace(at, 2, meaning);
  return text;
}

// NAME=ADDRESS/MASK/SPEED/MAC, of which the last may be missing
void add_interface(const std::string &name, const std::string &facts) {
  std::istringstream fields(facts);
  fake::Interface found{name, "", ""};
  std::string speed;
  std::getline(fields, found.address, '/');
  std::getline(fields, found.mask, '/');
  if (std::getline(fields, speed, '/') && !speed.empty()) found.speed = std::stoi(speed);
  std::getline(fields, found.mac, '/');
  std::erase_if(platform.interfaces, [&](const fake::Interface &other) { return other.name == name; });
  platform.interfaces.push_back(found);
}

// NUMBER=DUPLEX,FIRST CHANNEL,LAST CHANNEL
void add_band(const std::string &number, const std::string &facts) {
  BandInfo band = {};
  std::istringstream fields(facts);
  for (int *field : {&band.duplex, &band.earfcn_low, &band.earfcn_high}) {
    fields >> *field;
    fields.ignore(1);
  }
  band.band = std::stoi(number);
  platform.bands.push_back(static_cast<uint16_t>(band.band));
  platform.band_records[band.band] = band;
}

// What a word "KIND:KEY=VALUE" says of the device. One of no kind is a setting of the configuration.
// clang-format off
const std::map<std::string, void (*)(const std::string &key, const std::string &value)> kinds = {
    {"9",                  [](auto &key, auto &value) { platform.nvram[{9, key}] = value; }},
    {"missing",            [](auto &key, auto &) { platform.nvram.erase({0, key}), platform.tree.erase(key); }},
    {"refused",            [](auto &key, auto &) { platform.refused_key = key, platform.tree_refuses[key] = true; }},
    {"tree",               [](auto &key, auto &value) { platform.tree[key] = value; }},
    {"file",               [](auto &key, auto &value) { platform.files[key] = value; }},
    {"output",             [](auto &key, auto &value) { platform.output[key] = value; }},
    {"counter",            [](auto &key, auto &value) { platform.counters[key] = value; }},
    {"interface",          add_interface},
    {"band",               add_band},
    {"neighbour",          [](auto &ip, auto &mac) {
       std::string &table = platform.files["/proc/net/arp"];
       table += (table.empty() ? fake::neighbours_header : "") + fake::neighbour(ip, mac.c_str());
     }},
    {"instance",           [](auto &, auto &value) { gSecondaryInstance = value == "2" ? 1 : 0; }},
    {"bound",              [](auto &, auto &value) { setBindInterface(value.c_str()); }},
    {"mac",                [](auto &, auto &value) { platform.mac = value; }},
    {"uptime",             [](auto &, auto &value) { platform.uptime = std::stol(value); }},
    {"now", [](auto &, auto &value) { platform.now = std::stol(value); }},
    {"tree-opens",         [](auto &, auto &value) { platform.tree_opens = value == "1"; }},
    {"sockets",            [](auto &, auto &value) { platform.sockets = value == "1"; }},
    // what the platform's rules answer; "rules:3/9=-1" is one of them
    {"rules",              [](auto &key, auto &value) {
       platform.rule = [rule = key, answer = std::stoi(value)](int group, const std::string &, int item) {
         return rule.empty() || rule == std::to_string(group) + "/" + std::to_string(item) ? answer : 0;
       };
     }},
    {"dmz",                [](auto &, auto &value) { platform.dmz_param = std::stoi(value); }},
    {"scan-mode",          [](auto &, auto &value) { platform.scan_mode = std::stoi(value); }},
    {"writable",           [](auto &, auto &value) { platform.writable = std::stoi(value); }}};
// clang-format on

void change(const std::string &word) {
  const std::size_t equals = word.find('='), colon = word.substr(0, equals).find(':');
  const std::string name = unescaped(word.substr(0, equals)),
                    value = equals == std::string::npos ? "" : unescaped(word.substr(equals + 1));
  if (const auto kind = kinds.find(name.substr(0, colon)); kind != kinds.end())
    kind->second(colon == std::string::npos ? "" : name.substr(colon + 1), value);
  else if (colon == std::string::npos)
    platform.nvram[{0, name}] = value;
  else
    ADD_FAILURE() << "nobody knows what " << word << " says";
}

struct Accessors {
  kova_getter *get = nullptr;
  kova_setter *set = nullptr;
  kova_checker *check = nullptr;
};

Accessors accessors_named(const std::string &name) {
  for (const auto *parameter : kova::model::parameters()) {
    if (parameter->get && name == parameter->get.name) return {parameter->get.call, nullptr, nullptr};
    if (parameter->set && name == parameter->set.name) return {nullptr, parameter->set.call, nullptr};
    if (parameter->check && name == parameter->check.name) return {nullptr, nullptr, parameter->check.call};
  }
  return {};
}

// What a call answers; nothing when there is no such accessor.
std::string answer(const std::string &name, const std::string &argument) {
  if (name == "batch") {
    char faults[4096] = "";
    const int verdict = kovaCheckTR069ParameterValues(faults, sizeof faults);
    return std::to_string(verdict) + (*faults == '\0' ? "" : " ") + faults;
  }
  const Accessors accessors = accessors_named(name);
  if (accessors.get != nullptr) {
    int result = 0;
    const unsigned int room = argument.empty() ? 256 : static_cast<unsigned int>(std::stoul(argument));
    const std::string text = fake::get(accessors.get, result, room);
    return (result == 0 ? "" : std::to_string(result) + " ") + '"' +
           (text == std::string(256, '#') ? "#" : text) + '"';
  }
  const std::string value =
      unescaped(argument.substr(std::min<std::size_t>(argument.size(), 1), argument.size() - 2));
  const char *const given = argument == "NULL" ? nullptr : value.c_str();
  if (accessors.set != nullptr) return std::to_string(accessors.set(given));
  return accessors.check != nullptr ? std::to_string(accessors.check(name.c_str(), given)) : "";
}

class Cases : public fake::Test {};

TEST_F(Cases, ComeOutAsTheySay) {
  setenv("TZ", "UTC0", 1);
  std::size_t count = 0;
  for (const auto &entry : std::filesystem::directory_iterator(KOVA_CASES)) {
    std::ifstream file(entry.path());
    int number = 0;
    for (std::string line; std::getline(file, line);) {
      SCOPED_TRACE(entry.path().filename().string() + ":" + std::to_string(++number));
      std::istringstream words(line);
      std::string word;
      if (line.empty() || line[0] == '#') continue;
      if (line.starts_with("given") || line.starts_with("and ")) {
        words >> word;
        if (word == "given") {
          answer("batch", ""); // drops what was parked
          platform = {};
          gSecondaryInstance = 0;
          setBindInterface(nullptr);
        }
        while (words >> word)
          change(word);
        continue;
      }
      const auto parts = kova::test::matched(line, R"((\w+)\((.*?)\)( -> (.*))?)");
      ASSERT_FALSE(parts.empty()) << line;
      platform.calls.clear();
      std::string outcome = answer(parts[1], parts[2]);
      ASSERT_FALSE(outcome.empty()) << parts[1] << " is no accessor";
      for (const std::string &done : platform.calls)
        if (!done.starts_with("read ") && !done.starts_with("lte ")) outcome += "; " + done;
      for (std::size_t at; (at = outcome.find('\n')) != std::string::npos;)
        outcome.replace(at, 1, "\\n");
      EXPECT_EQ(parts[4], outcome);
      ++count;
    }
  }
  EXPECT_GT(count, 0U);
}

} // namespace
