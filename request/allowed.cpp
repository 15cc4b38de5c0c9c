#include "request/allowed.hpp"

#include "platform/host/rule_admin.hpp"

#include <algorithm>
#include <sstream>

namespace kova::request {
namespace {

void restrict_to_condition(AllowedValues &values, const model::Allowed &allowed) {
  std::istringstream words{std::string(allowed.words)};
  std::vector<std::pair<std::string, std::string>> named;
  for (std::string word; words >> word;) {
    const auto known = std::ranges::find(values.words, word, &std::pair<std::string, std::string>::first);
    named.emplace_back(word, known == values.words.end() ? "" : known->second);
  }
  if (!named.empty()) values.words = std::move(named);
  if (allowed.least < allowed.most) values.range = {allowed.least, allowed.most};
}

std::string described(const AllowedValues &values) {
  if (values.range)
    return "a number from " + std::to_string(values.range->first) + " to " +
           std::to_string(values.range->second);
  std::string text;
  for (const auto &[word, meaning] : values.words)
    text += (text.empty() ? "" : ", ") + word;
  return values.words.size() > 1 ? "one of " + text : text;
}

} // namespace

AllowedValues allowed_values(const model::Parameter &parameter) {
  AllowedValues values;
  if (!parameter.writable()) return values;
  const model::Allowed &allowed = parameter.allowed;
  if (allowed.rule) {
    const int rule = *allowed.rule;
    if (const auto told = host::describe_rule(rule >> 8, rule & 0xff))
      values = {told->text, told->range, told->words, told->length, told->pattern};
  }
  restrict_to_condition(values, allowed);
  if (values.text.empty() || !allowed.words.empty() || allowed.least < allowed.most)
    values.text = described(values);
  return values;
}

} // namespace kova::request
