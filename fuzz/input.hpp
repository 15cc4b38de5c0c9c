// The bytes of an input, taken piece by piece.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace kova::fuzz {

class Input {
public:
  Input(const uint8_t *data, std::size_t size) : bytes_(reinterpret_cast<const char *>(data), size) {}
  bool empty() const { return bytes_.empty(); }
  // 0 beyond the end.
  uint8_t byte() { return bytes_.empty() ? uint8_t{0} : static_cast<uint8_t>(take(1)[0]); }
  // Up to the next NUL, which is dropped.
  std::string text() {
    std::string text(take(bytes_.find('\0')));
    take(1);
    return text;
  }

private:
  std::string_view take(std::size_t length) {
    const std::string_view piece = bytes_.substr(0, length);
    bytes_.remove_prefix(piece.size());
    return piece;
  }
  std::string_view bytes_;
};

inline void require(bool condition) {
  if (!condition) std::abort();
}

} // namespace kova::fuzz
