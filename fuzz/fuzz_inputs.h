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

// The main file (parsed in both modes), into a fresh tree and locale table.
void RunMainFile(const std::uint8_t* data, std::size_t size);
// The driver list.
void RunDriverList(const std::uint8_t* data, std::size_t size);
// A localised driver file.
void RunLocalizedFile(const std::uint8_t* data, std::size_t size);
// A setup file, parsed twice with one reader.
void RunSetupFile(const std::uint8_t* data, std::size_t size);
// A data-access file, under a fixed setup file and defaults, without and then with
// active-database patterns.
void RunDataAccessFile(const std::uint8_t* data, std::size_t size);
// A parameter file, every parameter read as text, integer and boolean.
void RunParameterFile(const std::uint8_t* data, std::size_t size);
// Value classification, checked against an independent reading of its rules.
void RunValueClassification(const std::uint8_t* data, std::size_t size);
// A node path (text, then after a NUL byte a name appended to it), checked for consistent
// levels and looked up in a fixed tree.
void RunNodePath(const std::uint8_t* data, std::size_t size);
// The pattern matcher: the first byte's bit 0 ignores letter case; the rest is a pattern,
// then after a NUL byte a name matched against it twice (the same answer, or 283 both times).
void RunPattern(const std::uint8_t* data, std::size_t size);
// A whole start-up over a copy of the sample installation. The first byte selects: bit 0,
// the file replaced by the rest of the input (0 the main file qr.cfg, 1 the data-access file
// drivers/corvane/corvane.dsf); bit 1, the mode (0 Library, 1 Server).
void RunStartup(const std::uint8_t* data, std::size_t size);

// Every target, in a fixed order.
const std::vector<Target>& Targets();

// Aborts with `what` when `condition` is false.
void Check(bool condition, const std::string& what);

}  // namespace FuzzInputs
