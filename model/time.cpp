#include "model/rows.hpp"

#include <kova/time.h>

namespace kova::model {
namespace {

// clang-format off
#define CLOCK "InternetGatewayDevice.Time."

constexpr Parameter rows[] = {
    READ_WRITE(CLOCK "NTPServer1", String, kovaGetDeviceTimeNTPServer, kovasetDeviceTimeNTPServer,
               "", "Time server"),
    READ_ONLY (CLOCK "CurrentLocalTime", DateTime, kovaGetCurrentLocalTime, "", "Date and time in the device's zone"),
    READ_WRITE(CLOCK "LocalTimeZone", String, kovaGetLocalTimeZone, kovasetLocalTimeZone,
               "", "Offset from UTC, for example +05:45; a zone without daylight saving switches it off"),
    READ_WRITE(CLOCK "DaylightSavingsUsed", Boolean, kovaGetDaylightSavingsUsed, kovasetDaylightSavingsUsed,
               "", "Whether daylight saving is in use; only in zones that have it"),
    READ_WRITE(CLOCK "DaylightSavingsStart", DateTime, kovaGetDaylightSavingsStart, kovasetDaylightSavingsStart,
               "", "Day on which it begins; its month, week of the month and weekday are kept"),
    READ_WRITE(CLOCK "DaylightSavingsEnd", DateTime, kovaGetDaylightSavingsEnd, kovasetDaylightSavingsEnd,
               "", "Day on which it ends; its month, week of the month and weekday are kept"),
    READ_WRITE(CLOCK "X_KOVA_Apply", Boolean, kovaGetNTPApply, kovasetNTPApply,
               "", "Set to 1 to synchronise the clock with these settings; reads empty"),
};
// clang-format on

} // namespace

std::span<const Parameter> time_rows() {
  return rows;
}

} // namespace kova::model
