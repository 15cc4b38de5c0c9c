// What the commands that use the device have in common.
#pragma once

#include "device/device.hpp"
#include "kovactl/output.hpp"
#include "request/library_output.hpp"

namespace kova::ctl {

// Whether there is a device to look at, booted or not.
bool has_device();
// Boots the device, and creates it on first use.
void boot(const Output &output);
// Does what an agent does once when it starts, too.
void start_agent(const Output &output);

// Uses the library while no other tool changes the device, or while no other tool uses it.
auto in_turn(const auto &work, device::Turn::Kind kind = device::Turn::Kind::changing) {
  const device::Turn turn(kind);
  const request::LibraryOutputAside aside;
  return work();
}

} // namespace kova::ctl
