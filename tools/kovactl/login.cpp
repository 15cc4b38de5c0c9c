// login: logging in to an account of the device's web interface.
#include "kovactl/agent.hpp"
#include "kovactl/command.hpp"
#include "kovactl/commands.hpp"
#include "platform/host/nvram_sections.hpp"
#include "platform/nvram.h"
#include "platform/webs.h"

#include <termios.h>
#include <unistd.h>

#include <iostream>
#include <memory>

namespace kova::ctl {
namespace {

struct Account {
  const char *name, *hash_key, *salt_key;
};
constexpr Account web_accounts[] = {{"admin", "WebsPassword", "PswdSalt"},
                                    {"user", "WebsPassword2", "PswdSalt2"}};

std::string stored(const char *key) {
  const std::unique_ptr<char, decltype(&std::free)> value(nvram_bufget(host::configuration_section, key),
                                                          &std::free);
  return value.get();
}

// Standard input without its echo, when it is a terminal.
class Unechoed {
public:
  Unechoed() : is_terminal_(tcgetattr(STDIN_FILENO, &before_) == 0) {
    if (!is_terminal_) return;
    termios quiet = before_;
    quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &quiet);
    std::cerr << "Password: ";
  }
  ~Unechoed() {
    if (!is_terminal_) return;
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &before_);
    std::cerr << "\n";
  }
  Unechoed(const Unechoed &) = delete;
  Unechoed &operator=(const Unechoed &) = delete;

private:
  termios before_{};
  bool is_terminal_;
};

std::string read_password() {
  const Unechoed terminal;
  std::string password;
  std::getline(std::cin, password);
  return password;
}

// As the web interface does: the same hash comes of the same password with the stored salt.
bool opens(const Account &account, const std::string &password) {
  const std::string salt = stored(account.salt_key);
  constexpr int hash_size = 32;
  char hash[hash_size] = {};
  return gen_weblogin_passwd(password.c_str(), salt.c_str(), static_cast<int>(salt.size()), hash,
                             hash_size) == 0 &&
         stored(account.hash_key) == hash;
}

const std::vector<std::string> accounts = {web_accounts[0].name, web_accounts[1].name};

struct LoginOptions {
  std::string account;
};

// Asks for the password, or takes the first line of standard input, and tells whether the web interface
// would take it.
ExitStatus log_in(const Output &output, const LoginOptions &options) {
  boot(output);
  const std::string &name = options.account;
  const Account &account = name == web_accounts[0].name ? web_accounts[0] : web_accounts[1];
  if (stored(account.hash_key).empty())
    return output.failure("the account \"" + name + "\" has no password yet");
  const bool accepted = opens(account, read_password());
  if (output.json())
    output.print(Json{{"account", name}, {"accepted", accepted}});
  else if (accepted)
    output.print(Table{{{"the web interface takes this password"}}});
  else
    return output.failure("this is not the password of \"" + name + "\"");
  return accepted ? Success : Failure;
}

} // namespace

void add_login(Commands &commands) {
  auto [command, options] = commands.add<LoginOptions>(
      "login", "Try a password of the web interface: that typed, or the first line of standard input",
      log_in);
  command.words("ACCOUNT", &options.account, "admin or user").required().one_of(accounts);
  command.complete([](const std::string &word) { return beginning_with(word, accounts); });
}

} // namespace kova::ctl
