// The table of DHCP clients, from the server's lease file.
#include "src/frame/text.hpp"
#include "src/frame/trace.hpp"

#include <kova/lan.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr const char *lease_file = "/var/config/tarn_dhcpd.leases";
constexpr std::size_t longest_line = 256; // and so the longest entry, with its ";"
constexpr std::size_t table_size = 4096;

// Appends one lease to the table; false when the line is none. An entry has the four fields of its line, in
// their order.
bool append_entry(char *line, char *table, std::size_t &used) {
  const std::size_t length = std::strlen(line);
  const bool cut = length == longest_line - 1 && line[length - 1] != '\n';
  if (cut) return false;
  char field[4][longest_line];
  trim_string_newline(line);
  if (std::sscanf(line, "%255[^,],%255[^,],%255[^,],%255[^,]", field[0], field[1], field[2], field[3]) != 4)
    return false;
  const int added =
      std::snprintf(table + used, table_size - used, "%s,%s,%s,%s;", field[0], field[1], field[2], field[3]);
  used += static_cast<std::size_t>(added);
  return true;
}

void read_leases(FILE *leases, char *table) {
  char line[longest_line];
  std::size_t used = 0;
  while (table_size - used >= longest_line && std::fgets(line, sizeof line, leases) != nullptr) {
    if (append_entry(line, table, used)) continue;
    dbg_trace("file %s format is not correct\n", lease_file);
    break;
  }
  if (used > 0) table[used - 1] = '\0'; // the last ";"
}

} // namespace

int kovaGetTR069DhcpClientStatus(char *buf, unsigned int buflen) {
  const kova::OwnedText owned(static_cast<char *>(std::calloc(1, table_size)));
  char *table = owned.writable();
  FILE *leases = std::fopen(lease_file, "r");
  if (leases != nullptr) {
    if (table != nullptr) read_leases(leases, table);
    std::fclose(leases);
  }
  return kova::answer(owned, buf, buflen);
}
