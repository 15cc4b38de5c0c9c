#include "device/log.hpp"

#include "device/date_time.hpp"
#include "device/device.hpp"
#include "device/fd.hpp"
#include "device/paths.hpp"

#include <fcntl.h>
#include <nlohmann/json.hpp>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <exception>

namespace kova::device {
namespace {

// Length of the well-formed UTF-8 character at the start of the text, 0 when there is none.
std::size_t character_length(std::string_view text) {
  const auto at = [text](std::size_t i) {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
  };
  const auto follows = [at](std::size_t i) { return (at(i) & 0xC0U) == 0x80U; };
  const unsigned first = at(0), second = at(1);
  if (first < 0x80) return 1;
  if (first >= 0xC2 && first <= 0xDF && follows(1)) return 2;
  if (first >= 0xE0 && first <= 0xEF && follows(1) && follows(2)) {
    const bool overlong = first == 0xE0 && second < 0xA0, surrogate = first == 0xED && second > 0x9F;
    return overlong || surrogate ? 0 : 3;
  }
  if (first >= 0xF0 && first <= 0xF4 && follows(1) && follows(2) && follows(3)) {
    const bool overlong = first == 0xF0 && second < 0x90, beyond = first == 0xF4 && second > 0x8F;
    return overlong || beyond ? 0 : 4;
  }
  return 0;
}

std::string with_escaped_bytes(std::string_view text) {
  std::string out;
  while (!text.empty()) {
    const std::size_t length = character_length(text);
    if (length > 0) {
      out += text.substr(0, length);
    } else {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\x%02x", static_cast<unsigned char>(text[0]));
      out += escape;
    }
    text.remove_prefix(length > 0 ? length : 1);
  }
  return out;
}

void escape_bytes(nlohmann::json &value) {
  if (value.is_string())
    value = with_escaped_bytes(value.get_ref<const std::string &>());
  else if (value.is_structured())
    for (auto &item : value)
      escape_bytes(item);
}

void append(const std::string &line) {
  const Fd file(open(log_file().c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666));
  if (file && write(file.get(), line.data(), line.size()) == static_cast<ssize_t>(line.size())) return;
  std::fprintf(stderr, "kova: cannot write %s: %s\n", log_file().c_str(), std::strerror(errno));
}

} // namespace

std::filesystem::path log_file() {
  return log_dir() / "device.log";
}

void log_record(nlohmann::json record) {
  try {
    escape_bytes(record);
    record["time"] = date_time(now(), Fraction::milliseconds);
    append(record.dump() + '\n');
  } catch (const std::exception &error) {
    std::fprintf(stderr, "kova: cannot log: %s\n", error.what());
  }
}

} // namespace kova::device
