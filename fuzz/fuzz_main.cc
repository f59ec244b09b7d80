// The libFuzzer entry of one fuzz target; QR_FUZZ_TARGET names the target (fuzz_inputs.h).
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "fuzz_inputs.h"

#ifndef QR_FUZZ_TARGET
#error "QR_FUZZ_TARGET must name a target of FuzzInputs::Targets()"
#endif

namespace {

FuzzInputs::Entry FindEntry() {
  for (const FuzzInputs::Target& target : FuzzInputs::Targets()) {
    if (std::strcmp(target.Name, QR_FUZZ_TARGET) == 0) return target.Run;
  }
  FuzzInputs::Check(false, "unknown fuzz target " QR_FUZZ_TARGET);
  return nullptr;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const FuzzInputs::Entry entry = FindEntry();
  entry(data, size);
  return 0;
}
