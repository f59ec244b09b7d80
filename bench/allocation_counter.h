// AllocationCounter: what the benchmark binary's replacement of the global operator new and
// delete (allocation_counter.cc) observed.
//
// Every operator new of the process (the library's, POCO's, the standard library's) goes
// through the replacement, since the executable's definition interposes on the shared
// libraries'. Allocations made by C code with malloc (Expat's parser buffers) are not seen.
//
// Counting is per thread and costs one thread-local increment per allocation, so that two
// threads that allocate never share a counter. Byte tracking (live and peak bytes, as
// malloc_usable_size reports them) uses process-wide atomics and is off unless switched on:
// switch it on only around single-threaded measurements.
#pragma once

#include <cstdint>

class AllocationCounter {
 public:
  // The number of operator new calls (every form) made by the calling thread so far.
  static std::uint64_t ThreadAllocations() noexcept;

  // Starts byte tracking: from now on every allocation adds its usable size to the live
  // bytes and every deallocation subtracts it; the peak restarts at the current live bytes.
  // Memory freed during tracking that was allocated before it makes the live bytes drop
  // below their start, so read the peak as a growth over LiveBytes() at the start.
  static void StartTracking() noexcept;
  static void StopTracking() noexcept;
  static std::int64_t LiveBytes() noexcept;
  static std::int64_t PeakLiveBytes() noexcept;
};
