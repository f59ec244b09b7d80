#include "check/checker.h"

#include <Poco/Exception.h>

#include <new>

#include "app/suggestion.h"
#include "qr_config/config/manager/config_startup.h"
#include "qr_config/platform/qr_error.h"

namespace qrconfig {

namespace {

class FindingCollector : public LoadObserver {
 public:
  explicit FindingCollector(Findings& findings) : m_Findings(findings) {}

  bool WantsKeepGoing() const override { return true; }
  bool WantsOnDemandFiles() const override { return true; }

  void OnDiagnostic(const LoadDiagnostic& diagnostic) override {
    std::string message(diagnostic.Message);
    if (diagnostic.Candidates != nullptr && !diagnostic.Subject.empty()) {
      const std::string suggestion =
          Suggestion(std::string(diagnostic.Subject), *diagnostic.Candidates);
      if (!suggestion.empty() && suggestion != diagnostic.Subject)
        message += " Did you mean \"" + suggestion + "\"?";
    }
    m_Findings.Add(diagnostic.Severity, DiagnosticKindName(diagnostic.Kind),
                   std::string(diagnostic.Where.File), diagnostic.Where.Line, std::move(message),
                   Checker::AdviceFor(diagnostic.Kind), diagnostic.Where.Column);
  }

 private:
  Findings& m_Findings;
};

void AddVerdict(Findings& findings, const std::string& error) {
  findings.Add(Severity::Error, DiagnosticKindName(DiagnosticKind::LoadFailure), "", 0,
               "The library does not load the installation: " + error + ".",
               Checker::AdviceFor(DiagnosticKind::LoadFailure));
}

}  // namespace

CheckResult Checker::Run(const std::string& configDirectory, Initialization::Mode mode) {
  CheckResult result{Findings(configDirectory), false};
  FindingCollector collector(result.Found);
  try {
    ConfigSession session(mode, collector);
    result.Loaded = true;
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const Poco::Exception& error) {
    AddVerdict(result.Found, error.displayText());
  } catch (const std::exception& error) {
    AddVerdict(result.Found, error.what());
  }
  return result;
}

const char* Checker::AdviceFor(DiagnosticKind kind) {
  switch (kind) {
    case DiagnosticKind::XmlError:
      return "Fix the XML at that place: the file must be well-formed, in its declared "
             "encoding.";
    case DiagnosticKind::MissingFile:
      return "Create the file, or correct the name that leads to it.";
    case DiagnosticKind::UnknownElement:
      return "Correct the element's name (names are case-sensitive), or remove it.";
    case DiagnosticKind::UnknownAttribute:
      return "Correct the attribute's name (names are case-sensitive), or remove it.";
    case DiagnosticKind::UnknownValue:
      return "Write one of the values the element knows.";
    case DiagnosticKind::CaseVariant:
      return "Write the word exactly as the reader compares it; letter case matters.";
    case DiagnosticKind::ValueType:
      return "Write a value of the type the setting needs: Yes or No for a boolean, digits "
             "for a 32-bit integer, any other text for a text.";
    case DiagnosticKind::ValueLayout:
      return "Write the start tag, the value and the end tag on one line, without blanks "
             "around the value.";
    case DiagnosticKind::IgnoredElement:
      return "Move the element to where it takes effect, or remove it "
             "(docs/file-formats.md).";
    case DiagnosticKind::DuplicateSetting:
      return "Keep one of the two.";
    case DiagnosticKind::Structure:
      return "Put single traces inside a trace group, and give every NetworkLayer and "
             "DataBase of the main file a Name.";
    case DiagnosticKind::MissingSetting:
      return "Add the setting (docs/file-formats.md lists what the start-up reads).";
    case DiagnosticKind::NoLocale:
      return "Add a <Locale> whose <CharSet> names this platform or a family of it, or check "
             "another platform with --platform.";
    case DiagnosticKind::CharSetList:
      return "Fix the file (docs/parameter-files.md gives the format), with a section for the "
             "platform or a family of it.";
    case DiagnosticKind::CharSetTable:
      return "Give the database a \"CharSet Table\" naming a table file of its directory with "
             "a [CharSets] section, or set its \"Unicode\" to another value.";
    case DiagnosticKind::SetupSkipped:
      return "Nothing to do, unless the file was meant to be loaded: then rename it.";
    case DiagnosticKind::StraySetupFile:
      return "Move the file out of the setup directory: every entry there is read.";
    case DiagnosticKind::SetupNoDriver:
      return "Add <NetworkLayer Name=\"...\"/> with the driver's name from the driver list.";
    case DiagnosticKind::DuplicateSetup:
      return "Keep one setup file per driver in the setup directory.";
    case DiagnosticKind::UnknownDriver:
      return "Use a driver name the driver list declares (names are case-sensitive), or "
             "declare the driver in driver.cfg.";
    case DiagnosticKind::NonNativeDriver:
      return "Nothing to do for a driver of another implementation; for a native driver "
             "write Implementation=\"C\" in driver.cfg.";
    case DiagnosticKind::DriverSkipped:
      return "To load it, add the driver to the active data sources (<ActiveDataSources> of "
             "qr.cfg in library mode, --active in server mode).";
    case DiagnosticKind::DriverWithoutSetup:
      return "Install the driver's setup file in the setup directory, or remove the driver "
             "from the driver list.";
    case DiagnosticKind::MissingDataFile:
      return "Correct Directory or DataFileName (Directory is relative to the configuration "
             "directory), or install the data-access file.";
    case DiagnosticKind::NameCollision:
      return "Give the later entry a name of its own, or remove it.";
    case DiagnosticKind::DatabaseSkipped:
      return "Nothing to do if it is meant; otherwise write Active=\"Yes\", check its "
             "Platform, or widen the active data sources.";
    case DiagnosticKind::InvalidPattern:
      return "Fix the regular expression; it must match a database's whole name.";
    case DiagnosticKind::MissingTexts:
      return "Add the driver's texts to the file if hosts ask for them in those locales.";
    case DiagnosticKind::MissingName:
      return "Give the database a Name of its own.";
    case DiagnosticKind::LoadFailure:
      break;
  }
  return "The findings above show the cause; fix them and run check again.";
}

}  // namespace qrconfig
