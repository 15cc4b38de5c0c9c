// The radio of a device that is booted: switched on, its readings are computed whenever they are read; one that
// is stored in the run-time section holds in place of the computed one. Failures throw std::runtime_error with a
// text for a person.
#pragma once

#include <cstdint>

#pragma GCC visibility push(default)
namespace kova::host {

bool radio_is_on();
// `seed` is the device's: the same radio for the same number.
void switch_radio_on(std::uint64_t seed);
// The readings of this moment stay, as stored values.
void switch_radio_off();

} // namespace kova::host

extern "C" {
// A file without a name that holds what the rate sampler would have written: the last ten seconds, newest first.
// -1 when the radio is off. device/redirect opens it where the device has no such file of its own.
int kova_open_rates(void);
}
#pragma GCC visibility pop
