// The hot queries on a loaded configuration, from one thread and from two.
#include <Poco/RWLock.h>
#include <benchmark/benchmark.h>

#include <time.h>

#include <chrono>
#include <cstdint>
#include <exception>
#include <random>
#include <string>
#include <vector>

#include "bench/allocation_counter.h"
#include "bench/bench_results.h"
#include "bench/bench_workspace.h"
#include "bench/benchmarks.h"
#include "qr_config/config/manager/config_manager.h"

namespace {

using Clock = std::chrono::steady_clock;
using Shape = BenchWorkspace::Shape;
using Generator = InstallationGenerator;

// Keys are cycled in a shuffled order, so that a lookup does not always hit the same entry.
constexpr std::size_t kKeys = 1024;

// What the queries look up, made by thread 0 before the timed loop and only read inside it.
struct QueryKeys {
  std::vector<std::string> DriverNames;  // driver names and aliases
  std::vector<std::string> Drivers;      // with Databases: a loaded database's name or alias
  std::vector<std::string> Databases;
  std::vector<ConfigManager::NodePath> Paths;     // \Quorin\DBDrivers\<driver>\<database>
  std::vector<const ConfigManager::Node*> Nodes;  // the nodes at Paths
  std::vector<std::string> TableDrivers;          // with TableDatabases: a database with a table
  std::vector<std::string> TableDatabases;
  std::vector<std::string> TableEntries;
  std::vector<std::pair<std::string, std::string>> Locales;  // (language, country)
  std::vector<const Quorin::LocaleDescriptor*> Descriptors;  // one per Locales entry
  std::vector<std::string> LocalizedDrivers;
};

QueryKeys& Keys() {
  static QueryKeys keys;
  return keys;
}

// Fills Keys() for the loaded configuration of `shape`; loads every localised locale once.
void PrepareKeys(const Shape& shape) {
  QueryKeys keys;
  std::mt19937 random(20261122);
  auto pick = [&](int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random); };
  auto loadedDatabase = [&]() {
    for (;;) {
      const int database = pick(shape.DatabasesPerDriver);
      if (Generator::DatabaseLoaded(database)) return database;
    }
  };
  ConfigManager& manager = ConfigManager::Instance();
  const std::string dbDrivers = static_cast<const char*>(manager.DBDrivers());
  const auto& entries = Generator::CharSetEntries();
  for (std::size_t i = 0; i < kKeys; ++i) {
    const int driver = pick(shape.Drivers);
    const int alias = pick(Generator::DriverAliasCount(driver) + 1);
    keys.DriverNames.push_back(alias == 0 ? Generator::DriverName(driver)
                                          : Generator::DriverAlias(driver, alias - 1));

    const int database = loadedDatabase();
    const int name = pick(Generator::DatabaseAliasCount(database) + 1);
    keys.Drivers.push_back(Generator::DriverName(driver));
    keys.Databases.push_back(name == 0 ? Generator::DatabaseName(driver, database)
                                       : Generator::DatabaseAlias(driver, database, name - 1));

    ConfigManager::NodePath path(dbDrivers, Generator::DriverName(driver));
    path += Generator::DatabaseName(driver, database);
    keys.Nodes.push_back(&manager.GetTree().Find(path).value());
    keys.Paths.push_back(path);

    int tabled = loadedDatabase();
    while (!Generator::HasCharSetTable(tabled)) tabled = loadedDatabase();
    keys.TableDrivers.push_back(Generator::DriverName(driver));
    keys.TableDatabases.push_back(Generator::DatabaseName(driver, tabled));
    keys.TableEntries.push_back(
        entries[static_cast<std::size_t>(pick(static_cast<int>(entries.size())))]);

    keys.LocalizedDrivers.push_back(Generator::DriverName(driver));
  }
  for (const auto& [language, country] : Generator::LocalizedLocales()) {
    keys.Locales.emplace_back(language, country);
    const Quorin::LocaleDescriptor& locale = manager.GetLocale(language, country);
    keys.Descriptors.push_back(&locale);
    manager.GetLocalizedDriver(Generator::DriverName(0), locale);
  }
  Keys() = std::move(keys);
}

