// The fuzz targets' work, one function per target, shared by the libFuzzer executables
// (fuzz_main.cc) and by the regression test that replays the seeds and the findings
// (tests/robustness/fuzz_regression_test.cc). fuzz/README.md says what each target drives and
// what counts as a finding. Every function is deterministic for a given input: state that
// outlives one input (scratch files, a copy of the sample installation, fixed defaults) is only
// read between inputs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace FuzzInputs {

using Entry = void (*)(const std::uint8_t* data, std::size_t size);

struct Target {
  const char* Name;  // also the name of the executable (fuzz_<Name>) and of the corpus folder
  Entry Run;
};

// Every target, in a fixed order.
const std::vector<Target>& Targets();

// Aborts with `what` when `condition` is false.
void Check(bool condition, const std::string& what);

}  // namespace FuzzInputs
