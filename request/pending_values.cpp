#include "request/pending_values.hpp"

#include <kova/transaction.h>

namespace kova::request {
namespace {

void forget(unsigned char &touched, PendingValue *first, PendingValue *last) {
  touched = 0;
  for (PendingValue *slot = first; slot <= last; ++slot)
    pvcl_free_slot(slot);
}

} // namespace

void forget_pending_values() {
  PendingValueCheckList &list = gPVCL;
  forget(list.wifiTouched, &list.wifiMode, &list.wifiBandwidth);
  forget(list.lanTouched, &list.lanIpAddress, &list.dhcpPoolEnd);
  forget(list.dnsTouched, &list.dnsOption, &list.dns3);
  forget(list.downloadDiagTouched, &list.dlState, &list.dlDscp);
  forget(list.uploadDiagTouched, &list.ulState, &list.ulDscp);
  forget(list.udpEchoTouched, &list.udpEchoEnable, &list.udpEchoPlusEnabled);
  forget(list.ipPingTouched, &list.pingState, &list.pingDataSize);
  forget(list.traceRouteTouched, &list.trState, &list.trMaxHopCount);
  forget(list.wanApnTouched, &list.operMode, &list.greType);
  for (PendingApn &apn : list.apn)
    forget(list.wanApnTouched, &apn.apnEnable, &apn.apnBridgeVid);
}

} // namespace kova::request
