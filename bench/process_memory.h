// ProcessMemory: the memory figures of the running process that the memory benchmark reads.
//
//  - HeapInUse: bytes of the malloc heap handed out and not yet freed (mallinfo2: uordblks
//    plus hblkhd), including malloc's per-chunk overhead; counts C and C++ allocations alike.
//  - ResidentBytes and PeakResidentBytes: VmRSS and VmHWM of /proc/self/status.
//  - ResetPeakResident: sets VmHWM back to the current VmRSS (writes 5 to
//    /proc/self/clear_refs); false when the kernel refuses.
//  - ReleaseFreeMemory: malloc_trim(0), which returns free heap pages to the system, so that
//    a following growth of VmRSS is not hidden by pages freed earlier and still resident.
#pragma once

#include <cstdint>

class ProcessMemory {
 public:
  static std::uint64_t HeapInUse() noexcept;
  // 0 when /proc/self/status cannot be read.
  static std::uint64_t ResidentBytes() noexcept;
  static std::uint64_t PeakResidentBytes() noexcept;
  static bool ResetPeakResident() noexcept;
  static void ReleaseFreeMemory() noexcept;
};
