// Supported bands and scan mode.
#include "src/radio/cell_selection.hpp"

#include "platform/lte.h"
#include "platform/webs.h"
#include "src/frame/settings.hpp"
#include "src/frame/trace.hpp"

#include <kova/radio.h>

#include <cstdio>
#include <cstring>

namespace kova::radio {

namespace {

// The modes by their stored codes "1" to "4".
constexpr const char *scan_modes[] = {"fullband", "freqpreferred", "pcilock", "pcionlylock"};

constexpr const char *scan_mode_leaf = "/tarn/cell_selection/scan_mode";

constexpr char code_of(int mode) {
  return static_cast<char>('1' + mode);
}

class LteClient {
public:
  LteClient() : client_(new_lted_client()) {}
  ~LteClient() {
    if (client_ != nullptr) destory_lted_client(client_);
  }
  LteClient(const LteClient &) = delete;
  LteClient &operator=(const LteClient &) = delete;
  bool list_bands(RrcBandList &list) const {
    return client_ != nullptr && rrc_band_list_get(client_, &list) == 0;
  }

private:
  lted_client *client_;
};

bool is_of_duplex(int band, const char *duplex) {
  constexpr int fdd = 0, tdd = 1;
  BandInfo info;
  if (get_band_info(band, &info) != 0) return false;
  return (info.duplex == fdd && equal(duplex, "FDD")) || (info.duplex == tdd && equal(duplex, "TDD"));
}

int judge_scan_mode(const char *code, const char *duplex) {
  const int result = webscheckScanMode(code, duplex);
  if (result == -1)
    dbg_trace("Invalid Scan Mode scan_mode=%s!\n", code);
  else if (result == -2)
    dbg_trace("Invalid Duplex dedicated_duplex=%s!\n", duplex);
  else if (result != 0)
    dbg_trace("Invalid Parameters scan_mode=%s, dedicated_duplex=%s!\n", code, duplex);
  return result;
}

int set_scan_mode(const char *value) {
  Text duplex;
  if (!load(key::duplex, duplex)) std::strcpy(duplex.chars, "TDD");
  {
    Tree tree;
    if (tree.code() != 0) return tree.code();
    char code[2] = {};
    for (int mode = 0; mode < 4; ++mode)
      if (equal(text_or_empty(value), scan_modes[mode])) code[0] = code_of(mode);
    if (*code == '\0') return 0; // an unknown mode is no error, and changes nothing
    if (const int result = judge_scan_mode(code, duplex); result != 0) return result;
    Text current;
    if (const int result = tree.read(scan_mode_leaf, current); result != 0) return result;
    if (equal(current, code)) return 0;
    if (const int result = tree.write(scan_mode_leaf, code); result != 0) return result;
  }
  mrhd_flush_lte_network();
  return 0;
}

int read_scan_mode(Text &code) {
  Tree tree;
  if (tree.code() != 0) return tree.code();
  Text duplex;
  const int result = tree.read(scan_mode_leaf, code);
  return result != 0 ? result : tree.read(key::duplex, duplex);
}

} // namespace

char *ValueCopy::next(const char *separators) {
  char *from = started_ ? nullptr : copy_.writable();
  const bool ended = started_ ? rest_ == nullptr : from == nullptr; // C libraries differ: some leave NULL
  started_ = true;
  if (ended) return nullptr;
  // NOLINTNEXTLINE(clang-analyzer-unix.Malloc): copy_ owns the text
  return strtok_r(from, separators, &rest_);
}

int write_and_flush(const char *path, const char *value) {
  {
    Tree tree;
    if (tree.code() != 0) return tree.code();
    if (const int result = tree.write(path, value); result != 0) {
      dbg_trace("Fail to write \"%s\" to \"%s\"\n", value, path);
      return result;
    }
  }
  mrhd_flush_lte_network();
  return 0;
}

int choose_leaf(Tree &tree, DuplexLeaves leaves, const char *&chosen) {
  Text duplex;
  if (const int result = tree.read(key::duplex, duplex); result != 0) return result;
  chosen = equal(duplex, "FDD") ? leaves.fdd : equal(duplex, "TDD") ? leaves.tdd : nullptr;
  if (chosen != nullptr) return 0;
  dbg_trace("Invalid Duplex!\n");
  return -1;
}

bool SupportedBands::load() {
  if (getSupportBands(text, sizeof text) == 0) return true;
  dbg_trace("get support bands error!\n");
  return false;
}

bool SupportedBands::contains(int band) const {
  char wanted[16];
  std::snprintf(wanted, sizeof wanted, "|%d|", band);
  return std::strstr(text, wanted) != nullptr;
}

} // namespace kova::radio

using namespace kova;
using namespace kova::radio;

int getSupportBands(char *out, int len) {
  if (out == nullptr) return 0;
  if (len < 1) return len;
  char duplex[4];
  if (!load(key::duplex, duplex)) return -1;
  const LteClient client;
  RrcBandList list = {};
  if (!client.list_bands(list)) return -1;
  GrowingText bands(out, static_cast<std::size_t>(len));
  for (int i = 0; i < list.count; ++i) {
    if (!is_of_duplex(list.band[i], duplex)) continue;
    if (bands.empty()) bands.add("|");
    bands.add("%d|", list.band[i]); // a band that does not fit does not count as supported
  }
  return 0;
}

int kovaGetTR069ScanMode(char *buf, unsigned int buflen) {
  Text code;
  const int result = read_scan_mode(code);
  const char *mode = "unknown";
  for (int known = 0; known < 4 && result == 0; ++known)
    if (code.chars[0] == code_of(known) && code.chars[1] == '\0') mode = scan_modes[known];
  answer(mode, buf, buflen);
  return result;
}

int kovaSetTR069ScanMode(const char *value) {
  const Bracket bracket;
  return set_scan_mode(value);
}
