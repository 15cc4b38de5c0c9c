#include "device/process.hpp"

#include "device/error.hpp"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include <algorithm>
#include <csignal>
#include <string_view>

namespace kova::device {
namespace {

class Attributes {
public:
  explicit Attributes(bool own_group) {
    posix_spawnattr_init(&value_);
    const int group = own_group ? POSIX_SPAWN_SETPGROUP : 0;
    posix_spawnattr_setflags(&value_,
                             static_cast<short>(group | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF));
    posix_spawnattr_setpgroup(&value_, 0);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&value_, &signals);
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&value_, &signals);
  }
  ~Attributes() { posix_spawnattr_destroy(&value_); }
  Attributes(const Attributes &) = delete;
  Attributes &operator=(const Attributes &) = delete;
  const posix_spawnattr_t *get() const { return &value_; }

private:
  posix_spawnattr_t value_{};
};

// Handles that are to be put in place may stand in each other's places: they are taken out of the way first.
class Handles {
public:
  explicit Handles(const Program &program) {
    posix_spawn_file_actions_init(&actions_);
    const int wanted[] = {program.input, program.output, program.messages, program.extra};
    for (int place = 0; place < 4; place++)
      if (wanted[place] >= 0) put(wanted[place], place);
    if (program.input < 0)
      posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  }
  ~Handles() { posix_spawn_file_actions_destroy(&actions_); }
  Handles(const Handles &) = delete;
  Handles &operator=(const Handles &) = delete;
  const posix_spawn_file_actions_t *get() const { return &actions_; }

private:
  void put(int handle, int place) {
    constexpr int out_of_the_way = 10;
    held_.emplace_back(fcntl(handle, F_DUPFD_CLOEXEC, out_of_the_way));
    posix_spawn_file_actions_adddup2(&actions_, held_.back().get(), place);
  }

  posix_spawn_file_actions_t actions_{};
  std::vector<Fd> held_;
};

std::string_view name_of(std::string_view variable) {
  return variable.substr(0, variable.find('=') + 1);
}

std::vector<std::string> environment_with(const std::vector<std::string> &variables) {
  std::vector<std::string> all = variables;
  for (char **variable = environ; *variable != nullptr; variable++)
    if (std::ranges::none_of(variables, [&](const auto &own) { return name_of(own) == name_of(*variable); }))
      all.emplace_back(*variable);
  return all;
}

// Valid as long as the texts are.
std::vector<char *> pointers_to(std::vector<std::string> &texts) {
  std::vector<char *> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string &text : texts)
    pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

} // namespace

int start_program(pid_t &process, const Program &program) {
  std::vector<std::string> words = program.words, variables = environment_with(program.variables);
  return posix_spawnp(&process, program.path.c_str(), Handles(program).get(),
                      Attributes(program.own_group).get(), pointers_to(words).data(),
                      pointers_to(variables).data());
}

int await_end(pid_t process) {
  int status = 0;
  while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
  }
  return status;
}

std::string text_of_words(const std::vector<std::string> &words) {
  std::string text;
  for (const std::string &word : words)
    text.append(word).push_back('\0');
  return text;
}

std::vector<std::string> words_of(const std::string &text) {
  std::vector<std::string> words;
  for (std::size_t at = 0, end; (end = text.find('\0', at)) != std::string::npos; at = end + 1)
    words.push_back(text.substr(at, end - at));
  return words;
}

Pipe::Pipe() {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) fail("cannot create a pipe");
  reading = Fd(ends[0]);
  writing = Fd(ends[1]);
}

} // namespace kova::device
