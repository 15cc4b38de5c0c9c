// What the platform's checkers tell a person: what a rule takes, and what was refused last.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#pragma GCC visibility push(default)
namespace kova::host {

struct RuleDescription {
  // Completes "takes ...": "a number from 0 to 13".
  std::string text;
  std::optional<std::pair<std::int64_t, std::int64_t>> range;
  // Values, each with its meaning, which may be empty: those of the range that mean more than a number, else
  // all.
  std::vector<std::pair<std::string, std::string>> words;
  // In characters of the pattern.
  std::optional<std::pair<std::size_t, std::size_t>> length;
  // A regular expression of XML Schema that every value matches; empty: none.
  std::string pattern;
  // Of the number; may be empty.
  std::string unit;
  bool takes_empty = false;
};
// Nothing for an item that has no rule.
std::optional<RuleDescription> describe_rule(int group, int item);
// What words, range and unit say together, as in `text`; "" without them.
std::string in_words(const RuleDescription &description);

// What the rules refused to this process since it was last taken, in its order; of very many the last ones.
struct Judgement {
  int group, item;
  std::string value;
  int code;
};
std::vector<Judgement> take_refusals();
// The same of the web checks, each a sentence without a full stop. Some are asked out of curiosity: what
// matters is the last sentence before a failure.
std::vector<std::string> take_complaints();

} // namespace kova::host
#pragma GCC visibility pop
