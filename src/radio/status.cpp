// What the LTE daemon publishes about the serving cell and the link.
#include "platform/keys.hpp"
#include "src/frame/interfaces.hpp"
#include "src/frame/lte_state.hpp"
#include "src/frame/rows.hpp"

#include <kova/radio.h>
#include <kova/wan.h>

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

using namespace kova;

namespace {

constexpr const char *none = "NONE";

// ---- The cell record: comma-separated, an empty field moves the later ones up

enum CellField { pci = 0, rssi = 1, rsrq = 3, sinr = 4, tx_power = 5 };

const char *cell_field(char *record, CellField field) {
  const char *text = getnetparametersInfo(record, field);
  return text != nullptr ? text : none;
}

int answer_cell_field(CellField field, char *buf, unsigned int buflen) {
  Text record = load(runtime(key::cell_record));
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
template <int antenna>
int answer_antenna(const char *key, char *buf, unsigned int buflen) {
  Text pair = load(runtime(key));
  char *rest = nullptr;
  const char *token = strtok_r(pair.chars, " \t/", &rest);
  for (int before = antenna; token != nullptr && before > 0; --before)
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
  if (!lte_data_is_connected()) return answer("0", buf, buflen);
  const float rate = std::strtof(load(runtime(key)), nullptr) * 1024;
  const bool fits = rate > static_cast<float>(LONG_MIN) && rate < static_cast<float>(LONG_MAX);
  return answer_number(fits ? static_cast<long>(rate) : 0, buf, buflen);
}

// The network's number: the first three digits are the country's, the rest the operator's.
enum class PlmnCode { country, network };
int answer_plmn_code(PlmnCode code, char *buf, unsigned int buflen) {
  constexpr unsigned int least_room = 4;
  if (buf == nullptr || buflen < least_room) return 0;
  std::memset(buf, 0, buflen);
  const Text plmn = load(runtime(key::plmn));
  const bool country = code == PlmnCode::country;
  const std::size_t length = std::strlen(plmn), first = country ? 0 : 3,
                    digits = country || length == 6 ? 3 : 2;
  if (length > first) std::memcpy(buf, plmn.chars + first, strnlen(plmn.chars + first, digits));
  return 0;
}

int answer_uplink_count(Counter counter, char *buf, unsigned int buflen) {
  return answer(OwnedText(getInterfaceStatistic_unitnochange(uplink, counter)), buf, buflen);
}

// The power in the record, or what spectrum access grants when that is less.
Text granted_power(const char *reported) {
  Text power;
  std::snprintf(power.chars, Text::size, "%.255s", reported);
  char enabled[4], granted[16];
  const bool configured = load(key::sas_radio_enable, enabled) && load(key::sas_power, granted);
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
  const OwnedText stored = load_whole(runtime(which == 1 ? key::downlink_frequency : key::uplink_frequency));
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
  const Text band_text = load(runtime(key::band));
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
    if (!(channels >= -1e6 && channels <= 1e6)) return -1; // true of a NaN, too
    std::snprintf(out, outlen, "%d", static_cast<int>(channels) + static_cast<int>(row->dl_earfcn_low));
    return 0;
  }
  return -1;
}

#include "src/radio/radio.def"

int kovaGetTR069LTEStatus(char *buf, unsigned int buflen) {
  return kovaGetTR069WANConnectionConnectionStatus(buf, buflen);
}

int kovaGetTR069TXPWRValue(char *buf, unsigned int buflen) {
  Text record = load(runtime(key::cell_record));
  const char *reported = cell_field(record.chars, tx_power);
  return equal(reported, none) ? answer(none, buf, buflen) : answer(granted_power(reported), buf, buflen);
}

int kovaGetTR069ULFrequencyValue(char *buf, unsigned int buflen) {
  const Text duplex = load(key::duplex);
  if (begins_with(duplex, "TDD")) return answer_kilohertz(key::downlink_frequency, buf, buflen);
  if (begins_with(duplex, "FDD")) return answer_kilohertz(key::uplink_frequency, buf, buflen);
  return answer("", buf, buflen);
}

int kovaGetTR069BandwidthValue(char *buf, unsigned int buflen) {
  const OwnedText kilohertz(getInternetStatusBandwidth_vals());
  return answer_number(std::atol(kilohertz) / 1000, buf, buflen); // "NONE" counts as 0
}

int kovaGetTR069BandValue(char *buf, unsigned int buflen) {
  char band[8];
  load(runtime(key::band), band);
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
  if (lte_data_is_connected() && !primary.empty())
    std::snprintf(servers, sizeof servers, "%s%s%s", primary.chars, secondary.empty() ? "" : ",",
                  secondary.chars);
  return answer_terminated(servers, buf, buflen);
}
