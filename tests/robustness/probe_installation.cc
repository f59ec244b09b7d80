#include "robustness/probe_installation.h"

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <stdexcept>

namespace {

const char* const kDb1 = "\\Quorin\\DBDrivers\\Crv\\db1";

struct KindInfo {
  const char* Name;
  const char* Relative;
  // The document: {P} is the probe, {X} the extra content, {D} the XML declaration.
  std::string Template;
};

const KindInfo& Info(FileKind kind) {
  static const KindInfo kinds[] = {
      {"Main", "qr.cfg",
       "{D}<Configuration>\n  <Locale>\n    <Language>en</Language>\n"
       "    <CharSet>UTF-8</CharSet>\n  </Locale>\n  <Settings>\n"
       "    <Parameter Name=\"Setup File Extension\">setup</Parameter>\n"
       "    <Parameter Name=\"Config File Extension\">dsf</Parameter>\n"
       "    <Parameter Name=\"Ignore Driver Load Failure\">No</Parameter>\n"
       "    <Parameter Name=\"SQL External Extension\">sqx</Parameter>\n"
       "    <Parameter Name=\"CharSet List Extension\">csl</Parameter>\n"
       "    <Parameter Name=\"Probe\">{P}</Parameter>\n  </Settings>\n{X}</Configuration>\n"},
      {"DriverList", "driver.cfg",
       "{D}<DriverList>\n  <NetworkLayer Name=\"Crv\" Implementation=\"C\">\n"
       "    <Alias>{P}</Alias>\n  </NetworkLayer>\n{X}</DriverList>\n"},
      {"Setup", "setup/crv.setup",
       "{D}<Setup>\n  <NetworkLayer Name=\"Crv\"/>\n  <Directory>d/Crv</Directory>\n"
       "  <DataFileName>Crv</DataFileName>\n  <Version Type=\"SetupProbe\">{P}</Version>\n{X}"
       "</Setup>\n"},
      {"DataAccess", "d/Crv/Crv.dsf",
       "{D}<DataAccess>\n  <Defaults>\n    <Parameter Name=\"Unicode\">CharSet</Parameter>\n"
       "    <Parameter Name=\"CharSet Table\">crv</Parameter>\n  </Defaults>\n"
       "  <DataBase Name=\"db1\" Active=\"Yes\">\n    <Alias>D1</Alias>\n"
       "    <Parameter Name=\"Probe\">{P}</Parameter>\n  </DataBase>\n{X}</DataAccess>\n"},
      {"Localized", "driveren.cfg",
       "{D}<DriverTexts>\n  <NetworkLayer Name=\"Crv\">\n"
       "    <Message id=\"Name\">Corvane</Message>\n    <Message id=\"Comment\">{P}</Message>\n"
       "  </NetworkLayer>\n{X}</DriverTexts>\n"},
      {"PlatformList", "platform.csl", "[TestOS]\nUTF-8 = UTF-8\nProbe = {P}\n"},
      {"CharSetTable", "d/Crv/crv.csl", "[CharSets]\nUTF-8 = DB_UTF8\nProbe = {P}\n"},
  };
  return kinds[static_cast<int>(kind)];
}

void ReplaceAll(std::string& text, const std::string& from, const std::string& to) {
  for (std::size_t at = text.find(from); at != std::string::npos;
       at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
}

std::string Quoted(const std::string& text) {
  return "'" + text + "'";
}

}  // namespace

const char* KindName(FileKind kind) {
  return Info(kind).Name;
}

const std::vector<FileKind>& AllKinds() {
  static const std::vector<FileKind> kinds = {
      FileKind::Main,      FileKind::DriverList,   FileKind::Setup,       FileKind::DataAccess,
      FileKind::Localized, FileKind::PlatformList, FileKind::CharSetTable};
  return kinds;
}

std::string ExpectedOutcome(FileKind kind, Initialization::Mode mode, const Expect& expect) {
  const bool server = mode == Initialization::Server;
  const std::string db1Missing = std::string("ok 5 ") + kDb1;
  switch (expect.Type) {
    case Expect::Loads: {
      const auto other = expect.ProbeOf.find(kind);
      return "ok " + (other == expect.ProbeOf.end() ? expect.Probe : other->second);
    }
    case Expect::FileFails:
      return kind == FileKind::PlatformList ? "10" : "ok 262 Crv";
    case Expect::ParseFails:
      break;
  }
  const std::string fileError =
      std::to_string(264 + expect.Code - 45) + " @/" + ProbeInstallation::Relative(kind);
  switch (kind) {
    case FileKind::Setup:
      return server ? db1Missing : fileError;
    case FileKind::DataAccess:
      if (!server) return "10";
      switch (expect.FaultSite) {
        case Expect::InProlog:
          return db1Missing;
        case Expect::InProbe:
          return "ok 261 Probe";
        case Expect::AtEnd:
          return std::string("ok '") + kBaselinePayload + "'";
      }
      return "?";
    case FileKind::Localized:
      return "ok " + fileError;
    default:
      return fileError;
  }
}

const char* ProbeInstallation::Relative(FileKind kind) {
  return Info(kind).Relative;
}

std::string ProbeInstallation::Document(FileKind kind, const std::string& payload,
                                        const std::string& prolog, const std::string& extra) {
  std::string text = Info(kind).Template;
  // The payload goes in last, so that its own text is never taken for a placeholder.
  ReplaceAll(text, "{D}", prolog);
  ReplaceAll(text, "{X}", extra);
  const std::size_t at = text.find("{P}");
  text.replace(at, 3, payload);
  return text;
}

void ProbeInstallation::Write(FileKind kind, const std::string& bytes) const {
  // remove_all takes a link itself (even a dangling one), so nothing is written through it.
  std::error_code ignored;
  std::filesystem::remove_all(Path(kind), ignored);
  m_Install.Write(Relative(kind), bytes);
}

void ProbeInstallation::WriteEdited(FileKind kind, const std::string& from,
                                    const std::string& to) const {
  std::string text = Document(kind, kBaselinePayload);
  const std::size_t at = text.find(from);
  if (at == std::string::npos) throw std::logic_error("no \"" + from + "\" in " + Relative(kind));
  text.replace(at, from.size(), to);
  Write(kind, text);
}

void ProbeInstallation::WriteBaseline() const {
  for (FileKind kind : AllKinds()) WriteDocument(kind, kBaselinePayload);
}

std::string ProbeInstallation::Outcome(FileKind kind, Initialization::Mode mode) const {
  std::string outcome;
  try {
    ConfigStartup::Initialize(mode);
    outcome = "ok " + Probe(kind);
  } catch (const QRError& error) {
    outcome = Render(error);
  }
  ConfigStartup::Destroy();
  return outcome;
}

std::string ProbeInstallation::Probe(FileKind kind) const {
  ConfigManager& manager = ConfigManager::Instance();
  auto fieldOf = [&](const std::string& path, const std::string& name) {
    return RenderValue(manager.GetTree().Find(ConfigManager::NodePath(path)).value().Find(name));
  };
  try {
    switch (kind) {
      case FileKind::Main:
        return fieldOf("\\Quorin\\DBDrivers", "Probe");
      case FileKind::DriverList: {
        std::string aliases;
        for (const auto& [name, driver] : manager.GetDriverNames()) {
          if (driver == "Crv" && name != "Crv")
            aliases += (aliases.empty() ? "" : " ") + Quoted(name);
        }
        return aliases.empty() ? "no alias" : aliases;
      }
      case FileKind::Setup:
        return fieldOf(kDb1, "SetupProbe");
      case FileKind::DataAccess:
        return fieldOf(kDb1, "Probe");
      case FileKind::Localized: {
        const Quorin::LocaleDescriptor& english = manager.GetLocale("en", "");
        return RenderValue(manager.GetLocalizedDriver("Crv", english).value().Find("Comment"));
      }
      case FileKind::PlatformList:
        return Quoted(manager.GetPlatformCharSet("Probe"));
      case FileKind::CharSetTable:
        return Quoted(manager.GetCharSetTableEntry("Crv", "db1", "Probe"));
    }
  } catch (const QRError& error) {
    return Render(error);
  }
  return "?";
}

std::string ProbeInstallation::Render(const QRError& error) const {
  std::string argument = error.Argument().str();
  ReplaceAll(argument, m_Install.Dir(), "@");
  return std::to_string(error.Code()) + (argument.empty() ? "" : " " + argument);
}

std::string RenderValue(const ConfigManager::Field& field) {
  std::string text;
  orv_utf8string utf8;
  std::int32_t number = 0;
  bool flag = false;
  switch (field.ValueType()) {
    case ConfigManager::Field::String:
      return field.Value(text), Quoted(text);
    case ConfigManager::Field::UTF8String:
      return field.Value(utf8), Quoted(utf8.str());
    case ConfigManager::Field::Long:
      return field.Value(number), std::to_string(number);
    case ConfigManager::Field::Bool:
      return field.Value(flag), flag ? "true" : "false";
    case ConfigManager::Field::None:
      break;
  }
  return "none";
}

std::string ToUtf16(const std::string& utf8) {
  std::string bytes;
  auto put = [&](unsigned unit) {
    bytes += static_cast<char>(unit & 0xFF);
    bytes += static_cast<char>(unit >> 8);
  };
  put(0xFEFF);
  const ucs2string units{orv_utf8string(utf8)};
  for (std::size_t i = 0; i < units.size(); ++i) put(units.data()[i]);
  return bytes;
}

std::string BillionLaughs() {
  std::string dtd = "<!DOCTYPE R [\n<!ENTITY l0 \"lol\">\n";
  for (int i = 1; i <= 10; ++i) {
    dtd += "<!ENTITY l" + std::to_string(i) + " \"";
    for (int j = 0; j < 10; ++j) dtd += "&l" + std::to_string(i - 1) + ";";
    dtd += "\">\n";
  }
  return kXmlDeclaration + dtd + "]>\n";
}

std::string Nest(int count, const std::string& name, const std::string& inner,
                 const std::string& attributes) {
  std::string open = "<" + name + attributes + ">";
  std::string close = "</" + name + ">";
  std::string text;
  text.reserve(static_cast<std::size_t>(count) * (open.size() + close.size()) + inner.size());
  for (int i = 0; i < count; ++i) text += open;
  text += inner;
  for (int i = 0; i < count; ++i) text += close;
  return text;
}

std::string InChild(const std::function<std::string()>& work, int deadlineSeconds) {
  int channel[2];
  if (::pipe(channel) != 0) return "no pipe";
  const pid_t child = ::fork();
  if (child == 0) {
    ::close(channel[0]);
    const std::string result = work();
    for (std::size_t done = 0; done < result.size();) {
      const ssize_t n = ::write(channel[1], result.data() + done, result.size() - done);
      if (n <= 0) ::_exit(3);
      done += static_cast<std::size_t>(n);
    }
    ::_exit(0);  // no destructors, no leak check: the parent judges the result
  }
  ::close(channel[1]);
  std::string result;
  bool timedOut = false;
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(deadlineSeconds);
  for (;;) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
        deadline - std::chrono::steady_clock::now());
    pollfd ready{channel[0], POLLIN, 0};
    if (left.count() <= 0 || ::poll(&ready, 1, static_cast<int>(left.count())) == 0) {
      timedOut = true;
      break;
    }
    char buffer[4096];
    const ssize_t n = ::read(channel[0], buffer, sizeof buffer);
    if (n <= 0) break;
    result.append(buffer, static_cast<std::size_t>(n));
  }
  ::close(channel[0]);
  if (child < 0) return "no child";
  if (timedOut) ::kill(child, SIGKILL);
  int status = 0;
  ::waitpid(child, &status, 0);
  if (timedOut) return "timed out";
  if (WIFSIGNALED(status)) return "killed by signal " + std::to_string(WTERMSIG(status));
  if (WEXITSTATUS(status) != 0) return "exit " + std::to_string(WEXITSTATUS(status));
  return result;
}
