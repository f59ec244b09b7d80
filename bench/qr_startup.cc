// qr_startup: one start-up and teardown of an installation, for profilers.
//
//   qr_startup DIRECTORY Server|Library [REPEAT]
//
// Runs ConfigStartup::Initialize and ConfigStartup::Destroy on DIRECTORY (written by
// qr_generate, say) REPEAT times (default 1) and prints the wall-clock time of each. Nothing
// else runs around them (no cache eviction, no floor parse), so that an instruction profile
// of the whole program, or one restricted to 'ConfigStartup::Initialize*', shows the start-up
// alone and runs in seconds under valgrind.
#include <chrono>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>

#include "qr_config/config/manager/config_startup.h"
#include "qr_config/platform/registry.h"

namespace {

int Usage() {
  std::cerr << "usage: qr_startup DIRECTORY Server|Library [REPEAT]\n";
  return 2;
}

double Milliseconds(std::chrono::steady_clock::duration duration) {
  return std::chrono::duration<double, std::milli>(duration).count();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3 && argc != 4) return Usage();
  const std::string mode = argv[2];
  if (mode != "Server" && mode != "Library") return Usage();
  int repeat = 1;
  if (argc == 4) {
    char* end = nullptr;
    const long parsed = std::strtol(argv[3], &end, 10);
    if (end == argv[3] || *end != 0 || parsed <= 0 || parsed > 1000) return Usage();
    repeat = static_cast<int>(parsed);
  }
  try {
    Registry::SetParameter(Registry::kConfigDirectory, argv[1]);
    // The output's buffer is made now: made after the first Destroy, its allocation would
    // gather the freed heap into the profile.
    std::cout << "qr_startup: " << argv[1] << " in " << mode << " mode" << std::endl;
    for (int i = 0; i < repeat; ++i) {
      using Clock = std::chrono::steady_clock;
      const Clock::time_point start = Clock::now();
      ConfigStartup::Initialize(mode == "Server" ? Initialization::Server
                                                 : Initialization::Library);
      const Clock::time_point initialized = Clock::now();
      ConfigStartup::Destroy();
      const Clock::time_point destroyed = Clock::now();
      std::cout << "Initialize " << Milliseconds(initialized - start) << " ms, Destroy "
                << Milliseconds(destroyed - initialized) << " ms\n";
    }
  } catch (const std::exception& error) {
    std::cerr << "qr_startup: " << error.what() << "\n";
    return 1;
  }
  return 0;
}
