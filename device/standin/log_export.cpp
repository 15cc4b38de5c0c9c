#include "device/file_system.hpp"
#include "device/log.hpp"
#include "device/paths.hpp"
#include "device/standin/tools.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <deque>
#include <fstream>
#include <limits>

namespace kova::device {
namespace {

// Whoever reads the export has a buffer for it, whose size nobody tells: 100 lines of 159 characters at most.
constexpr std::size_t lines_kept = 100, longest_line = 159;
constexpr std::streamoff tail = 256 << 10; // of the log, in bytes

std::string text_of(const nlohmann::json &record, const char *field) {
  const auto found = record.find(field);
  return found != record.end() && found->is_string() ? found->get<std::string>() : "";
}

std::string joined(std::string text, const std::string &more) {
  if (!text.empty() && !more.empty()) text += ' ';
  return text += more;
}

std::string what_happened(const nlohmann::json &record) {
  std::string text = text_of(record, "tag");
  if (!text.empty()) text += ':';
  for (const char *field :
       {"request", "payload", "method", "event", "program", "what", "server", "reason", "text"})
    text = joined(text, text_of(record, field));
  if (const auto arguments = record.find("args"); arguments != record.end())
    for (const auto &argument : *arguments)
      text = joined(text, argument.is_string() ? argument.get<std::string>() : argument.dump());
  return text;
}

// "2026-11-21 04:11:11 command ifconfig eth0 down"
std::string line_of(const nlohmann::json &record) {
  std::string time = text_of(record, "time").substr(0, sizeof "2026-11-21T04:11:11" - 1);
  std::ranges::replace(time, 'T', ' ');
  std::string line = joined(joined(time, text_of(record, "kind")), what_happened(record));
  std::ranges::replace_if(
      line, [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
  std::size_t length = std::min(line.size(), longest_line);
  while (length < line.size() && (static_cast<unsigned char>(line[length]) & 0xC0U) == 0x80U)
    length--; // no part of a character
  return line.substr(0, length) + "\n";
}

std::deque<std::string> last_lines() {
  std::deque<std::string> lines;
  for (const auto &path : {earlier_log_file(), log_file()}) {
    std::ifstream log(path, std::ios::ate | std::ios::binary);
    const std::streamoff size = log.tellg();
    log.seekg(std::max<std::streamoff>(0, size - tail));
    if (size > tail) log.ignore(std::numeric_limits<std::streamsize>::max(), '\n'); // the rest of a record
    for (std::string text; std::getline(log, text);) {
      const auto record = nlohmann::json::parse(text, nullptr, false);
      if (!record.is_object()) continue;
      lines.push_back(line_of(record));
      if (lines.size() > lines_kept) lines.pop_front();
    }
  }
  return lines;
}

void export_log() {
  std::string text;
  for (const std::string &line : last_lines())
    text += line;
  write_file(on_device("/tmp/M4412_Log.dat"), text);
}

} // namespace

int run_maintenance(const Arguments &arguments) {
  if (arguments != Arguments{"exportlog"}) {
    std::fputs("usage: maintenance.cgi exportlog\n", stderr);
    return 1;
  }
  try {
    export_log();
    return 0;
  } catch (const std::exception &error) {
    std::fprintf(stderr, "maintenance.cgi: %s\n", error.what());
    return 1;
  }
}

} // namespace kova::device
