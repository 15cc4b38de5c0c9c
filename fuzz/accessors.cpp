// An agent's calls in any order, with any texts, on a platform that answers anything. Each step of the input is what to
// do, where in the data model, and a text.
#include "fake/fake.hpp"
#include "fuzz/input.hpp"
#include "model/model.hpp"

#include <kova/transaction.h>

#include <vector>

namespace {

using namespace kova;
using fake::platform;

enum Operation : uint8_t { Check, Validate, Set, Get, Row, Otherwise, Stored, Platform, operations };

void validate() {
  std::vector<char> faults(1 << 14);
  kovaCheckTR069ParameterValues(faults.data(), static_cast<int>(faults.size()));
}

void get(const model::Parameter &parameter) {
  const bool unbounded = parameter.get.name == std::string_view("kovaGetTR069DeviceLog");
  std::vector<char> answer(unbounded ? 1 << 14 : 256);
  parameter.get.call(answer.data(), 256);
}

void use_row(const model::RowList &list, int choice, const char *text) {
  const int index = choice / 4 - 2;
  char row[256];
  if (choice % 4 == 0 && list.add) list.add.call();
  if (choice % 4 == 1 && list.set) list.set.call(index, text);
  if (choice % 4 == 2 && list.remove) list.remove.call(index);
  if (choice % 4 == 3) list.get.call(index, row, sizeof row);
}

// The setting that the library read last becomes the text.
void store(const std::string &text) {
  if (platform.keys_read.empty()) return;
  const std::string key = platform.keys_read.back(); // "9 KEY" or "/tree/path"
  const bool setting = key.find(' ') == 1;
  if (setting)
    platform.nvram[{key[0] - '0', key.substr(2)}] = text;
  else
    platform.tree[key.substr(key.find_first_not_of('/'))] = text;
}

// Between its double quotes a command line leaves nothing to the shell.
bool is_inert(const std::string &line) {
  const std::size_t first = line.find('"');
  if (first == std::string::npos) return true;
  std::size_t at = first + 1;
  for (; at < line.size() && line[at] != '"'; ++at) {
    if (line[at] == '$' || line[at] == '`') return false;
    if (line[at] == '\\') ++at;
  }
  return at + 1 == line.size();
}

void step(fuzz::Input &input) {
  const uint8_t operation = input.byte() % operations, choice = input.byte();
  const std::size_t place = choice * 256U + input.byte();
  const std::string text = input.text();
  const model::Parameter &parameter = *model::parameters()[place % model::parameters().size()];
  switch (operation) {
  case Check:
    if (parameter.check) parameter.check.call(parameter.path.data(), text.c_str());
    break;
  case Validate:
    validate();
    break;
  case Set:
    if (parameter.set) parameter.set.call(text.c_str());
    break;
  case Get:
    if (parameter.get) get(parameter);
    break;
  case Row:
    use_row(model::lists()[place % model::lists().size()], choice % 64, text.c_str());
    break;
  case Otherwise:
    platform.otherwise = text;
    break;
  case Stored:
    store(text);
    break;
  default:
    gSecondaryInstance = choice & 1U;
    platform.judges = (choice & 2U) != 0;
    platform.rule = [pass = (choice & 4U) != 0](int, const std::string &, int) { return pass ? 0 : -1; };
    platform.interfaces = {{text, "10.1.2.3", "255.0.0.0", 100, text}};
  }
  for (const std::string &done : platform.done)
    fuzz::require(!done.starts_with("run ") || is_inert(done));
  platform.done.clear();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  GTEST_FLAG_SET(break_on_failure, true); // the platform's own expectations
  platform = {};
  gSecondaryInstance = 0;
  for (fuzz::Input input(data, size); !input.empty();)
    step(input);
  validate(); // and the check list is empty for the next
  return 0;
}
