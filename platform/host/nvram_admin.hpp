// What the tools of a development host need of the key/value store beyond the platform's calls: listing,
// removing, and filling many keys at once. Failures throw std::runtime_error with a text for a person.
#pragma once

#include "platform/host/nvram_sections.hpp"

#include <optional>
#include <span>
#include <string>
#include <vector>

#pragma GCC visibility push(default)
namespace kova::host {

struct NvramEntry {
  int section;
  std::string key, value;
  bool operator==(const NvramEntry &) const = default;
};

// In the order of section, then key; all sections when none is named.
std::vector<NvramEntry> nvram_entries(std::optional<int> section = {});
std::optional<std::string> nvram_find(int section, const std::string &key);
// Stores all entries in one transaction: all or none.
void nvram_store(std::span<const NvramEntry> entries);
// False when there was no such key.
bool nvram_remove(int section, const std::string &key);
void nvram_clear_section(int section);
// Differs after each change of the store, by whatever process.
std::size_t store_version();
// How many values this process could not store. Accessors do not tell: a device without room loses what they
// set.
unsigned nvram_failed_writes();

} // namespace kova::host
#pragma GCC visibility pop
