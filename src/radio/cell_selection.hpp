// What the parameters of cell selection share: the platform's bracket, the tree, the supported bands.
#pragma once

#include "platform/ucfg.h"
#include "src/frame/text.hpp"

#include <cstdarg>
#include <cstddef>
#include <cstdio>

namespace kova::radio {

inline constexpr const char *duplex_leaf = "/tarn/cell_selection/dedicated_duplex"; // also a key of the store
inline constexpr const char *scan_mode_leaf = "/tarn/cell_selection/scan_mode";

// Setters and checkers work inside the platform's bracket.
class Bracket {
public:
  Bracket() { Init_Start(); }
  ~Bracket() { Init_End(); }
  Bracket(const Bracket &) = delete;
  Bracket &operator=(const Bracket &) = delete;
};

// The tree, open for as long as this lives; closed on every path. Calls answer the platform's code, 0 for success.
class Tree {
public:
  Tree() : code_(init_ucfg_ex()) {}
  ~Tree() {
    if (code_ == 0) deinit_ucfg_ex(1);
  }
  Tree(const Tree &) = delete;
  Tree &operator=(const Tree &) = delete;
  int code() const { return code_; }
  int read(const char *path, Text &into) const { return read_ucfg_xml(0, path, into.chars); }
  int write(const char *path, const char *value) const { return write_ucfg_xml(0, path, value); }

private:
  int code_;
};

// Writes one leaf and has the LTE network re-applied. Answers the failing call's code.
int write_and_flush(const char *path, const char *value);

// The leaf of the pair that goes with the configured duplex mode.
struct DuplexLeaves {
  const char *fdd, *tdd;
};
// Reads the configured mode. 0, the failing call's code, or -1 for a mode that is neither.
int choose_leaf(const Tree &tree, DuplexLeaves leaves, const char *&chosen);

// The bands that the modem supports, as getSupportBands writes them. Only what fits here counts.
struct SupportedBands {
  char text[64] = {};
  bool load();
  bool contains(int band) const;
};

// A text that grows piece by piece; what does not fit is left out.
template <std::size_t size>
struct GrowingText {
  char chars[size] = {};
  std::size_t length = 0;
  __attribute__((format(printf, 2, 3))) void add(const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int wanted = std::vsnprintf(chars + length, size - length, format, arguments);
    va_end(arguments);
    if (wanted >= 0 && static_cast<std::size_t>(wanted) < size - length)
      length += static_cast<std::size_t>(wanted);
    chars[length] = '\0';
  }
};

// A copy of a value that may be split in place: the shape of a checker promises not to change its text.
class ValueCopy {
public:
  explicit ValueCopy(const char *value) : copy_(strdup(text_or_empty(value))) {}
  // The next piece between separators that is not empty; NULL at the end.
  char *next(const char *separators) {
    char *from = started_ ? nullptr : copy_.writable();
    const bool ended = started_ ? rest_ == nullptr : from == nullptr; // some libraries end with a null rest
    started_ = true;
    if (ended) return nullptr;
    // NOLINTNEXTLINE(clang-analyzer-unix.Malloc): copy_ owns the text
    return strtok_r(from, separators, &rest_);
  }

private:
  OwnedText copy_;
  char *rest_ = nullptr;
  bool started_ = false;
};

} // namespace kova::radio
