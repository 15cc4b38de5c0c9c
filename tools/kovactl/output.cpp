#include "kovactl/output.hpp"

#include <sys/ioctl.h>
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

// 0 for what is not a terminal.
size_t columns_of(int descriptor) {
  if (isatty(descriptor) != 1) return 0;
  winsize size{};
  const bool known = ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return known ? size.ws_col : 80;
}

bool is_control(unsigned char c) {
  return c < 0x20 || c == 0x7f;
}

// A stored text must not drive the terminal, nor break a message into lines.
std::string escaped(std::string_view text) {
  static constexpr char digits[] = "0123456789abcdef";
  std::string result;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '\n')
      result += "\\n";
    else if (c == '\t')
      result += "\\t";
    else if (is_control(byte))
      result.append("\\x").append({digits[byte >> 4], digits[byte & 15]});
    else
      result += c;
  }
  return result;
}

// Texts of other bytes than UTF-8 are shown as far as they can be.
std::string dump(const Json &value, int indent) {
  return value.dump(indent, ' ', false, Json::error_handler_t::replace);
}

// Without the cells at the end of rows that say nothing.
Table trimmed(const Table &table) {
  Table cells = table;
  for (auto &row : cells)
    while (!row.empty() && row.back().text.empty())
      row.pop_back();
  return cells;
}

// In characters, of UTF-8.
size_t width(std::string_view text) {
  return static_cast<size_t>(
      std::ranges::count_if(text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

// Of the columns but the last of each row.
std::vector<size_t> column_widths(const Table &table) {
  std::vector<size_t> widths;
  for (const auto &row : table) {
    widths.resize(std::max(widths.size(), row.size()));
    for (size_t i = 0; i + 1 < row.size(); ++i)
      widths[i] = std::max(widths[i], width(row[i].text));
  }
  return widths;
}

constexpr size_t gap = 2;

bool fits(const Table &table, const std::vector<size_t> &widths, size_t columns) {
  return std::ranges::all_of(table, [&](const auto &row) {
    size_t used = row.empty() ? 0 : width(row.back().text);
    for (size_t i = 0; i + 1 < row.size(); ++i)
      used += widths[i] + gap;
    return used <= columns;
  });
}

} // namespace

Row heading(const std::vector<std::string> &names) {
  Row row;
  for (const std::string &name : names)
    row.push_back({name, Style::Faint});
  return row;
}

Output::Output(bool json, std::string_view colour)
    : json_(json), results_(open(STDOUT_FILENO, std::cout, colour)),
      messages_(open(STDERR_FILENO, std::cerr, colour)) {
  results_.escaped = results_.columns > 0; // what is no terminal receives a text as it is
  if (json) results_.colour = messages_.colour = false;
}

Output::Stream Output::open(int descriptor, std::ostream &out, std::string_view colour) {
  const size_t columns = columns_of(descriptor);
  return {out, colour == "always" || (colour == "auto" && columns > 0 && !is_set("NO_COLOR")), true, columns};
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

void Output::print_again(const Table &table) const {
  if (lines_again_ > 0) results_.out << "\033[" << lines_again_ << "A\033[J";
  lines_again_ = table.size();
  print(table);
}

void Output::print_wide(const Table &table) const {
  write(results_, table, true);
}

void Output::print_document(std::string_view text) const {
  while (!text.empty()) {
    const size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end);
    if (results_.escaped && line.ends_with('\n'))
      results_.out << escaped(line.substr(0, line.size() - 1)) << '\n';
    else
      results_.out << (results_.escaped ? escaped(line) : line);
  }
}

void Output::complain(const Table &table) const {
  write(messages_, table);
}

void Output::note(std::string_view text) const {
  messages_.out << "kovactl: " << escaped(text) << '\n';
}

ExitStatus Output::failure(std::string_view text, ExitStatus status) const {
  if (json_)
    print(Json{{"error", text}});
  else
    complain({{{"kovactl: " + std::string(text), Style::Alarm}}});
  return status;
}

void Output::progress(std::string_view text) const {
  if (messages_.columns == 0) return;
  const size_t room = columns_of(STDERR_FILENO) - 1; // it may have been resized; a full line would wrap
  std::string line = escaped(text).substr(0, room);
  line.resize(room, ' ');
  messages_.out << '\r' << line << '\r' << std::flush;
}

bool Output::complete() const {
  if (results_.out.flush()) return true;
  complain({{{"kovactl: the result could not be written", Style::Alarm}}});
  return false;
}

void Output::write(const Stream &stream, const Table &table, bool foldable) {
  Table cells = trimmed(table);
  for (auto &row : cells)
    for (Cell &cell : row)
      if (stream.escaped) cell.text = escaped(cell.text);
  const std::vector<size_t> widths = column_widths(cells);
  const bool folded = foldable && stream.columns > 0 && !fits(cells, widths, stream.columns);
  for (const auto &row : cells) {
    for (size_t i = 0; i < row.size(); ++i) {
      const auto &[text, style] = row[i];
      const bool styled = stream.colour && style != Style::Plain;
      stream.out << (styled ? escape_sequence(style) : "") << text << (styled ? "\033[0m" : "");
      if (i + 1 == row.size()) continue;
      if (folded && i == 0)
        stream.out << "\n    ";
      else if (!folded)
        stream.out << std::string(widths[i] - width(text) + gap, ' ');
      else if (!text.empty())
        stream.out << std::string(gap, ' ');
    }
    stream.out << '\n';
  }
  stream.out.flush();
}

} // namespace kova::ctl
