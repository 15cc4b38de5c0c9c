// Date-times as the log and the data model write them: UTC, "2026-11-21T03:16:16.123456Z".
#pragma once

#include <ctime>
#include <string>

namespace kova::device {

enum class Fraction { milliseconds, microseconds };

timespec now();
std::string date_time(const timespec &time, Fraction fraction);

} // namespace kova::device
