// The floor, the start-up and the memory of each installation shape.
#include <benchmark/benchmark.h>
#include <time.h>

#include <algorithm>
#include <chrono>
#include <exception>
#include <vector>

#include "bench/allocation_counter.h"
#include "bench/bench_results.h"
#include "bench/bench_workspace.h"
#include "bench/benchmarks.h"
#include "bench/cache_evictor.h"
#include "bench/process_memory.h"
#include "bench/xml_floor.h"
#include "qr_config/config/manager/config_manager.h"
#include "qr_config/config/manager/config_startup.h"

namespace {

using Clock = std::chrono::steady_clock;
using Shape = BenchWorkspace::Shape;

double Seconds(Clock::duration duration) {
  return std::chrono::duration<double>(duration).count();
}

// The CPU time of the calling thread (user and system), in seconds: unlike the wall clock, it
// does not count the time the thread waited for a core that other processes held.
double ThreadCpuSeconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

const char* ModeName(Initialization::Mode mode) {
  return mode == Initialization::Server ? "Server" : "Library";
}

// Every timed operation starts with evicted caches, which costs tens of milliseconds, so the
// iteration counts are fixed: enough for a stable mean, few enough for the whole run.
int IterationsFor(const Shape& shape) {
  const int databases = shape.Drivers * shape.DatabasesPerDriver;
  return databases <= 1000 ? 30 : databases <= 10000 ? 10 : 3;
}

constexpr double kMiB = 1024.0 * 1024.0;

// Parses every start-up XML file of the installation with handlers that do nothing.
void Floor(benchmark::State& state, const Shape* shape, bool platformParser) {
  try {
    const auto& installation = BenchWorkspace::Installation(*shape);
    double total = 0;
    for (auto _ : state) {
      CacheEvictor::Evict();
      const Clock::time_point start = Clock::now();
      if (platformParser) {
        XmlFloor::ParseWithOrvXmlParser(installation.StartupXmlFiles);
      } else {
        XmlFloor::ParseWithExpat(installation.StartupXmlFiles);
      }
      const double seconds = Seconds(Clock::now() - start);
      state.SetIterationTime(seconds);
      total += seconds;
    }
    const double perParse = total / static_cast<double>(state.iterations());
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(installation.StartupXmlBytes));
    state.counters["files"] = static_cast<double>(installation.StartupXmlFiles.size());
    state.counters["xml_MiB"] = installation.StartupXmlBytes / kMiB;
    if (!platformParser) {
      BenchResults::RecordFloor(shape->Label, perParse);
    } else if (const double floor = BenchResults::FloorSeconds(shape->Label); floor > 0) {
      state.counters["x_floor"] = perParse / floor;
    }
  } catch (const std::exception& error) {
    state.SkipWithError(error.what());
  }
}

// The median of `values` (not empty).
double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t middle = values.size() / 2;
  return values.size() % 2 != 0 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

// The observer `qrconfig check` loads with: it keeps going past errors and asks for the
// localised driver files, and keeps nothing (a clean installation reports little).
struct CheckLikeObserver : LoadObserver {
  bool WantsKeepGoing() const override { return true; }
  bool WantsOnDemandFiles() const override { return true; }
  void OnDiagnostic(const LoadDiagnostic& diagnostic) override {
    Reported += diagnostic.Message.size();
  }
  std::size_t Reported = 0;
};

// Initialize + Destroy of the whole installation. Each iteration also parses the floor once
// (not part of the reported time), so that the ratio compares figures taken moments apart;
// the caches are evicted before the floor parse and before Initialize. The counters are
// medians over the iterations, the ratio the median of the iterations' ratios. With
// `observed`, Initialize runs with a CheckLikeObserver: what diagnostics cost (not recorded
// for the summary, which judges the plain start-up).
void Initialize(benchmark::State& state, const Shape* shape, Initialization::Mode mode,
                bool observed) {
  try {
    const auto& installation = BenchWorkspace::Installation(*shape);
    BenchWorkspace::Unload();
    BenchWorkspace::UseInstallation(*shape);
    std::vector<double> floors, inits, destroys, ratios, cpuRatios;
    std::uint64_t allocations = 0;
    for (auto _ : state) {
      CacheEvictor::Evict();
      const Clock::time_point floorStart = Clock::now();
      const double floorCpuStart = ThreadCpuSeconds();
      XmlFloor::ParseWithExpat(installation.StartupXmlFiles);
      const double floorCpu = ThreadCpuSeconds() - floorCpuStart;
      const Clock::time_point floorEnd = Clock::now();
      CacheEvictor::Evict();
      const Clock::time_point t1 = Clock::now();
      const double initCpuStart = ThreadCpuSeconds();
      const std::uint64_t before = AllocationCounter::ThreadAllocations();
      CheckLikeObserver observer;
      if (observed) {
        ConfigStartup::Initialize(mode, observer);
      } else {
        ConfigStartup::Initialize(mode);
      }
      const double initCpu = ThreadCpuSeconds() - initCpuStart;
      const Clock::time_point t2 = Clock::now();
      allocations += AllocationCounter::ThreadAllocations() - before;
      ConfigStartup::Destroy();
      const Clock::time_point t3 = Clock::now();
      // Untimed: the freed heap goes back to the system, so that the next floor parse does
      // not pay the allocator's deferred merging of the freed configuration, and the next
      // Initialize touches fresh memory as in a new process.
      ProcessMemory::ReleaseFreeMemory();
      state.SetIterationTime(Seconds(t3 - t1));
      floors.push_back(Seconds(floorEnd - floorStart));
      inits.push_back(Seconds(t2 - t1));
      destroys.push_back(Seconds(t3 - t2));
      ratios.push_back(inits.back() / floors.back());
      cpuRatios.push_back(initCpu / floorCpu);
    }
    const double floor = Median(floors), init = Median(inits), destroy = Median(destroys);
    const double ratio = Median(ratios), cpuRatio = Median(cpuRatios);
    if (!observed)
      BenchResults::RecordStartup(shape->Label, ModeName(mode), init, destroy, floor, ratio,
                                  cpuRatio);
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(installation.StartupBytes()));
    state.counters["floor_ms"] = floor * 1e3;
    state.counters["init_ms"] = init * 1e3;
    state.counters["destroy_ms"] = destroy * 1e3;
    state.counters["x_floor"] = ratio;
    state.counters["x_floor_cpu"] = cpuRatio;
    state.counters["allocs"] = static_cast<double>(allocations) / floors.size();
    state.counters["databases"] = installation.LoadedDatabases;
    if (const Shape* half = observed ? nullptr : BenchWorkspace::HalfOf(*shape)) {
      if (const double halfInit = BenchResults::InitSeconds(half->Label, ModeName(mode));
          halfInit > 0)
        state.counters["x_half"] = init / halfInit;
    }
  } catch (const std::exception& error) {
    state.SkipWithError(error.what());
  }
}

