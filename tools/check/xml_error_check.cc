#include "check/xml_error_check.h"

#include "app/error_advice.h"
#include "qr_config/platform/qr_error.h"

namespace qrconfig {

namespace {

std::string Problem(std::int32_t code) {
  switch (code) {
    case QRErrorCode::ParseCannotRead:
      return "cannot be read";
    case QRErrorCode::ParseNotWellFormed:
      return "is not well-formed XML";
    case QRErrorCode::ParseEncoding:
      return "has an encoding problem";
    default:
      break;
  }
  return "is refused by the XML parser";
}

bool DriverFile(FileKind kind) {
  return kind == FileKind::Setup || kind == FileKind::DataAccess;
}

}  // namespace

void XmlErrorCheck::Run(const Installation& installation, Findings& findings) const {
  const bool ignored = installation.IgnoresDriverFailures();
  for (const ScannedFile* file : installation.ScannedFiles()) {
    const XmlDiagnostic& error = file->Document.Error;
    if (error.Code == 0) continue;
    const bool required = file->Kind == FileKind::Main || file->Kind == FileKind::DriverList;
    if (required && error.Code == QRErrorCode::ParseCannotRead) {
      findings.Add(Severity::Error, FindingKind::MissingFile, file->Document.Path, 0,
                   std::string("The ") + FileKindName(file->Kind) + " cannot be read (" +
                       error.Message + "): the start-up fails.",
                   "Create the file (docs/file-formats.md describes it), make it readable, or "
                   "point --config-dir at the configuration directory.");
      continue;
    }
    std::string consequence;
    if (DriverFile(file->Kind)) {
      consequence = ignored ? ": the driver is skipped." : ": the start-up fails.";
    } else if (file->Kind == FileKind::Localised) {
      consequence = ": the texts of its locale cannot be loaded.";
    } else {
      consequence = ": the start-up fails.";
    }
    const Severity level = DriverFile(file->Kind) && ignored ? Severity::Warning : Severity::Error;
    findings.Add(level, FindingKind::XmlError, file->Document.Path, error.Line,
                 std::string("The ") + FileKindName(file->Kind) + " " + Problem(error.Code) +
                     (error.Message.empty() ? "" : " (" + error.Message + ")") + consequence,
                 AdviceFor(error.Code), error.Column);
  }
  if (!installation.SetupListed()) {
    findings.Add(Severity::Error, FindingKind::MissingFile, installation.SetupDirectory(), 0,
                 "The setup directory cannot be listed: the start-up fails.",
                 "Create the directory \"setup\" in the configuration directory, with one setup "
                 "file per installed driver (it may be empty).");
  }
}

}  // namespace qrconfig