// Per-thread outputs of the value reads, made before the loop with room to spare.
struct Scratch {
  std::string Text = std::string(256, ' ');
  std::int32_t Integer = 0;
  bool Boolean = false;
};

using QueryFunction = void (*)(ConfigManager&, const QueryKeys&, std::size_t, Scratch&);

void ResolveDriverName(ConfigManager& manager, const QueryKeys& keys, std::size_t i, Scratch&) {
  benchmark::DoNotOptimize(&manager.ResolveDriverName(keys.DriverNames[i]));
}

void ResolveDatabaseName(ConfigManager& manager, const QueryKeys& keys, std::size_t i, Scratch&) {
  benchmark::DoNotOptimize(&manager.ResolveDatabaseName(keys.Drivers[i], keys.Databases[i]));
}

void TreeFind(ConfigManager& manager, const QueryKeys& keys, std::size_t i, Scratch&) {
  benchmark::DoNotOptimize(&manager.GetTree().Find(keys.Paths[i]));
}

// One field of each type, early and late in the node's list.
const std::string kLibraryField = "Library";
const std::string kPortField = "Port";
const std::string kSslField = "Use SSL";
const std::string kDescriptionField = "Description";

void NodeFindValue(ConfigManager&, const QueryKeys& keys, std::size_t i, Scratch& scratch) {
  const ConfigManager::Node& node = *keys.Nodes[i];
  switch (i & 3) {
    case 0:
      node.Find(kLibraryField).Value(scratch.Text);
      break;
    case 1:
      node.Find(kPortField).Value(scratch.Integer);
      break;
    case 2:
      node.Find(kSslField).Value(scratch.Boolean);
      break;
    default:
      node.Find(kDescriptionField).Value(scratch.Text);
      break;
  }
  benchmark::DoNotOptimize(scratch);
}

void GetCharSetTableEntry(ConfigManager& manager, const QueryKeys& keys, std::size_t i, Scratch&) {
  benchmark::DoNotOptimize(&manager.GetCharSetTableEntry(
      keys.TableDrivers[i], keys.TableDatabases[i], keys.TableEntries[i]));
}

void GetLocale(ConfigManager& manager, const QueryKeys& keys, std::size_t i, Scratch&) {
  const auto& locale = keys.Locales[i % keys.Locales.size()];
  benchmark::DoNotOptimize(&manager.GetLocale(locale.first, locale.second));
}

void GetLocalizedDriver(ConfigManager& manager, const QueryKeys& keys, std::size_t i, Scratch&) {
  const Quorin::LocaleDescriptor& locale = *keys.Descriptors[i % keys.Descriptors.size()];
  benchmark::DoNotOptimize(&manager.GetLocalizedDriver(keys.LocalizedDrivers[i], locale));
}

