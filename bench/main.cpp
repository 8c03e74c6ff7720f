// Runs the benchmarks and prints, for each workload, the ratio of korvos to each peer in this run.
//
// A benchmark is named family/size/who, where who is korvos or a peer.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#ifdef KORVOS_BENCH_OPENCV
#include <opencv2/core.hpp>
#endif
#ifdef KORVOS_BENCH_OPENBLAS
extern "C" void openblas_set_num_threads(int threads);
#endif

namespace {

class ratio_reporter : public benchmark::ConsoleReporter {
 public:
  ratio_reporter() : ConsoleReporter(OO_Tabular) {}

  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs)
      if (run.run_type == Run::RT_Aggregate ? run.aggregate_name == "median" : run.repetitions <= 1) note(run);
  }

  void Finalize() override {
    std::printf("\n%-44s %12s  %-12s %12s  %s\n", "workload", "korvos, us", "peer", "peer, us", "ratio");
    for (const auto& [workload, times] : medians_) {
      const auto own = times.find("korvos");
      if (own == times.end()) continue;
      if (times.size() == 1) std::printf("%-44s %12.1f\n", workload.c_str(), own->second);
      for (const auto& [who, time] : times)
        if (who != "korvos")
          std::printf("%-44s %12.1f  %-12s %12.1f  %.2f\n", workload.c_str(), own->second, who.c_str(), time,
                      own->second / time);
    }
  }

 private:
  void note(const Run& run) {
    const std::string name = run.run_name.function_name;
    const auto last = name.rfind('/');
    if (last == std::string::npos) return;
    const double seconds = run.GetAdjustedRealTime() / benchmark::GetTimeUnitMultiplier(run.time_unit);
    medians_[name.substr(0, last)][name.substr(last + 1)] = 1e6 * seconds;
  }

  std::map<std::string, std::map<std::string, double>> medians_;
};

}  // namespace

int main(int argc, char** argv) {
#ifdef KORVOS_BENCH_OPENCV
  cv::setNumThreads(1);
#endif
#ifdef KORVOS_BENCH_OPENBLAS
  openblas_set_num_threads(1);
#endif
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  ratio_reporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  return 0;
}
