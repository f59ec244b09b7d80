#include "robustness/memory_probe.h"

#include <fstream>
#include <string>

namespace {

// A "Name:  1234 kB" line of /proc/self/status, in kB; -1 when missing.
long StatusKb(const std::string& name) {
  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line)) {
    if (line.compare(0, name.size() + 1, name + ":") == 0)
      return std::stol(line.substr(name.size() + 1));
  }
  return -1;
}

}  // namespace

double PeakGrowthMb(const std::function<void()>& work) {
  // "5" resets the peak resident size to the current one (Linux 4.0 and later).
  std::ofstream reset("/proc/self/clear_refs");
  reset << "5" << std::flush;
  const bool resettable = static_cast<bool>(reset);
  const long before = StatusKb("VmRSS");
  work();
  const long peak = StatusKb("VmHWM");
  if (!resettable || before < 0 || peak < 0) return -1;
  return static_cast<double>(peak - before) / 1024.0;
}

double SanitizerAllowanceMb() {
#ifdef __SANITIZE_ADDRESS__
  return 256 + 64;
#else
  return 0;
#endif
}
