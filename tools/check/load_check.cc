#include "check/load_check.h"

#include "app/error_advice.h"
#include "qr_config/config/manager/config_startup.h"
#include "qr_config/platform/qr_error.h"

namespace qrconfig {

namespace {

bool NamesFile(std::int32_t code) {
  return (code >= QRErrorCode::FileCannotRead && code <= QRErrorCode::FileRefused) ||
         (code >= QRErrorCode::DataFileCannotRead && code <= QRErrorCode::DataFileRefused);
}

}  // namespace

void LoadCheck::Run(const Installation& installation, Findings& findings) const {
  m_Loaded = false;
  try {
    ConfigSession session(installation.Mode());
    m_Loaded = true;
  } catch (const QRError& error) {
    std::string path;
    unsigned long line = 0;
    unsigned long column = 0;
    if (NamesFile(error.Code())) {
      path = error.Argument().str();
      for (const ScannedFile* file : installation.ScannedFiles()) {
        if (file->Document.Path == path) {
          line = file->Document.Error.Line;
          column = file->Document.Error.Column;
        }
      }
    }
    std::string advice = AdviceFor(error.Code());
    if (error.Code() == QRErrorCode::StartupFailed)
      advice =
          "The findings above show the likely cause: the library reports every problem "
          "other than a broken file as QRError 10.";
    findings.Add(Severity::Error, FindingKind::LoadFailure, path, line,
                 std::string("The library does not load the installation: ") + error.what() + ".",
                 advice, column);
  } catch (const std::exception& error) {
    findings.Add(Severity::Error, FindingKind::LoadFailure, "", 0,
                 "The library does not load the installation: " + ExceptionText(error) + ".",
                 "Check that the configuration directory holds every file and directory the "
                 "installation needs; the findings above name the likely cause.");
  }
}

}  // namespace qrconfig
