// The log of a virtual device as its records.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace kova::test {

// A text as it is, any other value as JSON. at() throws for a field that a record does not have.
using LogRecord = std::map<std::string, std::string>;

// Those of one kind; every line of the log must be a record.
std::vector<LogRecord> log_records(const std::filesystem::path &log, const std::string &kind);

} // namespace kova::test
