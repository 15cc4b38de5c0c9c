// Filled stores of a device in a directory that goes at the end. On a memory file system where there is one: what is measured
// then is the work, not the disk.
#pragma once

#include "cases.hpp"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace bench {

class ScratchStores {
public:
  ScratchStores() {
    const bool shared_memory = std::filesystem::is_directory("/dev/shm");
    std::string name =
        ((shared_memory ? "/dev/shm" : std::filesystem::temp_directory_path()) / "kova-bench-XXXXXX")
            .string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("cannot create " + name);
    directory_ = name;
    setenv("KOVA_DEVICE", directory_.c_str(), 1);
    prepare();
  }
  ~ScratchStores() {
    std::error_code ignored;
    std::filesystem::remove_all(directory_, ignored);
  }
  ScratchStores(const ScratchStores &) = delete;
  ScratchStores &operator=(const ScratchStores &) = delete;

private:
  std::filesystem::path directory_;
};

} // namespace bench
