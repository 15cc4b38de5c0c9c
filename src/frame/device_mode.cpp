// What the operation mode and the WAN settings say about the device as a whole.
#include "platform/keys.hpp"
#include "src/frame/lte_state.hpp"

#include <kova/frame.h>

#include <cstdio>
#include <cstring>

using kova::OwnedText;
using kova::Text;

namespace {

// The mode counts by its first digit ("21" is mode 2); above highest, and without a digit, it is 0.
int operation_mode(char highest) {
  const OwnedText mode = kova::load_whole(kova::key::oper_mode);
  return mode[0] >= '0' && mode[0] <= highest ? mode[0] - '0' : 0;
}

bool load_number(const char *key, int &number) {
  Text text;
  return kova::load(kova::runtime(key), text) && std::sscanf(text, "%d", &number) == 1;
}

// Unlike the data state, the management state need only be published: any state counts as up.
bool management_pdn_is_up() {
  const OwnedText pdn = kova::load_whole("lte_mgmt_pdn");
  char name[128] = {};
  int state = 0;
  return std::sscanf(pdn, "%*[^,],%127[^,],%*s", name) == 1 && load_number("lte_mgmt_state", state);
}

// The interface name is kept in a process-wide buffer of the kernel's name size.
const char *current_interface(const char *key) {
  static char name[16];
  kova::load(kova::runtime(key), name);
  return name;
}

const char *management_traffic_interface() {
  char type[64];
  if (!kova::load("TR_IF_TYPE", type)) return "";
  if (kova::equal(type, "data_pdn") && kova::lte_data_is_connected())
    return current_interface(kova::key::data_interface);
  if (kova::equal(type, "mgmt_pdn") && management_pdn_is_up()) return current_interface("curr_mgmt_if");
  return "";
}

} // namespace

int kova_get_oper_mode(void) {
  return operation_mode('3');
}

int _getOperationMode(void) {
  return operation_mode('2');
}

int kovaGetTR069If(char *buf, unsigned int buflen) {
  const char *name = management_traffic_interface();
  return kova::answer(name, buf, buflen) == 0 && *name != '\0' ? 0 : -1;
}

int checkDHCPRelayIsNotSupport(void) {
  const OwnedText mode = kova::load_whole(kova::key::oper_mode);
  const OwnedText vpn_type = kova::load_whole(kova::key::vpn_type);
  const OwnedText bcp_enable = kova::load_whole(kova::key::bcp_enable);
  const OwnedText gre_type = kova::load_whole(kova::key::gre_type);
  if (kova::equal(mode, "1")) return 0;
  if (!kova::equal(mode, "2")) return 1;
  const bool layer_2_l2tp = kova::equal(vpn_type, "0") && kova::equal(bcp_enable, "1");
  const bool layer_2_gre = kova::equal(vpn_type, "1") && kova::equal(gre_type, "1");
  return layer_2_l2tp || layer_2_gre ? 1 : 0;
}

int getWanIfName(void) {
  const OwnedText interface = kova::load_whole(kova::runtime(kova::key::data_interface));
  if (std::strstr(interface, "eth0.1") != nullptr) return 1;
  if (std::strstr(interface, "eth0.2") != nullptr) return 2;
  return 0;
}
