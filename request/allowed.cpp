#include "request/allowed.hpp"

#include "request/value_types.hpp"

#include <algorithm>
#include <limits>
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
  if (!allowed.form.empty()) values.text = allowed.form;
  if (!allowed.pattern.empty()) values.pattern = allowed.pattern;
  if (allowed.takes_empty) values.takes_empty = *allowed.takes_empty && (!allowed.rule || values.takes_empty);
}

template <typename Integer>
void restrict_to_numbers(AllowedValues &values) {
  using Limits = std::numeric_limits<Integer>;
  values.length.reset();
  values.pattern.clear();
  if (values.range)
    values.range = {std::max<std::int64_t>(values.range->first, Limits::min()),
                    std::min<std::int64_t>(values.range->second, Limits::max())};
  else if (values.words.empty())
    values.range = {Limits::min(), Limits::max()};
}

void restrict_to_type(AllowedValues &values, model::Type type) {
  std::erase_if(values.words, [type](const auto &word) { return !can_be(type, word.first); });
  if (type == model::Type::Boolean && values.words.empty()) values.words = {{"0", ""}, {"1", ""}};
  if (type == model::Type::Int) restrict_to_numbers<std::int32_t>(values);
  if (type == model::Type::UnsignedInt) restrict_to_numbers<std::uint32_t>(values);
}

} // namespace

AllowedValues allowed_values(const model::Parameter &parameter) {
  AllowedValues values;
  if (!parameter.writable()) return values;
  const model::Allowed &allowed = parameter.allowed;
  if (allowed.rule)
    values =
        host::describe_rule(kova_rule_group(*allowed.rule), kova_rule_item(*allowed.rule)).value_or(values);
  restrict_to_condition(values, allowed);
  restrict_to_type(values, parameter.type);
  if (const std::string text = in_words(values); !text.empty())
    values.text = (parameter.type == model::Type::List ? "a list, each " : "") + text;
  const bool says_so = values.text.empty() || (values.length && values.length->first == 0);
  if (values.takes_empty && !says_so) values.text += ", or nothing";
  return values;
}

} // namespace kova::request
