// Runs a fuzz target without a fuzzing engine: replays the files of its arguments and of the directories among them,
// then, with -runs=N, so many mutations of them, which depend on nothing but -seed=S. An input that ends the program is
// kept in the file "crash" of the current directory.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

extern "C" __attribute__((weak)) void __sanitizer_set_death_callback(void (*callback)());
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size);

namespace {

namespace fs = std::filesystem;
using namespace std::string_view_literals;

constexpr std::string_view words[] = {"\0"sv,
                                      "0",
                                      "1",
                                      "-1",
                                      "2147483648",
                                      "99999999999999999999",
                                      "TRUE",
                                      "false",
                                      "Requested",
                                      ",",
                                      ";",
                                      ":",
                                      ".",
                                      "192.168.1.1",
                                      "255.255.255.0",
                                      "fe80::1/64",
                                      "00:1A:2B:3C:4D:5E",
                                      "`",
                                      "$(x)",
                                      "\"",
                                      "\\",
                                      "%22",
                                      "http://a:1/",
                                      "2026-02-30T24:00:00Z",
                                      "\n",
                                      "\r\n",
                                      "=",
                                      "#",
                                      "[{\"path\":\"a\",\"value\":\"b\"}]",
                                      "{\"a\":1.50}",
                                      "\\u0000",
                                      "\xff",
                                      "MRHD",
                                      "\xEF\xBB\xBF"};

class Mutator {
public:
  Mutator(unsigned seed, std::vector<std::string> files) : random_(seed), seeds_(std::move(files)) {
    seeds_.insert(seeds_.end(), std::begin(words), std::end(words));
  }

  std::string next() {
    std::string text = one_of(below(4) == 0 ? seeds_ : mutations_);
    for (std::size_t rounds = below(6) + 1; rounds > 0; --rounds)
      change(text);
    text.resize(std::min(text.size(), std::size_t{4096}));
    return mutations_[below(mutations_.size())] = text;
  }

private:
  std::size_t below(std::size_t bound) { return random_() % bound; }
  const std::string &one_of(const std::vector<std::string> &pool) { return pool[below(pool.size())]; }
  void change(std::string &text) {
    const std::size_t at = below(text.size() + 1),
                      length = below(std::min(text.size() - at, std::size_t{64}) + 1);
    const char byte = static_cast<char>(random_());
    switch (below(6)) {
    case 0:
      text.insert(at, "\0"sv); // which ends a text
      [[fallthrough]];
    case 1:
      text.insert(at, words[below(std::size(words))]);
      break;
    case 2:
      text.insert(at, 1, byte);
      break;
    case 3:
      text.replace(at, length, below(2), byte);
      break;
    case 4:
      for (std::size_t times = 1U << below(6); times > 0; --times)
        text.insert(at, text.substr(at, length));
      break;
    default:
      text.replace(at, length, one_of(mutations_), 0, below(256));
    }
  }

  std::mt19937 random_;
  std::vector<std::string> seeds_, mutations_ = std::vector<std::string>(1000);
};

std::string content(const fs::path &path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path.string());
  return {std::istreambuf_iterator<char>(file), {}};
}

void read_into(std::vector<std::string> &inputs, const fs::path &path) {
  if (!fs::is_directory(path)) return inputs.push_back(content(path));
  for (const auto &entry : fs::directory_iterator(path))
    inputs.push_back(content(entry));
  std::ranges::sort(inputs); // whatever order the directory has
}

std::vector<uint8_t> running;

void keep() {
  const int file = open("crash", O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (write(file, running.data(), running.size()) == static_cast<ssize_t>(running.size()))
    std::fputs("the input is in the file \"crash\"\n", stderr);
}

void run(const std::string &input) {
  running.assign(input.begin(), input.end());
  running.shrink_to_fit(); // so that a sanitizer sees its end
  LLVMFuzzerTestOneInput(running.data(), running.size());
}

} // namespace

int main(int argc, char **argv) {
  unsigned long runs = 0;
  unsigned seed = 1;
  std::vector<std::string> files;
  for (const std::string &argument : std::vector<std::string>(argv + 1, argv + argc)) {
    if (argument.starts_with("-runs="))
      runs = std::stoul(argument.substr(6));
    else if (argument.starts_with("-seed="))
      seed = static_cast<unsigned>(std::stoul(argument.substr(6)));
    else
      read_into(files, argument);
  }
  if (__sanitizer_set_death_callback != nullptr) __sanitizer_set_death_callback(keep);
  for (const int deadly : {SIGABRT, SIGTRAP})
    std::signal(deadly, [](int signal) {
      keep();
      std::signal(signal, SIG_DFL);
      std::raise(signal);
    });
  for (const std::string &input : files)
    run(input);
  std::printf("%zu files replayed, %lu runs from seed %u\n", files.size(), runs, seed);
  std::fflush(stdout);
  for (Mutator mutator(seed, std::move(files)); runs > 0; --runs)
    run(mutator.next());
}
