// The text of a set request: it becomes assignments that mean the same when written as JSON, or an error with its line.
#include "kovactl/request_text.hpp"

#include "fuzz/input.hpp"
#include "kovactl/output.hpp"

using namespace kova;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  std::vector<ctl::Assignment> request;
  try {
    request = ctl::parse_request({reinterpret_cast<const char *>(data), size}, "input");
  } catch (const ctl::UsageError &error) {
    fuzz::require(std::string_view(error.what()).starts_with("input:"));
    return 0;
  }
  ctl::Json written = ctl::Json::array();
  for (const auto &[path, value] : request) {
    fuzz::require(!path.empty() && (path + value).find('\0') == std::string::npos);
    written.push_back({{"path", path}, {"value", value}});
  }
  std::string text;
  try {
    text = written.dump();
  } catch (const ctl::Json::type_error &) {
    return 0; // lines may hold other bytes than UTF-8
  }
  fuzz::require(ctl::parse_request(text, "written") == request);
  return 0;
}
