// Runs qrconfig in-process for tests and keeps what it printed.
#pragma once

#include <string>
#include <vector>

#include <Poco/JSON/Object.h>

struct ToolRun {
  int Status = -1;
  std::string Out;
  std::string Err;
};

// RunTool with `arguments`; "--config-dir <the sample>" is added unless the arguments name a
// configuration directory themselves.
ToolRun RunQrConfig(std::vector<std::string> arguments);

// The sample and the broken installation of the source tree.
std::string SampleDir();
std::string BrokenDir();

// Parses `text` as one JSON document; fails the calling test when it is not valid JSON.
Poco::Dynamic::Var ParseJson(const std::string& text);

// A finding of the JSON report of `check`; File is relative to the configuration directory
// when inside it, "" where the finding names none; Line is 0 where it has none.
struct Found {
  std::string Severity, Kind, File, Message;
  int Line = 0;
};
// The findings of the JSON report `json`; none (and a failure) when it is not valid JSON.
std::vector<Found> ParseFindings(const std::string& json);
