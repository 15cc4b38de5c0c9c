#include "device/log.hpp"

#include "device/date_time.hpp"
#include "device/file_system.hpp"
#include "device/paths.hpp"

#include <fcntl.h>
#include <nlohmann/json.hpp>
#include <sys/file.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>

namespace fs = std::filesystem;

namespace kova::device {
namespace {

constexpr off_t longest_log = 4 << 20; // bytes

fs::path earlier(const fs::path &path) {
  return path.string() + ".1";
}

bool is_full(const Fd &file) {
  struct stat status = {};
  return fstat(file.get(), &status) == 0 && status.st_size > longest_log;
}

Fd open_to_append(const fs::path &path) {
  return Fd(open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, host::private_file));
}

} // namespace

Fd open_log(const fs::path &path) {
  Fd file = open_to_append(path);
  if (!file || !is_full(file) || flock(file.get(), LOCK_EX | LOCK_NB) != 0) return file;
  // Of those who see that it is full, one at a time comes here, and the next finds another file at the path.
  if (is_at(path, file.get())) rename(path.c_str(), earlier(path).c_str());
  return open_to_append(path);
}

fs::path log_file() {
  return log_dir() / "device.log";
}
fs::path earlier_log_file() {
  return earlier(log_file());
}

void log_record(const LogFields &fields) {
  try {
    nlohmann::json record;
    for (const LogField &field : fields)
      std::visit([&](const auto &value) { record[field.name] = value; }, field.value);
    record["time"] = date_time(now(), Fraction::milliseconds);
    if (const pid_t asking = asking_process(); asking != 0 && record.value("pid", asking) != asking)
      record["asker"] = asking;
    const std::string line = record.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) + '\n';
    const Fd file = open_log(log_file());
    if (file && write(file.get(), line.data(), line.size()) == static_cast<ssize_t>(line.size())) return;
    std::fprintf(stderr, "kova: cannot write %s: %s\n", log_file().c_str(), std::strerror(errno));
  } catch (const std::exception &error) {
    std::fprintf(stderr, "kova: cannot log: %s\n", error.what());
  }
}

pid_t asking_process() {
  const char *pid = std::getenv("KOVA_ASKING_PID");
  return pid == nullptr ? 0 : std::atoi(pid);
}

} // namespace kova::device
