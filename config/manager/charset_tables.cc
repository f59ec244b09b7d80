// The platform character-set list and the character-set tables of databases.
#include <Poco/File.h>
#include <Poco/Path.h>

#include <algorithm>
#include <vector>

#include "qr_config/config/manager/config_keys.h"
#include "qr_config/config/manager/config_manager_impl.h"
#include "qr_config/config/readers/diagnostic_text.h"
#include "qr_config/config/readers/load_trace.h"
#include "qr_config/platform/process.h"
#include "qr_config/platform/qr_error.h"
#include "qr_config/platform/sfile.h"

namespace {

using DiagnosticText::Quoted;

// The library asks SFile to read the file and to type its values.
constexpr int kSFileReadTyped = 3;

// Translates a failure of the parameter-file reader into the library's codes.
[[noreturn]] void RethrowAsQRError(const SFile::Exception& error) {
  switch (error.Kind()) {
    case 1:
    case 2:
      ThrowQRError(QRErrorCode::MissingField);
    case 0:
      ThrowQRError(QRErrorCode::NodeNotFound);
    case 3:
      ThrowQRError(QRErrorCode::TypeMismatch);
    default:
      ThrowQRError(QRErrorCode::StartupFailed);
  }
}

std::string Families() {
  std::string names;
  for (const std::string& name : Process::Instance().PlatformNames())
    names += (names.empty() ? "" : ", ") + name;
  return names;
}

}  // namespace

ConfigManagerImpl::CharSetListPtr ConfigManagerImpl::ReadCharSetList(const std::string& baseName,
                                                                     const std::string& section,
                                                                     FileRole role) {
  std::string extension;
  ReadSetting(ConfigKeys::Instance().CharSetListExtension, extension,
              "the extension of character-set lists and tables");
  const std::string path = baseName + "." + extension;
  const DiagnosticKind kind =
      role == FileRole::CharSetTable ? DiagnosticKind::CharSetTable : DiagnosticKind::CharSetList;
  std::string_view kept;
  if (m_Trace != nullptr) {
    kept = m_Trace->Keep(path);
    m_Trace->FileRead(role, kept);
  }
  try {
    const SFile file(path, kSFileReadTyped);
    const std::map<std::string, SFile::Parameter>* parameters = file.FindSection(section);
    for (auto name = Process::Instance().PlatformNames().begin();
         parameters == nullptr && name != Process::Instance().PlatformNames().end(); ++name)
      parameters = file.FindSection(*name);
    if (parameters == nullptr) {
      if (m_Trace != nullptr)
        m_Trace->SetCause(kind, {kept, 0, 0},
                          "The " + std::string(FileRoleName(role)) + " " + Quoted(path) +
                              " has no section [" + section + "] nor one for " + Families() +
                              " (QRError 261).",
                          section);
      ThrowQRError(QRErrorCode::MissingField);
    }

    auto list = std::make_shared<CharSetList>();
    for (const auto& entry : *parameters) {
      std::string text;
      entry.second.Value(text);
      const bool filed = list->emplace(entry.second.Name(), std::move(text)).second;
      if (!filed && m_Trace != nullptr)
        m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::NameCollision, {kept, 0, 0},
                        "The entry " + Quoted(entry.second.Name()) + " of the " +
                            FileRoleName(role) + " is given more than once: the first counts.",
                        entry.second.Name());
    }
    return list;
  } catch (const SFile::Exception& error) {
    if (m_Trace != nullptr) {
      const bool missing = error.Kind() == 1 || error.Kind() == 2;
      std::string text = error.what();
      while (!text.empty() && text.back() == '.') text.pop_back();
      m_Trace->SetCause(
          missing && role == FileRole::PlatformCharSetList ? DiagnosticKind::MissingFile : kind,
          {kept, error.Line() > 0 ? static_cast<unsigned long>(error.Line()) : 0, 0},
          "The " + std::string(FileRoleName(role)) + " cannot be used (" + text + ").");
    }
    RethrowAsQRError(error);
  }
}

