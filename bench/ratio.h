#pragma once

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

/// @file
/// Benchmarks tell ratios of two measurements of one run: against a limit of the machine (a copy of the same bytes) or
/// against a peer library. Times alone say nothing about another machine.

/// One ratio of the summary.
struct gx_BenchRatio {
  std::string what;  ///< as "recording against appending the bytes"
  std::string ours;  ///< name of the benchmark of this library
  std::string peer;  ///< name of the other one; the line is left out if it was not built
  double aim;        ///< the rate of ours over that of the peer should be at least this
};

/// Runs the registered benchmarks and prints a line for each ratio: the rate of ours over that of the peer, and the
/// aim. With repetitions, the medians are compared.
inline int gf_runBenchmarks(int argc, char **argv, std::vector<gx_BenchRatio> const &ratios)
{
  class Reporter : public benchmark::ConsoleReporter
  {
   public:
    void ReportRuns(std::vector<Run> const &runs) override
    {
      for (Run const &run : runs)
        if (!run.error_occurred && (run.run_type == Run::RT_Iteration || run.aggregate_name == "median"))
          times[nameOf(run.run_name)] = run.GetAdjustedCPUTime() * perNanosecond(run.time_unit);
      ConsoleReporter::ReportRuns(runs);
    }
    std::map<std::string, double> times;

   private:
    /// The name as it was registered, with its arguments, and without what the settings of the run add to it.
    static std::string nameOf(benchmark::BenchmarkName const &name)
    {
      return name.args.empty() ? name.function_name : name.function_name + '/' + name.args;
    }
    static double perNanosecond(benchmark::TimeUnit unit) { return 1e9 / benchmark::GetTimeUnitMultiplier(unit); }
  };

  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv))
    return 1;
  Reporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  std::printf("\n%-62s %8s %8s\n", "ratio of rates", "reached", "aim");
  for (gx_BenchRatio const &r : ratios) {
    auto const ours = reporter.times.find(r.ours);
    auto const peer = reporter.times.find(r.peer);
    if (ours != reporter.times.end() && peer != reporter.times.end() && ours->second > 0.0)
      std::printf("%-62s %8.2f %8.2f\n", r.what.c_str(), peer->second / ours->second, r.aim);
  }
  return 0;
}
