// MurmurHash3, 32-bit variant, with one difference from the published one: words are read big-endian, so that the device
// and its tools agree whatever their byte order.
#include <kova/security.h>

namespace {

constexpr uint32_t rotate(uint32_t word, int bits) {
  return word << bits | word >> (32 - bits);
}

constexpr uint32_t scramble(uint32_t word) {
  return rotate(word * 0xcc9e2d51U, 15) * 0x1b873593U;
}

// Up to four bytes, the first one in the most significant place.
uint32_t read_word(const unsigned char *bytes, int count) {
  uint32_t word = 0;
  for (int i = 0; i < count; ++i)
    word |= static_cast<uint32_t>(bytes[i]) << (24 - 8 * i);
  return word;
}

} // namespace

uint32_t murmur_hash_3(const void *data, int length, uint32_t seed) {
  uint32_t hash = seed;
  const auto *bytes = static_cast<const unsigned char *>(data);
  int left = bytes != nullptr && length > 0 ? length : 0;
  const auto total = static_cast<uint32_t>(left);
  for (; left >= 4; left -= 4, bytes += 4)
    hash = rotate(hash ^ scramble(read_word(bytes, 4)), 13) * 5 + 0xe6546b64U;
  if (left > 0) hash ^= scramble(read_word(bytes, left));
  hash ^= total;
  hash = (hash ^ hash >> 16) * 0x85ebca6bU;
  hash = (hash ^ hash >> 13) * 0xc2b2ae35U;
  return hash ^ hash >> 16;
}
