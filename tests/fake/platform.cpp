// The platform libraries, scripted.
#include "fake.hpp"
#include "platform/nvram.h"
#include "platform/ucfg.h"
#include "platform/webs.h"
#include "transaction/transaction.h"

#include <arpa/inet.h>

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
  const auto found = nvram.find({section, key});
  return found == nvram.end() ? "(missing)" : found->second;
}

void Platform::preset(int section, const std::string &settings) {
  std::istringstream words(settings);
  for (std::string word; words >> word;)
    nvram[{section, word.substr(0, word.find('='))}] = word.substr(word.find('=') + 1);
}

void did(const std::string &what) {
  platform.done.push_back(what);
  if (platform.watch) platform.watch();
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

namespace {

const std::string *find(int section, const char *key) {
  platform.keys_read.push_back(std::to_string(section) + " " + key);
  if (platform.watch) platform.watch();
  const auto found = platform.nvram.find({section, key});
  return found == platform.nvram.end() ? nullptr : &found->second;
}

std::string without_slash(const char *path) {
  return *path == '/' ? path + 1 : path;
}

int copy_counter(const std::string &name, int counter, char *text, int size) {
  const auto found = platform.counters.find(name + " " + std::to_string(counter));
  if (found == platform.counters.end()) return -1;
  std::snprintf(text, static_cast<std::size_t>(size), "%s", found->second.c_str());
  return 0;
}

} // namespace

} // namespace fake

using namespace fake;

// ---- libtarn_nvram

int nvram_bufget_string(int section, const char *key, char *buf, int size) {
  const std::string *value = find(section, key);
  if (value == nullptr) return 0;
  std::snprintf(buf, static_cast<std::size_t>(size), "%s", value->c_str());
  return 1;
}

char *nvram_bufget(int section, const char *key) {
  const std::string *value = find(section, key);
  return strdup(value == nullptr ? "" : value->c_str());
}

int nvram_bufset(int section, const char *key, const char *value) {
  did("nvram " + std::to_string(section) + " " + key + "=" + value);
  platform.nvram[{section, key}] = value;
  return 0;
}

int tarn_check_param(int group, const char *value, int item) {
  platform.rules_asked.push_back(std::to_string(group) + "/" + std::to_string(item) + " " + value);
  return platform.rule ? platform.rule(group, value, item) : 0;
}

int tarn_check_nvram_value(int section, const char *key) {
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

int tarn_getIfMac(const char *ifname, char *out, int size) {
  if (std::strcmp(ifname, "br0") != 0 || platform.mac.empty()) return -1;
  std::snprintf(out, static_cast<std::size_t>(size), "%s", platform.mac.c_str());
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
  if (!platform.tree_opens) return -1;
  did("tree open");
  ++platform.tree_opened;
  return 0;
}

int read_ucfg_xml(int, const char *path, char *dst) {
  platform.keys_read.push_back(path);
  const auto found = platform.tree.find(without_slash(path));
  if (found == platform.tree.end()) return -1;
  std::snprintf(dst, 256, "%s", found->second.c_str());
  return 0;
}

int write_ucfg_xml(int, const char *path, const char *value) {
  if (platform.tree_refuses[without_slash(path)]) return -1;
  did(std::string("tree ") + path + "=" + value);
  platform.tree[without_slash(path)] = value;
  return 0;
}

int deinit_ucfg_ex(int keep) {
  EXPECT_EQ(keep, 1);
  did("tree close");
  --platform.tree_opened;
  return 0;
}

// ---- the web-validation library

uint32_t websIP2Num(const char *ip) {
  in_addr address;
  return inet_aton(ip, &address) != 0 ? ntohl(address.s_addr) : 0;
}

int webscheckSameSubnet(const char *ip, const char *mask, const char *other) {
  return (websIP2Num(ip) & websIP2Num(mask)) == (websIP2Num(other) & websIP2Num(mask)) ? 1 : 0;
}

int webscheckIpStartEnd(const char *start, const char *end) {
  return websIP2Num(start) <= websIP2Num(end) ? 1 : 0;
}

int CheckRFModeAndBW(const char *mode, const char *bandwidth) {
  platform.rules_asked.push_back(std::string("mode/bandwidth ") + mode + " " + bandwidth);
  return platform.mode_and_bandwidth;
}

int CheckRFModeAndRate(const char *mode, const char *rate) {
  platform.rules_asked.push_back(std::string("mode/rate ") + mode + " " + rate);
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
  platform.rules_asked.push_back(std::string("writable ") + key);
  return platform.writable;
}
