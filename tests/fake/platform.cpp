// The platform libraries, scripted.
#include "fake.hpp"
#include "platform/nvram.h"
#include "platform/ucfg.h"
#include "platform/webs.h"

#include <arpa/inet.h>
#include <kova/transaction.h>

#include <algorithm>
#include <cstdarg>
#include <cstring>
#include <filesystem>
#include <sstream>

namespace fake {

Platform platform;

static long count_descriptors() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

std::string Platform::stored(int section, const std::string &key) const {
  const std::string *value = scripted(nvram, std::pair{section, key});
  return value == nullptr ? "(missing)" : *value;
}

void Platform::preset(int section, const std::string &settings) {
  std::istringstream words(settings);
  for (std::string word; words >> word;)
    nvram[{section, word.substr(0, word.find('='))}] = word.substr(word.find('=') + 1);
}

void did(const std::string &what) {
  platform.done.push_back(what);
  platform.calls.push_back(what);
  if (platform.watch) platform.watch();
}

void asked(const std::string &what) {
  platform.rules_asked.push_back(what);
  platform.calls.push_back("rule " + what);
}

static void was_read(const std::string &what) {
  platform.keys_read.push_back(what);
  platform.calls.push_back("read " + what);
}

static void asked_lte(const std::string &what) {
  platform.lte_asked.push_back(what);
  platform.calls.push_back("lte " + what);
}

const Interface *find_interface(const std::string &name) {
  const auto found = std::ranges::find(platform.interfaces, name, &Interface::name);
  return found == platform.interfaces.end() ? nullptr : &*found;
}

Strings Platform::written() const {
  Strings result;
  for (const std::string &entry : done)
    if (entry != "tree open" && entry != "tree close") result.push_back(entry);
  return result;
}

Test::Test() : open_descriptors_(count_descriptors()) {
  platform = {};
  gSecondaryInstance = 0;
  setBindInterface(nullptr);
}

Test::~Test() {
  EXPECT_EQ(platform.oper_mode_records, 0) << "loaded and not deleted";
  platform = {};
  static char names[1 << 20];
  *names = '\0';
  kovaCheckTR069ParameterValues(names, sizeof names); // whatever a test left parked
  EXPECT_EQ(count_descriptors(), open_descriptors_) << "left open";
}

std::string get(kova_getter *getter, int &result, unsigned int buflen) {
  std::string buffer(4096, '#');
  result = getter(buffer.data(), buflen);
  EXPECT_EQ(buffer.substr(buflen), std::string(buffer.size() - buflen, '#')) << "written past the buffer";
  buffer.resize(buflen);
  return buffer.substr(0, buffer.find('\0'));
}

std::string get(kova_getter *getter, unsigned int buflen) {
  int result = -1;
  std::string text = get(getter, result, buflen);
  EXPECT_EQ(result, 0);
  return text;
}

Strings effect(kova_setter *set, const char *value, int expected) {
  platform.done.clear();
  EXPECT_EQ(set(value), expected) << (value != nullptr ? value : "NULL");
  return platform.done;
}

namespace {

constexpr bool is_section(int section) {
  return section == 0 || section == 9;
}

// A buffer that is as large as it is said to be: a sanitizer looks at the touch of its last byte.
void expect_room(char *buffer, int size) {
  ASSERT_NE(buffer, nullptr);
  ASSERT_GT(size, 0);
  volatile char *last = buffer + size - 1;
  *last = *last;
}

// What a leaf is reached by: the one handle, and an open tree.
void expect_reachable(int handle, const char *path) {
  EXPECT_EQ(handle, 0) << path;
  EXPECT_GT(platform.tree_opened, 0) << path;
}

const std::string *find(int section, const char *key) {
  EXPECT_TRUE(is_section(section)) << section << " " << key;
  fake::was_read(std::to_string(section) + " " + key);
  if (platform.watch) platform.watch();
  return platform.scripted(platform.nvram, std::pair{section, std::string(key)});
}

std::string without_slash(const char *path) {
  return *path == '/' ? path + 1 : path;
}

int copy_counter(const std::string &name, int counter, char *text, int size) {
  expect_room(text, size);
  EXPECT_TRUE(counter == 2 || counter == 3 || counter == 10 || counter == 11) << counter;
  const std::string *value = platform.scripted(platform.counters, name + " " + std::to_string(counter));
  if (value == nullptr) return -1;
  std::snprintf(text, static_cast<std::size_t>(size), "%s", value->c_str());
  return 0;
}

} // namespace

} // namespace fake

