// The LTE daemon's client. What the daemon's modem can do is a setting of the virtual device.
#include "platform/host/nvram_sections.hpp"
#include "platform/host/whole_number.hpp"
#include "platform/lte.h"
#include "platform/nvram.h"

#include <cstdlib>
#include <iterator>
#include <memory>
#include <new>
#include <string_view>

struct lted_client {
  RrcBandList bands; // as they were when the client was made
};

namespace {

constexpr const char *bands_key = "lte_supported_bands"; // band numbers, separated by commas

bool add(RrcBandList &list, std::string_view piece) {
  const uint16_t band = kova::host::whole_number<uint16_t>(piece).value_or(0);
  if (band == 0 || list.count == std::size(list.band)) return false;
  list.band[list.count++] = band;
  return true;
}

RrcBandList parse(std::string_view text) {
  RrcBandList list = {};
  while (!text.empty()) {
    const std::string_view piece = text.substr(0, text.find(','));
    if (!add(list, piece))
      tarn_log_console("lte: \"%.*s\" in %s is no band, or one too many", static_cast<int>(piece.size()),
                       piece.data(), bands_key);
    text.remove_prefix(piece.size() < text.size() ? piece.size() + 1 : text.size());
  }
  return list;
}

} // namespace

// A device without bands has no modem, and so no daemon.
lted_client *new_lted_client(void) {
  const std::unique_ptr<char, decltype(&std::free)> text(
      nvram_bufget(kova::host::configuration_section, bands_key), std::free);
  const RrcBandList bands = parse(text == nullptr ? "" : text.get());
  return bands.count == 0 ? nullptr : new (std::nothrow) lted_client{bands};
}

void destory_lted_client(lted_client *client) {
  delete client;
}

int rrc_band_list_get(lted_client *client, RrcBandList *list) {
  if (client == nullptr || list == nullptr) return -1;
  *list = client->bands;
  return 0;
}
