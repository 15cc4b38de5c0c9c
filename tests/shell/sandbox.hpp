// An empty directory in which a real shell runs a command line of the device.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace kova::test {

class Sandbox {
public:
  Sandbox();
  ~Sandbox();
  Sandbox(const Sandbox &) = delete;
  Sandbox &operator=(const Sandbox &) = delete;

  struct Outcome {
    std::optional<std::string> text; // the last word that logger or test_cpeevent was called with
    bool intruded = false;           // did something of a value run?
  };
  // There is no program but those two, which take down their words, and the function "pwn", which leaves a mark.
  Outcome run(const std::string &line) const;

private:
  std::filesystem::path directory_;
};

} // namespace kova::test
