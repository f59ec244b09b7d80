// XmlFloor: the unavoidable part of reading an installation, for the benchmarks to compare
// the start-up with. Both parse whole files and report nothing.
//
//  - ParseWithExpat: Expat's UTF-16 build (libexpatw, the build the library uses), one parser
//    per file, the file fed in blocks of OrvXmlParser::kBlockSize bytes as the library does,
//    with start-tag, end-tag and character-data handlers that do nothing. Setting the
//    handlers matters: without them Expat skips building the attribute arrays and converting
//    character data to UTF-16.
//  - ParseWithOrvXmlParser: the library's platform parser (OrvXmlParser) with its handlers
//    left as they are (doing nothing): Expat plus the platform layer's chunking of character
//    data and its attribute arrays, without any reader.
//
// Both throw std::runtime_error naming the file when it cannot be read or is not
// well-formed.
#pragma once

#include <string>
#include <vector>

class XmlFloor {
 public:
  static void ParseWithExpat(const std::vector<std::string>& files);
  static void ParseWithOrvXmlParser(const std::vector<std::string>& files);
};
