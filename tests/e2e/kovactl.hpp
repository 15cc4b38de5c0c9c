// Runs the real kovactl on a virtual device of its own, in a temporary directory.
#pragma once

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
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

  void SetUp() override {
    std::string name = (std::filesystem::temp_directory_path() / "kova-e2e-XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::runtime_error("no temporary directory");
    directory_ = name;
    setenv("KOVA_DEVICE", device().c_str(), 1);
    unsetenv("NO_COLOR");
  }

  void TearDown() override {
    run({"device", "down"});
    std::filesystem::remove_all(directory_);
  }

  std::filesystem::path directory() const { return directory_; }
  std::filesystem::path device() const { return directory_ / "device"; }

  // Through pipes, so that a daemon which kept them open would be noticed.
  Result shell(const std::string &command) const {
    const auto errors = directory_ / "stderr";
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

  static std::string read(const std::filesystem::path &path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

private:
  std::filesystem::path directory_;
};

} // namespace kova::e2e
