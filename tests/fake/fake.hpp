// A scripted platform under the library: the stores in memory, and the libc calls through which the library reaches the
// device, recorded in order instead of carried out.
#pragma once

#include "platform/lte.h"

#include <gtest/gtest.h>
#include <kova/frame.h>

#include <ctime>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace fake {

using Strings = std::vector<std::string>;
using Store = std::map<std::pair<int, std::string>, std::string>;

struct Interface {
  std::string name, address, mask; // an empty address: the kernel knows none
  int speed = -1;                  // Mbit/s; -1: no link
  std::string mac{};               // an empty address: none
};

struct Platform {
  // What the library did, in order:
  //   "nvram 0 lan_ip=192.168.1.1"   a value stored        "request 0x10000006 text"   sent to the service daemon
  //   "tree /tarn/...=1"             a leaf written         "run ifconfig eth0 up"      through system()
  //   "sleep 3"                                            "console ..."               console log
  //   "tree open", "tree close"                             "bracket start", "bracket end"   Init_Start, Init_End
  Strings done;
  Strings keys_read;   // "9 TR_PINGDIAG_STATE", every store read
  Strings rules_asked; // "3/9 192.168.1.1", "mode/bandwidth 11N 1", "mode/rate 11N 12", "writable gre_type",
                       // "scan mode 1 FDD", "dmz 10.0.0.1"
  Strings
      calls; // all of this and of what was asked below, in order: "read 0 lan_ip", "rule 3/9 10.0.0.1", ...
  std::function<void()> watch; // called when the library reads a setting, asks about a band or does something

  // What keys, leaves, counters, files and outputs of commands that are not scripted read as; unset: they do not exist.
  std::optional<std::string> otherwise;
  bool judges = true; // false: the web-validation library's rules pass everything

  Store nvram;
  std::string refused_key;                 // the store does not take it
  bool stores = true;                      // does it take anything?
  bool has_copies = true;                  // does it have memory for allocated copies?
  std::map<std::string, std::string> tree; // by path without the leading "/"
  bool tree_opens = true;
  int tree_opened = 0;                      // opened minus closed
  std::map<std::string, bool> tree_refuses; // paths whose write fails
  int tree_failure = -1;                    // what a failing call answers

  // The rule checker: what it answers; 0 unless scripted.
  std::function<int(int group, const std::string &value, int item)> rule;
  int mode_and_bandwidth = 0, mode_and_rate = 0; // the WiFi combination checks
  int oper_mode_records = 0;                     // loaded minus deleted
  int oper_mode_loads = 100;                     // how many loads succeed
  int writable = 1;                              // OperMode_checkKeyWritableFromNvram
  int scan_mode = 0, dmz_param = 0;              // webscheckScanMode, checkDMZParam

  // The LTE daemon's client: what was asked of it ("client", "list", "band 3", "earfcn 1300", "bye"), what it knows.
  Strings lte_asked;
  bool lte_daemon = true, lists_bands = true;
  std::vector<uint16_t> bands;
  std::map<int, BandInfo> band_records; // by the band that is asked for

  std::map<std::string, std::string> counters; // by "lan 10", "wan 2", "wlan 3", "lte0 11"
  std::string mac;                             // of br0; empty: none
  long uptime = 1000;
  bool knows_memory_and_uptime = true; // does sysinfo() succeed?
  unsigned long total_ram = 0, free_ram = 0;
  std::optional<std::time_t> now; // in place of the clock
  bool clock_is_readable = true;  // by clock_gettime()
  bool clock_ends_in_2038 = false;

  bool daemon = true;         // is the service daemon there?
  bool daemon_accepts = true; // does it take connections?
  int whole_sends = 1000;     // how many records it takes whole; those after them are cut short
  bool sockets = true, close_on_exec = true; // do socket() and the close-on-exec mark succeed?
  std::function<int(int milliseconds)> wait; // in place of poll()
  bool executable = true;                    // can the running executable be looked at?
  int exit_status = 0;                       // of commands run through system()
  std::map<std::string, std::string> files;  // by device path
  bool files_open = true;                    // can they be opened?
  std::map<std::string, char> special_files; // 'd': a directory, 'p': a pipe that holds what the file would
  Strings locks;                             // "exclusive", "exclusive at once", "unlock"
  bool locked_by_another = false, lockable = true;
  bool tokens_end_in_null = false; // strtok_r() forgets its place at the end, as in some C libraries
  int tokens_left = 1000;          // how many it hands out then
  std::map<std::string, std::string> output; // of commands run through popen()
  Strings piped;                             // which those were
  std::vector<Interface> interfaces;

  // What is scripted for the key, or otherwise; nullptr for neither.
  template <typename Map, typename Key>
  const std::string *scripted(const Map &map, const Key &key) const {
    if (const auto found = map.find(key); found != map.end()) return &found->second;
    return otherwise ? &*otherwise : nullptr;
  }
  std::string stored(int section, const std::string &key) const;
  void preset(int section, const std::string &settings); // "key=value key=value"
  // What was done, without the records of reads and of opening the tree.
  Strings written() const;
};

extern Platform platform;
void did(const std::string &what);
void asked(const std::string &rule);
const Interface *find_interface(const std::string &name); // nullptr: there is none

// Starts every test with an empty platform, the primary instance and an empty check list, and sees that no file, pipe
// or socket is left open.
class Test : public ::testing::Test {
protected:
  Test();
  ~Test() override;

private:
  long open_descriptors_;
};

// Reads a parameter into a buffer that was full of '#': what the getter left untouched shows.
std::string get(kova_getter *getter, unsigned int buflen = 256);
std::string get(kova_getter *getter, int &result, unsigned int buflen = 256);
// All that is done about a value, which the setter must answer like this.
Strings effect(kova_setter *set, const char *value, int expected = 0);

} // namespace fake