// References, not queries of the library.
//
// IndependentWork: the same amount of work on every thread and no shared data; its speed-up
// from two threads is what this machine offers at that moment (2.0 on two idle cores).
void IndependentWork(ConfigManager&, const QueryKeys& keys, std::size_t i, Scratch& scratch) {
  const std::string& text = keys.DriverNames[i];
  std::uint32_t hash = 2166136261u;
  for (int round = 0; round < 8; ++round)
    for (char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 16777619u;
  scratch.Integer = static_cast<std::int32_t>(hash);
  benchmark::DoNotOptimize(scratch.Integer);
}

// LocalizedLookupModel: the lookup of an already loaded localised node as the manager could do
// it without building paths: the driver's node found below the Localization node without a
// lock, then its child named by the locale identifier under a shared read lock of a
// Poco::RWLock (here one of the benchmark's own, standing for the manager's tree lock).
Poco::RWLock g_ModelTreeLock;

void LocalizedLookupModel(ConfigManager& manager, const QueryKeys& keys, std::size_t i, Scratch&) {
  const std::string& driver = keys.LocalizedDrivers[i];
  const std::string& localeId = keys.Descriptors[i % keys.Descriptors.size()]->LocaleId();
  const tree_node<ConfigManager::Node>& localization =
      manager.GetTree().Find(manager.Localization());
  const tree_node<ConfigManager::Node>* driverNode = nullptr;
  for (auto it = localization.ch_begin(); it != localization.ch_end(); ++it) {
    if ((*it).value().Name() == driver) {
      driverNode = &*it;
      break;
    }
  }
  Poco::ScopedReadRWLock lock(g_ModelTreeLock);
  for (auto it = driverNode->ch_begin(); it != driverNode->ch_end(); ++it) {
    if ((*it).value().Name() == localeId) {
      benchmark::DoNotOptimize(&*it);
      return;
    }
  }
}

struct QueryCase {
  const char* Name;
  QueryFunction Run;
};

// "Reference/" cases are not held against the targets.
const QueryCase kQueries[] = {
    {"Reference/IndependentWork", IndependentWork},
    {"Reference/LocalizedLookupModel", LocalizedLookupModel},
    {"ResolveDriverName", ResolveDriverName},
    {"ResolveDatabaseName", ResolveDatabaseName},
    {"Tree::Find", TreeFind},
    {"Node::Find+Field::Value", NodeFindValue},
    {"GetCharSetTableEntry", GetCharSetTableEntry},
    {"GetLocale", GetLocale},
    {"GetLocalizedDriver", GetLocalizedDriver},
};

// The CPU time the calling thread has used, in seconds.
double ThreadCpuSeconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

// Runs one query per iteration, cycling over the keys; reports heap allocations per query
// and, from two threads, the throughput against the single-thread run of the same query:
// measured (x_1thread), and estimated for two idle cores from the CPU time per query
// (x_1thread_cpu: two threads times the single-thread CPU time per query over this run's).
// The estimate is what contention costs when the threads do run at the same time; on a busy
// machine that time-slices them it errs on the high side.
void HotQuery(benchmark::State& state, const Shape* shape, const QueryCase* query) {
  if (state.thread_index() == 0) {
    try {
      BenchWorkspace::Load(*shape, Initialization::Library);
      PrepareKeys(*shape);
    } catch (const std::exception& error) {
      state.SkipWithError(error.what());
    }
  }
  Scratch scratch;
  const QueryKeys& keys = Keys();  // read only inside the loop, after thread 0 has made it
  const std::uint64_t allocationsBefore = AllocationCounter::ThreadAllocations();
  const Clock::time_point start = Clock::now();
  const double cpuStart = ThreadCpuSeconds();
  std::size_t i = 0;
  for (auto _ : state) {
    try {
      query->Run(ConfigManager::Instance(), keys, i, scratch);
    } catch (const std::exception& error) {
      state.SkipWithError(error.what());
      break;
    }
    i = (i + 1) & (kKeys - 1);
  }
  const double elapsed = std::chrono::duration<double>(Clock::now() - start).count();
  const double cpu = ThreadCpuSeconds() - cpuStart;
  const double iterations = static_cast<double>(state.iterations());
  const double allocations =
      static_cast<double>(AllocationCounter::ThreadAllocations() - allocationsBefore) / iterations;
  state.SetItemsProcessed(state.iterations());
  state.counters["allocs"] = benchmark::Counter(allocations, benchmark::Counter::kAvgThreads);
  if (state.thread_index() == 0 && iterations > 0) {
    // Every thread runs the same number of iterations.
    const double rate = iterations * state.threads() / elapsed;
    const double cpuPerQuery = cpu / iterations;
    BenchResults::RecordQuery(query->Name, shape->Label, state.threads(), allocations, rate,
                              cpuPerQuery);
    if (state.threads() > 1) {
      const BenchResults::QueryFigures single =
          BenchResults::QueryResult(query->Name, shape->Label, 1);
      if (single.QueriesPerSecond > 0) {
        state.counters["x_1thread"] = rate / single.QueriesPerSecond;
        state.counters["x_1thread_cpu"] = state.threads() * single.CpuSecondsPerQuery / cpuPerQuery;
      }
    }
  }
}

}  // namespace

void RegisterQueryBenchmarks() {
  for (const Shape& shape : BenchWorkspace::Shapes()) {
    if (shape.Label != "M" && shape.Label != "L") continue;
    for (const QueryCase& query : kQueries) {
      const std::string name = std::string("Query/") + query.Name + "/" + shape.Label;
      benchmark::RegisterBenchmark(name.c_str(), HotQuery, &shape, &query)
          ->Threads(1)
          ->Threads(2)
          ->UseRealTime();
    }
  }
}
