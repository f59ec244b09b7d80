#include "fuzz_inputs.h"

#include <Poco/Exception.h>
#include <Poco/File.h>
#include <Poco/Path.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <type_traits>

#include "qr_config/config/manager/config_keys.h"
#include "qr_config/config/readers/cfg_xml_parser.h"
#include "qr_config/config/readers/drv_xml_parser.h"
#include "qr_config/config/readers/dsf_xml_parser.h"
#include "qr_config/config/readers/loc_drv_xml_parser.h"
#include "qr_config/config/readers/setup_xml_parser.h"
#include "qr_config/platform/regular_expression.h"
#include "qr_config/qr_config.h"
#include "support/temp_installation.h"

#ifndef QR_SAMPLE_CONFIG_DIR
#error "QR_SAMPLE_CONFIG_DIR must name examples/sample-config"
#endif

namespace FuzzInputs {
namespace {

using Node = ConfigManagerTypes::Node;
using Field = ConfigManagerTypes::Field;
using TreeNode = tree_node<Node>;

std::string Text(const std::uint8_t* data, std::size_t size) {
  return std::string(reinterpret_cast<const char*>(data), size);
}

std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// Runs `work`; a QRError is an accepted outcome.
template <typename Work>
void Tolerating(Work work) {
  try {
    work();
  } catch (const QRError&) {
  }
}

// The process's scratch directory, removed when the process ends normally.
const TempInstallation& Scratch() {
  static const TempInstallation dir;
  return dir;
}

// Visits every node of the subtree without recursion and returns their number; touching each
// node and field lets the sanitizers see a tree left in a broken state.
std::size_t CountNodes(const TreeNode& top) {
  std::size_t count = 0;
  std::vector<const TreeNode*> pending{&top};
  while (!pending.empty()) {
    const TreeNode* node = pending.back();
    pending.pop_back();
    ++count;
    for (const Field& field : node->value())
      Check(field.ValueType() != Field::None, "untyped field");
    for (auto child = node->ch_begin(); child != node->ch_end(); ++child)
      pending.push_back(&*child);
  }
  return count;
}

// ---- readers

void ParseMainFile(const std::string& path, Initialization::Mode mode) {
  tree<Node> configuration(Node("Quorin"));
  TreeNode& root = configuration.root();
  TreeNode& defaults = *root.ch_push_back(Node("Drivers defaults"));
  TreeNode& drivers = *root.ch_push_back(Node("DBDrivers"));
  TreeNode& traces = *root.ch_push_back(Node("Traces"));
  TreeNode& active = *root.ch_push_back(Node("ActiveDataSources"));
  CfgXmlParser::PlatformLocales locales;
  Tolerating([&] {
    CfgXmlParser reader(mode, &locales, &defaults, &drivers, &traces, &active);
    reader.Parse(Poco::Path(path));
  });
  CountNodes(root);
}

// The setup file that the data-access target reads its files under; read once and never
// destroyed, so that no exit-time destruction order matters.
const SetupXmlParser& FixedSetup() {
  static const SetupXmlParser* const setup = [] {
    auto* reader = new SetupXmlParser();
    reader->Parse(Poco::Path(
        Scratch().Write("fixed.setup",
                        "<Setup><NetworkLayer Name=\"Crv\"/><Directory>drivers/crv</Directory>"
                        "<DataFileName>crv</DataFileName><Version Type=\"Client\">19.3</Version>"
                        "<Version Type=\"Driver\">4.2</Version></Setup>")));
    return reader;
  }();
  return *setup;
}

// The fall-back defaults the start-up gives every database, with a Bool and a text beside them.
const tree<Node>& FixedDefaults() {
  static const tree<Node> defaults = [] {
    Node node("Drivers defaults");
    for (Field field : {Field("Status", std::int32_t{0}), Field("Library Name", "Not Defined"),
                        Field("Read Only", false), Field("Driver Capabilities", "Read,Write")})
      node.push_back(field);
    return tree<Node>(node);
  }();
  return defaults;
}

void ParseDataAccessFile(const std::string& path, const std::vector<std::string>& patterns) {
  tree<Node> driver(Node("Crv"));
  std::map<std::string, std::string> names;
  Tolerating([&] {
    DsfXmlParser reader(FixedDefaults().root(), driver.root(), names, FixedSetup());
    if (!patterns.empty()) reader.SetActiveDatabases(patterns);
    reader.Parse(Poco::Path(path));
  });
  CountNodes(driver.root());
  for (const auto& [alias, database] : names) {
    // A "Defaults" element inside a database makes the defaults the node that the
    // database's later aliases name.
    bool found = database == "Defaults";
    for (auto child = driver.root().ch_begin(); child != driver.root().ch_end(); ++child) {
      found = found || (*child).value().Name() == database;
    }
    Check(found, "the name table maps \"" + alias + "\" to a database without a node");
  }
}

// ---- start-up

// Queries over whatever the start-up loaded, as a host would make them.
void QueryLoadedManager() {
  ConfigManager& manager = ConfigManager::Instance();
  const ConfigManagerTypes::Tree copy(manager.GetTree());
  Check(CountNodes(copy.root()) == CountNodes(manager.GetTree().root()), "tree copy differs");
  const Quorin::LocaleDescriptor* english = nullptr;
  Tolerating([&] { english = &manager.GetLocale("en", ""); });
  for (const std::string& driver : manager.GetNativeDrivers()) {
    Tolerating([&] {
      for (const auto& entry : manager.GetDatabaseNames(driver)) {
        const std::string& database = entry.second;
        Check(manager.ResolveDatabaseName(driver, entry.first) == database, "names disagree");
        Tolerating([&] { manager.GetCharSetTableEntry(driver, database, "UTF-8"); });
      }
    });
    if (english != nullptr) Tolerating([&] { manager.GetLocalizedDriver(driver, *english); });
  }
}

void RunMainFile(const std::uint8_t* data, std::size_t size) {
  const std::string path = Scratch().Write("qr.cfg", Text(data, size));
  ParseMainFile(path, Initialization::Library);
  ParseMainFile(path, Initialization::Server);
}

// Parses with a reader of type Reader twice (a second parse starts from nothing, also after a
// failed one), then checks every entry of a successful last parse with `valid`.
template <typename Reader, typename Entry = int>
void ParseTwice(const char* file, const std::uint8_t* data, std::size_t size,
                bool (*valid)(const Entry&) = nullptr, const char* what = "") {
  const std::string path = Scratch().Write(file, Text(data, size));
  Reader reader;
  bool parsed = false;
  for (int pass = 0; pass < 2; ++pass) {
    try {
      reader.Parse(Poco::Path(path));
      parsed = true;
    } catch (const QRError&) {
      parsed = false;
    }
  }
  if constexpr (!std::is_same_v<Entry, int>) {
    if (parsed)
      for (const Entry& entry : reader.Entries()) Check(valid(entry), what);
  }
}

void RunDriverList(const std::uint8_t* data, std::size_t size) {
  ParseTwice<DrvXmlParser, DriverEntry>(
      "driver.cfg", data, size, [](const DriverEntry& e) { return !e.Name.empty(); },
      "unnamed driver");
}

void RunLocalizedFile(const std::uint8_t* data, std::size_t size) {
  ParseTwice<LocDrvXmlParser, LocalizedEntry>(
      "driveren.cfg", data, size, [](const LocalizedEntry& e) { return !e.ExternalName.empty(); },
      "entry without an external name");
}

void RunSetupFile(const std::uint8_t* data, std::size_t size) {
  ParseTwice<SetupXmlParser>("fuzz.setup", data, size);
}

void RunDataAccessFile(const std::uint8_t* data, std::size_t size) {
  const std::string path = Scratch().Write("fuzz.dsf", Text(data, size));
  ParseDataAccessFile(path, {});
  ParseDataAccessFile(path, {"db[0-9]+", "crv.*", ""});
}

void RunParameterFile(const std::uint8_t* data, std::size_t size) {
  const std::string path = Scratch().Write("fuzz.csl", Text(data, size));
  try {
    const SFile file(path, SFile::kRead | SFile::kClassify);
    for (const auto& [sectionName, section] : file.Sections()) {
      Check(file.FindSection(sectionName) == &section, "a section is not found by its name");
      for (const auto& [key, parameter] : section) {
        std::string text;
        parameter.Value(text);
      }
      // The node constructor from a section types every parameter.
      const Node node(sectionName, section);
      Check(node.size() <= section.size(), "more fields than parameters");
    }
  } catch (const SFile::Exception& error) {
    Check(error.Kind() >= 0 && error.Kind() <= 2, "SFile failed with kind 3 while reading");
  }
}

void RunPattern(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return;
  const std::string text = Text(data + 1, size - 1);
  const std::size_t cut = std::min(text.find('\0'), text.size());
  const std::string pattern = text.substr(0, cut);
  const std::string name = cut < text.size() ? text.substr(cut + 1) : std::string();
  const int options = (data[0] & 1) != 0 ? RegularExpression::Matcher::kIgnoreCase : 0;
  auto outcome = [&](RegularExpression::Matcher& matcher) -> std::int32_t {
    try {
      return matcher.matches() ? 1 : 0;
    } catch (const QRError& error) {
      Check(error.Code() == QRErrorCode::InvalidPattern && error.Argument().str() == pattern,
            "a give-up names its pattern");
      return error.Code();
    }
  };
  try {
    RegularExpression::Matcher matcher(pattern, options);
    matcher.reset(name);
    const std::int32_t first = outcome(matcher);
    Check(outcome(matcher) == first, "the same answer twice for \"" + pattern + "\"");
    matcher.reset(std::string());
    outcome(matcher);
  } catch (const QRError& error) {
    Check(error.Code() == QRErrorCode::InvalidPattern, "a pattern fails with 283");
  }
}

// An observer that asks for everything and reads every text it is handed.
struct ReadingObserver : LoadObserver {
  std::size_t Bytes = 0;
  bool WantsKeepGoing() const override { return true; }
  bool WantsValues() const override { return true; }
  bool WantsOnDemandFiles() const override { return true; }
  void OnFile(const LoadedFile& file) override { Bytes += file.Path.size() + file.Reason.size(); }
  void OnDiagnostic(const LoadDiagnostic& d) override {
    Bytes += d.Where.File.size() + d.Message.size() + d.Subject.size();
    if (d.Candidates != nullptr) Bytes += d.Candidates->size();
  }
  void OnValue(const LoadedValue& value) override {
    Bytes += value.NodePath.size() + value.Field->Name().size();
    for (const ValueOrigin* o = value.Origin; o != nullptr; o = o->Replaced)
      Bytes += o->Where.File.size() + o->Source.size() + o->Text.size();
  }
};

// The code the start-up ends with: 0 on success, -1 for a file-system exception.
std::int32_t StartupOutcome(Initialization::Mode mode, LoadObserver* observer) {
  std::int32_t outcome = 0;
  try {
    if (observer != nullptr) {
      ConfigStartup::Initialize(mode, *observer);
    } else {
      ConfigStartup::Initialize(mode);
    }
    QueryLoadedManager();
  } catch (const QRError& error) {
    outcome = error.Code();
  } catch (const Poco::FileException&) {
    // The directory listings of the start-up let file-system errors through.
    outcome = -1;
  }
  ConfigStartup::Destroy();
  Check(!ConfigKeys::Exists(), "a key table outlived its manager");
  return outcome;
}

void RunStartup(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return;
  // A copy of the sample installation, made once; the input replaces one of its files.
  static const std::string mainText = ReadFile(QR_SAMPLE_CONFIG_DIR "/qr.cfg");
  static const std::string dataText = ReadFile(QR_SAMPLE_CONFIG_DIR "/drivers/corvane/corvane.dsf");
  static const std::string sample = Scratch().Path("sample-config");
  if (!Poco::File(sample).exists()) Poco::File(QR_SAMPLE_CONFIG_DIR).copyTo(sample);
  const bool dataFile = (data[0] & 1) != 0;
  const auto mode = (data[0] & 2) != 0 ? Initialization::Server : Initialization::Library;
  const bool observed = (data[0] & 4) != 0;
  const std::string content = Text(data + 1, size - 1);
  Scratch().Write("sample-config/qr.cfg", dataFile ? mainText : content);
  Scratch().Write("sample-config/drivers/corvane/corvane.dsf", dataFile ? content : dataText);

  Registry::ClearParameters();
  Registry::SetParameter("Config Directory", sample);
  const std::int32_t plain = StartupOutcome(mode, nullptr);
  if (observed) {
    // An observer that keeps going sees more, but the start-up ends the same way.
    ReadingObserver observer;
    Check(StartupOutcome(mode, &observer) == plain, "an observer changed the start-up's outcome");
  }
  Registry::ClearParameters();
}

}  // namespace

void Check(bool condition, const std::string& what) {
  if (condition) return;
  std::fprintf(stderr, "fuzz check failed: %s\n", what.c_str());
  std::abort();
}

const std::vector<Target>& Targets() {
  static const std::vector<Target> targets = {
      {"cfg_xml_parser", &RunMainFile},          {"drv_xml_parser", &RunDriverList},
      {"loc_drv_xml_parser", &RunLocalizedFile}, {"setup_xml_parser", &RunSetupFile},
      {"dsf_xml_parser", &RunDataAccessFile},    {"sfile", &RunParameterFile},
      {"regular_expression", &RunPattern},       {"startup", &RunStartup},
  };
  return targets;
}

}  // namespace FuzzInputs
