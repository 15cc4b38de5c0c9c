// Keeping the management server's settings across a configuration reset.
#include "src/frame/settings.hpp"
#include "src/frame/shell.hpp"
#include "src/frame/trace.hpp"

#include <kova/management.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

namespace {

constexpr const char *backup_file = "/var/log/.backup_settings",
                     *remove_backup = "rm -rf /var/log/.backup_settings";
constexpr int line_size = 255; // a longer line is cut, and loses its newline

constexpr const char *kept_settings[] = {
    "TR_ENABLE",   "TR_ACS_URL",   "TR_ACS_USER",   "TR_ACS_PASS",   "TR_INFORM_ENABLE",   "TR_CLOUDKEY",
    "S_TR_ENABLE", "S_TR_ACS_URL", "S_TR_ACS_USER", "S_TR_ACS_PASS", "S_TR_INFORM_ENABLE", "S_TR_CLOUDKEY"};

FILE *open_backup(const char *mode) {
  FILE *file = std::fopen(backup_file, mode);
  if (file == nullptr) dbg_trace("failed to create backup-settings file %s\n", backup_file);
  return file;
}

int back_up() {
  FILE *file = open_backup("w");
  if (file == nullptr) return -1;
  for (const char *key : kept_settings) {
    char line[line_size];
    const int length = std::snprintf(line, sizeof line, "%s=%s\n", key, kova::load(key).chars);
    if (length > 0) std::fputs(line, file);
  }
  std::fclose(file);
  return 0;
}

// Any key is taken, not only those that are kept: the file may have been written by other firmware.
void restore_line(char *line) {
  trim_string_newline(line);
  char *separator = std::strchr(line, '=');
  if (separator == nullptr || separator == line) return;
  *separator = '\0';
  kova::store(line, separator + 1);
}

int restore() {
  if (access(backup_file, F_OK) != 0) return 0;
  FILE *file = open_backup("r");
  if (file == nullptr) return -1;
  char line[line_size];
  while (std::fgets(line, sizeof line, file) != nullptr)
    restore_line(line);
  std::fclose(file);
  kova::run(remove_backup);
  return 0;
}

} // namespace

int backup_restore_settings(int mode) {
  constexpr int backup_mode = 1, restore_mode = 2;
  if (mode == backup_mode) return back_up();
  return mode == restore_mode ? restore() : 0;
}
