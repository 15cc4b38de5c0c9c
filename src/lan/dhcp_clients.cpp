// The table of DHCP clients, from the server's lease file.
#include "src/frame/growing_text.hpp"
#include "src/frame/text.hpp"
#include "src/frame/trace.hpp"

#include <kova/lan.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

using kova::GrowingText;

constexpr const char *lease_file = "/var/config/tarn_dhcpd.leases";
constexpr std::size_t longest_line = 256; // and so the longest entry, with its ";"
constexpr std::size_t table_size = 4096;

// Adds one lease to the table; false when the line is none. An entry has the four fields of its line, in their order.
bool add_entry(char *line, GrowingText &table) {
  const std::size_t length = std::strlen(line);
  const bool cut = length == longest_line - 1 && line[length - 1] != '\n';
  if (cut) return false;
  char field[4][longest_line];
  trim_string_newline(line);
  if (std::sscanf(line, "%255[^,],%255[^,],%255[^,],%255[^,]", field[0], field[1], field[2], field[3]) != 4)
    return false;
  table.add("%s%s,%s,%s,%s", table.empty() ? "" : ";", field[0], field[1], field[2], field[3]);
  return true;
}

void read_leases(FILE *leases, GrowingText &table) {
  char line[longest_line];
  while (table.length() + 1 + longest_line <= table_size &&
         std::fgets(line, sizeof line, leases) != nullptr) {
    if (add_entry(line, table)) continue;
    dbg_trace("file %s format is not correct\n", lease_file);
    break;
  }
}

} // namespace

int kovaGetTR069DhcpClientStatus(char *buf, unsigned int buflen) {
  const kova::OwnedText room(static_cast<char *>(std::calloc(1, table_size)));
  kova::GrowingText table(room.writable(), table_size);
  FILE *leases = std::fopen(lease_file, "r");
  if (leases != nullptr) {
    read_leases(leases, table);
    std::fclose(leases);
  }
  return kova::answer(table, buf, buflen);
}
