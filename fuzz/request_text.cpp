// The text of a set request: it becomes assignments that mean the same when written as JSON, or an error with its line.
#include "request/request_text.hpp"

#include "fuzz/input.hpp"

#include <nlohmann/json.hpp>

using namespace kova;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  std::vector<request::Assignment> parsed;
  try {
    parsed = request::parse_request({reinterpret_cast<const char *>(data), size}, "input");
  } catch (const request::UsageError &error) {
    fuzz::require(std::string_view(error.what()).starts_with("input:"));
    return 0;
  }
  nlohmann::json written = nlohmann::json::array();
  for (const auto &[path, value] : parsed) {
    fuzz::require(!path.empty() && (path + value).find('\0') == std::string::npos);
    written.push_back({{"path", path}, {"value", value}});
  }
  std::string text;
  try {
    text = written.dump();
  } catch (const nlohmann::json::type_error &) {
    return 0; // lines may hold other bytes than UTF-8
  }
  fuzz::require(request::parse_request(text, "written") == parsed);
  return 0;
}
