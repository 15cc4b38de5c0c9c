// Rule lists as tests see them: texts of rows, and rows read through the exported getters.
#pragma once

#include "fake/fake.hpp"

#include <kova/security.h>

#include <climits>
#include <cstdio>
#include <string>

namespace fake {

// "" is the empty list; a separator more is a row more.
inline Strings rows_of(const std::string &text, char separator = ';') {
  Strings rows;
  if (text.empty()) return rows;
  std::size_t begin = 0;
  for (std::size_t end; (end = text.find(separator, begin)) != std::string::npos; begin = end + 1)
    rows.push_back(text.substr(begin, end - begin));
  rows.push_back(text.substr(begin));
  return rows;
}

inline std::string list_of(const Strings &rows) {
  std::string text;
  for (std::size_t i = 0; i < rows.size(); ++i)
    text += (i > 0 ? ";" : "") + rows[i];
  return text;
}

// What a row getter puts into a buffer that was full of '#', and what it answers.
inline std::string row(kova_row_getter *getter, int index, unsigned int len = 256, int expected = 0) {
  std::string buffer(len + 16, '#');
  EXPECT_EQ(getter(index, buffer.data(), len), expected) << index;
  EXPECT_EQ(buffer.substr(len), std::string(16, '#')) << "written past the buffer";
  buffer.resize(len);
  return buffer.substr(0, buffer.find('\0'));
}

// A line of the kernel's neighbour table, in its columns.
inline std::string neighbour(const std::string &ip, const char *mac, const char *flags = "0x2",
                             const char *device = "br0") {
  char line[128];
  std::snprintf(line, sizeof line, "%-16s 0x1         %-12s%-17s     *        %s\n", ip.c_str(), flags, mac,
                device);
  return line;
}
inline const std::string neighbours_header =
    "IP address       HW type     Flags       HW address            Mask     Device\n";

inline void expect_all(int (*check)(const char *row), int result, const Strings &rows) {
  for (const std::string &row : rows)
    EXPECT_EQ(check(row.c_str()), result) << row.substr(0, 100);
}

inline std::string event(const std::string &name) {
  return "run test_cpeevent call \"" + name + "\"";
}

} // namespace fake
