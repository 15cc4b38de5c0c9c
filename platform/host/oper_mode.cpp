// The operation-mode record: how the router connects its LAN, and through which tunnel.
#include "platform/host/complaints.hpp"
#include "platform/host/nvram_sections.hpp"
#include "platform/host/text_of.hpp"
#include "platform/keys.hpp"
#include "platform/nvram.h"
#include "platform/webs.h"

#include <cstdlib>
#include <string_view>

namespace {

constexpr int vpn_mode = 2, l2tp = 0, gre = 1;

// A missing key reads as 0. False: the store cannot be read.
template <class Field>
bool load(const char *key, Field &field) {
  char text[16] = "";
  if (nvram_bufget_string(kova::host::configuration_section, key, text, sizeof text) < 0) return false;
  field = static_cast<Field>(std::atoi(text));
  return true;
}

bool load(OperMode &mode) {
  return load(kova::key::oper_mode, mode.oper_mode) && load(kova::key::vpn_type, mode.vpn_type) &&
         load(kova::key::bcp_enable, mode.bcp_enable) && load(kova::key::gre_type, mode.gre_type);
}

// Keys that have a meaning in the VPN mode only, some of them for one type of tunnel only.
struct VpnKeys {
  std::string_view name;
  bool is_prefix;
  bool (*matters_for)(int vpn_type);
  std::string_view where;
};

constexpr VpnKeys vpn_keys[] = {
    {kova::key::vpn_type, false, [](int) { return true; }, "VPN mode"},
    {kova::key::vpn_nat, false, [](int) { return true; }, "VPN mode"},
    {kova::key::layer_3_interface, false, [](int) { return true; }, "VPN mode"},
    {kova::key::bcp_enable, false, [](int type) { return type == l2tp; }, "VPN mode over L2TP"},
    {"l2tp_", true, [](int type) { return type == l2tp; }, "VPN mode over L2TP"},
    {"gre_", true, [](int type) { return type == gre; }, "VPN mode over GRE"},
};

} // namespace

OperMode *getOperModeFromNvram(void) {
  auto *mode = static_cast<OperMode *>(std::calloc(1, sizeof(OperMode)));
  if (mode != nullptr && load(*mode)) return mode;
  std::free(mode);
  return nullptr;
}

void OperMode_delete(OperMode *record) {
  std::free(record);
}

int OperMode_checkKeyWritableFromNvram(const char *key) {
  const std::string_view name = kova::host::text_of(key);
  for (const VpnKeys &keys : vpn_keys) {
    if (keys.is_prefix ? !name.starts_with(keys.name) : name != keys.name) continue;
    OperMode mode = {};
    if (load(mode) && mode.oper_mode == vpn_mode && keys.matters_for(mode.vpn_type)) return 1;
    return kova::host::complained(0, {"\"", name, "\" can be set in the ", keys.where, " only"});
  }
  return 1;
}
