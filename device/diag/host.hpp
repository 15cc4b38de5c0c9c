// What the tests need of the host: its programs, its resolver, its interfaces.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kova::diag {

// A test that is asked to end takes the program that it runs along. From then on this process also ends with
// the one that started it.
void end_with_parent_and_child();

// Runs a program of the PATH without a shell and hands over each line of its output and messages. Answers its
// exit status, above 128 for one that a signal ended. Throws Failure when it cannot be started.
int run_program(const std::vector<std::string> &words,
                const std::function<void(std::string_view)> &take_line);

// Throw Failure for a host that is not found, or an interface that is not there.
std::string numeric_address(const std::string &host);
void expect_interface(const std::string &name);

} // namespace kova::diag
