#pragma once

#include "platform/nvram.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

// What the rule (group, item) answers to each of the values.
inline void expect(int code, int group, int item, std::initializer_list<std::string> values) {
  for (const std::string &value : values)
    EXPECT_EQ(code, tarn_check_param(group, value.c_str(), item))
        << group << '/' << item << " \"" << value << '"';
}
