#include "src/transaction/group.hpp"

#include <cstring>

namespace kova::transaction {

bool set_by_request(const PendingValue &slot) {
  return slot.name != nullptr && !begins_with(slot.name, "Local");
}

void FaultNames::add(const char *name) {
  if (buffer_ == nullptr) return;
  if (*buffer_ != '\0') std::strcat(buffer_, ";");
  std::strcat(buffer_, name);
}

void FaultNames::add_within_size(const char *name) {
  if (buffer_ == nullptr || size_ <= 0) return;
  const auto append = [this](const char *text) {
    const std::size_t used = std::strlen(buffer_), most = static_cast<std::size_t>(size_) - 1;
    if (used < most) std::strncat(buffer_, text, most - used);
  };
  if (*buffer_ != '\0') append(";");
  append(name);
}

} // namespace kova::transaction
