// What the LTE daemon publishes about the serving cell and the link.
#include "src/frame/rows.hpp"
#include "src/frame/statistics.hpp"

#include <kova/management.h>
#include <kova/radio.h>
#include <kova/wan.h>

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

using namespace kova;

namespace {

constexpr const char *duplex_key = "/tarn/cell_selection/dedicated_duplex";
constexpr const char *none = "NONE";

int answer_number(long number, char *buf, unsigned int buflen) {
  char text[24];
  std::snprintf(text, sizeof text, "%ld", number);
  return answer(text, buf, buflen);
}

bool is_connected() {
  constexpr int connected = 3;
  return load_number(runtime("lte_data_state")) == connected;
}

// ---- The cell record: comma-separated, an empty field moves the later ones up

enum CellField { pci = 0, rssi = 1, rsrq = 3, sinr = 4, tx_power = 5 };

const char *cell_field(char *record, CellField field) {
  const char *text = getnetparametersInfo(record, field);
  return text != nullptr ? text : none;
}

int answer_cell_field(CellField field, char *buf, unsigned int buflen) {
  Text record = load(runtime("DM_CELL_STAT_INFO"));
  return answer(cell_field(record.chars, field), buf, buflen);
}

// ---- Forms of single values

int answer_hexadecimal(const char *key, char *buf, unsigned int buflen) {
  Text text;
  if (load(runtime(key), text)) return answer_number(std::strtol(text, nullptr, 16), buf, buflen);
  answer("", buf, buflen);
  return -1;
}

// The value of one antenna, of a pair such as "-95/-97".
int answer_antenna(const char *key, int antenna, char *buf, unsigned int buflen) {
  Text pair = load(runtime(key));
  char *rest = nullptr;
  const char *token = strtok_r(pair.chars, " \t/", &rest);
  for (; token != nullptr && antenna > 0; --antenna)
    token = strtok_r(nullptr, " \t/", &rest);
  return answer(text_or_empty(token), buf, buflen);
}

int answer_mcs(const char *key, char *buf, unsigned int buflen) {
  char text[Text::size - 1];
  load(runtime(key), text);
  return answer_terminated(text, buf, buflen);
}

// A carrier frequency, published in units of 100 kHz, in kHz.
int answer_kilohertz(const char *key, char *buf, unsigned int buflen) {
  const Text text = load(runtime(key));
  if (text.empty() || equal(text, "-1") || equal(text, "N/A")) return answer("", buf, buflen);
  const long frequency = std::strtol(text, nullptr, 10);
  const bool fits = frequency > INT_MIN / 100 && frequency < INT_MAX / 100;
  return answer_number(fits ? frequency * 100 : 0, buf, buflen);
}

// Published in kbit/s, as a decimal fraction, while there is a connection.
int answer_scheduler_rate(const char *key, char *buf, unsigned int buflen) {
  if (!is_connected()) return answer("0", buf, buflen);
  const float rate = std::strtof(load(runtime(key)), nullptr) * 1024;
  const bool fits = rate > static_cast<float>(LONG_MIN) && rate < static_cast<float>(LONG_MAX);
  return answer_number(fits ? static_cast<long>(rate) : 0, buf, buflen);
}

// Part of the network's number: the first three digits are the country's, the rest the operator's.
int answer_plmn(std::size_t first, bool country, char *buf, unsigned int buflen) {
  constexpr unsigned int least_room = 4;
  if (buf == nullptr || buflen < least_room) return 0;
  std::memset(buf, 0, buflen);
  const Text plmn = load(runtime("lte_cur_plmn"));
  const std::size_t length = std::strlen(plmn), digits = country || length == 6 ? 3 : 2;
  if (length > first) std::memcpy(buf, plmn.chars + first, strnlen(plmn.chars + first, digits));
  return 0;
}

int answer_uplink_counter(Counter counter, char *(*read)(const char *, int), char *buf, unsigned int buflen) {
  return answer(OwnedText(read("lte0pdn", counter)), buf, buflen);
}

int answer_pdn_address(const char *ifname, char *buf, unsigned int buflen) {
  char address[16] = {};
  get_interface_ip(ifname, address, sizeof address);
  return answer_terminated(address, buf, buflen);
}

// The power in the record, or what spectrum access grants when that is less.
Text granted_power(const char *reported) {
  Text power;
  std::snprintf(power.chars, Text::size, "%.255s", reported);
  char enabled[4], granted[16];
  const bool configured = load("SAS_CONFIG_RADIOENABLE", enabled) && load("SAS_CONFIG_POWER", granted);
  if (!configured || equal(enabled, "0") || *granted == '\0') return power;
  const float limit = std::strtof(granted, nullptr);
  if (limit > 0 && limit < std::strtof(reported, nullptr))
    std::snprintf(power.chars, Text::size, "%0.1f", static_cast<double>(limit));
  return power;
}

// Rewrites a frequency in units of 100 kHz as MHz; in holds one character more than the text.
void shift_point(char *in) {
  char *point = std::strchr(in, '.');
  const std::size_t length = std::strlen(in);
  if (point == nullptr) {
    in[length + 1] = '\0';
    in[length] = in[length - 1];
    in[length - 1] = '.';
  } else if (point > in) {
    *point = point[-1];
    point[-1] = '.';
  }
}

} // namespace

