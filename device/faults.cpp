#include "device/faults.hpp"

#include "device/file_system.hpp"
#include "device/paths.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace kova::device {

using Json = nlohmann::json;

bool Faults::any() const {
  return delay > 0 || break_after > 0 || reboot_after > 0 || !failing.empty() || deaf;
}

bool Faults::fails(std::string_view path) const {
  return std::ranges::any_of(failing, [path](const std::string &each) {
    return each == path || (each.ends_with('.') && path.starts_with(each));
  });
}

Faults faults() {
  if (!is_there(faults_file())) return {};
  const Json json = Json::parse(text_of(faults_file()), nullptr, false);
  if (!json.is_object()) return {}; // taken away meanwhile
  return {json.value("delay", 0), json.value("breakAfter", 0), json.value("rebootAfter", 0),
          json.value("failing", std::vector<std::string>()), json.value("deaf", false)};
}

void set_faults(const Faults &faults) {
  if (!faults.any()) return remove_tree(faults_file());
  write_file(faults_file(), Json{{"delay", faults.delay},
                                 {"breakAfter", faults.break_after},
                                 {"rebootAfter", faults.reboot_after},
                                 {"failing", faults.failing},
                                 {"deaf", faults.deaf}}
                                .dump());
}

std::vector<std::string> described(const Faults &faults) {
  std::vector<std::string> words;
  const auto add = [&words](int number, const std::string &before, const std::string &after) {
    if (number > 0) words.push_back(before + std::to_string(number) + after);
  };
  add(faults.delay, "each message of a session takes ", " s");
  add(faults.break_after, "a session breaks off after message ", "");
  add(faults.reboot_after, "a reboot after message ", " of a session");
  for (const std::string &path : faults.failing)
    words.push_back("9002 for " + path);
  if (faults.deaf) words.emplace_back("no answer to connection requests");
  return words;
}

} // namespace kova::device
