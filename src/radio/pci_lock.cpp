// Locking the modem to cells: pairs of EARFCN and PCI, or ranges of PCI.
#include "platform/lte.h"
#include "platform/nvram.h"
#include "src/frame/trace.hpp"
#include "src/radio/cell_selection.hpp"

#include <kova/radio.h>

#include <cstdlib>
#include <cstring>

namespace kova::radio {

namespace {

constexpr DuplexLeaves list_leaves = {"/tarn/cell_selection/fdd_dedicated_pci_list",
                                      "/tarn/cell_selection/tdd_dedicated_pci_list"};
constexpr const char *range_leaf = "/tarn/cell_selection/dedicated_pci_range";

// What a list is written in before it is stored. Longer than a stack should hold.
class List : public GrowingText {
public:
  List() : List(static_cast<char *>(std::calloc(1, size))) {}
  bool has_room() const { return room_.writable() != nullptr; }

private:
  static constexpr std::size_t size = 6144;
  explicit List(char *room) : GrowingText(room, size), room_(room) {}
  OwnedText room_;
};

int number_or_0(const char *text) {
  return leading_number(text_or_empty(text));
}

struct Cell {
  int earfcn = 0, pci = 0;
};

// The cells of a value. Slot 0 is never filled, and what comes after the last slot is ignored: 19 cells at most.
struct Cells {
  static constexpr int slots = 20;
  Cell slot[slots];

  explicit Cells(ValueCopy &pieces) {
    char *rest = nullptr;
    int last = 0;
    for (char *piece = pieces.next(";"); piece != nullptr && last + 1 < slots; piece = pieces.next(";")) {
      Cell &cell = slot[++last];
      cell.earfcn = number_or_0(strtok_r(piece, ",", &rest));
      cell.pci = number_or_0(strtok_r(nullptr, ",", &rest));
    }
  }
};

bool judge_cell(const Cell &cell, const SupportedBands &bands, BandInfo &info) {
  constexpr int highest_pci = 503;
  if (get_band_info_by_earfcn(cell.earfcn, &info) != 0) {
    dbg_trace("Invalid EARFCN!");
    return false;
  }
  if (cell.pci < 0 || cell.pci > highest_pci) {
    dbg_trace("Invalid PCI ID!");
    return false;
  }
  if (bands.contains(info.band)) return true;
  dbg_trace("unsupported band(EARCN=%d): %d\n", cell.earfcn, info.band);
  return false;
}

// Judges all cells and writes them in the stored form. A pair with a 0 in it is left out without an error.
bool convert(const char *value, List &stored) {
  ValueCopy pieces(value);
  const Cells cells(pieces);
  SupportedBands bands;
  if (!pieces.is_whole() || !stored.has_room() || !bands.load()) return false;
  for (const Cell &cell : cells.slot) {
    if (cell.earfcn == 0 || cell.pci == 0) continue;
    BandInfo info = {};
    if (!judge_cell(cell, bands, info)) return false;
    stored.add("%s%d,%d,%d", stored.empty() ? "" : ";", info.band, cell.earfcn, cell.pci);
  }
  return true;
}

int set_cells(const char *value) {
  List stored;
  if (!convert(value, stored)) return -1;
  const char *leaf = nullptr;
  {
    Tree tree;
    if (tree.code() != 0) return tree.code();
    if (const int result = choose_leaf(tree, list_leaves, leaf); result != 0) return result;
  }
  return write_and_flush(leaf, stored); // an empty list lifts the lock
}

int read_cells(Text &stored) {
  Tree tree;
  if (tree.code() != 0) return tree.code();
  const char *leaf = nullptr;
  const int result = choose_leaf(tree, list_leaves, leaf);
  return result != 0 ? result : tree.read(leaf, stored);
}

// ---- Ranges

// The bounds of a range as texts; false for one without a start. A range without an end is its start.
bool split_range(char *range, const char *&start, const char *&end) {
  char *rest = nullptr;
  start = strtok_r(range, ",", &rest);
  if (start == nullptr) {
    tarn_log_console("Fail to parse start_pci\n");
    return false;
  }
  end = strtok_r(nullptr, ",", &rest);
  if (end == nullptr) {
    tarn_log_console("No pci end value\n");
    end = start;
  }
  return true;
}

bool is_range(const char *start, const char *end) {
  constexpr int highest = 504; // one more than the PCI of a locked cell
  const int first = number_or_0(start), last = number_or_0(end);
  return first >= 0 && last <= highest && first <= last;
}

int set_ranges(const char *value) {
  ValueCopy pieces(value);
  List rebuilt;
  if (!pieces.is_whole() || !rebuilt.has_room()) return -1;
  const char *start = nullptr, *end = nullptr;
  for (char *range = pieces.next(";"); range != nullptr; range = pieces.next(";"))
    if (split_range(range, start, end)) rebuilt.add("%s%s,%s", rebuilt.empty() ? "" : ";", start, end);
  if (rebuilt.empty()) {
    dbg_trace("no pci range set\n");
    return 0;
  }
  tarn_log_console("pci only lock set:%s,\n", static_cast<const char *>(rebuilt));
  {
    Tree tree;
    if (tree.code() != 0) {
      tarn_log_console("init ucfg failed\n");
      return tree.code();
    }
    if (const int result = tree.write(range_leaf, rebuilt); result != 0) {
      dbg_trace("Fail to write \"\" to \"dedicated_pci_range\"\n");
      return result;
    }
  }
  mrhd_flush_lte_network();
  return 0;
}

} // namespace

} // namespace kova::radio

using namespace kova;
using namespace kova::radio;

int kovaChkTR069PciLock(const char *, const char *value) {
  const Bracket bracket;
  List stored;
  return !is_empty(value) && convert(value, stored) ? 0 : -1;
}

int kovaSetTR069PciLock(const char *value) {
  const Bracket bracket;
  return set_cells(value);
}

int kovaGetTR069PciLock(char *buf, unsigned int buflen) {
  Text stored;
  const int result = read_cells(stored);
  char room[Text::size];
  GrowingText list(room);
  ValueCopy entries(result == 0 ? stored : "");
  for (char *entry = entries.next(";"); entry != nullptr; entry = entries.next(";")) {
    char *rest = nullptr;
    strtok_r(entry, ",", &rest); // passes over the band
    const char *earfcn = strtok_r(nullptr, ",", &rest), *pci = strtok_r(nullptr, ",", &rest);
    list.add("%s%s,%s", list.empty() ? "" : ";", text_or_empty(earfcn), text_or_empty(pci));
  }
  answer(list, buf, buflen);
  return result;
}

int kovaChkTR069PciOnlyLock(const char *, const char *value) {
  const Bracket bracket;
  ValueCopy pieces(value);
  if (!pieces.is_whole()) return -1;
  const char *start = nullptr, *end = nullptr;
  for (char *range = pieces.next(";"); range != nullptr; range = pieces.next(";"))
    if (split_range(range, start, end) && !is_range(start, end)) return -1;
  return 0;
}

int kovaSetTR069PciOnlyLock(const char *value) {
  const Bracket bracket;
  return set_ranges(value);
}

int kovaGetTR069PciOnlyLock(char *buf, unsigned int buflen) {
  Tree tree;
  Text ranges;
  int result = tree.code();
  if (result == 0) result = tree.read(range_leaf, ranges);
  answer(result == 0 ? ranges : Text{}, buf, buflen);
  return result;
}
