// Calls of accessors and what must come of them, read from cases/*.txt:
//
//   given oper_mode=2 9:lan_mac=001A2B ...      a device on which this is stored, and nothing else; the words are below
//   and oper_mode=1                             changes the device
//   kovaGetX()  kovaGetX(4)                     asks a getter, by default with room for 256 characters
//   setTR069X("value")  chkTR069X(NULL)         asks a setter, or a checker
//   batch()                                     the batch validation of what the checkers have parked
//
// Behind " -> " stand the answer and what was done for it, in order, without what was read. An answer "#" is a buffer that was
// left as it was. In words, \s is a blank, \n a new line and \t a tab.
#include "fake/fake.hpp"
#include "model/model.hpp"

#include <kova/transaction.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
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
  fake::Interface interface { name, "", "" };
  std::string speed;
  std::getline(fields, interface.address, '/');
  std::getline(fields, interface.mask, '/');
  if (std::getline(fields, speed, '/') && !speed.empty()) interface.speed = std::stoi(speed);
  std::getline(fields, interface.mac, '/');
  std::erase_if(platform.interfaces, [&](const fake::Interface &other) { return other.name == name; });
  platform.interfaces.push_back(interface);
}

// What a word says of the device: "KEY=VALUE" of the configuration, "9:KEY=VALUE" of the run-time section, or one of these.
void change(const std::string &word) {
  const std::size_t equals = word.find('='), colon = word.substr(0, equals).find(':');
  const std::string name = unescaped(word.substr(0, equals)), kind = name.substr(0, colon),
                    key = colon == std::string::npos ? "" : name.substr(colon + 1),
                    value = equals == std::string::npos ? "" : unescaped(word.substr(equals + 1));
  const std::map<std::string, std::map<std::string, std::string> *> stores = {
      {"tree", &platform.tree},
      {"file", &platform.files},
      {"output", &platform.output},
      {"counter", &platform.counters}};
  const std::map<std::string, int *> answers = {{"writable", &platform.writable},
                                                {"scan-mode", &platform.scan_mode},
                                                {"dmz", &platform.dmz_param},
                                                {"mode-and-bandwidth", &platform.mode_and_bandwidth}};
  if (const auto store = stores.find(kind); store != stores.end())
    (*store->second)[key] = value;
  else if (const auto code = answers.find(kind); code != answers.end())
    *code->second = std::stoi(value);
  else if (kind == "9")
    platform.nvram[{9, key}] = value;
  else if (kind == "missing")
    platform.nvram.erase({0, key}), platform.tree.erase(key);
  else if (kind == "refused")
    platform.refused_key = key, platform.tree_refuses[key] = true;
  else if (kind == "tree-opens")
    platform.tree_opens = value == "1";
  else if (kind == "instance")
    gSecondaryInstance = value == "2" ? 1 : 0;
  else if (kind == "bound")
    setBindInterface(value.c_str());
  else if (kind == "mac")
    platform.mac = value;
  else if (kind == "interface")
    add_interface(key, value);
  else if (kind == "rules") // what they answer; "rules:3/9=-1" is one of them
    platform.rule = [key, answer = std::stoi(value)](int group, const std::string &, int item) {
      return key.empty() || key == std::to_string(group) + "/" + std::to_string(item) ? answer : 0;
    };
  else
    platform.nvram[{0, name}] = value;
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
  static const std::regex call(R"((\w+)\((.*?)\)( -> (.*))?)");
  std::size_t count = 0;
  for (const auto &entry : std::filesystem::directory_iterator(KOVA_CASES)) {
    std::ifstream file(entry.path());
    int number = 0;
    for (std::string line; std::getline(file, line);) {
      SCOPED_TRACE(entry.path().filename().string() + ":" + std::to_string(++number));
      std::istringstream words(line);
      std::string word;
      std::smatch parts;
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
      ASSERT_TRUE(std::regex_match(line, parts, call)) << line;
      platform.calls.clear();
      std::string outcome = answer(parts[1], parts[2]);
      ASSERT_FALSE(outcome.empty()) << parts[1] << " is no accessor";
      for (const std::string &done : platform.calls)
        if (!done.starts_with("read ")) outcome += "; " + done;
      for (std::size_t at; (at = outcome.find('\n')) != std::string::npos;)
        outcome.replace(at, 1, "\\n");
      EXPECT_EQ(parts[4], outcome);
      ++count;
    }
  }
  EXPECT_GT(count, 0U);
}

} // namespace
