#include "platform/host/rule_kinds.hpp"

#include "platform/host/whole_number.hpp"

#include <algorithm>
#include <vector>

namespace kova::host {

namespace {

constexpr int refused = -1; // by a rule that tells no faults apart

// Calls use(word, meaning) for each word until it answers true; whether it did.
template <class Use>
bool any_word(Words words, Use use) {
  while (!words.empty()) {
    const std::string_view entry = words.substr(0, words.find('|'));
    const std::string_view word = entry.substr(0, entry.find(' '));
    if (use(word, entry.substr(std::min(word.size() + 1, entry.size())))) return true;
    words.remove_prefix(std::min(entry.size() + 1, words.size()));
  }
  return false;
}

std::vector<std::pair<std::string, std::string>> listed(Words words) {
  std::vector<std::pair<std::string, std::string>> list;
  any_word(words, [&list](std::string_view word, std::string_view meaning) {
    list.emplace_back(word, meaning);
    return false;
  });
  return list;
}

// A number says nothing by itself, any other word does.
std::string word_text(const std::pair<std::string, std::string> &word) {
  const bool explains_itself = word.second.empty() || !is_digit(word.first.front());
  return explains_itself ? word.first : word.first + " (" + word.second + ")";
}

RuleDescription number_description(std::int64_t min, std::int64_t max, std::string_view unit, Words special) {
  RuleDescription description;
  description.range = {min, max};
  description.words = listed(special);
  description.unit = unit;
  description.text = in_words(description);
  return description;
}

int judge_range(std::string_view value, std::int64_t min, std::int64_t max, int outside) {
  const auto number = whole_number<std::int64_t>(value);
  return number && *number >= min && *number <= max ? accepted : outside;
}

// "[ -~]" of XML Schema: the characters of the class as ranges.
std::string class_pattern(const CharacterClass &of) {
  const auto escaped = [](char c) { return std::string(is_one_of("\\[]^-", c) ? "\\" : "") + c; };
  std::string pattern = "[";
  for (char first = ' '; first <= '~'; ++first) {
    if (!of.holds(first)) continue;
    char last = first;
    while (last < '~' && of.holds(static_cast<char>(last + 1)))
      ++last;
    pattern += escaped(first);
    if (last > first) pattern += (last > first + 1 ? "-" : "") + escaped(last);
    first = last;
  }
  return pattern + "]";
}

std::string counted(const CharacterClass &of, std::size_t min, std::size_t max) {
  return class_pattern(of) + "{" + std::to_string(min) + "," + std::to_string(max) + "}";
}

// The forms of a time zone, in which "A" stands for a capital letter, "9" for a digit, all else for itself.
constexpr std::string_view zone_codes[] = {"AAA_099", "AAA_-99", "A_99:99", "A_-9:99"};

bool has_form(std::string_view text, std::string_view form) {
  return std::ranges::equal(text, form, [](char c, char of_form) {
    if (of_form == 'A') return c >= 'A' && c <= 'Z';
    return of_form == '9' ? is_digit(c) : c == of_form;
  });
}

} // namespace

RuleDescription described(std::string text, std::string pattern) {
  RuleDescription description;
  description.text = std::move(text);
  description.pattern = std::move(pattern);
  return description;
}

std::string in_words(const RuleDescription &description) {
  const auto &[text, range, words, length, pattern, unit, takes_empty] = description;
  if (range) {
    std::string meanings;
    for (const auto &[word, meaning] : words)
      meanings.append(meanings.empty() ? " (" : ", ").append(word).append(": ").append(meaning);
    return "a number" + (unit.empty() ? "" : " of " + unit) + " from " + std::to_string(range->first) +
           " to " + std::to_string(range->second) + meanings + (meanings.empty() ? "" : ")");
  }
  if (words.size() == 2) return word_text(words.front()) + " or " + word_text(words.back());
  std::string list;
  for (const auto &word : words)
    list += (list.empty() ? "" : ", ") + word_text(word);
  return words.size() > 1 ? "one of " + list : list;
}

int Number::judge(std::string_view value) const {
  if (value.empty()) return empty;
  if (!std::ranges::all_of(value, is_digit)) return outside;
  return judge_range(value, min, max, outside);
}

RuleDescription Number::describe() const {
  return number_description(min, max, unit, special);
}

int SignedNumber::judge(std::string_view value) const {
  return value.empty() ? empty_value : judge_range(value, min, max, bad_value);
}

RuleDescription SignedNumber::describe() const {
  return number_description(min, max, unit, {});
}

int OneOf::judge(std::string_view value) const {
  if (any_word(words, [value](std::string_view word, std::string_view) { return word == value; }))
    return accepted;
  return value.empty() ? empty_value : other;
}

RuleDescription OneOf::describe() const {
  RuleDescription description;
  description.words = listed(words);
  description.text = in_words(description);
  return description;
}

int Text::judge(std::string_view value) const {
  const bool fits = value.size() >= min && value.size() <= max;
  if (fits && std::ranges::all_of(value, of.holds)) return accepted;
  return value.empty() ? empty_value : other;
}

RuleDescription Text::describe() const {
  const std::string lengths = min == 0 ? "at most " : std::to_string(min) + " to ";
  RuleDescription description =
      described(lengths + std::to_string(max) + " " + std::string(of.name), counted(of, min, max));
  description.length = {min, max};
  return description;
}

namespace {
constexpr std::size_t longest_credential = 32;
}

int SnmpCredential::judge(std::string_view value) const {
  if (value.size() < shortest || value.size() > longest_credential) return refused;
  return Text{0, longest_credential, visible_in_list, bad_value}.judge(value);
}

RuleDescription SnmpCredential::describe() const {
  return Text{shortest, longest_credential, visible_in_list}.describe();
}

namespace {
constexpr Text pass_phrase{8, 63, printable}, network_key{64, 64, hex_digit};
}

int WpaPassPhrase::judge(std::string_view value) const {
  return value.size() == network_key.max ? network_key.judge(value) : pass_phrase.judge(value);
}

RuleDescription WpaPassPhrase::describe() const {
  const RuleDescription phrase = pass_phrase.describe(), key = network_key.describe();
  RuleDescription description =
      described(phrase.text + ", or 64 hexadecimal digits", phrase.pattern + "|" + key.pattern);
  description.length = {pass_phrase.min, network_key.max};
  return description;
}

int TimeZone::judge(std::string_view value) const {
  if (value.empty()) return empty_value;
  for (const std::string_view form : zone_codes)
    if (has_form(value, form)) return accepted;
  const bool is_offset = has_form(value, "+99:99") || has_form(value, "-99:99");
  const bool is_of_earth = is_offset && value.substr(1, 2) <= "14" && value.substr(4) <= "59";
  return is_of_earth ? accepted : bad_value;
}

RuleDescription TimeZone::describe() const {
  std::string pattern = "[+\\-](0[0-9]|1[0-4]):[0-5][0-9]";
  for (const std::string_view form : zone_codes) {
    pattern += '|';
    for (const char c : form)
      pattern += c == 'A' ? "[A-Z]" : c == '9' ? "[0-9]" : std::string(1, c);
  }
  return described("a time zone as MEZ_001, PST_-08, A_04:30 or +13:30", std::move(pattern));
}

} // namespace kova::host
