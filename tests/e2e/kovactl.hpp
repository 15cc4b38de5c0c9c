// Runs the real kovactl on a virtual device of its own.
#pragma once

#include "support/scratch_device.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace kova::e2e {

using Json = nlohmann::json;

struct Result {
  int status;
  std::string out, err;
};

class Kovactl : public testing::Test {
protected:
  using Words = std::vector<std::string>;

  void SetUp() override { unsetenv("NO_COLOR"); }

  void TearDown() override {
    scratch_.select();
    run({"device", "down"});
  }

  const std::filesystem::path &directory() const { return scratch_.top(); }
  const std::filesystem::path &device() const { return scratch_.directory(); }

  // Through pipes, so that a daemon which kept them open would be noticed.
  Result shell(const std::string &command) const {
    const auto errors = directory() / "stderr";
    FILE *pipe = popen(("{ " + command + "\n} 2>'" + errors.string() + "'").c_str(), "r");
    Result result{};
    char buffer[4096];
    for (size_t n; (n = fread(buffer, 1, sizeof buffer, pipe)) > 0;)
      result.out.append(buffer, n);
    result.status = WEXITSTATUS(pclose(pipe));
    result.err = read(errors);
    return result;
  }

  static std::string command_line(const Words &words) {
    std::string line = "'" KOVACTL_PATH "'";
    for (const std::string &word : words)
      line += " '" + word + "'";
    return line;
  }

  Result run(const Words &words) const { return shell(command_line(words)); }

  // What a person would see, results and messages together.
  static std::string on_terminal(const std::string &command) {
    int terminal = -1;
    const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child == 0) {
      execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
      _exit(127);
    }
    std::string text;
    char buffer[4096];
    for (ssize_t n; (n = ::read(terminal, buffer, sizeof buffer)) > 0;)
      text.append(buffer, static_cast<size_t>(n));
    close(terminal);
    waitpid(child, nullptr, 0);
    return text;
  }

  Json json(Words words, int status = 0) const {
    words.insert(words.begin(), "--json");
    const Result result = run(words);
    EXPECT_EQ(result.status, status) << result.out << result.err;
    Json answer = Json::parse(result.out, nullptr, false);
    EXPECT_FALSE(answer.is_discarded()) << result.out << result.err;
    return answer;
  }

  std::string value(const std::string &path) const { return json({"get", path})["parameters"][0]["value"]; }
  std::string nvram(const std::string &key, int section = 0) const {
    return json({"nvram", "get", "-s", std::to_string(section), key})[0]["value"];
  }

  // The path of a new file with this content.
  std::string file(const std::string &name, const std::string &text) const {
    std::ofstream(directory() / name, std::ios::binary) << text;
    return directory() / name;
  }
  // In the place of a program of the device; the path is that below its directory.
  void replace_program(const std::string &path, const std::string &script) const {
    const auto program = device() / path;
    std::filesystem::create_directories(program.parent_path());
    std::filesystem::remove(program);
    std::ofstream(program) << "#!/bin/sh\n" << script << "\n";
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
  }

  static std::string read(const std::filesystem::path &path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

private:
  const test::ScratchDevice scratch_;
};

} // namespace kova::e2e
