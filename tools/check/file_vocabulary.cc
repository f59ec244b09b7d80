#include "check/file_vocabulary.h"

namespace qrconfig {

const char* FileKindName(FileKind kind) {
  switch (kind) {
    case FileKind::Main:
      return "main configuration file";
    case FileKind::DriverList:
      return "driver list";
    case FileKind::Localised:
      return "localised driver file";
    case FileKind::Setup:
      return "setup file";
    case FileKind::DataAccess:
      break;
  }
  return "data-access file";
}

const std::vector<ElementWords>& VocabularyOf(FileKind kind) {
  static const std::vector<ElementWords> kMain = {
      {"Locale", {}},
      {"Language", {}},
      {"CharSet", {"Platform"}},
      {"Settings", {}},
      {"Library", {}},
      {"Server", {}},
      {"Parameter", {"Name"}},
      {"ActiveDataSources", {}},
      {"NetworkLayer", {"Name"}},
      {"DataBase", {"Name"}},
      {"DriverDefaults", {}},
      {"Traces", {"Active"}},
      {"Logger", {"Implementation", "ClassID"}},
      {"Trace", {"Name", "Active"}},
  };
  static const std::vector<ElementWords> kDriverList = {
      {"NetworkLayer", {"Name", "Implementation"}},
      {"Alias", {}},
  };
  static const std::vector<ElementWords> kLocalised = {
      {"NetworkLayer", {"Name"}},
      {"Message", {"id"}},
  };
  static const std::vector<ElementWords> kSetup = {
      {"NetworkLayer", {"Name"}},
      {"Directory", {}},
      {"DataFileName", {}},
      {"Version", {"Type"}},
  };
  static const std::vector<ElementWords> kDataAccess = {
      {"Defaults", {}},
      {"DataBase", {"Name", "Active", "Platform"}},
      {"Parameter", {"Name", "Platform"}},
      {"Library", {"Platform"}},
      {"Libraries", {}},
      {"Alias", {}},
  };
  switch (kind) {
    case FileKind::Main:
      return kMain;
    case FileKind::DriverList:
      return kDriverList;
    case FileKind::Localised:
      return kLocalised;
    case FileKind::Setup:
      return kSetup;
    case FileKind::DataAccess:
      break;
  }
  return kDataAccess;
}

const ElementWords* FindElement(FileKind kind, const std::string& element) {
  for (const ElementWords& words : VocabularyOf(kind)) {
    if (element == words.Element) return &words;
  }
  return nullptr;
}

}  // namespace qrconfig
