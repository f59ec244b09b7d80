// BenchResults: the figures the benchmarks record as they run, for the summary printed at
// the end of the run and for the counters that relate one benchmark to another (the ratio of
// the start-up to the floor, of a size to its half, of two threads to one).
//
// Google Benchmark may call a benchmark function several times while it settles the
// iteration count; each call records again and the last one (the reported run) stays.
// Recorded only from one thread at a time (the benchmarks' thread 0).
#pragma once

#include <cstdint>
#include <ostream>
#include <string>

class BenchResults {
 public:
  // Seconds per parse of all the start-up XML files of `label` with Expat.
  static void RecordFloor(const std::string& label, double seconds);
  // Seconds per Initialize and per Destroy of `label` in `mode`, the seconds of the floor
  // parses interleaved with them in the same iterations, the ratio of the two, and the same
  // ratio of the thread's CPU times.
  static void RecordStartup(const std::string& label, const std::string& mode, double initSeconds,
                            double destroySeconds, double floorSeconds, double floorRatio,
                            double cpuFloorRatio);
  // One hot query on the configuration of `label` from `threads` threads: heap allocations
  // per query, queries per second of all threads together, and CPU seconds per query of one
  // thread.
  static void RecordQuery(const std::string& query, const std::string& label, int threads,
                          double allocationsPerQuery, double queriesPerSecond,
                          double cpuSecondsPerQuery);
  // The memory figures of loading `label` once, in bytes, next to its start-up files' bytes.
  static void RecordMemory(const std::string& label, std::uint64_t fileBytes,
                           std::int64_t retainedHeap, std::int64_t peakHeap,
                           std::int64_t peakResident);

  // The median seconds of one measurement of `family` at `size`, for the doubling table.
  static void RecordScaling(const std::string& family, int size, double seconds);

  // 0 when nothing was recorded.
  static double FloorSeconds(const std::string& label);
  static double InitSeconds(const std::string& label, const std::string& mode);
  struct QueryFigures {
    double AllocationsPerQuery = 0;
    double QueriesPerSecond = 0;
    double CpuSecondsPerQuery = 0;
  };
  // Zeros when nothing was recorded.
  static QueryFigures QueryResult(const std::string& query, const std::string& label, int threads);

  // The figures against the targets of the issue, as a table.
  static void PrintSummary(std::ostream& out);
};
