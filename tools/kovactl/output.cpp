#include "kovactl/output.hpp"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>

namespace kova::ctl {
namespace {

constexpr const char *escape_sequence(Style style) {
  switch (style) {
  case Style::Plain:
    return "";
  case Style::Faint:
    return "\033[2m";
  case Style::Bold:
    return "\033[1m";
  case Style::Alarm:
    return "\033[1;31m";
  }
  return "";
}

bool is_set(const char *variable) {
  const char *value = std::getenv(variable);
  return value && *value;
}

bool is_control(unsigned char c) {
  return c < 0x20 || c == 0x7f;
}

// Texts of other bytes than UTF-8 are shown as far as they can be.
std::string dump(const Json &value, int indent) {
  return value.dump(indent, ' ', false, Json::error_handler_t::replace);
}

} // namespace

Output::Output(bool json)
    : json_(json), results_(open(STDOUT_FILENO, std::cout, json)),
      messages_(open(STDERR_FILENO, std::cerr, json)) {}

Output::Stream Output::open(int descriptor, std::ostream &out, bool json) {
  const bool terminal = isatty(descriptor) == 1;
  return {out, terminal, terminal && !json && !is_set("NO_COLOR")};
}

void Output::print(const Json &value) const {
  results_.out << dump(value, 2) << '\n';
}

void Output::print_line(const Json &value) const {
  results_.out << dump(value, -1) << std::endl;
}

void Output::print(const Table &table) const {
  write(results_, table);
}

void Output::complain(const Table &table) const {
  write(messages_, table);
}

void Output::note(std::string_view text) const {
  messages_.out << "kovactl: " << shown(messages_, text) << '\n';
}

ExitStatus Output::failure(std::string_view text, ExitStatus status) const {
  if (json_)
    print(Json{{"error", text}});
  else
    complain({{{"kovactl: " + std::string(text), Style::Alarm}}});
  return status;
}

// A stored text must not drive the terminal; anything else receives it as it is.
std::string Output::shown(const Stream &stream, std::string_view text) {
  if (!stream.terminal) return std::string(text);
  static constexpr char digits[] = "0123456789abcdef";
  std::string escaped;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '\n')
      escaped += "\\n";
    else if (c == '\t')
      escaped += "\\t";
    else if (is_control(byte))
      escaped.append("\\x").append({digits[byte >> 4], digits[byte & 15]});
    else
      escaped += c;
  }
  return escaped;
}

void Output::write(const Stream &stream, const Table &table) {
  Table cells = table;
  std::vector<size_t> widths;
  for (auto &row : cells) {
    while (!row.empty() && row.back().text.empty())
      row.pop_back();
    widths.resize(std::max(widths.size(), row.size()));
    for (size_t i = 0; i < row.size(); ++i) {
      row[i].text = shown(stream, row[i].text);
      if (i + 1 < row.size()) widths[i] = std::max(widths[i], row[i].text.size());
    }
  }
  for (const auto &row : cells) {
    for (size_t i = 0; i < row.size(); ++i) {
      const auto &[text, style] = row[i];
      const bool styled = stream.colour && style != Style::Plain;
      stream.out << (styled ? escape_sequence(style) : "") << text << (styled ? "\033[0m" : "");
      if (i + 1 < row.size()) stream.out << std::string(widths[i] - text.size() + 2, ' ');
    }
    stream.out << '\n';
  }
  stream.out.flush();
}

} // namespace kova::ctl
