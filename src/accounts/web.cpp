// The web interface: who may log in, and how long an idle login lasts.
#include "platform/nvram.h"
#include "platform/webs.h"
#include "src/accounts/web_rows.hpp"
#include "src/frame/rows.hpp"
#include "src/frame/trace.hpp"

#include <kova/accounts.h>

#include <cstdio>

namespace kova::web {

namespace {

int store_hash(const char *password, const char *hash_key, const char *salt_key, const char *whose) {
  const OwnedText salt(update_rand_char());
  if (salt.writable() == nullptr) return -1;
  char hash[64] = {};
  constexpr int hash_size = 32;
  gen_weblogin_passwd(password, salt, static_cast<int>(std::strlen(salt)), hash, hash_size);
  if (*hash == '\0') return -1; // an empty hash would lock the account
  store(hash_key, hash);
  store(salt_key, salt);
  dbg_trace("[TR069] Set %s password successfully\n", whose);
  return 0;
}

int set_admin(const char *key, const char *value, const Condition &condition) {
  if (value == nullptr || !condition.holds(value))
    return refuse("[TR069][Error] admin password is refused.\n");
  return store_hash(value, key, "PswdSalt", "admin");
}

int set_user(const char *key, const char *value, const Condition &) {
  if (value == nullptr) return -1;
  char password[64]; // what does not fit does not count
  std::snprintf(password, sizeof password, "%.63s", value);
  if (mod_check_password(password) != 0) {
    tarn_log_console("[%s] failed to verify soundess of password\n", "kovaSetUserPassword");
    return -1;
  }
  return store_hash(password, key, "PswdSalt2", "user");
}

// While nothing is stored the caller's buffer is as it was.
int tell(Key key, char *buf, unsigned int buflen) {
  Text text;
  return load(key, text) ? answer(text, buf, buflen) : 0;
}

int set_lock_time(Key key, const char *value, const Condition &condition) {
  if (value == nullptr) return refuse("[TR069][Error] NULL value for web lock time.");
  if (!is_digits(value)) return refuse("[TR069][Error] Timeout setting must be an integer digital.");
  if (!condition.holds(value))
    return refuse("[TR069][Error] Please enter the number of seconds between 300 to 65535.");
  store(key, value);
  return 0;
}

} // namespace

} // namespace kova::web

using namespace kova;
using namespace kova::web;

#include "src/accounts/web.def"