// What a loaded configuration holds: tree nodes, fields, and entries of the database-name
// tables, for the memory counters.
struct Contents {
  double Nodes = 0, Fields = 0, NameEntries = 0;
};

Contents CountContents() {
  Contents contents;
  ConfigManager& manager = ConfigManager::Instance();
  std::vector<const tree_node<ConfigManager::Node>*> pending = {&manager.GetTree().root()};
  while (!pending.empty()) {
    const tree_node<ConfigManager::Node>* node = pending.back();
    pending.pop_back();
    contents.Nodes += 1;
    contents.Fields += static_cast<double>(node->value().size());
    for (auto child = node->ch_begin(); child != node->ch_end(); ++child)
      pending.push_back(&*child);
  }
  for (const std::string& driver : manager.GetNativeDrivers())
    contents.NameEntries += static_cast<double>(manager.GetDatabaseNames(driver).size());
  return contents;
}

// The heap and resident memory that one start-up in Library mode leaves and peaks at.
void Memory(benchmark::State& state, const Shape* shape) {
  try {
    const auto& installation = BenchWorkspace::Installation(*shape);
    BenchWorkspace::Unload();
    BenchWorkspace::UseInstallation(*shape);
    std::int64_t retained = 0, peakHeap = 0, peakResident = 0;
    Contents contents;
    for (auto _ : state) {
      ProcessMemory::ReleaseFreeMemory();
      const std::uint64_t heapBefore = ProcessMemory::HeapInUse();
      const std::uint64_t residentBefore = ProcessMemory::ResidentBytes();
      const bool peakReset = ProcessMemory::ResetPeakResident();
      AllocationCounter::StartTracking();
      const std::int64_t liveBefore = AllocationCounter::LiveBytes();
      ConfigStartup::Initialize(Initialization::Library);
      peakHeap = AllocationCounter::PeakLiveBytes() - liveBefore;
      AllocationCounter::StopTracking();
      retained = static_cast<std::int64_t>(ProcessMemory::HeapInUse() - heapBefore);
      peakResident =
          peakReset ? static_cast<std::int64_t>(ProcessMemory::PeakResidentBytes() - residentBefore)
                    : 0;
      contents = CountContents();
      ConfigStartup::Destroy();
    }
    const double files = static_cast<double>(installation.StartupBytes());
    BenchResults::RecordMemory(shape->Label, installation.StartupBytes(), retained, peakHeap,
                               peakResident);
    state.counters["files_MiB"] = files / kMiB;
    state.counters["retained_MiB"] = retained / kMiB;
    state.counters["retained_x"] = retained / files;
    state.counters["peak_heap_x"] = peakHeap / files;
    if (peakResident > 0) state.counters["peak_rss_x"] = peakResident / files;
    state.counters["nodes"] = contents.Nodes;
    state.counters["fields"] = contents.Fields;
    state.counters["name_entries"] = contents.NameEntries;
    state.counters["heap_per_field"] = retained / contents.Fields;
  } catch (const std::exception& error) {
    state.SkipWithError(error.what());
  }
}

}  // namespace

void RegisterStartupBenchmarks() {
  for (const Shape& shape : BenchWorkspace::Shapes()) {
    const std::string& label = shape.Label;
    benchmark::RegisterBenchmark(("Memory/" + label).c_str(), Memory, &shape)
        ->Iterations(1)
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
    for (bool platformParser : {false, true}) {
      const std::string name =
          std::string("Floor/") + (platformParser ? "OrvXmlParser/" : "Expat/") + label;
      benchmark::RegisterBenchmark(name.c_str(), Floor, &shape, platformParser)
          ->Iterations(IterationsFor(shape))
          ->UseManualTime()
          ->Unit(benchmark::kMillisecond);
    }
    for (Initialization::Mode mode : {Initialization::Server, Initialization::Library}) {
      const std::string name = "Initialize/" + label + "/" + ModeName(mode);
      benchmark::RegisterBenchmark(name.c_str(), Initialize, &shape, mode, false)
          ->Iterations(IterationsFor(shape))
          ->UseManualTime()
          ->Unit(benchmark::kMillisecond);
    }
    const std::string observed = "Initialize/" + label + "/Library/Observed";
    benchmark::RegisterBenchmark(observed.c_str(), Initialize, &shape, Initialization::Library,
                                 true)
        ->Iterations(IterationsFor(shape))
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
  }
}
