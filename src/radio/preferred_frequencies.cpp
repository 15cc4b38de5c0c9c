// The frequencies that the modem looks at first: EARFCNs by band.
#include "platform/lte.h"
#include "src/frame/trace.hpp"
#include "src/radio/cell_selection.hpp"

#include <kova/radio.h>

#include <cstdlib>
#include <cstring>

namespace kova::radio {

namespace {

constexpr DuplexLeaves list_leaves = {"/tarn/cell_selection/fdd_dedicated_earfcn_list",
                                      "/tarn/cell_selection/tdd_dedicated_earfcn_list"};
// A band with its EARFCNs, none of them twice.
struct PreferredBand {
  static constexpr int most = 20;
  int band = 0;
  int earfcn[most] = {}, count = 0;

  // False when there is no room for one more.
  bool add(int channel) {
    for (int i = 0; i < count; ++i)
      if (earfcn[i] == channel) return true;
    if (count == most) return false;
    earfcn[count++] = channel;
    return true;
  }
};

// The bands of a value, or of the stored pairs: a group is a band and its EARFCNs, and a band named again goes on where
// it was. On the heap: more than a stack should hold.
class PreferredBands {
public:
  explicit PreferredBands(const char *value)
      : memory_(static_cast<char *>(std::calloc(most, sizeof(PreferredBand)))),
        slot_(reinterpret_cast<PreferredBand *>(memory_.writable())) {
    if (slot_ == nullptr) return;
    ValueCopy groups(value);
    if (!groups.is_whole()) {
      slot_ = nullptr;
      return;
    }
    for (char *group = groups.next(";"); group != nullptr; group = groups.next(";"))
      add_group(group);
  }
  bool is_whole() const { return slot_ != nullptr; } // or there was no memory for them
  const PreferredBand *begin() const { return slot_; }
  const PreferredBand *end() const { return slot_ + used_; }

private:
  static constexpr int most = 20;
  PreferredBand *find(int band) {
    for (int i = 0; i < used_; ++i)
      if (slot_[i].band == band) return &slot_[i];
    if (used_ == most) return nullptr;
    slot_[used_].band = band;
    return &slot_[used_++];
  }
  void add_group(char *group) {
    char *rest = nullptr;
    const char *field = strtok_r(group, ",", &rest);
    PreferredBand *preferred = field == nullptr ? nullptr : find(leading_number(field));
    while (preferred != nullptr && (field = strtok_r(nullptr, ",", &rest)) != nullptr)
      if (!preferred->add(leading_number(field))) break;
  }
  OwnedText memory_;
  PreferredBand *slot_;
  int used_ = 0;
};

// The duplex mode that all bands of a setting share.
class SharedDuplex {
public:
  bool take(int duplex) {
    if (type_ == unknown) type_ = duplex;
    return type_ == duplex;
  }
  const char *leaf() const { return type_ == 0 ? list_leaves.fdd : type_ == 1 ? list_leaves.tdd : nullptr; }

private:
  static constexpr int unknown = -1;
  int type_ = unknown;
};

// A checker has no shared duplex: it lets bands of both kinds pass.
bool judge_band(const PreferredBand &preferred, const SupportedBands &supported, SharedDuplex *shared) {
  if (!supported.contains(preferred.band)) {
    dbg_trace("Invalid band: %d\n", preferred.band);
    return false;
  }
  for (int i = 0; i < preferred.count; ++i) {
    BandInfo info = {};
    if (get_band_info(preferred.band, &info) != 0) {
      dbg_trace("Invalid EARFCN!\n");
      return false;
    }
    if (info.band != preferred.band) {
      dbg_trace("Invalid BAND!\n");
      return false;
    }
    if (preferred.earfcn[i] < info.earfcn_low || preferred.earfcn[i] > info.earfcn_high) {
      dbg_trace("Invalid earfcn: %d\n", preferred.earfcn[i]);
      return false;
    }
    if (shared != nullptr && !shared->take(info.duplex)) {
      dbg_trace("Invalid Duplex!\n");
      return false;
    }
  }
  return true;
}

bool judge(const PreferredBands &bands, SharedDuplex *shared) {
  SupportedBands supported;
  if (!bands.is_whole() || !supported.load()) return false;
  for (const PreferredBand &preferred : bands) {
    if (!judge_band(preferred, supported, shared)) return false;
  }
  return true;
}

int set(const char *value) {
  if (is_empty(value)) return -1;
  const PreferredBands bands(value);
  SharedDuplex shared;
  if (!judge(bands, &shared)) return -1;
  if (shared.leaf() == nullptr) {
    dbg_trace("Invalid Duplex!\n");
    return -1;
  }
  char room[Text::size];
  GrowingText pairs(room);
  for (const PreferredBand &preferred : bands) {
    for (int i = 0; i < preferred.count; ++i)
      pairs.add("%s%d,%d", pairs.empty() ? "" : ";", preferred.band, preferred.earfcn[i]);
  }
  return write_and_flush(shared.leaf(), pairs);
}

int read(Text &stored) {
  Tree tree;
  if (tree.code() != 0) return tree.code();
  Text duplex;
  if (const int result = tree.read(key::duplex, duplex); result != 0) return result;
  return tree.read(equal(duplex, "TDD") ? list_leaves.tdd : list_leaves.fdd, stored);
}

} // namespace

} // namespace kova::radio

using namespace kova;
using namespace kova::radio;

int kovaChkTR069FreqPreferred(const char *, const char *value) {
  const Bracket bracket;
  return !is_empty(value) && judge(PreferredBands(value), nullptr) ? 0 : -1;
}

int kovaSetTR069FreqPreferred(const char *value) {
  const Bracket bracket;
  return set(value);
}

int kovaGetTR069FreqPreferred(char *buf, unsigned int buflen) {
  Text stored;
  const int result = read(stored);
  char room[Text::size];
  GrowingText groups(room);
  const PreferredBands bands(result == 0 ? stored : "");
  for (const PreferredBand &preferred : bands) {
    groups.add(groups.empty() ? "%d" : ";%d", preferred.band);
    for (int i = 0; i < preferred.count; ++i)
      groups.add(",%d", preferred.earfcn[i]);
  }
  answer(groups, buf, buflen);
  return bands.is_whole() ? result : -1;
}
