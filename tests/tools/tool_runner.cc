#include "tool_runner.h"

#include <gtest/gtest.h>

#include <sstream>

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
