#include "check/findings_report.h"

#include <cstdio>

#include "output/json_writer.h"
#include "qr_config/platform/process.h"

namespace qrconfig {

namespace {

std::string Plural(std::size_t count, const char* word) {
  return std::to_string(count) + " " + word + (count == 1 ? "" : "s");
}

}  // namespace

Severity FindingsReport::ShownFrom(const ReportOptions& options) {
  return options.Quiet && options.Threshold == Severity::Note ? Severity::Warning
                                                              : options.Threshold;
}

std::string FindingsReport::Escaped(const std::string& text) {
  std::string escaped;
  escaped.reserve(text.size());
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x20 && byte != 0x7f) {
      escaped += c;
      continue;
    }
    char code[5];
    std::snprintf(code, sizeof code, "\\x%02x", byte);
    escaped += code;
  }
  return escaped;
}

void FindingsReport::WriteText(const CheckResult& result, const char* mode,
                               const ReportOptions& options, std::ostream& out) {
  const Findings& found = result.Found;
  for (const Finding* finding : found.Sorted(ShownFrom(options))) {
    out << (finding->File.empty() ? "check" : Escaped(finding->File));
    if (finding->Line != 0) out << ':' << finding->Line;
    if (finding->Column != 0) out << ':' << finding->Column;
    out << ": " << SeverityName(finding->Level) << ": " << Escaped(finding->Message) << " ["
        << finding->Kind << "]\n";
    if (!finding->Advice.empty()) out << "    " << Escaped(finding->Advice) << '\n';
  }
  if (options.Quiet) return;
  out << Plural(found.Count(Severity::Error), "error") << ", "
      << Plural(found.Count(Severity::Warning), "warning") << ", "
      << Plural(found.Count(Severity::Note), "note") << " in " << Escaped(found.ConfigDirectory())
      << " (" << mode << " mode, platform " << Process::Instance().Name() << "). The library "
      << (result.Loaded ? "loads" : "does not load") << " this installation.\n";
}

void FindingsReport::WriteJson(const CheckResult& result, const char* mode,
                               const ReportOptions& options, std::ostream& out) {
  const Findings& found = result.Found;
  JsonWriter json(out);
  json.BeginObject();
  json.Member("configDirectory", found.ConfigDirectory());
  json.Member("mode", mode);
  json.Member("platform", Process::Instance().Name());
  json.Member("loads", result.Loaded);
  json.Member("threshold", SeverityName(ShownFrom(options)));
  json.Key("summary");
  json.BeginObject();
  json.Member("errors", static_cast<std::int64_t>(found.Count(Severity::Error)));
  json.Member("warnings", static_cast<std::int64_t>(found.Count(Severity::Warning)));
  json.Member("notes", static_cast<std::int64_t>(found.Count(Severity::Note)));
  json.EndObject();
  json.Key("findings");
  json.BeginArray();
  for (const Finding* finding : found.Sorted(ShownFrom(options))) {
    json.BeginObject();
    json.Member("severity", SeverityName(finding->Level));
    json.Member("kind", finding->Kind);
    json.Key("file");
    if (finding->File.empty()) {
      json.Null();
    } else {
      json.String(finding->File);
    }
    json.Key("line");
    if (finding->Line == 0) {
      json.Null();
    } else {
      json.Integer(static_cast<std::int64_t>(finding->Line));
    }
    json.Key("column");
    if (finding->Column == 0) {
      json.Null();
    } else {
      json.Integer(static_cast<std::int64_t>(finding->Column));
    }
    json.Member("message", finding->Message);
    json.Member("advice", finding->Advice);
    json.EndObject();
  }
  json.EndArray();
  json.EndObject();
  json.Finish();
}

}  // namespace qrconfig