void ConfigManagerImpl::BuildCharSetTables(const std::string& configDirectory,
                                           tree_node<Node>& dbDrivers,
                                           DsfXmlParser::DatabaseFields& databaseFields) {
  const ConfigKeys& keys = ConfigKeys::Instance();
  // Each table file by its base name, with its list once read (null until then), and the
  // databases that name one as (key, file) pairs in tree order. A database whose file fails
  // to read gets no table; a later database naming the same file tries again.
  using Tables = std::map<std::string, CharSetListPtr>;
  struct Entry {
    std::string Key;
    Tables::value_type* Table;
  };
  Tables tables;
  std::vector<Entry> entries;
  std::size_t databases = 0;
  for (auto driver = dbDrivers.ch_begin(); driver != dbDrivers.ch_end(); ++driver)
    databases += (*driver).ch_size();
  entries.reserve(databases);
  // The databases of a driver mostly name one directory and table: the file of the last
  // pair is kept, so that its path is made once per run of equal pairs.
  std::string directory, unicode, tableName, lastDirectory, lastTableName;
  Tables::value_type* last = nullptr;

  for (auto driver = dbDrivers.ch_begin(); driver != dbDrivers.ch_end(); ++driver) {
    for (auto database = (*driver).ch_begin(); database != (*driver).ch_end(); ++database) {
      const Node& node = (*database).value();
      const std::string& driverName = (*driver).value().Name();
      Field* const* first = databaseFields.Of(*database);
      try {
        const Field* directoryField = FirstField(first, kDirectory, node, keys.Directory);
        (directoryField != nullptr ? *directoryField : node.Find(keys.Directory)).Value(directory);
      } catch (...) {
        if (m_Trace != nullptr) {
          m_Trace->SetCause(DiagnosticKind::MissingSetting, m_Trace->NodeLocation(node),
                            "The database node " + Quoted(node.Name()) + " of " +
                                Quoted(driverName) +
                                " has no text \"Directory\", which the start-up reads for "
                                "every database (QRError 261).",
                            keys.Directory);
          if (m_Trace->KeepGoing()) {
            const QRError error(3, 256, QRErrorCode::MissingField);
            m_Trace->ReportFailure(error, DiagnosticSeverity::Error, {},
                                   "The start-up fails (QRError 10).");
            m_Trace->RecordFailure(std::make_exception_ptr(error));
            continue;
          }
        }
        ThrowQRError(QRErrorCode::MissingField);
      }

      // A missing "Unicode", or one that is not a text, counts as "CharSet".
      const Field* unicodeField = FirstField(first, kUnicode, node, keys.Unicode);
      if (unicodeField != nullptr && unicodeField->ValueType() == Field::String) {
        unicodeField->Value(unicode);
        if (unicode != keys.CharSet) continue;
      }

      try {
        if (m_Trace != nullptr) {
          if (!node.Exists(keys.CharSetTable))
            m_Trace->SetCause(DiagnosticKind::CharSetTable, m_Trace->NodeLocation(node),
                              "The database " + Quoted(node.Name()) + " of " + Quoted(driverName) +
                                  " asks for a character-set table (its \"Unicode\" is \"" +
                                  keys.CharSet + "\" or missing) but has no \"CharSet Table\".");
          else if (node.Find(keys.CharSetTable).ValueType() != Field::String)
            m_Trace->SetCause(
                DiagnosticKind::CharSetTable,
                [&] {
                  const ValueOrigin* origin = m_Trace->OriginOf(node, keys.CharSetTable);
                  return origin != nullptr ? origin->Where : m_Trace->NodeLocation(node);
                }(),
                "The \"CharSet Table\" of the database " + Quoted(node.Name()) + " of " +
                    Quoted(driverName) + " is " +
                    LoadTrace::Describe(m_Trace->OriginOf(node, keys.CharSetTable)) +
                    ", not a file name.");
        }
        const Field* tableField = FirstField(first, kCharSetTable, node, keys.CharSetTable);
        (tableField != nullptr ? *tableField : node.Find(keys.CharSetTable)).Value(tableName);
        if (last == nullptr || directory != lastDirectory || tableName != lastTableName) {
          last = nullptr;
          const std::string baseName =
              Poco::Path(Poco::Path(JoinNative(configDirectory, directory)), tableName).toString();
          last = &*tables.try_emplace(baseName).first;
          lastDirectory = directory;
          lastTableName = tableName;
        }
        if (m_Trace != nullptr && !last->second) {
          // A missing table is a mistake of the "CharSet Table" value: report it there.
          std::string extension;
          ReadSetting(keys.CharSetListExtension, extension,
                      "the extension of character-set lists and tables");
          const std::string file = last->first + "." + extension;
          if (!Poco::File(file).exists()) {
            const ValueOrigin* origin = m_Trace->OriginOf(node, keys.CharSetTable);
            m_Trace->SetCause(DiagnosticKind::CharSetTable,
                              origin != nullptr ? origin->Where : m_Trace->NodeLocation(node),
                              "The \"CharSet Table\" " + LoadTrace::Describe(origin) +
                                  " of the database " + Quoted(node.Name()) + " names " +
                                  Quoted(file) + ", which does not exist.",
                              tableName);
            ThrowQRError(QRErrorCode::MissingField);
          }
        }
        std::string key;
        key.reserve(driverName.size() + m_KeySeparator.size() + node.Name().size());
        key.append(driverName).append(m_KeySeparator).append(node.Name());
        entries.push_back({std::move(key), last});
        if (!last->second)
          last->second = ReadCharSetList(last->first, keys.CharSets, FileRole::CharSetTable);
      } catch (const std::exception& error) {
        // This database simply gets no table; a later one naming the same file tries again.
        if (m_Trace != nullptr)
          m_Trace->ReportFailure(error, DiagnosticSeverity::Warning, m_Trace->NodeLocation(node),
                                 "The database " + Quoted(node.Name()) + " of " +
                                     Quoted(driverName) +
                                     " gets no character-set table (GetCharSetTableEntry answers "
                                     "QRError 262).");
      } catch (...) {
      }
    }
  }

  // The keys in order, the first entry of a key winning (the sort is stable), each with the
  // list of its file when that was read by the end. Each insertion goes at the end.
  std::stable_sort(entries.begin(), entries.end(),
                   [](const Entry& a, const Entry& b) { return a.Key < b.Key; });
  m_CharSetTables.clear();
  const std::string* previous = nullptr;
  for (Entry& entry : entries) {
    if (previous != nullptr && *previous == entry.Key) continue;
    previous = &entry.Key;
    if (entry.Table->second)
      previous =
          &m_CharSetTables
               .emplace_hint(m_CharSetTables.end(), std::move(entry.Key), entry.Table->second)
               ->first;
  }
}
