#include "kovactl/device_log.hpp"

#include "src/frame/channel.hpp"

#include <kova/frame.h>
#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <fstream>
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

std::string quoted(const std::string &word) {
  return word.empty() || word.find_first_of(" \t\n;'\"") != std::string::npos ? "'" + word + "'" : word;
}

std::string command_line(const Json &record) {
  std::string line = field(record, "program");
  if (const auto arguments = record.find("args"); arguments != record.end())
    for (const Json &argument : *arguments)
      line += " " + quoted(argument.is_string() ? argument.get<std::string>() : argument.dump());
  return line;
}

std::string description(const Json &record) {
  const std::string kind = field(record, "kind");
  if (kind == "event") return field(record, "method") + " " + quoted(field(record, "event"));
  if (kind == "command") return command_line(record);
  if (kind == "syslog") return field(record, "tag") + ": " + field(record, "text");
  if (kind == "device") return field(record, "what");
  if (kind != "service") return record.contains("unreadable") ? field(record, "unreadable") : record.dump();
  std::string text = field(record, "request");
  if (text == "unknown") text += " " + field(record, "command");
  if (const std::string payload = field(record, "payload"); !payload.empty()) text += " " + quoted(payload);
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

// The daemon takes its clients in the order in which they came: when it confirms this one, earlier ones are served.
void await_service() {
  MsgHandle handle{};
  if (msg_handleInit(channel::agent_type, &handle) != 0) return;
  MsgRecord record{};
  msg_init(&record, channel::daemon_type, channel::connect_announcement);
  msg_sendComfirm(&handle, &record);
  msg_handleCleanup(&handle);
}

Table as_table(const std::vector<Json> &records) {
  constexpr size_t kind_width = 7; // the same in every part of a log that is followed
  Table table;
  for (const Json &record : records) {
    std::string kind = field(record, "kind");
    kind.resize(std::max(kind.size(), kind_width), ' ');
    table.push_back({{field(record, "time"), Style::Faint},
                     {kind},
                     {field(record, "pid"), Style::Faint},
                     {description(record), Style::Bold}});
  }
  return table;
}

ExitStatus show_log(const Output &output, const std::filesystem::path &file, const LogOptions &options) {
  LogReader reader(file);
  std::vector<Json> records = reader.records();
  if (options.tail && records.size() > *options.tail)
    records.erase(records.begin(), records.end() - static_cast<std::ptrdiff_t>(*options.tail));
  if (!options.follow) {
    if (output.json())
      output.print(Json(records));
    else
      output.print(as_table(records));
    return Success;
  }
  for (;; records = reader.records()) {
    if (output.json())
      for (const Json &record : records)
        output.print_line(record);
    else
      output.print(as_table(records));
    if (!output.complete()) return Failure;
    std::this_thread::sleep_for(100ms);
  }
}

} // namespace kova::ctl
