#include "bench/bench_results.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <tuple>
#include <vector>

namespace {

struct Startup {
  double Init = 0, Destroy = 0, Floor = 0, Ratio = 0, CpuRatio = 0;
};
struct Memory {
  std::uint64_t Files = 0;
  std::int64_t Retained = 0, PeakHeap = 0, PeakResident = 0;
};

struct Records {
  std::vector<std::string> Labels;      // in the order first recorded
  std::vector<std::string> QueryNames;  // likewise
  std::map<std::string, double> Floors;
  std::map<std::pair<std::string, std::string>, Startup> Startups;
  std::map<std::tuple<std::string, std::string, int>, BenchResults::QueryFigures> Queries;
  std::map<std::string, Memory> Memories;
  std::map<std::string, std::map<int, double>> Scaling;  // family to size to seconds
};

Records& All() {
  static Records records;
  return records;
}

void Remember(std::vector<std::string>& list, const std::string& name) {
  if (std::find(list.begin(), list.end(), name) == list.end()) list.push_back(name);
}

bool IsReference(const std::string& query) {
  return query.rfind("Reference/", 0) == 0;
}

const char* Verdict(bool met) {
  return met ? "met" : "MISSED";
}

std::string Format(const char* format, double value) {
  char text[64];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

std::string Column(const std::string& text, std::size_t width) {
  return text.size() >= width ? text + " " : text + std::string(width - text.size(), ' ');
}

constexpr double kMiB = 1024.0 * 1024.0;
const char* const kModes[] = {"Server", "Library"};

// The targets of the start-up: Initialize within this multiple of the floor at M and L, the
// retained heap within this multiple of the start-up files' bytes at L.
constexpr double kFloorTarget = 1.35;
constexpr double kRetainedTarget = 5.05;

void PrintStartup(const Records& records, std::ostream& out) {
  out << "\nInitialize against the Expat floor parsed in the same iterations, medians (target: "
         "M and L within "
      << Format("%.2fx", kFloorTarget)
      << ").\n\"x floor\" compares wall-clock times; \"by CPU\" the thread's CPU times, which "
         "other processes\non the machine disturb less.\n";
  out << "  " << Column("shape", 8) << Column("mode", 9) << Column("floor ms", 11)
      << Column("init ms", 11) << Column("destroy ms", 12) << Column("x floor", 11) << "by CPU\n";
  for (const std::string& label : records.Labels) {
    for (const char* mode : kModes) {
      auto found = records.Startups.find({label, mode});
      if (found == records.Startups.end()) continue;
      const Startup& s = found->second;
      const bool targeted = label == "M" || label == "L";
      out << "  " << Column(label, 8) << Column(mode, 9)
          << Column(Format("%.1f", s.Floor * 1e3), 11) << Column(Format("%.1f", s.Init * 1e3), 11)
          << Column(Format("%.1f", s.Destroy * 1e3), 12)
          << Column(Format("%.2fx", s.Ratio) +
                        (targeted ? std::string(" ") + Verdict(s.Ratio <= kFloorTarget) : ""),
                    11)
          << Format("%.2fx", s.CpuRatio) << "\n";
    }
  }

  out << "\nDoubling the installation, medians of Initialize (target: at most 2.0x the half)\n";
  for (const char* label : {"M", "L"}) {
    const std::string half = std::string(label) + "-half";
    for (const char* mode : kModes) {
      auto big = records.Startups.find({label, mode});
      auto small = records.Startups.find({half, mode});
      if (big == records.Startups.end() || small == records.Startups.end()) continue;
      const double ratio = big->second.Init / small->second.Init;
      const double floorRatio = big->second.Floor / small->second.Floor;
      // The floor is the same parsing work on twice the bytes; when it did not take about
      // twice the time, the machine's speed changed between the two benchmarks and the
      // wall-clock ratio says nothing about the library.
      const bool steady = floorRatio >= 1.8 && floorRatio <= 2.2;
      out << "  " << Column(half + " -> " + label, 14) << Column(mode, 9) << "Initialize "
          << Format("%.2fx", ratio) << " (its floor " << Format("%.2fx", floorRatio) << "; x floor "
          << Format("%.2f", small->second.Ratio) << " -> " << Format("%.2f", big->second.Ratio)
          << ")  "
          << (steady ? Verdict(ratio <= 2.0) : std::string("not judged: the floor did not double"))
          << "\n";
    }
  }
}

void PrintQueries(const Records& records, std::ostream& out) {
  if (records.QueryNames.empty()) return;
  out << "\nHot queries: heap allocations per successful query (target: 0) and the speed-up of "
         "two threads\n(target: GetLocalizedDriver of a loaded locale at least 1.5x). The speed-up "
         "is measured on the wall\nclock; \"by CPU time\" estimates it for two idle cores from "
         "the CPU time per query. Reference/\nIndependentWork shows what the machine offered "
         "for perfectly parallel work at that moment.\n";
  out << "  " << Column("query", 34) << Column("shape", 6) << Column("1 thread/s", 12)
      << Column("allocs", 8) << Column("2 threads/s", 13) << Column("speed-up", 10)
      << "by CPU time\n";
  bool allocationFree = true;
  for (const std::string& query : records.QueryNames) {
    for (const char* label : {"S", "M", "L"}) {
      auto one = records.Queries.find({query, label, 1});
      auto two = records.Queries.find({query, label, 2});
      if (one == records.Queries.end()) continue;
      const bool reference = IsReference(query);
      const BenchResults::QueryFigures& single = one->second;
      if (!reference && (single.AllocationsPerQuery > 0.001 ||
                         (two != records.Queries.end() && two->second.AllocationsPerQuery > 0.001)))
        allocationFree = false;
      out << "  " << Column(query, 34) << Column(label, 6)
          << Column(Format("%.3g", single.QueriesPerSecond), 12)
          << Column(reference ? std::string("-") : Format("%.2f", single.AllocationsPerQuery), 8);
      if (two != records.Queries.end()) {
        const double speedUp = two->second.QueriesPerSecond / single.QueriesPerSecond;
        const double cpuSpeedUp = 2 * single.CpuSecondsPerQuery / two->second.CpuSecondsPerQuery;
        out << Column(Format("%.3g", two->second.QueriesPerSecond), 13)
            << Column(Format("%.2fx", speedUp), 10) << Format("%.2fx", cpuSpeedUp);
        if (query == "GetLocalizedDriver") out << "  " << Verdict(speedUp >= 1.5);
      }
      out << "\n";
    }
  }
  out << "  allocation-free hot queries: " << Verdict(allocationFree) << "\n";
}

void PrintMemory(const Records& records, std::ostream& out) {
  out << "\nMemory of one start-up, as a multiple of its start-up files' bytes (target: "
         "retained heap at L\nwithin "
      << Format("%.2fx", kRetainedTarget) << ")\n";
  out << "  " << Column("shape", 8) << Column("files MiB", 11) << Column("retained heap", 22)
      << Column("peak heap", 22) << "peak RSS\n";
  for (const std::string& label : records.Labels) {
    auto found = records.Memories.find(label);
    if (found == records.Memories.end()) continue;
    const Memory& m = found->second;
    const double files = static_cast<double>(m.Files);
    auto figure = [&](std::int64_t bytes) {
      return Format("%.1f MiB", bytes / kMiB) + Format(" (%.2fx)", bytes / files);
    };
    out << "  " << Column(label, 8) << Column(Format("%.1f", files / kMiB), 11)
        << Column(figure(m.Retained), 22) << Column(figure(m.PeakHeap), 22)
        << (m.PeakResident > 0 ? figure(m.PeakResident) : std::string("unavailable")) << "\n";
  }
  auto large = records.Memories.find("L");
  if (large != records.Memories.end()) {
    const double ratio = large->second.Retained / static_cast<double>(large->second.Files);
    out << "  L retained heap " << Format("%.2fx", ratio) << "  "
        << Verdict(ratio <= kRetainedTarget) << "\n";
  }
}

}  // namespace

void BenchResults::RecordFloor(const std::string& label, double seconds) {
  Remember(All().Labels, label);
  All().Floors[label] = seconds;
}

void BenchResults::RecordStartup(const std::string& label, const std::string& mode,
                                 double initSeconds, double destroySeconds, double floorSeconds,
                                 double floorRatio, double cpuFloorRatio) {
  Remember(All().Labels, label);
  All().Startups[{label, mode}] = {initSeconds, destroySeconds, floorSeconds, floorRatio,
                                   cpuFloorRatio};
}

void BenchResults::RecordQuery(const std::string& query, const std::string& label, int threads,
                               double allocationsPerQuery, double queriesPerSecond,
                               double cpuSecondsPerQuery) {
  Remember(All().QueryNames, query);
  All().Queries[{query, label, threads}] = {allocationsPerQuery, queriesPerSecond,
                                            cpuSecondsPerQuery};
}

void BenchResults::RecordMemory(const std::string& label, std::uint64_t fileBytes,
                                std::int64_t retainedHeap, std::int64_t peakHeap,
                                std::int64_t peakResident) {
  Remember(All().Labels, label);
  All().Memories[label] = {fileBytes, retainedHeap, peakHeap, peakResident};
}

double BenchResults::FloorSeconds(const std::string& label) {
  auto found = All().Floors.find(label);
  return found == All().Floors.end() ? 0 : found->second;
}

double BenchResults::InitSeconds(const std::string& label, const std::string& mode) {
  auto found = All().Startups.find({label, mode});
  return found == All().Startups.end() ? 0 : found->second.Init;
}

BenchResults::QueryFigures BenchResults::QueryResult(const std::string& query,
                                                     const std::string& label, int threads) {
  auto found = All().Queries.find({query, label, threads});
  return found == All().Queries.end() ? QueryFigures() : found->second;
}

// Each doubling of a scaling family, smallest first.
static void PrintScaling(const Records& records, std::ostream& out) {
  if (records.Scaling.empty()) return;
  out << "\nDoubling one dimension, medians (target: about 2x, at most 2.5x)\n";
  for (const auto& [family, sizes] : records.Scaling) {
    for (auto small = sizes.begin(), big = std::next(small);
         small != sizes.end() && big != sizes.end(); ++small, ++big) {
      const double ratio = big->second / small->second;
      out << "  " << Column(family, 24)
          << Column(std::to_string(small->first) + " -> " + std::to_string(big->first), 18)
          << Column(Format("%.1f ms", small->second * 1e3), 12) << " -> "
          << Column(Format("%.1f ms", big->second * 1e3), 12) << Format("%.2fx", ratio) << "  "
          << Verdict(ratio <= 2.5) << "\n";
    }
  }
}

void BenchResults::RecordScaling(const std::string& family, int size, double seconds) {
  All().Scaling[family][size] = seconds;
}

void BenchResults::PrintSummary(std::ostream& out) {
  const Records& records = All();
  out << "\n== Summary: the figures of this run against the performance targets ==\n";
  PrintStartup(records, out);
  PrintQueries(records, out);
  PrintMemory(records, out);
  PrintScaling(records, out);
}
