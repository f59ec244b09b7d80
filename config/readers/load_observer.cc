#include "qr_config/config/readers/load_observer.h"

const char* FileRoleName(FileRole role) {
  switch (role) {
    case FileRole::MainFile:
      return "main file";
    case FileRole::DriverList:
      return "driver list";
    case FileRole::SetupDirectory:
      return "setup directory";
    case FileRole::SetupFile:
      return "setup file";
    case FileRole::DataAccessFile:
      return "data-access file";
    case FileRole::ExtensionMarker:
      return "extension marker";
    case FileRole::PlatformCharSetList:
      return "platform character-set list";
    case FileRole::CharSetTable:
      return "character-set table";
    case FileRole::LocalizedDriverFile:
      break;
  }
  return "localised driver file";
}

const char* DiagnosticSeverityName(DiagnosticSeverity severity) {
  switch (severity) {
    case DiagnosticSeverity::Error:
      return "error";
    case DiagnosticSeverity::Warning:
      return "warning";
    case DiagnosticSeverity::Note:
      break;
  }
  return "note";
}

const char* DiagnosticKindName(DiagnosticKind kind) {
  switch (kind) {
    case DiagnosticKind::XmlError:
      return "xml-error";
    case DiagnosticKind::MissingFile:
      return "missing-file";
    case DiagnosticKind::UnknownElement:
      return "unknown-element";
    case DiagnosticKind::UnknownAttribute:
      return "unknown-attribute";
    case DiagnosticKind::UnknownValue:
      return "unknown-value";
    case DiagnosticKind::CaseVariant:
      return "case-variant";
    case DiagnosticKind::ValueType:
      return "value-type";
    case DiagnosticKind::ValueLayout:
      return "value-layout";
    case DiagnosticKind::IgnoredElement:
      return "ignored-element";
    case DiagnosticKind::DuplicateSetting:
      return "duplicate-setting";
    case DiagnosticKind::Structure:
      return "structure";
    case DiagnosticKind::MissingSetting:
      return "missing-setting";
    case DiagnosticKind::NoLocale:
      return "no-locale";
    case DiagnosticKind::CharSetList:
      return "charset-list";
    case DiagnosticKind::CharSetTable:
      return "charset-table";
    case DiagnosticKind::SetupSkipped:
      return "setup-skipped";
    case DiagnosticKind::StraySetupFile:
      return "stray-setup-file";
    case DiagnosticKind::SetupNoDriver:
      return "setup-no-driver";
    case DiagnosticKind::DuplicateSetup:
      return "duplicate-setup";
    case DiagnosticKind::UnknownDriver:
      return "unknown-driver";
    case DiagnosticKind::NonNativeDriver:
      return "non-native-driver";
    case DiagnosticKind::DriverSkipped:
      return "driver-skipped";
    case DiagnosticKind::DriverWithoutSetup:
      return "driver-without-setup";
    case DiagnosticKind::MissingDataFile:
      return "missing-data-file";
    case DiagnosticKind::NameCollision:
      return "name-collision";
    case DiagnosticKind::DatabaseSkipped:
      return "database-skipped";
    case DiagnosticKind::InvalidPattern:
      return "invalid-pattern";
    case DiagnosticKind::MissingTexts:
      return "missing-texts";
    case DiagnosticKind::MissingName:
      return "missing-name";
    case DiagnosticKind::LoadFailure:
      break;
  }
  return "load-failure";
}

LoadObserver::~LoadObserver() = default;

void LoadObserver::OnFile(const LoadedFile&) {}
void LoadObserver::OnDiagnostic(const LoadDiagnostic&) {}
void LoadObserver::OnValue(const LoadedValue&) {}
