// The sections of the key/value store.
#pragma once

namespace kova::host {

enum NvramSection : int {
  configuration_section = 0, // settings, kept over a boot
  runtime_section = 9,       // facts that the daemons of a booted device publish
};

} // namespace kova::host
