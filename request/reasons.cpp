#include "request/reasons.hpp"

#include "platform/host/console_admin.hpp"
#include "platform/host/rule_admin.hpp"
#include "request/allowed.hpp"
#include "request/combinations.hpp"
#include "request/interlocks.hpp"

#include <kova/frame.h>

#include <cstdarg>
#include <cstdio>
#include <sstream>

namespace kova::request {
namespace {

// The library's last message, which it composes for a debugger.
std::string last_trace;

// What the library says in a way that helps nobody but its authors, and what it means; "": nothing.
struct Saying {
  const char *text; // a part of it
  const char *meaning;
};
constexpr Saying sayings[] = {
    {"value error", ""},
    {"value(", ""},
    {"address error", ""},
    {"Invalid value", ""},
    {"Param Fail", ""},
    {"Fail to", ""},
    {"fail", ""},
    {" error(", ""},
    {"value is invalid", ""},
    {"disable, don't", ""},
    {"disable don't", ""},
    {"mode don't", ""},
    {"filter mode is", ""},
    {"DMZEnable false", ""},
    {"is refused", ""},
    {"failed to verify soundess", ""},
    {"successfully", ""},
    {"event ", ""},
    {"Invalid start IP address", "the first address is none"},
    {"Invalid end IP address", "the last address is none"},
    {"Please input start IP address", "the first address is missing"},
    {"can't be the same with gateway", "a host on the WAN side has no address of the LAN"},
    {"must be the same with gateway", "a host on the LAN side has an address of the LAN"},
    {"RANG_FAIL", "the last address lies before the first"},
    {"RTP Start Port", "the first port is not above the last"},
    {"can not set DMZ", "there is no DMZ in the router mode: set X_KOVA_WANSetting.OperMode first"},
    {"line is busy", "the line is in a call"},
    {"15 seconds", "the line was restarted less than 15 seconds ago"},
    {"ascii table", "it takes printable ASCII characters only"},
    {"at least one digit", "it takes at least one digit"},
    {"upper case", "it takes at least one upper-case letter"},
    {"lowerr case", "it takes at least one lower-case letter"},
    {"no space", "it takes no blank at its beginning or end"},
    {"at least one symbol", "it takes at least one symbol"},
    {"invalid character", "it takes none of \" % & ' + , : ; < > ? \\"},
};

std::string understood(const std::string &said) {
  for (const Saying &saying : sayings)
    if (said.find(saying.text) != std::string::npos) return saying.meaning;
  std::string text = said;
  for (size_t begin = 0; (begin = text.find('[')) != text.npos;) { // where it was said
    const size_t end = text.find(']', begin);
    if (end == text.npos) break;
    text.erase(begin, end + 1 - begin);
  }
  const auto unwanted = [](char c) { return c == ' ' || c == '\n' || c == '.' || c == '!'; };
  while (!text.empty() && unwanted(text.back()))
    text.pop_back();
  while (!text.empty() && unwanted(text.front()))
    text.erase(0, 1);
  return text;
}

std::string last_understood(std::span<const std::string> lines) {
  for (size_t i = lines.size(); i-- > 0;)
    if (std::string text = understood(lines[i]); !text.empty()) return text;
  return "";
}

// The name of the field of a row that holds this text alone; "it" when none does, or several.
std::string field_with(const std::string &text, const std::string &row, std::string_view form) {
  std::istringstream texts(row + ","), names{std::string(form)};
  std::string found, one, name;
  while (std::getline(texts, one, ',') && std::getline(names, name, ','))
    if (one == text) found = found.empty() ? name : "it";
  return found.empty() ? "it" : found;
}

// What only the rules know: the last of them that refused, else the parameter's own.
std::string allowed_text(const Assignment &assignment) {
  const auto refusals = host::take_refusals();
  const model::Parameter *parameter = model::find(assignment.path);
  const auto row = model::row_at(assignment.path);
  if (!refusals.empty())
    if (const auto rule = host::describe_rule(refusals.back().group, refusals.back().item))
      return (row ? field_with(refusals.back().value, assignment.value, row->list->form) : "it") + " takes " +
             rule->text;
  const std::string text = parameter ? allowed_values(*parameter).text
                           : row     ? std::string(row->list->form)
                                     : "";
  return text.empty() ? "" : "it takes " + text;
}

std::string joined(const std::string &one, const std::string &other) {
  return one + (one.empty() || other.empty() ? "" : "; ") + other;
}

} // namespace

void forget_reasons() {
  last_trace.clear();
  host::take_refusals();
  host::take_complaints();
  host::take_console_lines();
}

std::string reason(const Assignment &assignment) {
  const std::string trace = understood(last_trace);
  std::string console = last_understood(host::take_console_lines());
  const auto complaints = host::take_complaints();
  const std::string allowed = allowed_text(assignment);
  if (const auto closed = interlock_of(assignment.path)) return *closed;
  if (!console.empty()) return console;
  return joined(complaints.empty() ? trace : complaints.back(), allowed);
}

std::string reason_of_combination(std::span<const Assignment> request, const std::string &path) {
  const std::string trace = understood(last_trace);
  const auto complaints = host::take_complaints();
  std::string broken = broken_combination(request, path);
  if (!broken.empty()) return broken;
  return complaints.empty() ? trace : complaints.back();
}

} // namespace kova::request

// In the place of the library's own, which discards the message.
extern "C" __attribute__((visibility("default"))) void dbg_trace(const char *format, ...) {
  char text[512];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  if (!kova::request::understood(text).empty()) kova::request::last_trace = text;
}
