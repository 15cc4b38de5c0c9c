// The table against what it must agree with: the public headers (every accessor is bound once, in its role)
// and the standard data model (path, type and access).
#include "model/model.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace kova::model;

const std::filesystem::path source_dir = KOVA_SOURCE_DIR;

std::string read_file(const std::filesystem::path &path) {
  std::ifstream file(path);
  EXPECT_TRUE(file) << path;
  return {std::istreambuf_iterator<char>(file), {}};
}

using Bindings = std::vector<std::string>; // "getter getTR069LanSpeed", sorted

// What the headers declare in an accessor's shape, with indexes or without, of what the library exports.
Bindings exported_accessors() {
  static const std::regex declaration(
      R"(\bkova_(?:(?:wan_device|wan_connection|ip_connection)_)?(getter|setter|checker|row_\w+)\s+(\w[\w\s,]*);)");
  static const std::regex word(R"(\w+)");
  const std::string declarations = read_file(KOVA_DECLARATIONS);
  std::istringstream list(read_file(source_dir / "src/libkova.symbols"));
  const std::set<std::string> exported(std::istream_iterator<std::string>(list), {});
  Bindings found;
  for (std::sregex_iterator at(declarations.begin(), declarations.end(), declaration), end; at != end; ++at) {
    const std::string names = (*at)[2];
    for (std::sregex_iterator name(names.begin(), names.end(), word); name != end; ++name)
      if (exported.contains(name->str())) found.push_back((*at)[1].str() + " " + name->str());
  }
  found.emplace_back("row_getter kovaGetDiagnosticsRouteHopsHopHost"); // declared as a plain function
  std::ranges::sort(found);
  return found;
}

Bindings bound_accessors() {
  Bindings found;
  for (const Parameter *parameter : parameters()) {
    if (parameter->get) found.push_back(std::string("getter ") + parameter->get.name);
    if (parameter->set) found.push_back(std::string("setter ") + parameter->set.name);
    if (parameter->check) found.push_back(std::string("checker ") + parameter->check.name);
  }
  for (const RowList &list : lists()) {
    found.push_back(std::string("row_getter ") + list.get.name);
    if (list.add) found.push_back(std::string("row_add ") + list.add.name);
    if (list.set) found.push_back(std::string("row_setter ") + list.set.name);
    if (list.remove) found.push_back(std::string("row_delete ") + list.remove.name);
  }
  std::ranges::sort(found);
  return found;
}

TEST(Model, BindsEveryExportedAccessorOnceInItsRole) {
  const Bindings exported = exported_accessors(), bound = bound_accessors();
  Bindings unbound, unknown;
  std::ranges::set_difference(exported, bound, std::back_inserter(unbound));
  std::ranges::set_difference(bound, exported, std::back_inserter(unknown));
  EXPECT_EQ(unbound, Bindings{});
  EXPECT_EQ(unknown, Bindings{}) << "bound twice, in another role, or not exported";
  EXPECT_FALSE(exported.empty());
}

struct StandardRow {
  std::string type, access;
  bool used = false;
};

std::map<std::string, StandardRow> standard_rows() {
  std::ifstream file(source_dir / "model/standard.tsv");
  std::map<std::string, StandardRow> rows;
  std::string path, type, access;
  std::getline(file, path); // the heading
  while (file >> path >> type >> access)
    if (type != "object") rows[path] = {type, access};
  return rows;
}

std::string with_placeholders(std::string_view path) {
  return std::regex_replace(std::string(path), std::regex(R"(\.\d+(?=\.))"), ".{i}");
}

TEST(Model, AgreesWithTheStandardDataModel) {
  auto standard = standard_rows();
  for (const Parameter *parameter : parameters()) {
    SCOPED_TRACE(parameter->path);
    const auto row = standard.find(with_placeholders(parameter->path));
    const bool vendor = parameter->path.find(".X_KOVA_") != std::string_view::npos;
    ASSERT_EQ(vendor, row == standard.end());
    if (vendor) {
      EXPECT_NE(parameter->access, Access::ReportedOnly)
          << "only a standard parameter can be merely reported";
      continue;
    }
    row->second.used = true;
    EXPECT_EQ(name(parameter->type), row->second.type);
    EXPECT_EQ(parameter->access == Access::ReadOnly ? "readOnly" : "readWrite", row->second.access);
  }
  for (const RowList &list : lists()) {
    const auto row = standard.find(with_placeholders(list.path));
    ASSERT_EQ(row == standard.end(), list.path.find(".X_KOVA_") != std::string_view::npos) << list.path;
    if (row == standard.end()) continue;
    row->second.used = true;
    EXPECT_EQ(row->second.type, "string") << list.path;
    EXPECT_EQ(row->second.access, list.writable() ? "readWrite" : "readOnly") << list.path;
  }
  for (const auto &[path, row] : standard)
    EXPECT_TRUE(row.used) << path << " is bound to nothing";
}

