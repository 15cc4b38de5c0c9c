// The tables of all families, as they are read.
#pragma once

#include "model/model.hpp"

#include <initializer_list>
#include <span>
#include <string_view>

namespace kova::model {

// A row of a table: the head of an object, a member of it, or a list of rows.
struct Row {
  std::string_view object = {};
  std::string_view name = {};
  Type type = Type::String;
  std::string_view unit = {}, form = {}, meaning = {};
  bool reported = false, agent_set = false;
  bool settable = false;
  Accessor<kova_getter> get = {};
  Accessor<kova_setter> set = {};
  Accessor<kova_checker> check = {};
  Allowed allowed = {};
  Accessor<kova_row_getter> row_get = {};
  Accessor<kova_row_add> row_add = {};
  Accessor<kova_row_setter> row_set = {};
  Accessor<kova_row_delete> row_delete = {};
  const char *(*reason)(int code) = nullptr;
  bool empty_is_end = false;
  std::size_t longest_text = 0;
};

std::span<const std::span<const Row>> tables();

// The texts that a path is made of lie apart in its table; they are joined once, for good.
std::string_view joined(std::initializer_list<std::string_view> pieces);

} // namespace kova::model
