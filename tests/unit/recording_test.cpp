// What each accessor does on the scripted platform, compared with recording.txt. scripts/generate.sh records it anew.
//
// A value that is told, stored or judged as it came is "$" there, and so is the parameter's own path: what is done
// alike about several values, or on several devices, is one line. "#" is a buffer that was left as it was.
#include "fake/fake.hpp"
#include "model/model.hpp"

#include <kova/transaction.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

using fake::platform;
using fake::Strings;
using kova::model::Parameter;

namespace {

// What the accessors find on the device.
struct Device {
  const char *name;
  std::optional<std::string> otherwise; // what everything reads as that has no value of its own
  const char *settings = "";
  void (*change)() = [] {};
};
// clang-format off
const Device devices[] = {
    {"empty", {}}, {"0", "0"}, {"1", "1"},
    {"2", "2", "", [] { platform.rule = [](int, const std::string &, int) { return 2; }; }}, // an answer that refuses nothing
    {"router", "1", "lan_ip=192.168.1.1 lan_netmask=255.255.255.0 dhcpStart=192.168.1.100 dhcpEnd=192.168.1.200 oper_mode=2 "
                    "SIPServerMode=0 MACFilterMode=0 URLFilterMode=0 TZ=GMT_000"},
    {"secondary", "1", "", [] { gSecondaryInstance = 1; }},
    {"failing", "1", "", [] { platform.stores = platform.has_copies = platform.tree_opens = false; }},
    {"refusing", "1", "", [] {
       platform.rule = [](int, const std::string &, int) { return -2; };
       platform.mode_and_bandwidth = platform.mode_and_rate = platform.scan_mode = platform.dmz_param = -1;
       platform.writable = 0;
     }}};
// clang-format on

void start(const Device &device) {
  platform = {};
  gSecondaryInstance = 0;
  platform.otherwise = device.otherwise;
  platform.now = 1'700'000'000;
  platform.preset(0, device.settings);
  if (device.otherwise) // numbers that read alike in either order of bytes
    for (const char *server : {"", "sec_"})
      platform.files[std::string("/tmp/") + server + "udpEchoServerStatistics"] =
          std::string(152, device.otherwise->front());
  device.change();
}

const char *given(const std::string &value) {
  return value == "NULL" ? nullptr : value.c_str();
}

std::string without_value(std::string text, std::string value) {
  if (value == "NULL") value.clear();
  for (const char before : {'=', ' '})
    if (text.ends_with(before + value)) return text.substr(0, text.size() - value.size()) + "$";
  return text;
}

// Each thing that came about, and what it came of.
class Outcomes {
public:
  void add(const std::string &outcome, const std::string &source) {
    if (sources_[outcome].empty()) order_.push_back(outcome);
    sources_[outcome] += " " + source;
  }
  // A line for each, without the sources where all agree.
  std::string text(const std::string &indent) const {
    if (order_.size() == 1) return order_[0];
    std::string text = "\n";
    for (const std::string &outcome : order_)
      text += indent + sources_.at(outcome) + outcome;
    return text;
  }

private:
  std::map<std::string, std::string> sources_;
  Strings order_;
};

// An answer, and what was done for it. What is read at one time is in no order: compilers differ.
std::string outcome(const std::string &answer, const std::string &value) {
  std::string text = ": " + answer;
  Strings calls = std::exchange(platform.calls, {});
  const auto is_read = [](const std::string &call) { return call.starts_with("read "); };
  for (auto at = calls.begin(); at != calls.end(); at = std::find_if(at, calls.end(), is_read)) {
    const auto end = std::find_if_not(at, calls.end(), is_read);
    std::sort(at, end);
    at = end;
  }
  for (const std::string &call : calls)
    text += "; " + without_value(call, value);
  std::ranges::replace(text, '\n', '~');
  return text + "\n";
}

std::string get(kova_getter *getter) {
  std::string buffer(1 << 14, '\0');
  buffer[0] = '#'; // stays where nothing is told
  const int result = getter(buffer.data(), 256);
  buffer.resize(buffer.find('\0'));
  const std::string stored = platform.otherwise.value_or("");
  return outcome((result == 0 ? "" : std::to_string(result) + " ") +
                     (buffer == stored ? "$" : "\"" + buffer + "\""),
                 stored);
}

std::string check(const Parameter &parameter, const std::string &value) {
  const std::string path(parameter.path);
  const int result = parameter.check.call(path.c_str(), given(value));
  const std::string checked = outcome(std::to_string(result), value);
  char faults[4096] = "";
  const int verdict = kovaCheckTR069ParameterValues(faults, sizeof faults);
  std::string batch = std::to_string(verdict) + (*faults == '\0' ? "" : " ") + faults;
  if (const auto at = batch.find(path); at != std::string::npos) batch.replace(at, path.size(), "$");
  return checked + (result == 0 ? "          then the batch" + outcome(batch, value) : "");
}

// Values of every kind, and those at the edges of what the row says that it takes.
Strings values_of(const Parameter &parameter) {
  Strings values = {"NULL", "", "0", "1", "2", "-1", "007", "5abc", "192.168.1.150", "true", "<"};
  const auto &allowed = parameter.allowed;
  std::istringstream words{std::string(allowed.words)};
  for (std::string word; words >> word;)
    values.push_back(word);
  if (allowed.least != allowed.most) {
    const long long least = allowed.least, most = std::min(allowed.most, 0L + INT_MAX); // on every word size
    for (const long long number : {least - 1, least, most, most + 1})
      values.push_back(std::to_string(number));
  }
  std::set<std::string> seen;
  std::erase_if(values, [&](const std::string &value) { return !seen.insert(value).second; });
  return values;
}

std::string record(const Parameter &parameter) {
  Outcomes told, checked, set;
  for (const Device &device : devices) {
    Outcomes checked_here, set_here;
    for (const std::string &value : values_of(parameter)) {
      const std::string quoted = given(value) == nullptr ? value : '"' + value + '"';
      start(device);
      if (parameter.check) checked_here.add(check(parameter, value), quoted);
      start(device);
      if (parameter.set)
        set_here.add(outcome(std::to_string(parameter.set.call(given(value))), value), quoted);
    }
    start(device);
    if (parameter.get) told.add(get(parameter.get.call), device.name);
    if (parameter.check) checked.add(checked_here.text("       "), device.name);
    if (parameter.set) set.add(set_here.text("       "), device.name);
  }
  std::string text;
  if (parameter.get) text += std::string("  ") + parameter.get.name + told.text("    ");
  if (parameter.check) text += std::string("  ") + parameter.check.name + checked.text("    ");
  if (parameter.set) text += std::string("  ") + parameter.set.name + set.text("    ");
  return text;
}

class Recording : public fake::Test {};

TEST_F(Recording, OfEachParameterIsAsItWas) {
  setenv("TZ", "UTC0", 1);
  std::map<std::string, std::string> recorded;
  std::ifstream file(KOVA_RECORDING);
  std::string path;
  for (std::string line; std::getline(file, line);)
    if (line.starts_with(" "))
      recorded[path] += line + "\n";
    else
      path = line;
  const char *anew = std::getenv("KOVA_RECORD");
  std::ofstream output(anew != nullptr ? anew : "/dev/null");
  for (const Parameter *parameter : kova::model::parameters()) {
    testing::internal::CaptureStdout();
    const std::string now = record(*parameter);
    testing::internal::GetCapturedStdout();
    output << parameter->path << "\n" << now;
    if (anew == nullptr) {
      EXPECT_EQ(recorded[std::string(parameter->path)], now)
          << parameter->path << " does something else; scripts/generate.sh records it anew";
    }
    recorded.erase(std::string(parameter->path));
  }
  if (anew == nullptr) {
    EXPECT_TRUE(recorded.empty()) << recorded.begin()->first << " is no parameter";
  }
}

} // namespace
