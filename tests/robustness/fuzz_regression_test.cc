// Replays every fuzz target's seed corpus (fuzz/corpus/<target>) and the inputs of its past
// findings (tests/data/hostile/fuzz/<target>) through the same work the fuzz target does,
// so that the ordinary and the sanitizer test runs keep them fixed.
#include <gtest/gtest.h>

#include <Poco/DirectoryIterator.h>
#include <Poco/File.h>

#include <fstream>
#include <iterator>

#include "fuzz/fuzz_inputs.h"

namespace FuzzInputs {
void PrintTo(const Target& target, std::ostream* out) {
  *out << target.Name;
}
}  // namespace FuzzInputs

namespace {

std::vector<std::string> FilesIn(const std::string& directory) {
  std::vector<std::string> files;
  if (!Poco::File(directory).exists()) return files;
  for (Poco::DirectoryIterator it(directory), end; it != end; ++it) {
    if (it->isFile()) files.push_back(it->path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

class FuzzRegressionTest : public testing::TestWithParam<FuzzInputs::Target> {};

TEST_P(FuzzRegressionTest, ReplaysSeedsAndFindings) {
  const FuzzInputs::Target& target = GetParam();
  std::vector<std::string> inputs = FilesIn(std::string(QR_FUZZ_DIR) + "/corpus/" + target.Name);
  ASSERT_FALSE(inputs.empty()) << "no seeds for " << target.Name;
  for (const std::string& finding :
       FilesIn(std::string(QR_TEST_DATA_DIR) + "/hostile/fuzz/" + target.Name)) {
    inputs.push_back(finding);
  }
  for (const std::string& input : inputs) {
    SCOPED_TRACE(input);
    std::ifstream in(input, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    target.Run(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  }
}

INSTANTIATE_TEST_SUITE_P(Targets, FuzzRegressionTest, testing::ValuesIn(FuzzInputs::Targets()),
                         testing::PrintToStringParamName());

}  // namespace
