// Measures calls of the library against the platform calls they stand for, in one run, and prints the ratios.
//   kova_bench [--benchmark_...]      exit status 1 when an aim is missed
#include "cases.hpp"
#include "scratch.hpp"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

namespace {

// Keeps the time of each repetition by name.
class Collector : public benchmark::ConsoleReporter {
public:
  void ReportRuns(const std::vector<Run> &runs) override {
    for (const Run &run : runs)
      if (run.run_type == Run::RT_Iteration)
        times_[run.run_name.function_name].push_back(run.GetAdjustedCPUTime());
    ConsoleReporter::ReportRuns(runs);
  }
  // The fastest repetition: what disturbs a run only makes it slower.
  double time(const std::string &name) const {
    const auto &times = times_.at(name);
    return *std::min_element(times.begin(), times.end());
  }

private:
  std::map<std::string, std::vector<double>> times_;
};

void add(const std::string &name, void (*call)()) {
  benchmark::RegisterBenchmark(name.c_str(),
                               [call](benchmark::State &state) {
                                 for (auto _ : state)
                                   call();
                               })
      ->Repetitions(7)
      ->ReportAggregatesOnly(false);
}

} // namespace

int main(int argc, char **argv) {
  benchmark::Initialize(&argc, argv);
  const bench::ScratchStores stores;
  for (const bench::Case &each : bench::cases()) {
    add(std::string(each.name) + ": library", each.library);
    add(std::string(each.name) + ": direct", each.direct);
  }
  Collector collector;
  benchmark::RunSpecifiedBenchmarks(&collector);

  bool reached = true;
  std::printf("\n%-16s %12s %12s %8s %8s\n", "", "library ns", "direct ns", "ratio", "aim");
  for (const bench::Case &each : bench::cases()) {
    const double library = collector.time(std::string(each.name) + ": library"),
                 direct = collector.time(std::string(each.name) + ": direct");
    std::printf("%-16s %12.0f %12.0f %8.2f %8.2f\n", each.name, library, direct, library / direct, each.aim);
    reached = reached && library / direct <= each.aim;
  }
  return reached ? EXIT_SUCCESS : EXIT_FAILURE;
}
