// Files of the TLS connection with the ACS.
#pragma once

#include <string>

namespace kova::agent {

struct TlsFiles {
  std::string ca, certificate, key; // "" for the system's CAs, and for no certificate of one's own
};

} // namespace kova::agent
