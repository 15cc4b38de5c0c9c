#include "device/diagnostics.hpp"
#include "device/error.hpp"
#include "device/file_system.hpp"
#include "device/layout.hpp"
#include "device/paths.hpp"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <sstream>
#include <vector>

namespace fs = std::filesystem;

namespace kova::device {
namespace {

constexpr const char *stand_ins[] = {"brctl", "ifconfig", "kern",          "logger",
                                     "route", "sc",       "test_cpeevent", "ucfg"};
// Stand-ins that are called by an absolute path.
constexpr const char *placed_stand_ins[] = {
    "/usr/bin/test_cpeevent",
    "/etc/sysconfig/script/firewall_clear_rule.sh",
    "/etc/sysconfig/script/ntp.sh",
    "/home/www/cgi-bin/maintenance.cgi",
};
// Harmless programs of the host that shell lines of the device use.
constexpr const char *host_tools[] = {"awk", "cat", "cp", "cut",   "grep", "head",
                                      "rm",  "sed", "sh", "sleep", "tr"};

bool is_program(const fs::path &path) {
  std::error_code error;
  return ::access(path.c_str(), X_OK) == 0 && !fs::is_directory(path, error);
}

// The usual directories come first, so that a person's own wrappers do not become part of the device.
std::optional<fs::path> find_host_tool(const char *name) {
  const char *path = std::getenv("PATH");
  std::istringstream directories(std::string("/usr/bin:/bin:") + (path == nullptr ? "" : path));
  for (std::string directory; std::getline(directories, directory, ':');) {
    const fs::path program = fs::path(directory) / name;
    if (program.is_absolute() && program.parent_path() != bin_dir() && is_program(program)) return program;
  }
  return std::nullopt;
}

// Those of another version; nothing else in it is the device's.
void remove_other_links_in(const fs::path &directory) {
  const auto is_ours = [](const std::string &name) {
    return std::ranges::find(stand_ins, name) != std::end(stand_ins) ||
           std::ranges::find(host_tools, name) != std::end(host_tools);
  };
  std::error_code error;
  for (fs::directory_iterator entry(directory, error), end; !error && entry != end; entry.increment(error))
    if (entry->is_symlink(error) && !is_ours(entry->path().filename())) remove_tree(entry->path());
}

fs::path own_directory() {
  std::error_code error;
  return fs::read_symlink("/proc/self/exe", error).parent_path();
}

fs::path diagnostics_program(std::string_view tool) {
  return on_device("/bin/" + std::string(tool));
}

} // namespace

fs::path helper_program(std::string_view name) {
  const char *override_dir = std::getenv("KOVA_LIBEXEC");
  const fs::path directory = override_dir != nullptr && *override_dir != '\0'
                                 ? fs::path(override_dir)
                                 : own_directory() / KOVA_LIBEXEC_FROM_BIN;
  std::error_code error;
  fs::path program = fs::absolute(directory / name, error).lexically_normal();
  if (!is_program(program))
    throw std::runtime_error("program " + program.string() +
                             " is missing (KOVA_LIBEXEC names another directory)");
  return program;
}

void lay_out_programs(const fs::path &like) {
  const fs::path stand_in = helper_program("kova-standin"), diagnostics = helper_program("kova-diag");
  const auto lay_out = [&like](const fs::path &target, const fs::path &path) {
    make_link(target, path, like.empty() ? like : like / path.lexically_relative(host::device_dir()));
  };
  make_directories(bin_dir());
  remove_other_links_in(bin_dir());
  for (const char *name : host_tools) {
    if (const auto program = find_host_tool(name))
      lay_out(*program, bin_dir() / name);
    else
      std::fprintf(stderr, "kova: this host has no %s; device commands that use it fail\n", name);
  }
  for (const char *path : placed_stand_ins)
    lay_out(stand_in, on_device(path));
  for (const std::string_view tool : diagnostics_tools)
    lay_out(diagnostics, diagnostics_program(tool));
  for (const char *name : stand_ins)
    lay_out(stand_in, bin_dir() / name);
}

bool programs_are_ours() {
  const auto leads_to = [](const fs::path &link, const char *program) {
    std::error_code error;
    return fs::read_symlink(link, error) == helper_program(program);
  };
  return leads_to(bin_dir() / stand_ins[std::size(stand_ins) - 1], "kova-standin") &&
         leads_to(diagnostics_program(diagnostics_tools.back()), "kova-diag");
}

} // namespace kova::device
