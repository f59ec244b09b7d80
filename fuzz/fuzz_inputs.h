// The fuzz targets' work, one function per target, shared by the libFuzzer executables
// (fuzz_main.cc) and by the regression test that replays the seeds and the findings
// (tests/robustness/fuzz_regression_test.cc).
//
// Each function takes one input and drives one part of the library with it. A finding is:
//  - a crash, a sanitizer report, a hang or a leak;
//  - an exception other than QRError escaping the work; the exceptions that the library lets
//    through by design are caught where they may occur: SFile::Exception from the
//    parameter-file reader itself, std::out_of_range from stdx::path::operator[] out of
//    range, and Poco file-system exceptions from the directory listings of the start-up;
//  - a broken invariant, which aborts with a message (FuzzInputs::Check).
// Every function is deterministic for a given input: state that outlives one input (scratch
// files, a copy of the sample installation, fixed trees) is only read between inputs.
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

// Every target, in a fixed order: the main file (parsed in both modes), the driver list, a
// localised driver file, a setup file (parsed twice with one reader), a data-access file
// (without, then with active-database patterns), a parameter file (every parameter read as
// text, integer and boolean), value classification (against an independent reading of its
// rules), a node path (text, then after a NUL byte a name appended to it) looked up in a
// fixed tree, the pattern matcher (bit 0 of the first byte ignores letter case; then a
// pattern and after a NUL byte a name, matched twice), and a whole start-up over a copy of
// the sample installation (first byte: bit 0 replaces the data-access file instead of the
// main file by the rest of the input, bit 1 selects Server mode, bit 2 adds an observer).
const std::vector<Target>& Targets();

// Aborts with `what` when `condition` is false.
void Check(bool condition, const std::string& what);

}  // namespace FuzzInputs
