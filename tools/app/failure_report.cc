#include "app/failure_report.h"

#include "app/error_advice.h"
#include "output/json_writer.h"

namespace qrconfig {

namespace {

bool ArgumentIsFile(std::int32_t code) {
  return (code >= QRErrorCode::FileCannotRead && code <= QRErrorCode::FileRefused) ||
         (code >= QRErrorCode::DataFileCannotRead && code <= QRErrorCode::DataFileRefused);
}

}  // namespace

Failure Failure::Usage(const std::string& message) {
  Failure failure;
  failure.Status = 2;
  failure.Kind = "usage";
  failure.Message = message;
  failure.Advice = "Run 'qrconfig --help' for usage.";
  return failure;
}

Failure Failure::Of(const QRError& error, const std::string& kind, const std::string& context,
                    const std::string& suggestion) {
  Failure failure;
  failure.Kind = kind;
  failure.Code = error.Code();
  failure.Message = context + error.what();
  if (!suggestion.empty()) failure.Message += " (did you mean \"" + suggestion + "\"?)";
  failure.Advice = AdviceFor(error.Code());
  if (ArgumentIsFile(error.Code())) failure.File = error.Argument().str();
  return failure;
}

Failure Failure::Of(const std::exception& error, const std::string& kind,
                    const std::string& context) {
  Failure failure;
  failure.Kind = kind;
  failure.Message = context + ExceptionText(error);
  while (!failure.Message.empty() && failure.Message.back() == '.') failure.Message.pop_back();
  failure.Advice =
      "Check that the configuration directory holds every file and directory the "
      "installation needs; run 'qrconfig check' to see the cause with file and line.";
  return failure;
}

void WriteFailure(const Failure& failure, bool asJson, std::ostream& out, std::ostream& err) {
  if (!asJson) {
    err << "qrconfig: " << failure.Message << '.';
    if (!failure.Advice.empty()) err << (failure.Kind == "usage" ? '\n' : ' ') << failure.Advice;
    err << '\n';
    return;
  }
  JsonWriter json(out);
  json.BeginObject();
  json.Key("error");
  json.BeginObject();
  json.Member("status", static_cast<std::int64_t>(failure.Status));
  json.Member("kind", failure.Kind);
  json.Key("code");
  if (failure.Code) {
    json.Integer(*failure.Code);
  } else {
    json.Null();
  }
  json.Member("message", failure.Message);
  json.Member("advice", failure.Advice);
  json.Key("file");
  if (failure.File.empty()) {
    json.Null();
  } else {
    json.String(failure.File);
  }
  json.EndObject();
  json.EndObject();
  json.Finish();
}

}  // namespace qrconfig
