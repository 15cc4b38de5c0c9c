// The stations associated with each WiFi network.
#pragma once

namespace kova::wifi {

struct StationFile {
  const char *copy_command, *copy;
};
#define STATION_FILE(driver, name)                                                                           \
  { "cp /proc/" driver "/sta_info /tmp/tr069_" name "_sta_info", "/tmp/tr069_" name "_sta_info" }
inline constexpr StationFile station_files[] = {
    STATION_FILE("wlan0", "wlan0"), STATION_FILE("wlan0-va0", "wlan0_va0"),
    STATION_FILE("wlan0-va1", "wlan0_va1"), STATION_FILE("wlan0-va2", "wlan0_va2")};
#undef STATION_FILE

// The stations of a network as a list. Without a station file the caller's buffer is as it was.
int answer_stations(const StationFile &file, char *buf, unsigned int buflen);

} // namespace kova::wifi