using namespace fake;

// ---- libtarn_nvram

int nvram_bufget_string(int section, const char *key, char *buf, int size) {
  expect_room(buf, size);
  const std::string *value = find(section, key);
  if (value == nullptr) return 0;
  std::snprintf(buf, static_cast<std::size_t>(size), "%s", value->c_str());
  return 1;
}

char *nvram_bufget(int section, const char *key) {
  const std::string *value = find(section, key);
  return platform.has_copies ? strdup(value == nullptr ? "" : value->c_str()) : nullptr;
}

int nvram_bufset(int section, const char *key, const char *value) {
  EXPECT_TRUE(is_section(section)) << section << " " << key;
  if (key == platform.refused_key) return -1;
  did("nvram " + std::to_string(section) + " " + key + "=" + value);
  if (!platform.stores) return -1;
  platform.nvram[{section, key}] = value;
  return 0;
}

int tarn_check_param(int group, const char *value, int item) {
  fake::asked(std::to_string(group) + "/" + std::to_string(item) + " " + value);
  return platform.rule ? platform.rule(group, value, item) : 0;
}

int tarn_check_nvram_value(int section, const char *key) {
  EXPECT_TRUE(is_section(section)) << section << " " << key;
  return platform.stored(section, key) == "1" ? 1 : 0;
}

long tarn_get_uptime() {
  return platform.uptime;
}

int tarn_get_ifname_statistic(const char *logical, char *text, int size, int counter) {
  return copy_counter(logical, counter, text, size);
}

int tarn_get_wlan_if_statistic(char *text, int size, int counter, int radio, int vap) {
  EXPECT_EQ(radio, 0);
  EXPECT_EQ(vap, 1);
  return copy_counter("wlan", counter, text, size);
}

long long tarn_get_if_statistic(const char *ifname, int counter) {
  const auto found = platform.counters.find(std::string(ifname) + " " + std::to_string(counter));
  return found == platform.counters.end() ? 0 : std::stoll(found->second);
}

int tarn_is_interface_exist(const char *ifname) {
  return find_interface(ifname) != nullptr ? 0 : -1;
}

int tarn_getIfMac(const char *ifname, char *out, int size) {
  expect_room(out, size);
  if (const Interface *interface = find_interface(ifname); interface != nullptr && !interface->mac.empty()) {
    std::snprintf(out, static_cast<std::size_t>(size), "%s", interface->mac.c_str());
    return 0;
  }
  const std::string mac = platform.otherwise.value_or(std::strcmp(ifname, "br0") == 0 ? platform.mac : "");
  if (mac.empty()) return -1;
  std::snprintf(out, static_cast<std::size_t>(size), "%s", mac.c_str());
  return 0;
}

void tarn_log_console(const char *format, ...) {
  char line[1024];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(line, sizeof line, format, arguments);
  va_end(arguments);
  did(std::string("console ") + line);
}

// ---- libucfg

int init_ucfg_ex() {
  if (!platform.tree_opens) return platform.tree_failure;
  did("tree open");
  ++platform.tree_opened;
  return 0;
}

int read_ucfg_xml(int handle, const char *path, char *dst) {
  expect_reachable(handle, path);
  expect_room(dst, 256); // which the call takes for granted
  fake::was_read(path);
  const std::string *leaf = platform.scripted(platform.tree, without_slash(path));
  if (leaf == nullptr) return platform.tree_failure;
  std::snprintf(dst, 256, "%s", leaf->c_str());
  return 0;
}

