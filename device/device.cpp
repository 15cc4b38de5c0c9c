#include "device/device.hpp"

#include "device/error.hpp"
#include "device/factory.hpp"
#include "device/faults.hpp"
#include "device/file_system.hpp"
#include "device/identity.hpp"
#include "device/layout.hpp"
#include "device/log.hpp"
#include "device/paths.hpp"
#include "device/process.hpp"
#include "device/service.hpp"
#include "device/zone.hpp"
#include "platform/host/nvram_admin.hpp"
#include "platform/host/radio_admin.hpp"
#include "platform/host/tree_admin.hpp"
#include "src/frame/channel.hpp"

#include <unistd.h>

#include <algorithm>
#include <ctime>
#include <set>
#include <span>
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

fs::path serial_file() {
  return run_dir() / "serial";
}
std::string own_serial() {
  return text_of(serial_file());
}

// One process at a time changes the state of the device.
Lock state_lock() {
  return Lock(run_dir() / "lock", Lock::Kind::exclusive, std::chrono::seconds(60),
              "a change of the device's state");
}

std::string host_boot() {
  return text_of("/proc/sys/kernel/random/boot_id");
}
bool is_created() {
  return is_there(created_mark()) && !is_there(resetting_mark());
}
bool is_booted() {
  return is_created() && is_there(booted_mark()) && text_of(booted_mark()) == host_boot();
}

// False when there is none. Throws for what is somebody else's.
bool is_device() {
  switch (host::device_dir_state()) {
  case host::DirState::device:
    return true;
  case host::DirState::absent:
  case host::DirState::empty:
    return false;
  default:
    host::claim_device_dir(); // says what is the matter
    return true;
  }
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
  for (auto &entry : factory_settings(identity_of(own_serial())))
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
  if (is_there(resetting_mark())) forget_settings();
  store_missing_settings();
  store_missing_leaves();
  write_file(created_mark(), "");
  remove_tree(resetting_mark());
  log_change("created");
}

void stop_daemons() {
  std::for_each(std::rbegin(daemons), std::rend(daemons), stop_daemon);
  remove_tree(on_device("/tmp/mrhd_socket")); // one that was killed has left it
}

// The machine as device/redirect shows it: when it was started, in seconds of the host's up time, and its LAN
// address.
void write_hardware(const Identity &identity) {
  constexpr time_t seconds_to_boot = 20;
  timespec host_up_time{};
  clock_gettime(CLOCK_BOOTTIME, &host_up_time);
  write_file(run_dir() / "hardware", std::to_string(host_up_time.tv_sec - seconds_to_boot) + " " +
                                         with_colons(identity.lan_mac) + "\n");
}

// Without the feed the radio stands still.
void settle_feed(const Identity &identity) {
  const char *variable = std::getenv("KOVA_FEED");
  const bool wanted = variable == nullptr || std::string_view(variable) != "off";
  if (wanted == host::radio_is_on()) return;
  wanted ? host::switch_radio_on(identity.seed) : host::switch_radio_off();
}

bool is_missing(const Daemon &daemon) {
  const bool is_wanted = daemon.setting == nullptr ||
                         !host::nvram_find(host::configuration_section, daemon.setting).value_or("").empty();
  return is_wanted && !daemon_pid(daemon);
}

void start_when_asked_for(const Daemon &daemon, const Lock &lock) {
  if (is_missing(daemon)) start_daemon(daemon, words_of(text_of(arguments_of(daemon))), lock);
}

// The device runs without one of these as well.
void start_agents(const Lock &lock) {
  for (const Daemon &agent : management_agents) {
    try {
      start_when_asked_for(agent, lock);
    } catch (const std::exception &error) {
      log_change(error.what());
    }
  }
}

void boot(const Lock &lock, const fs::path &like) {
  stop_daemons();
  set_faults({});
  const Identity identity = identity_of(own_serial());
  write_hardware(identity);
  host::nvram_clear_section(host::runtime_section);
  host::nvram_store(runtime_facts(identity));
  host::switch_radio_on(identity.seed);
  settle_feed(identity);
  store_posix_zone();
  lay_out_files();
  lay_out_programs(like);
  start_daemon(service_daemon, {}, lock);
  write_file(booted_mark(), host_boot());
  log_change("booted");
}

