// The latest of some entries, for whoever asks later what happened.
#pragma once

#include <cstddef>
#include <mutex>
#include <utility>
#include <vector>

namespace kova::host {

template <class Entry>
class Latest {
public:
  void add(Entry entry) {
    constexpr std::size_t kept = 64;
    const std::lock_guard one_at_a_time(mutex_);
    if (entries_.size() == kept) entries_.erase(entries_.begin());
    entries_.push_back(std::move(entry));
  }
  std::vector<Entry> take() {
    const std::lock_guard one_at_a_time(mutex_);
    return std::exchange(entries_, {});
  }

private:
  std::mutex mutex_;
  std::vector<Entry> entries_;
};

} // namespace kova::host
