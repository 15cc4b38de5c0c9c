// Makes one kind of call so many times: what callgrind counts the instructions of.
//   kova_count getter|direct|tree TIMES
#include "cases.hpp"
#include "scratch.hpp"

#include <kova/wan.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

void get_leaf() {
  char value[256];
  if (getTR069APN1ApplyTo(value, sizeof value) != 0) std::abort();
}

void (*call_of(std::string_view name))() {
  const bench::Case &getter = bench::cases().front();
  if (name == "getter") return getter.library;
  if (name == "direct") return getter.direct;
  return name == "tree" ? get_leaf : nullptr;
}

} // namespace

int main(int argc, char **argv) {
  void (*const call)() = argc == 3 ? call_of(argv[1]) : nullptr;
  if (call == nullptr) {
    std::fputs("kova_count: getter, direct or tree, and how many times\n", stderr);
    return 2;
  }
  const bench::ScratchStores stores;
  for (long times = std::atol(argv[2]); times > 0; --times)
    call();
}
