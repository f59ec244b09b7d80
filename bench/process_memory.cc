#include "bench/process_memory.h"

#include <malloc.h>

#include <cstdio>
#include <cstring>

namespace {

// The value of `key` (such as "VmRSS:") of /proc/self/status, in bytes; 0 when absent.
std::uint64_t StatusBytes(const char* key) noexcept {
  std::FILE* file = std::fopen("/proc/self/status", "r");
  if (file == nullptr) return 0;
  char line[256];
  unsigned long long kilobytes = 0;
  const std::size_t keyLength = std::strlen(key);
  while (std::fgets(line, sizeof line, file) != nullptr) {
    if (std::strncmp(line, key, keyLength) == 0) {
      std::sscanf(line + keyLength, "%llu", &kilobytes);
      break;
    }
  }
  std::fclose(file);
  return kilobytes * 1024;
}

}  // namespace

std::uint64_t ProcessMemory::HeapInUse() noexcept {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

std::uint64_t ProcessMemory::ResidentBytes() noexcept {
  return StatusBytes("VmRSS:");
}

std::uint64_t ProcessMemory::PeakResidentBytes() noexcept {
  return StatusBytes("VmHWM:");
}

bool ProcessMemory::ResetPeakResident() noexcept {
  std::FILE* file = std::fopen("/proc/self/clear_refs", "w");
  if (file == nullptr) return false;
  const bool written = std::fputs("5", file) >= 0;
  return std::fclose(file) == 0 && written;
}

void ProcessMemory::ReleaseFreeMemory() noexcept {
  malloc_trim(0);
}
