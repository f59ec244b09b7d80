#include "bench/bench_workspace.h"

#include <stdlib.h>

#include <filesystem>
#include <map>
#include <memory>
#include <stdexcept>

#include "qr_config/config/manager/config_startup.h"
#include "qr_config/platform/registry.h"

namespace fs = std::filesystem;

namespace {

struct State {
  std::string Root;  // the run's temporary directory, made on first use
  std::map<std::string, std::unique_ptr<InstallationGenerator::Summary>> Installations;
  std::string LoadedLabel;  // empty when nothing is loaded
  Initialization::Mode LoadedMode = Initialization::Library;
};

State& Workspace() {
  static State state;
  return state;
}

const std::string& Root() {
  State& state = Workspace();
  if (state.Root.empty()) {
    std::string pattern = (fs::temp_directory_path() / "qr_config_bench_XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr)
      throw std::runtime_error("cannot make a temporary directory");
    state.Root = pattern;
  }
  return state.Root;
}

}  // namespace

const std::vector<BenchWorkspace::Shape>& BenchWorkspace::Shapes() {
  static const std::vector<Shape> shapes = {InstallationGenerator::Small(),
                                            {"M-half", 50, 100},
                                            InstallationGenerator::Medium(),
                                            {"L-half", 50, 1000},
                                            InstallationGenerator::Large()};
  return shapes;
}

const BenchWorkspace::Shape* BenchWorkspace::HalfOf(const Shape& shape) {
  const std::string half = shape.Label + "-half";
  for (const Shape& candidate : Shapes())
    if (candidate.Label == half) return &candidate;
  return nullptr;
}

const InstallationGenerator::Summary& BenchWorkspace::Installation(const Shape& shape) {
  auto& installations = Workspace().Installations;
  auto found = installations.find(shape.Label);
  if (found != installations.end()) return *found->second;
  const std::string directory = (fs::path(Root()) / shape.Label).string();
  auto summary = std::make_unique<InstallationGenerator::Summary>(
      InstallationGenerator::Write(directory, shape));
  return *installations.emplace(shape.Label, std::move(summary)).first->second;
}

void BenchWorkspace::UseInstallation(const Shape& shape) {
  Registry::SetParameter(Registry::kConfigDirectory, Installation(shape).Directory);
}

void BenchWorkspace::Load(const Shape& shape, Initialization::Mode mode) {
  State& state = Workspace();
  if (state.LoadedLabel == shape.Label && state.LoadedMode == mode) return;
  Unload();
  UseInstallation(shape);
  ConfigStartup::Initialize(mode);
  state.LoadedLabel = shape.Label;
  state.LoadedMode = mode;
}

void BenchWorkspace::Unload() {
  ConfigStartup::Destroy();
  Workspace().LoadedLabel.clear();
}

void BenchWorkspace::RemoveAll() {
  Unload();
  State& state = Workspace();
  state.Installations.clear();
  if (!state.Root.empty()) {
    std::error_code ignored;
    fs::remove_all(state.Root, ignored);
    state.Root.clear();
  }
}
