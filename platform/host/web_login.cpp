// Salted password hashes of the web login: PBKDF2 with SHA-256, as hexadecimal digits, as many as the caller has room for.
#include "platform/webs.h"

#include <nettle/pbkdf2.h>
#include <sys/random.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr int iterations = 100000;
constexpr std::size_t longest_digest = 32, salt_bytes = 8;

// Writes the bytes as digits; text holds two for each and the terminator.
void write_digits(const unsigned char *bytes, std::size_t count, char *text) {
  for (std::size_t i = 0; i < count; ++i)
    std::snprintf(text + 2 * i, 3, "%02x", bytes[i]);
}

} // namespace

char *update_rand_char(void) {
  std::array<unsigned char, salt_bytes> random{};
  if (getrandom(random.data(), random.size(), 0) != static_cast<ssize_t>(random.size())) return nullptr;
  auto *salt = static_cast<char *>(std::calloc(1, 2 * random.size() + 1));
  if (salt != nullptr) write_digits(random.data(), random.size(), salt);
  return salt;
}

int gen_weblogin_passwd(const char *password, const char *salt, int saltLength, char *hash, int size) {
  if (password == nullptr || salt == nullptr || hash == nullptr || saltLength < 0 || size < 3) return -1;
  const std::size_t digest_size =
      std::min<std::size_t>((static_cast<std::size_t>(size) - 1) / 2, longest_digest);
  std::array<unsigned char, longest_digest> digest{};
  pbkdf2_hmac_sha256(std::strlen(password), reinterpret_cast<const unsigned char *>(password), iterations,
                     static_cast<std::size_t>(saltLength), reinterpret_cast<const unsigned char *>(salt),
                     digest_size, digest.data());
  write_digits(digest.data(), digest_size, hash);
  return 0;
}
