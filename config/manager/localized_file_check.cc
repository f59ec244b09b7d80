// The diagnostics-only reading of the localised driver files at start-up.
#include <Poco/File.h>
#include <Poco/Path.h>

#include <set>

#include "qr_config/config/manager/config_keys.h"
#include "qr_config/config/manager/config_manager_impl.h"
#include "qr_config/config/readers/diagnostic_text.h"
#include "qr_config/config/readers/load_trace.h"
#include "qr_config/config/readers/loc_drv_xml_parser.h"
#include "qr_config/platform/qr_error.h"

namespace {

using DiagnosticText::Quoted;

}  // namespace

void ConfigManagerImpl::CheckLocalizedFiles(const std::string& configDirectory) {
  const ConfigKeys& keys = ConfigKeys::Instance();
  // Without a driver there is nothing to localise, and no request that could fail.
  if (GetConstTree().Find(Localization()).ch_size() == 0) return;
  const std::string base = JoinNative(configDirectory, keys.LocalizedDriverFile);

  // The file GetLocalizedDriver would read for each locale of the running platform.
  std::map<std::string, std::string> localesOf;  // file to its locales, as a list for messages
  for (const auto& [id, descriptor] : m_Locales) {
    std::string name = base;
    LocalizeFileName(descriptor, keys.LocalizedDriverExtension, name);
    std::string& locales = localesOf[name];
    locales += (locales.empty() ? "" : ", ") + id;
  }

  // Texts count for a driver of the driver list that has a node under Localization.
  std::vector<std::string> declared(m_NativeDrivers);
  declared.insert(declared.end(), m_OtherDrivers.begin(), m_OtherDrivers.end());
  std::set<std::string> loaded;
  const tree_node<Node>& localization = GetConstTree().Find(Localization());
  for (auto it = localization.ch_begin(); it != localization.ch_end(); ++it)
    loaded.insert((*it).value().Name());
  // After a failure, drivers that would load may be missing: only file-level checks then.
  const bool complete = !m_Trace->FirstFailure();

  for (const auto& [file, locales] : localesOf) {
    const std::string_view path = m_Trace->Keep(file);
    if (!Poco::File(file).exists()) {
      m_Trace->FileSkipped(FileRole::LocalizedDriverFile, path, "does not exist");
      m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::MissingFile, {path, 0, 0},
                      "The texts of the locales " + locales + " come from " + Quoted(file) +
                          " (their own file, their language's, else the \"en\" one), which does "
                          "not exist: GetLocalizedDriver fails with QRError 264 for them.",
                      file, QRErrorCode::FileCannotRead);
      continue;
    }
    LocDrvXmlParser reader;
    reader.SetTrace(m_Trace);
    try {
      reader.Parse(Poco::Path(file));
    } catch (const QRError& error) {
      m_Trace->ReportFailure(error, DiagnosticSeverity::Warning, {path, 0, 0},
                             "GetLocalizedDriver fails with QRError " +
                                 std::to_string(error.Code()) + " for the locales " + locales +
                                 ".");
      continue;
    }
    std::set<std::string> listed;
    for (std::size_t i = 0; i < reader.Entries().size(); ++i) {
      const std::string& key = reader.Entries()[i].Key;
      listed.insert(key);
      if (declared.empty()) break;
      bool known = false;
      for (const std::string& driver : declared) known = known || driver == key;
      if (known) continue;
      m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::UnknownDriver,
                      {path, i < reader.EntryLines().size() ? reader.EntryLines()[i] : 0, 0},
                      "The localised driver file gives texts for " + Quoted(key) +
                          ", which the driver list does not declare: GetLocalizedDriver passes "
                          "over them.",
                      key, 0, &declared);
    }
    if (!complete) continue;
    for (const std::string& driver : loaded) {
      if (listed.count(driver) > 0) continue;
      m_Trace->Report(DiagnosticSeverity::Note, DiagnosticKind::MissingTexts, {path, 0, 0},
                      "The localised driver file gives no texts for the driver " + Quoted(driver) +
                          ": GetLocalizedDriver fails with QRError 50 for it in the locales " +
                          locales + ".",
                      driver, QRErrorCode::LocalizedNodeMissing);
    }
  }
}
