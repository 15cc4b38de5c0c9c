// How programs are started, without a shell.
#pragma once

#include "device/fd.hpp"

#include <sys/types.h>

#include <string>
#include <utility>
#include <vector>

namespace kova::device {

struct Program {
  std::string path;                     // sought in the PATH when it is a bare name
  std::vector<std::string> words;       // the command line; the first is the program's name
  int input = -1;                       // -1: nothing
  int output = -1, messages = -1;       // -1: those of this process
  int extra = -1;                       // becomes handle 3
  std::vector<std::string> variables{}; // "NAME=value", in place of this process's
  bool own_group = false;               // what it starts can be ended with it
};

// With default signals, and of the handles the given ones only. Answers 0 or the system error.
int start_program(pid_t &process, const Program &program);
// Returns when the child has ended; answers its wait status.
int await_end(pid_t process);

// Words as a text to hand over: each ended by a NUL.
std::string text_of_words(const std::vector<std::string> &words);
std::vector<std::string> words_of(const std::string &text);

struct Pipe {
  Pipe(); // throws std::runtime_error
  Fd reading, writing;
};

} // namespace kova::device
