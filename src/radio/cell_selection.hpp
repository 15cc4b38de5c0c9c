// What the parameters of cell selection share: the platform's bracket, the tree, the supported bands.
#pragma once

#include "platform/keys.hpp"
#include "platform/ucfg.h"
#include "src/frame/growing_text.hpp"
#include "src/frame/tree.hpp"

#include <cstring>

namespace kova::radio {

// Setters and checkers work inside the platform's bracket.
class Bracket {
public:
  Bracket() { Init_Start(); }
  ~Bracket() { Init_End(); }
  Bracket(const Bracket &) = delete;
  Bracket &operator=(const Bracket &) = delete;
};

// Writes one leaf and has the LTE network re-applied. Answers the failing call's code.
int write_and_flush(const char *path, const char *value);

// The leaf of the pair that goes with the configured duplex mode.
struct DuplexLeaves {
  const char *fdd, *tdd;
};
// Reads the configured mode. 0, the failing call's code, or -1 for a mode that is neither.
int choose_leaf(Tree &tree, DuplexLeaves leaves, const char *&chosen);

// The bands that the modem supports, as getSupportBands writes them. Only what fits here counts.
struct SupportedBands {
  char text[64] = {};
  bool load();
  bool contains(int band) const;
};

// A copy of a value that may be split in place: the shape of a checker promises not to change its text.
class ValueCopy {
public:
  explicit ValueCopy(const char *value) : copy_(strdup(text_or_empty(value))) {}
  // False for want of memory: there are no pieces then.
  bool is_whole() const { return copy_.writable() != nullptr; }
  // The next piece between separators that is not empty; NULL at the end.
  char *next(const char *separators);

private:
  OwnedText copy_;
  char *rest_ = nullptr;
  bool started_ = false;
};

} // namespace kova::radio
