#include "tool_runner.h"

#include <gtest/gtest.h>

#include <sstream>

#include <Poco/JSON/Array.h>
#include <Poco/JSON/Parser.h>

#include "app/tool.h"

std::string SampleDir() {
  return QR_EXAMPLES_DIR "/sample-config";
}
std::string BrokenDir() {
  return QR_EXAMPLES_DIR "/broken-config";
}

ToolRun RunQrConfig(std::vector<std::string> arguments) {
  bool named = false;
  for (const std::string& argument : arguments) {
    if (argument == "--config-dir" || argument.rfind("--config-dir=", 0) == 0 ||
        argument.rfind("--param=Config Directory", 0) == 0)
      named = true;
  }
  if (!named) {
    arguments.push_back("--config-dir");
    arguments.push_back(SampleDir());
  }
  std::ostringstream out;
  std::ostringstream err;
  ToolRun run;
  run.Status = qrconfig::RunTool(arguments, out, err);
  run.Out = out.str();
  run.Err = err.str();
  return run;
}

Poco::Dynamic::Var ParseJson(const std::string& text) {
  try {
    Poco::JSON::Parser parser;
    return parser.parse(text);
  } catch (const Poco::Exception& error) {
    ADD_FAILURE() << "not valid JSON (" << error.displayText() << "):\n" << text;
  }
  return {};
}

std::vector<Found> ParseFindings(const std::string& json) {
  std::vector<Found> found;
  const Poco::Dynamic::Var report = ParseJson(json);
  if (report.isEmpty()) return found;
  auto object = report.extract<Poco::JSON::Object::Ptr>();
  // Files are named as usable from the current directory: the configuration directory's
  // name joined with the file's place in it, which is what the tests compare.
  const std::string prefix = object->getValue<std::string>("configDirectory") + "/";
  auto findings = object->getArray("findings");
  for (std::size_t i = 0; i < findings->size(); ++i) {
    auto finding = findings->getObject(static_cast<unsigned>(i));
    Found f;
    f.Severity = finding->getValue<std::string>("severity");
    f.Kind = finding->getValue<std::string>("kind");
    f.File = finding->isNull("file") ? "" : finding->getValue<std::string>("file");
    if (f.File.compare(0, prefix.size(), prefix) == 0) f.File.erase(0, prefix.size());
    f.Line = finding->isNull("line") ? 0 : finding->getValue<int>("line");
    f.Message = finding->getValue<std::string>("message");
    found.push_back(f);
  }
  return found;
}
