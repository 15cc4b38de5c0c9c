#pragma once

#include "platform/nvram.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

using Values = std::initializer_list<std::string>;

// What the rule (group, item) answers to each of the values.
inline void expect(int code, int group, int item, Values values) {
  for (const std::string &value : values)
    EXPECT_EQ(code, tarn_check_param(group, value.c_str(), item))
        << group << '/' << item << " \"" << value << '"';
}

// The usual answers: nothing is missing, anything else is malformed.
inline void judge(int group, int item, Values accepted, Values malformed) {
  expect(0, group, item, accepted);
  expect(-1, group, item, {""});
  expect(-2, group, item, malformed);
}