TEST(Model, RowsAreWellFormed) {
  const auto all = parameters();
  EXPECT_TRUE(std::ranges::is_sorted(all, {}, &Parameter::path));
  EXPECT_EQ(std::ranges::adjacent_find(all, {}, &Parameter::path), all.end()) << "a path is bound twice";
  for (const Parameter *parameter : all) {
    SCOPED_TRACE(parameter->path);
    EXPECT_FALSE(parameter->meaning.empty());
    EXPECT_TRUE(parameter->set || !parameter->writable());
    EXPECT_TRUE(parameter->get || parameter->set);
    // The batch validation takes a parked name that holds this word for one of its own labels.
    const bool may_be_parked = parameter->check || parameter->path.find(".X_KOVA_") != std::string_view::npos;
    EXPECT_TRUE(!may_be_parked || parameter->path.find("Local") == std::string_view::npos);
  }
  for (const RowList &list : lists()) {
    EXPECT_FALSE(list.meaning.empty()) << list.path;
    EXPECT_TRUE((list.add && list.remove) || !list.writable()) << list.path;
  }
}

// Documents describe the instances of an object once.
TEST(Model, InstancesOfAnObjectAgree) {
  std::map<std::string, const Parameter *> first;
  for (const Parameter *parameter : parameters()) {
    SCOPED_TRACE(parameter->path);
    const Parameter *other = first.try_emplace(with_placeholders(parameter->path), parameter).first->second;
    EXPECT_EQ(parameter->type, other->type);
    EXPECT_EQ(parameter->access, other->access);
    EXPECT_EQ(parameter->unit, other->unit);
    EXPECT_EQ(parameter->meaning, other->meaning);
  }
}

TEST(Model, FindsRowsOfLists) {
  EXPECT_TRUE(std::ranges::is_sorted(lists(), {}, &RowList::path));
  const std::string object = "InternetGatewayDevice.X_KOVA_Firewall.MACFilter.Black.";
  const RowList *list = find_list(object);
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->member(), "Rule");
  EXPECT_EQ(list->instance(12), object + "12.");
  for (const auto &[path, is_branch] :
       {std::pair{object + "12.", true}, std::pair{object + "12.Rule", false}}) {
    const auto row = row_at(path);
    ASSERT_TRUE(row) << path;
    EXPECT_EQ(row->list, list);
    EXPECT_EQ(row->index, 12);
    EXPECT_EQ(row->is_branch, is_branch);
  }
  for (const char *no_row :
       {"", "0.", "-1.", "01.", "1", "1.Rul", "1.Rule.", "1Rule", "x.", "{i}.Rule", "99999999999."})
    EXPECT_FALSE(row_at(object + no_row)) << no_row;
  EXPECT_EQ(find_list(object + "1."), nullptr);
}

TEST(Model, FindsPathsAndBranches) {
  const std::string_view address = "InternetGatewayDevice.LANDevice.1.X_KOVA_LAN.IPAddress";
  ASSERT_NE(find(address), nullptr);
  EXPECT_EQ(find(address)->path, address);
  EXPECT_EQ(branch("").size(), parameters().size());
  EXPECT_EQ(branch("InternetGatewayDevice.LANDevice.1.LANEthernetInterfaceConfig.1.Stats.").size(), 4U);
  EXPECT_EQ(starting_with("InternetGatewayDevice.LANDevice.1.X_KOVA_LAN.DNSServer").size(), 3U);

  for (const char *not_a_path : {"", "InternetGatewayDevice.LANDevice.1.X_KOVA_LAN.", "zzz"})
    EXPECT_EQ(find(not_a_path), nullptr) << not_a_path;
  for (const char *not_a_branch : {"Internet", "InternetGatewayDevice.LANDevice.1.X_KOVA_LAN", "zzz.", "."})
    EXPECT_TRUE(branch(not_a_branch).empty()) << not_a_branch;
}

} // namespace