int write_ucfg_xml(int handle, const char *path, const char *value) {
  expect_reachable(handle, path);
  if (platform.tree_refuses[without_slash(path)]) return platform.tree_failure;
  did(std::string("tree ") + path + "=" + value);
  platform.tree[without_slash(path)] = value;
  return 0;
}

int deinit_ucfg_ex(int keep) {
  EXPECT_EQ(keep, 1);
  EXPECT_GT(platform.tree_opened, 0);
  did("tree close");
  --platform.tree_opened;
  return 0;
}

int Init_Start() {
  did("bracket start");
  return 0;
}

int Init_End() {
  did("bracket end");
  return 0;
}

// ---- the LTE daemon's client

struct lted_client {};

lted_client *new_lted_client() {
  fake::asked_lte("client");
  return platform.lte_daemon ? new lted_client : nullptr;
}

void destory_lted_client(lted_client *client) {
  EXPECT_NE(client, nullptr);
  fake::asked_lte("bye");
  delete client;
}

int rrc_band_list_get(lted_client *client, RrcBandList *list) {
  EXPECT_NE(client, nullptr);
  fake::asked_lte("list");
  if (!platform.lists_bands) return -1;
  list->count = static_cast<uint8_t>(platform.bands.size());
  std::copy(platform.bands.begin(), platform.bands.end(), list->band);
  return 0;
}

int get_band_info(int band, BandInfo *info) {
  fake::asked_lte("band " + std::to_string(band));
  if (platform.watch) platform.watch();
  const auto found = platform.band_records.find(band);
  if (found == platform.band_records.end()) return -1;
  *info = found->second;
  return 0;
}

int get_band_info_by_earfcn(int earfcn, BandInfo *info) {
  fake::asked_lte("earfcn " + std::to_string(earfcn));
  for (const auto &[band, record] : platform.band_records)
    if (earfcn >= record.earfcn_low && earfcn <= record.earfcn_high) {
      *info = record;
      return 0;
    }
  return -1;
}

// ---- the web-validation library

int webscheckScanMode(const char *code, const char *duplex) {
  fake::asked(std::string("scan mode ") + code + " " + duplex);
  return platform.scan_mode;
}

int checkDMZParam(const char *ip) {
  fake::asked(std::string("dmz ") + ip);
  return platform.dmz_param;
}

uint32_t websIP2Num(const char *ip) {
  in_addr address;
  return inet_aton(ip, &address) != 0 ? ntohl(address.s_addr) : 0;
}

int webscheckSameSubnet(const char *ip, const char *mask, const char *other) {
  return (websIP2Num(ip) & websIP2Num(mask)) == (websIP2Num(other) & websIP2Num(mask)) ? 1 : 0;
}

int webscheckIpStartEnd(const char *start, const char *end) {
  return websIP2Num(start) <= websIP2Num(end) || !platform.judges ? 1 : 0;
}

int CheckRFModeAndBW(const char *mode, const char *bandwidth) {
  fake::asked(std::string("mode/bandwidth ") + mode + " " + bandwidth);
  return platform.mode_and_bandwidth;
}

int CheckRFModeAndRate(const char *mode, const char *rate) {
  fake::asked(std::string("mode/rate ") + mode + " " + rate);
  return platform.mode_and_rate;
}

OperMode *getOperModeFromNvram() {
  if (platform.oper_mode_loads-- <= 0) return nullptr;
  ++platform.oper_mode_records;
  const auto number = [](const char *key) { return std::atoi(platform.stored(0, key).c_str()); };
  return new OperMode{number("oper_mode"), number("vpn_type"), static_cast<uint8_t>(number("bcp_enable")),
                      number("gre_type")};
}

void OperMode_delete(OperMode *record) {
  --platform.oper_mode_records;
  delete record;
}

int OperMode_checkKeyWritableFromNvram(const char *key) {
  fake::asked(std::string("writable ") + key);
  return platform.writable;
}
