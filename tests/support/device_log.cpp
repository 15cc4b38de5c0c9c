#include "support/device_log.hpp"

#include <nlohmann/json.hpp>

#include <fstream>

namespace kova::test {

std::vector<LogRecord> log_records(const std::filesystem::path &log, const std::string &kind) {
  std::vector<LogRecord> found;
  std::ifstream file(log);
  for (std::string line; std::getline(file, line);) {
    LogRecord record;
    const auto fields = nlohmann::json::parse(line);
    for (const auto &[name, value] : fields.items())
      record[name] = value.is_string() ? value.get<std::string>() : value.dump();
    if (record.at("kind") == kind) found.push_back(std::move(record));
  }
  return found;
}

} // namespace kova::test
