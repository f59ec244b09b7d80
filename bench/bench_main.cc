// qr_config_bench: the start-up and query benchmarks of the library, followed by a summary
// of the figures against the performance targets. Accepts Google Benchmark's options
// (--benchmark_filter, --benchmark_out, ...).
#include <benchmark/benchmark.h>

#include <iostream>

#include "bench/bench_results.h"
#include "bench/bench_workspace.h"
#include "bench/benchmarks.h"

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  RegisterStartupBenchmarks();
  RegisterQueryBenchmarks();
  RegisterScalingBenchmarks();
  benchmark::RunSpecifiedBenchmarks();
  BenchWorkspace::RemoveAll();
  BenchResults::PrintSummary(std::cout);
  benchmark::Shutdown();
  return 0;
}
