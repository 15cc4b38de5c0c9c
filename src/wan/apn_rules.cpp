// The rules that hold across the APN profiles.
#include "src/frame/tree.hpp"
#include "src/wan/wan_mode.hpp"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

using namespace kova::wan;

constexpr int profiles = 8;
constexpr int profiles_with_data_bearer = 7; // profile 8 never carries data

bool is_layer_2_gre(const OperMode &mode) {
  return mode.oper_mode == vpn_mode && mode.vpn_type == vpn_gre && mode.gre_type == gre_layer_2;
}

bool read_number(kova::Tree &tree, int profile, const char *leaf, int32_t &number) {
  // These three paths have no leading "/", unlike the accessors' own.
  kova::Text path, text;
  std::snprintf(path.chars, kova::Text::size, "tarn/cm_config/apnprofile/apn%d/%s", profile, leaf);
  if (tree.read(path, text) != 0) return false;
  number = kova::leading_number(text); // a text that is no number counts as 0
  return true;
}

// May two enabled profiles have this bearer use in this mode?
bool may_be_shared(int bearer, const OperMode &mode) {
  if (bearer == no_bearer) return true;
  return bearer == data_bearer && (mode.oper_mode == bridge_mode || is_layer_2_gre(mode));
}

// The VLAN ids of all lists: an array of what has been seen, as a bit a number.
class SeenNumbers {
public:
  // False when the number was there before.
  bool add(int number) {
    const auto index = static_cast<unsigned int>(number);
    unsigned char &byte = bits_[index / 8];
    const auto bit = static_cast<unsigned char>(1U << index % 8);
    if ((byte & bit) != 0) return false;
    byte = static_cast<unsigned char>(byte | bit);
    return true;
  }

private:
  unsigned char bits_[4096 / 8] = {};
};

bool judge_vlan_list(const char *list, SeenNumbers &seen) {
  char items[sizeof ApnRule::gre_l2_vlan_list];
  std::snprintf(items, sizeof items, "%.143s", list);
  char *rest = nullptr;
  for (char *item = strtok_r(items, " ", &rest); item != nullptr; item = strtok_r(nullptr, " ", &rest)) {
    const int id = kova::leading_number(item); // an item that is no number counts as 0
    if (id != 0 && (id <= 9 || id > 4094)) return false;
    if (!seen.add(id)) return false;
  }
  return true;
}

} // namespace

int getApnCfgFromNvram(ApnRule records[8]) {
  if (records == nullptr) return -1;
  kova::Tree tree(kova::Tree::stays_open);
  if (tree.code() != 0) return -1;
  for (int i = 0; i < profiles; ++i)
    if (!read_number(tree, i + 1, "enable", records[i].enable) ||
        !read_number(tree, i + 1, "apply_to", records[i].apply_to) ||
        !read_number(tree, i + 1, "bridge_vid", records[i].bridge_vid))
      return -1;
  return 0;
}

int have_data_bear_type(const ApnRule records[8]) {
  for (int i = 0; i < profiles_with_data_bearer; ++i)
    if (records[i].enable == 1 && records[i].apply_to == data_bearer) return 0;
  return -1;
}

int check_apn_bear_type(const OperMode *opmode, const ApnRule records[8]) {
  const int mode = opmode->oper_mode;
  if (mode != nat_mode && mode != vpn_mode && mode != bridge_mode) return 0;
  for (int i = 0; i < profiles; ++i)
    for (int j = i + 1; j < profiles; ++j)
      if (records[i].enable == 1 && records[j].enable == 1 && records[i].apply_to == records[j].apply_to &&
          !may_be_shared(records[i].apply_to, *opmode))
        return -1;
  return 0;
}

int check_vlan_id(const OperMode *opmode, const ApnRule records[8]) {
  if (opmode->oper_mode != bridge_mode) return 0;
  const auto carries_data = [](const ApnRule &record) {
    return record.enable == 1 && record.apply_to == data_bearer;
  };
  for (int i = 0; i < profiles; ++i)
    for (int j = i + 1; j < profiles; ++j)
      if (carries_data(records[i]) && carries_data(records[j]) &&
          records[i].bridge_vid == records[j].bridge_vid)
        return -1;
  return 0;
}

int check_gre_l2_vlan_list(const OperMode *opmode, const ApnRule records[8]) {
  if (!is_layer_2_gre(*opmode)) return 0;
  SeenNumbers seen;
  for (int i = 0; i < profiles_with_data_bearer; ++i)
    if (records[i].enable == 1 && records[i].apply_to == data_bearer &&
        !judge_vlan_list(records[i].gre_l2_vlan_list, seen))
      return -1;
  return 0;
}
