// Costs that must grow linearly, one dimension doubled at a time:
//  - Scaling/Drivers/<N>: Initialize and Destroy (Library mode) of an installation of N
//    drivers with one database each, N from 6,250 to 50,000;
//  - Scaling/Token/<kind>/<MiB>: the platform parser over a document whose one token is 1 to
//    8 MiB long (an attribute value, a start tag with many attributes, a comment).
// The summary prints each doubling's ratio (target: about 2x).
#include <benchmark/benchmark.h>

#include <Poco/File.h>
#include <Poco/TemporaryFile.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "bench/bench_results.h"
#include "bench/bench_workspace.h"
#include "bench/benchmarks.h"
#include "bench/cache_evictor.h"
#include "bench/xml_floor.h"
#include "qr_config/config/manager/config_startup.h"

namespace {

using Clock = std::chrono::steady_clock;

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t middle = values.size() / 2;
  return values.size() % 2 != 0 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

void Drivers(benchmark::State& state, InstallationGenerator::Shape shape) {
  try {
    BenchWorkspace::Installation(shape);
    BenchWorkspace::Unload();
    BenchWorkspace::UseInstallation(shape);
    std::vector<double> seconds;
    for (auto _ : state) {
      CacheEvictor::Evict();
      const Clock::time_point start = Clock::now();
      ConfigStartup::Initialize(Initialization::Library);
      ConfigStartup::Destroy();
      seconds.push_back(std::chrono::duration<double>(Clock::now() - start).count());
      state.SetIterationTime(seconds.back());
    }
    BenchResults::RecordScaling("Drivers", shape.Drivers, Median(seconds));
  } catch (const std::exception& error) {
    state.SkipWithError(error.what());
  }
}

// The scratch folder of the token documents, removed at exit.
const std::string& TokenFolder() {
  static const struct Folder {
    Folder() : Path(Poco::TemporaryFile::tempName()) { Poco::File(Path).createDirectories(); }
    ~Folder() { Poco::File(Path).remove(true); }
    std::string Path;
  } folder;
  return folder.Path;
}

// A document whose one token of `kind` is about `bytes` long.
std::string TokenDocument(const std::string& kind, std::size_t bytes) {
  if (kind == "AttributeValue") return "<a v=\"" + std::string(bytes, 'x') + "\"/>";
  if (kind == "Comment") return "<a><!--" + std::string(bytes, 'x') + "--></a>";
  std::string tag = "<a";
  for (int i = 0; tag.size() < bytes; ++i) tag += " a" + std::to_string(i) + "=\"v\"";
  return tag + "/>";
}

void Token(benchmark::State& state, std::string kind, int mebibytes) {
  try {
    const std::string path = TokenFolder() + "/" + kind + std::to_string(mebibytes) + ".xml";
    std::ofstream(path, std::ios::binary)
        << TokenDocument(kind, static_cast<std::size_t>(mebibytes) << 20);
    std::vector<double> seconds;
    for (auto _ : state) {
      const Clock::time_point start = Clock::now();
      XmlFloor::ParseWithOrvXmlParser({path});
      seconds.push_back(std::chrono::duration<double>(Clock::now() - start).count());
      state.SetIterationTime(seconds.back());
    }
    BenchResults::RecordScaling("Token/" + kind, mebibytes, Median(seconds));
    Poco::File(path).remove();
  } catch (const std::exception& error) {
    state.SkipWithError(error.what());
  }
}

}  // namespace

void RegisterScalingBenchmarks() {
  for (int drivers = 6250; drivers <= 50000; drivers *= 2) {
    const InstallationGenerator::Shape shape{"D" + std::to_string(drivers), drivers, 1};
    benchmark::RegisterBenchmark(("Scaling/Drivers/" + std::to_string(drivers)).c_str(), Drivers,
                                 shape)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->Iterations(3);
  }
  for (const char* kind : {"AttributeValue", "StartTag", "Comment"}) {
    for (int mebibytes = 1; mebibytes <= 8; mebibytes *= 2) {
      benchmark::RegisterBenchmark(
          ("Scaling/Token/" + std::string(kind) + "/" + std::to_string(mebibytes)).c_str(), Token,
          std::string(kind), mebibytes)
          ->UseManualTime()
          ->Unit(benchmark::kMillisecond)
          ->Iterations(5);
    }
  }
}
