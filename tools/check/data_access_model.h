// DataAccessModel: what the data-access reader makes of one file, with the lines involved.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "check/value_kind.h"
#include "check/xml_document.h"
#include "qr_config/config/model/node.h"

namespace qrconfig {

// A field as the data-access reader leaves it on a database node.
struct ModelField {
  std::string Name;
  ValueTag Type;
  std::string Text;        // as the field shows it (PlainValue): "true", "42", ...
  unsigned long Line = 0;  // of the element that set it last in this file; 0 when inherited
};

struct DatabaseDeclaration {
  // Why a "DataBase" element is taken or skipped, in the order the reader decides.
  enum Verdict {
    Accepted,
    NoActiveAttribute,  // no "Active" attribute: never loaded
    Inactive,           // "Active" is "No"
    OtherPlatform,      // no name of "Platform" is supported by the process
    NotActiveSource,    // no active-data-source pattern matches the whole name
    BadPattern,         // an active-data-source pattern does not compile
  };

  std::string Name;
  unsigned long Line = 0;
  Verdict Result = Accepted;
  std::string Platform;  // the "Platform" attribute as written
  std::string Pattern;   // with BadPattern: the pattern that does not compile
  // Accepted databases only: each "Alias" text with its line, and the fields of the node.
  std::vector<std::pair<std::string, unsigned long>> Aliases;
  std::vector<ModelField> Fields;

  // The first field named `name`, or nullptr.
  const ModelField* FindField(const std::string& name) const;
};

// A "Parameter" or "Library" value whose type differs from the field it updates: the reader
// raises QRError 1 there and the file's loading stops.
struct TypeConflict {
  std::string Field;
  std::string Section;  // "Defaults" or the database's name
  std::string Text;
  unsigned long Line = 0;
  ValueTag Existing;
  ValueTag Given;
};

// Replays the data-access reader's rules over a scanned file: "Defaults" sections accumulate
// and reach the databases after them (the section's end closes it), a "DataBase" is accepted
// when "Active" is present and not "No", when a name of its "Platform" list is supported by
// the process and, with patterns, when one matches its whole name; "Parameter" and "Library"
// elements (with their own "Platform" lists) update the first field of their name or add one;
// "Libraries" sets "Library" to "Undefined". Values are typed by ClassifyValue. Unlike the
// reader it goes on after a type conflict, so that every conflict is found.
class DataAccessModel {
 public:
  // `driversDefaults`: the "Drivers defaults" node as the start-up hands it over;
  // `configurationFile`, `directory` and `versions`: the fields every database receives;
  // `patterns`: the active-database patterns, or nullptr when loading is not restricted.
  DataAccessModel(const XmlDocument& document, const ConfigManagerTypes::Node& driversDefaults,
                  const std::string& configurationFile, const std::string& directory,
                  const std::map<std::string, std::string>& versions,
                  const std::vector<std::string>* patterns);

  // Every "DataBase" element, accepted or not, in document order.
  const std::vector<DatabaseDeclaration>& Databases() const { return m_Databases; }
  const std::vector<TypeConflict>& Conflicts() const { return m_Conflicts; }

 private:
  void Walk(const XmlDocument& document, const ConfigManagerTypes::Node& driversDefaults,
            const std::string& configurationFile, const std::string& directory,
            const std::map<std::string, std::string>& versions,
            const std::vector<std::string>* patterns);

  std::vector<DatabaseDeclaration> m_Databases;
  std::vector<TypeConflict> m_Conflicts;
};

// Whether one name of the comma-separated `list` is supported by the running process.
bool PlatformListSupported(const std::string& list);

}  // namespace qrconfig
