#include "device/device.hpp"

#include "device/error.hpp"
#include "device/factory.hpp"
#include "device/fd.hpp"
#include "device/layout.hpp"
#include "device/log.hpp"
#include "device/paths.hpp"
#include "device/radio/feed.hpp"
#include "device/service.hpp"
#include "device/zone.hpp"
#include "platform/host/nvram_admin.hpp"
#include "platform/host/tree_admin.hpp"

#include <fcntl.h>
#include <nlohmann/json.hpp>
#include <sys/file.h>

#include <fstream>
#include <set>
#include <sstream>

namespace fs = std::filesystem;

namespace kova::device {
namespace {

// Marks in run/. Each is set when its step is complete, so that a step that was interrupted is taken again.
fs::path created_mark() {
  return run_dir() / "created";
}
fs::path booted_mark() {
  return run_dir() / "booted";
}
fs::path resetting_mark() {
  return run_dir() / "resetting";
}

// One process at a time changes the state of the device.
class Lock {
public:
  Lock() : file_(open((run_dir() / "lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666)) {
    if (!file_) fail("cannot open " + (run_dir() / "lock").string());
    while (flock(file_.get(), LOCK_EX) != 0)
      if (errno != EINTR) fail("cannot lock " + (run_dir() / "lock").string());
  }

private:
  Fd file_;
};

std::string text_of(const fs::path &path) {
  std::ostringstream text;
  text << std::ifstream(path).rdbuf();
  return text.str();
}

void write_mark(const fs::path &path, const std::string &text) {
  std::ofstream file(path, std::ios::trunc);
  if (!(file << text).flush()) fail("cannot write " + path.string());
}

std::string host_boot() {
  return text_of("/proc/sys/kernel/random/boot_id");
}
bool is_created() {
  return fs::exists(created_mark()) && !fs::exists(resetting_mark());
}
bool is_booted() {
  return is_created() && fs::exists(booted_mark()) && text_of(booted_mark()) == host_boot();
}

void log_change(const char *what) {
  log_record({{"kind", "device"}, {"pid", getpid()}, {"what", what}});
}

void forget_settings() {
  std::set<int> sections;
  for (const auto &entry : host::nvram_entries())
    sections.insert(entry.section);
  for (const int section : sections)
    host::nvram_clear_section(section);
  host::tree_clear();
}

void store_missing_settings() {
  std::vector<host::NvramEntry> missing;
  for (auto &entry : factory_settings())
    if (!host::nvram_find(entry.section, entry.key)) missing.push_back(std::move(entry));
  host::nvram_store(missing);
}

void store_missing_leaves() {
  std::vector<host::TreeLeaf> missing;
  for (auto &leaf : factory_tree())
    if (!host::tree_find(leaf.first)) missing.push_back(std::move(leaf));
  host::tree_store(missing);
}

// Adds what is missing and overwrites nothing: the stores may have been in use before the device was.
void create() {
  if (fs::exists(resetting_mark())) forget_settings();
  store_missing_settings();
  store_missing_leaves();
  write_mark(created_mark(), "");
  remove_tree(resetting_mark());
  log_change("created");
}

void boot() {
  stop_service();
  stop_feed();
  host::nvram_clear_section(host::runtime_section);
  host::nvram_store(runtime_facts());
  store_posix_zone();
  lay_out_files();
  lay_out_programs();
  start_service();
  settle_feed();
  write_mark(booted_mark(), host_boot());
  log_change("booted");
}

void stop() {
  const bool was_up = is_booted() || service_pid() || feed_pid();
  remove_tree(booted_mark());
  stop_service();
  stop_feed();
  if (was_up) log_change("stopped");
}

void make_own_directories() {
  host::claim_device_dir();
  for (const char *name : {"store", "root", "bin", "log", "run"})
    make_directories(host::device_dir() / name);
}

void bring_up(bool with_service) {
  make_own_directories();
  const Lock lock;
  if (!is_created()) create();
  if (!is_booted()) return boot();
  if (!programs_are_ours()) lay_out_programs();
  if (!with_service) return;
  settle_feed();
  if (service_pid()) return;
  start_service();
  log_change("daemon restarted");
}

} // namespace

Turn::Turn() : file_(open((run_dir() / "turn").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666)) {
  while (file_ >= 0 && flock(file_, LOCK_EX) != 0 && errno == EINTR) {
  }
}

Turn::~Turn() {
  if (file_ >= 0) close(file_);
}

Status status() {
  return {host::device_dir(), is_created(), is_booted(), service_pid(), feed_pid()};
}

void up() {
  bring_up(true);
}

void ensure_booted() {
  if (!is_booted() || !programs_are_ours()) bring_up(false);
}

void down() {
  if (!fs::exists(run_dir())) return;
  const Lock lock;
  stop();
}

void reset() {
  make_own_directories();
  {
    const Lock lock;
    stop();
    write_mark(resetting_mark(), "");
    write_mark(log_file(), "");
  }
  up();
}

} // namespace kova::device