const char *getInternetStatusPCI_vals(char *record) {
  return cell_field(record, pci);
}
const char *getInternetStatusRSSI_vals(char *record) {
  return cell_field(record, rssi);
}
const char *getInternetStatusRSRQ_vals(char *record) {
  return cell_field(record, rsrq);
}
const char *getInternetStatusSINR_vals(char *record) {
  return cell_field(record, sinr);
}
const char *getInternetStatusTXPWR_vals(char *record) {
  return cell_field(record, tx_power);
}

char *getInternetStatusFrequency_vals(int which) {
  const OwnedText stored = load_whole(runtime(which == 1 ? "lte_cur_freq" : "lte_cur_ulfreq"));
  if (equal(stored, "") || equal(stored, "-1")) return strdup(none);
  const std::size_t length = std::strlen(stored);
  auto *frequency = static_cast<char *>(std::calloc(1, length + 2));
  if (frequency == nullptr) return nullptr;
  std::memcpy(frequency, static_cast<const char *>(stored), length);
  if (!equal(frequency, "N/A")) shift_point(frequency);
  return frequency;
}

char *getInternetStatusBandwidth_vals(void) {
  const OwnedText stored = load_whole(runtime("lte_cur_bandwidth"));
  return strdup(equal(stored, "") ? none : stored);
}

int getInternetDLEARFCN_vals(char *out, unsigned int outlen) {
  const Text band_text = load(runtime("lte_cur_band"));
  const OwnedText frequency_text(getInternetStatusFrequency_vals(1));
  if (out == nullptr || band_text.empty() || equal(frequency_text, "") || equal(frequency_text, none) ||
      equal(frequency_text, "N/A"))
    return -1;
  const long band = std::atol(band_text);
  const double frequency = std::strtod(frequency_text, nullptr);
  for (const LteBand *row = g_band_list; row->band != 0; ++row) {
    if (static_cast<long>(row->band) != band) continue;
    // The 0.1 keeps a product such as 4.9999 from ending one channel low.
    const double channels = (frequency - row->dl_low_freq) * 10.0 + 0.1;
    if (!(channels >= -1e6 && channels <= 1e6)) return -1; // nor what is no number at all
    std::snprintf(out, outlen, "%d", static_cast<int>(channels) + static_cast<int>(row->dl_earfcn_low));
    return 0;
  }
  return -1;
}

#define ROW(getter, call)                                                                                    \
  int getter(char *buf, unsigned int buflen) {                                                               \
    return call;                                                                                             \
  }
#define PUBLISHED(getter, key) STORED(getter, kova::runtime(key))

