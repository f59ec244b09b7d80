#include "bench/cache_evictor.h"

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include <benchmark/benchmark.h>

namespace {

std::size_t BufferSize() {
  constexpr std::size_t kMinimum = std::size_t{64} << 20;
  const long lastLevel = sysconf(_SC_LEVEL3_CACHE_SIZE);
  const std::size_t doubled = lastLevel > 0 ? 2 * static_cast<std::size_t>(lastLevel) : 0;
  return doubled > kMinimum ? doubled : kMinimum;
}

}  // namespace

void CacheEvictor::Evict() {
  static std::vector<std::uint64_t> buffer(BufferSize() / sizeof(std::uint64_t), 1);
  std::uint64_t sum = 0;
  // One word per cache line is enough to bring every line in, dirty.
  for (std::size_t i = 0; i < buffer.size(); i += 8) {
    sum += buffer[i];
    buffer[i] = sum;
  }
  benchmark::DoNotOptimize(sum);
}
