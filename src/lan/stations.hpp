// The stations associated with each WiFi network.
#pragma once

namespace kova::wifi {

struct StationFile {
  const char *copy_command, *copy;
};
inline constexpr StationFile station_files[] = {
    {"cp /proc/wlan0/sta_info /tmp/tr069_wlan0_sta_info", "/tmp/tr069_wlan0_sta_info"},
    {"cp /proc/wlan0-va0/sta_info /tmp/tr069_wlan0_va0_sta_info", "/tmp/tr069_wlan0_va0_sta_info"},
    {"cp /proc/wlan0-va1/sta_info /tmp/tr069_wlan0_va1_sta_info", "/tmp/tr069_wlan0_va1_sta_info"},
    {"cp /proc/wlan0-va2/sta_info /tmp/tr069_wlan0_va2_sta_info", "/tmp/tr069_wlan0_va2_sta_info"}};

// The stations of a network as a list. Without a station file the caller's buffer is as it was.
int answer_stations(const StationFile &file, char *buf, unsigned int buflen);

} // namespace kova::wifi
