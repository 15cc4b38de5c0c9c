// Rates and totals of the first PDN, from the file that the rate sampler keeps.
#include "src/frame/rows.hpp"
#include "src/frame/trace.hpp"

#include <fcntl.h>
#include <kova/radio.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/sysinfo.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace kova::radio {

namespace {

constexpr const char *rate_file = "/var/rate_info";
constexpr int line_size = 1024 + 1; // and the terminator

struct Sample {
  unsigned long time, receive_rate; // rates in bytes per second
  unsigned long long received_packets, received_bytes;
  unsigned long send_rate;
  unsigned long long sent_packets, sent_bytes;
};

// What the file says: the newest sample, and the extremes of all samples read.
struct Rates {
  Sample newest;
  unsigned long receive_min, receive_max, send_min, send_max;
};

enum class Extent { newest_only, all_samples };

// The open file, locked against the sampler. What is no regular file could block for ever: it is not read.
class LockedFile {
public:
  LockedFile() {
    const int fd = open(rate_file, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) return;
    struct stat facts;
    if (fstat(fd, &facts) == 0 && S_ISREG(facts.st_mode)) file_ = fdopen(fd, "r");
    if (file_ == nullptr) {
      close(fd);
      return;
    }
    if (flock(fd, LOCK_EX | LOCK_NB) == 0) return;
    trace_error("File is locked by others, block.");
    flock(fd, LOCK_EX); // without the lock it is read all the same
  }
  ~LockedFile() {
    if (file_ == nullptr) return;
    flock(fileno(file_), LOCK_UN);
    std::fclose(file_);
  }
  LockedFile(const LockedFile &) = delete;
  LockedFile &operator=(const LockedFile &) = delete;
  bool is_open() const { return file_ != nullptr; }
  bool read_line(char (&line)[line_size]) { return std::fgets(line, sizeof line, file_) != nullptr; }

private:
  FILE *file_ = nullptr;
};

bool parse(const char *line, Sample &sample) {
  const int items = std::sscanf(line, "%lu: %lu %llu %llu %lu %llu %llu", &sample.time, &sample.receive_rate,
                                &sample.received_packets, &sample.received_bytes, &sample.send_rate,
                                &sample.sent_packets, &sample.sent_bytes);
  if (items == 7) return true;
  dbg_trace("[Error][%s %s:%d] Fail to get rate info from %s, read %d items,original_line=%s", __func__,
            __FILE_NAME__, __LINE__, rate_file, items, line);
  return false;
}

void take_in(Rates &rates, const Sample &sample) {
  if (sample.receive_rate < rates.receive_min) rates.receive_min = sample.receive_rate;
  if (sample.receive_rate > rates.receive_max) rates.receive_max = sample.receive_rate;
  if (sample.send_rate < rates.send_min) rates.send_min = sample.send_rate;
  if (sample.send_rate > rates.send_max) rates.send_max = sample.send_rate;
}

// No more than one sampling interval since the newest sample, in the sampler's 32-bit clock.
bool is_fresh(unsigned long up_time, unsigned long newest, unsigned long second) {
  return static_cast<uint32_t>(up_time) - static_cast<uint32_t>(newest) <=
         static_cast<uint32_t>(newest) - static_cast<uint32_t>(second);
}

bool read_rates(Extent extent, Rates &rates) {
  LockedFile file;
  if (!file.is_open()) return false;
  struct sysinfo facts;
  if (sysinfo(&facts) != 0) {
    dbg_trace("[Error][%s %s:%d] Fail to get sysinfo,errno:%u, reason:%s", __func__, __FILE_NAME__, __LINE__,
              static_cast<unsigned int>(errno), std::strerror(errno)); // NOLINT(concurrency-mt-unsafe)
    return false;
  }
  char line[line_size];
  Sample sample = {};
  int samples = 0;
  unsigned long second_time = 0;
  while ((extent == Extent::all_samples || samples < 2) && file.read_line(line)) {
    if (!parse(line, sample)) return false;
    if (++samples == 1)
      rates = {sample, sample.receive_rate, sample.receive_rate, sample.send_rate, sample.send_rate};
    else
      take_in(rates, sample);
    if (samples == 2) second_time = sample.time;
  }
  if (samples < 2) return false;
  if (is_fresh(static_cast<unsigned long>(facts.uptime), rates.newest.time, second_time)) return true;
  dbg_trace("[Error][%s %s:%d] Program net_rate does not update rate info file %s", __func__, __FILE_NAME__,
            __LINE__, rate_file);
  return false;
}

// Rates are told in bits per second, in the machine's own word.
unsigned long bits(unsigned long bytes) {
  return bytes * 8;
}

template <typename Number>
int answer_if(bool known, Number number, char *buf, unsigned int buflen) {
  return known ? answer_number(number, buf, buflen) : answer("N/A", buf, buflen);
}

int answer_current(unsigned long Sample::*rate, char *buf, unsigned int buflen) {
  Rates rates = {};
  const bool known = read_rates(Extent::newest_only, rates);
  return answer_if(known, bits(rates.newest.*rate), buf, buflen);
}

int answer_total(unsigned long long Sample::*total, char *buf, unsigned int buflen) {
  Rates rates = {};
  const bool known = read_rates(Extent::newest_only, rates);
  return answer_if(known, rates.newest.*total, buf, buflen);
}

int answer_extreme(unsigned long Rates::*rate, char *buf, unsigned int buflen) {
  Rates rates = {};
  const bool known = read_rates(Extent::all_samples, rates);
  return answer_if(known, bits(rates.*rate), buf, buflen);
}

} // namespace

} // namespace kova::radio

using namespace kova;
using namespace kova::radio;

#include "src/radio/rates.def"
