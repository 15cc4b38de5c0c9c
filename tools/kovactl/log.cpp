// log: what the device was asked to do.
#include "kovactl/log.hpp"

#include "device/log.hpp"
#include "kovactl/agent.hpp"
#include "kovactl/command.hpp"
#include "kovactl/commands.hpp"
#include "request/request_text.hpp"
#include "request/shortened.hpp"
#include "src/frame/channel.hpp"

#include <kova/frame.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <fstream>
#include <map>
#include <optional>
#include <thread>

namespace kova::ctl {
namespace {

using namespace std::chrono_literals;

// A line that is no record (the disk was full) is kept as it is.
Json parsed(const std::string &line) {
  Json record = Json::parse(line, nullptr, false);
  return record.is_object() ? record : Json{{"unreadable", line}};
}

std::string field(const Json &record, const char *name) {
  const auto at = record.find(name);
  if (at == record.end()) return "";
  return at->is_string() ? at->get<std::string>() : at->dump();
}

std::string shell_quoted(const std::string &word) {
  return word.empty() || word.find_first_of(" \t\n;'\"") != std::string::npos ? "'" + word + "'" : word;
}

std::string command_line(const Json &record) {
  std::string line = field(record, "program");
  if (const auto arguments = record.find("args"); arguments != record.end())
    for (const Json &argument : *arguments)
      line += " " + shell_quoted(argument.is_string() ? argument.get<std::string>() : argument.dump());
  return line;
}

std::string description(const Json &record) {
  const std::string kind = field(record, "kind");
  if (kind == "event") return field(record, "method") + " " + shell_quoted(field(record, "event"));
  if (kind == "command") return command_line(record);
  if (kind == "syslog") return field(record, "tag") + ": " + field(record, "text");
  if (kind == "device" || kind == "cwmp") return field(record, "what");
  if (kind != "service") return record.contains("unreadable") ? field(record, "unreadable") : record.dump();
  std::string text = field(record, "request");
  if (text == "unknown") text += " " + field(record, "command");
  if (const std::string payload = field(record, "payload"); !payload.empty())
    text += " " + shell_quoted(payload);
  return text;
}

} // namespace

std::vector<Json> LogReader::records() {
  struct stat now {};
  if (stat(file_.c_str(), &now) != 0) return {};
  std::vector<Json> found;
  struct stat before {};
  const std::filesystem::path earlier = file_.string() + ".1";
  if (now.st_ino != inode_ && stat(earlier.c_str(), &before) == 0 && before.st_ino == inode_)
    found = records_in(earlier); // the rest of the log that was put aside meanwhile
  if (now.st_ino != inode_ || now.st_size < offset_) offset_ = 0;
  inode_ = now.st_ino;
  for (Json &record : records_in(file_))
    found.push_back(std::move(record));
  return found;
}

std::vector<Json> LogReader::records_in(const std::filesystem::path &path) {
  std::vector<Json> found;
  std::ifstream file(path, std::ios::binary);
  file.seekg(offset_);
  for (std::string line; std::getline(file, line) && !file.eof(); offset_ = file.tellg())
    found.push_back(parsed(line));
  return found;
}

void LogReader::skip() {
  records();
}

std::vector<Json> LogReader::own_records() {
  std::vector<Json> found = records();
  const pid_t self = getpid();
  std::erase_if(found, [self](const Json &record) {
    return record.value("pid", 0) != self && record.value("asker", 0) != self;
  });
  return found;
}

// The daemon takes its clients in the order in which they came: when it confirms this one, earlier ones are
// served.
void await_service() {
  MsgHandle handle{};
  if (msg_handleInit(channel::agent_type, &handle) != 0) return;
  MsgRecord record{};
  msg_init(&record, channel::daemon_type, channel::connect_announcement);
  msg_sendComfirm(&handle, &record);
  msg_handleCleanup(&handle);
}

namespace {

constexpr size_t time_width = 24, kind_width = 7,
                 pid_width = 5; // the same in every part of a log that is followed

std::string padded(std::string text, size_t width) {
  text.resize(std::max(text.size(), width), ' ');
  return text;
}

Table log_headings() {
  return {
      heading({padded("TIME", time_width), padded("KIND", kind_width), padded("PID", pid_width), "WHAT"})};
}

} // namespace

Table log_table(const std::vector<Json> &records) {
  Table table;
  for (const Json &record : records) {
    table.push_back({{field(record, "time"), Style::Faint},
                     {padded(field(record, "kind"), kind_width)},
                     {padded(field(record, "pid"), pid_width), Style::Faint},
                     {description(record), Style::Bold}});
  }
  return table;
}

namespace {

struct LogOptions {
  std::optional<int> tail; // only so many of the last records
  std::vector<std::string> kinds;
  std::string since; // as it was typed; afterwards as the log writes times
  bool follow = false;
};

const std::vector<std::string> kinds = {"service", "event", "command", "syslog", "device", "cwmp"};

std::string utc(std::time_t time) {
  char text[32];
  std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", std::gmtime(&time));
  return text;
}

std::optional<std::time_t> ago(const std::string &text) {
  static const std::map<char, std::time_t> units = {{'s', 1}, {'m', 60}, {'h', 3600}, {'d', 86400}};
  if (text.empty() || !units.contains(text.back())) return std::nullopt;
  const std::string count = text.substr(0, text.size() - 1);
  if (!number_rule(count).empty()) return std::nullopt;
  return std::time(nullptr) - std::stol(count) * units.at(text.back());
}

// "90s", "10m", "2h", "1d" ago; "12:30", "12:30:15" today; "2026-11-21" or "2026-11-21T12:30:15", in UTC
// with a "Z".
std::string moment(const std::string &text) {
  if (const auto time = ago(text)) return utc(*time);
  std::time_t now = std::time(nullptr);
  for (const char *form : {"%H:%M", "%H:%M:%S", "%Y-%m-%d", "%Y-%m-%dT%H:%M", "%Y-%m-%dT%H:%M:%S"}) {
    std::tm time = *std::localtime(&now);
    time.tm_hour = time.tm_min = time.tm_sec = 0;
    const char *end = strptime(text.c_str(), form, &time);
    if (!end) continue;
    time.tm_isdst = -1;
    if (*end == '\0') return utc(std::mktime(&time));
    if (std::string_view(end) == "Z") return utc(timegm(&time));
  }
  throw request::UsageError(request::quoted(text) + " is no time: 10m, 12:30 or 2026-11-21T12:30:00 are");
}

bool is_wanted(const Json &record, const LogOptions &options, const std::string &since) {
  const bool kind =
      options.kinds.empty() || std::ranges::find(options.kinds, field(record, "kind")) != options.kinds.end();
  return kind && field(record, "time") >= since;
}

void show(const Output &output, const std::vector<Json> &records) {
  if (output.json())
    for (const Json &record : records)
      output.print_line(record);
  else
    output.print(log_table(records));
}

ExitStatus log(const Output &output, const LogOptions &options) {
  const std::string since = options.since.empty() ? "" : moment(options.since);
  boot(output);
  LogReader reader(device::log_file());
  const auto wanted = [&] {
    std::vector<Json> records = reader.records();
    std::erase_if(records, [&](const Json &record) { return !is_wanted(record, options, since); });
    return records;
  };
  std::vector<Json> records = wanted();
  if (options.tail && std::ssize(records) > *options.tail)
    records.erase(records.begin(), records.end() - *options.tail);
  if (!options.follow && output.json()) {
    output.print(Json(records));
    return Success;
  }
  if (!output.json() && (options.follow || !records.empty())) output.print(log_headings());
  show(output, records);
  while (options.follow) {
    if (!output.complete()) return Failure;
    std::this_thread::sleep_for(100ms);
    show(output, wanted());
  }
  return Success;
}

} // namespace

void add_log(Commands &commands) {
  auto [command, options] = commands.add<LogOptions>("log", "Show what the device was asked to do", log);
  command.option("--tail", "N", &options.tail, "Only the last N records").check(number_rule);
  command.option("--kind", "KIND", &options.kinds, "Only records of this kind; may be given again")
      .one_of(kinds);
  command.option("--since", "TIME", &options.since,
                 "Only what came after: 10m, 2h ago; 12:30 today; 2026-11-21T12:30:00");
  command.flag("--follow", options.follow, "Go on with what is asked from now on");
}

} // namespace kova::ctl
