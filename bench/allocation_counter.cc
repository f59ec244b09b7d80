// Replacement of every form of the global operator new and delete, counting allocations.
#include "bench/allocation_counter.h"

#include <malloc.h>

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

thread_local std::uint64_t t_Allocations = 0;

std::atomic<bool> g_Tracking{false};
std::atomic<std::int64_t> g_LiveBytes{0};
std::atomic<std::int64_t> g_PeakBytes{0};

void Track(void* pointer) noexcept {
  if (!g_Tracking.load(std::memory_order_relaxed)) return;
  const auto bytes = static_cast<std::int64_t>(malloc_usable_size(pointer));
  const std::int64_t live = g_LiveBytes.fetch_add(bytes, std::memory_order_relaxed) + bytes;
  std::int64_t peak = g_PeakBytes.load(std::memory_order_relaxed);
  while (live > peak && !g_PeakBytes.compare_exchange_weak(peak, live, std::memory_order_relaxed)) {
  }
}

void Untrack(void* pointer) noexcept {
  if (pointer == nullptr || !g_Tracking.load(std::memory_order_relaxed)) return;
  g_LiveBytes.fetch_sub(static_cast<std::int64_t>(malloc_usable_size(pointer)),
                        std::memory_order_relaxed);
}

// malloc, or aligned_alloc for over-aligned types; retries through the new-handler like the
// standard operator new. Null only when there is no handler.
void* Allocate(std::size_t size, std::size_t alignment) noexcept {
  ++t_Allocations;
  if (size == 0) size = 1;
  for (;;) {
    void* pointer = nullptr;
    if (alignment <= alignof(std::max_align_t)) {
      pointer = std::malloc(size);
    } else if (posix_memalign(&pointer, alignment, size) != 0) {
      pointer = nullptr;
    }
    if (pointer != nullptr) {
      Track(pointer);
      return pointer;
    }
    std::new_handler handler = std::get_new_handler();
    if (handler == nullptr) return nullptr;
    try {
      handler();
    } catch (...) {
      return nullptr;
    }
  }
}

void* AllocateOrThrow(std::size_t size, std::size_t alignment) {
  void* pointer = Allocate(size, alignment);
  if (pointer == nullptr) throw std::bad_alloc();
  return pointer;
}

void Release(void* pointer) noexcept {
  Untrack(pointer);
  std::free(pointer);
}

constexpr std::size_t kDefault = alignof(std::max_align_t);

}  // namespace

std::uint64_t AllocationCounter::ThreadAllocations() noexcept {
  return t_Allocations;
}

void AllocationCounter::StartTracking() noexcept {
  g_PeakBytes.store(g_LiveBytes.load(std::memory_order_relaxed), std::memory_order_relaxed);
  g_Tracking.store(true, std::memory_order_relaxed);
}

void AllocationCounter::StopTracking() noexcept {
  g_Tracking.store(false, std::memory_order_relaxed);
}

std::int64_t AllocationCounter::LiveBytes() noexcept {
  return g_LiveBytes.load(std::memory_order_relaxed);
}

std::int64_t AllocationCounter::PeakLiveBytes() noexcept {
  return g_PeakBytes.load(std::memory_order_relaxed);
}

void* operator new(std::size_t size) {
  return AllocateOrThrow(size, kDefault);
}
void* operator new[](std::size_t size) {
  return AllocateOrThrow(size, kDefault);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return Allocate(size, kDefault);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return Allocate(size, kDefault);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
  return AllocateOrThrow(size, static_cast<std::size_t>(alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
  return AllocateOrThrow(size, static_cast<std::size_t>(alignment));
}
void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
  return Allocate(size, static_cast<std::size_t>(alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
  return Allocate(size, static_cast<std::size_t>(alignment));
}

void operator delete(void* pointer) noexcept {
  Release(pointer);
}
void operator delete[](void* pointer) noexcept {
  Release(pointer);
}
void operator delete(void* pointer, std::size_t) noexcept {
  Release(pointer);
}
void operator delete[](void* pointer, std::size_t) noexcept {
  Release(pointer);
}
void operator delete(void* pointer, const std::nothrow_t&) noexcept {
  Release(pointer);
}
void operator delete[](void* pointer, const std::nothrow_t&) noexcept {
  Release(pointer);
}
void operator delete(void* pointer, std::align_val_t) noexcept {
  Release(pointer);
}
void operator delete[](void* pointer, std::align_val_t) noexcept {
  Release(pointer);
}
void operator delete(void* pointer, std::size_t, std::align_val_t) noexcept {
  Release(pointer);
}
void operator delete[](void* pointer, std::size_t, std::align_val_t) noexcept {
  Release(pointer);
}
void operator delete(void* pointer, std::align_val_t, const std::nothrow_t&) noexcept {
  Release(pointer);
}
void operator delete[](void* pointer, std::align_val_t, const std::nothrow_t&) noexcept {
  Release(pointer);
}