void stop() {
  const auto runs = [](const Daemon &daemon) { return daemon_pid(daemon).has_value(); };
  const bool was_up = is_booted() || std::ranges::any_of(daemons, runs);
  remove_tree(booted_mark());
  stop_daemons();
  if (was_up) log_change("stopped");
}

constexpr const char *own_directories[] = {"store", "root", "bin", "log", "run"};

void make_own_directories() {
  host::claim_device_dir();
  for (const char *name : own_directories)
    make_directories(host::device_dir() / name);
}

void settle_serial(const std::optional<std::string> &wanted) {
  const std::string own = own_serial();
  if (own.empty())
    write_file(serial_file(), wanted.value_or(random_serial()));
  else if (wanted && *wanted != own)
    throw std::runtime_error("the device in " + host::device_dir().string() + " has the serial number " +
                             own + ": another one takes a new device");
}

void settle_service(const Lock &lock) {
  if (daemon_pid(service_daemon)) return;
  start_daemon(service_daemon, {}, lock);
  log_change("daemon restarted");
}

enum class Daemons { as_they_are, service_only, all };

void bring_up(const UpOptions &options, Daemons wanted) {
  if (options.serial) identity_of(*options.serial); // ahead of all that changes something
  make_own_directories();
  const Lock lock = state_lock();
  settle_serial(options.serial);
  if (!is_created()) create();
  if (!is_booted()) {
    boot(lock, options.like);
  } else {
    if (!programs_are_ours()) lay_out_programs(options.like);
    if (wanted == Daemons::as_they_are) return;
    settle_feed(identity_of(own_serial()));
    settle_service(lock);
  }
  if (wanted != Daemons::service_only) start_agents(lock);
}

} // namespace

Turn::Turn(Kind kind, std::chrono::seconds patience) {
  if (access(run_dir().c_str(), W_OK) != 0) return;
  if (kind == Kind::changing) ask_service(channel::connect_announcement, "", std::chrono::seconds(5));
  lock_.emplace(run_dir() / "turn", kind == Kind::reading ? Lock::Kind::shared : Lock::Kind::exclusive,
                patience, "another request");
}

Status status() {
  Status status;
  status.directory = host::device_dir();
  if (!is_device()) return status;
  status.created = is_created();
  status.booted = is_booted();
  status.serviced = daemon_pid(service_daemon);
  status.feed = status.booted && host::radio_is_on();
  status.serial = own_serial();
  return status;
}

std::optional<Daemon> missing_daemon() {
  const auto *missing = is_booted() ? std::ranges::find_if(daemons, is_missing) : std::end(daemons);
  return missing == std::end(daemons) ? std::nullopt : std::optional(*missing);
}

void up(const UpOptions &options) {
  bring_up(options, Daemons::all);
}
void up() {
  up({});
}

void ensure_booted() {
  if (!is_device() || !is_booted() || !programs_are_ours()) bring_up({}, Daemons::as_they_are);
}

void down() {
  if (!is_device() || !is_there(run_dir())) return;
  const Lock lock = state_lock();
  stop();
}

void reboot() {
  down();
  up();
}

void reset() {
  reset([] {});
}

void reset(const std::function<void()> &restore) {
  make_own_directories();
  {
    const Lock lock = state_lock();
    stop();
    write_file(resetting_mark(), "");
    remove_tree(earlier_log_file());
    write_file(log_file(), "");
  }
  bring_up({}, Daemons::service_only);
  restore();
  up();
}

void remove() {
  if (!is_device()) throw std::runtime_error("there is no device in " + host::device_dir().string());
  make_own_directories();
  const Lock lock = state_lock();
  stop();
  for (const char *name : own_directories)
    remove_tree(host::device_dir() / name);
  host::release_device_dir();
}

void start_agents() {
  if (!is_device() || !is_booted()) return;
  const Lock lock = state_lock();
  for (const Daemon &agent : management_agents)
    start_when_asked_for(agent, lock);
}

} // namespace kova::device