// clang-format off
ROW(      kovaGetTR069CellIDValue,     answer_hexadecimal("lte_cur_eci", buf, buflen))
ROW(      kovaGetTR069EnbIdValue,      answer_hexadecimal("lte_cur_enodeb_id", buf, buflen))
PUBLISHED(kovaGetTR069ECGIValue,       "lte_cur_ecgi")
PUBLISHED(kovaGetTR069PLMNValue,       "lte_cur_plmn")
ROW(      kovaGetTR069MCCValue,        answer_plmn(0, true, buf, buflen))
ROW(      kovaGetTR069MNCValue,        answer_plmn(3, false, buf, buflen))
ROW(      kovaGetTR069PCIValue,        answer_cell_field(pci, buf, buflen))
ROW(      kovaGetTR069RSSIValue,       answer_cell_field(rssi, buf, buflen))
ROW(      kovaGetTR069RSRQValue,       answer_cell_field(rsrq, buf, buflen))
ROW(      kovaGetTR069SINRValue,       answer_cell_field(sinr, buf, buflen))
ROW(      kovaGetTR069RSRP0Value,      answer_antenna("lte_rsrp_per_antenna", 0, buf, buflen))
ROW(      kovaGetTR069RSRP1Value,      answer_antenna("lte_rsrp_per_antenna", 1, buf, buflen))
ROW(      kovaGetTR069CINR0Value,      answer_antenna("lte_cinr_per_antenna", 0, buf, buflen))
ROW(      kovaGetTR069CINR1Value,      answer_antenna("lte_cinr_per_antenna", 1, buf, buflen))
PUBLISHED(kovaGetTR069CQI0Value,       "lte_cqi0")
PUBLISHED(kovaGetTR069CQI1Value,       "lte_cqi1")
ROW(      kovaGetTR069DLMcsValue,      answer_mcs("lte_dl_mcs", buf, buflen))
ROW(      kovaGetTR069ULMcsValue,      answer_mcs("lte_ul_mcs", buf, buflen))
ROW(      kovaGetTR069DLFrequencyValue, answer_kilohertz("lte_cur_freq", buf, buflen))
PUBLISHED(kovaGetTR069RoamValue,       "lte_roam_state")
PUBLISHED(kovaGetTR069IMSIValue,       "imsi_infostr")
PUBLISHED(kovaGetTR069IMEIValue,       "imei_infostr")
PUBLISHED(kovaGetTR069WANDLBler,       "lte_bler_stat")
ROW(      kovaGetTR069WANUplinkRateValue,   answer_scheduler_rate("lte_cur_ulsched", buf, buflen))
ROW(      kovaGetTR069WANDownlinkRateValue, answer_scheduler_rate("lte_cur_dlcw1", buf, buflen))
// The counters look crossed; servers in the field expect them so.
ROW(      kovaGetTR069RxPacketsValue,  answer_uplink_counter(sent_packets,     getInterfaceStatistic, buf, buflen))
ROW(      kovaGetTR069TxPacketsValue,  answer_uplink_counter(received_packets, getInterfaceStatistic, buf, buflen))
ROW(      kovaGetTR069RxBytesValue,    answer_uplink_counter(sent_bytes,       getInterfaceStatistic_unitnochange, buf, buflen))
ROW(      kovaGetTR069TxBytesValue,    answer_uplink_counter(received_bytes,   getInterfaceStatistic_unitnochange, buf, buflen))
ROW(      kovaGetTR069APN1IPAddress,   answer_pdn_address("lte0pdn0", buf, buflen))
ROW(      kovaGetTR069APN2IPAddress,   answer_pdn_address("lte0pdn1", buf, buflen))
ROW(      kovaGetTR069APN3IPAddress,   answer_pdn_address("lte0pdn2", buf, buflen))
ROW(      kovaGetTR069APN4IPAddress,   answer_pdn_address("lte0pdn3", buf, buflen))
ROW(      kovaGetTR069LTEStatus,       kovaGetTR069WANConnectionConnectionStatus(buf, buflen))
STORED(kovaGetTR069LTEMode, duplex_key)
STORED(kovaGetTR069LTEOperator, "/cwmp/Operator")
// clang-format on

int kovaGetTR069TXPWRValue(char *buf, unsigned int buflen) {
  Text record = load(runtime("DM_CELL_STAT_INFO"));
  const char *reported = cell_field(record.chars, tx_power);
  return equal(reported, none) ? answer(none, buf, buflen) : answer(granted_power(reported), buf, buflen);
}

int kovaGetTR069ULFrequencyValue(char *buf, unsigned int buflen) {
  const Text duplex = load(duplex_key);
  if (begins_with(duplex, "TDD")) return answer_kilohertz("lte_cur_freq", buf, buflen);
  if (begins_with(duplex, "FDD")) return answer_kilohertz("lte_cur_ulfreq", buf, buflen);
  return answer("", buf, buflen);
}

int kovaGetTR069BandwidthValue(char *buf, unsigned int buflen) {
  const OwnedText kilohertz(getInternetStatusBandwidth_vals());
  return answer_number(std::atol(kilohertz) / 1000, buf, buflen); // "NONE" counts as 0
}

int kovaGetTR069BandValue(char *buf, unsigned int buflen) {
  char band[8];
  load(runtime("lte_cur_band"), band);
  return answer(band, buf, buflen);
}

int kovaGetTR069EARFCNValue(char *buf, unsigned int buflen) {
  char number[16] = {};
  getInternetDLEARFCN_vals(number, sizeof number);
  return answer(number, buf, buflen);
}

int kovaGetTR069LTEDnsServer(char *buf, unsigned int buflen) {
  char servers[2 * Text::size] = {};
  const Text primary = load(runtime("wan_primary_dns")), secondary = load(runtime("wan_secondary_dns"));
  if (is_connected() && !primary.empty())
    std::snprintf(servers, sizeof servers, "%s%s%s", primary.chars, secondary.empty() ? "" : ",",
                  secondary.chars);
  return answer_terminated(servers, buf, buflen);
}
