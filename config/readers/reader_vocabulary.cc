#include "qr_config/config/readers/reader_vocabulary.h"

#include "qr_config/config/readers/cfg_xml_parser.h"
#include "qr_config/config/readers/drv_xml_parser.h"
#include "qr_config/config/readers/dsf_xml_parser.h"
#include "qr_config/config/readers/loc_drv_xml_parser.h"
#include "qr_config/config/readers/setup_xml_parser.h"

const std::vector<ElementVocabulary>& VocabularyOf(FileRole role) {
  static const std::vector<ElementVocabulary> kNone;
  switch (role) {
    case FileRole::MainFile:
      return CfgXmlParser::Vocabulary();
    case FileRole::DriverList:
      return DrvXmlParser::Vocabulary();
    case FileRole::SetupFile:
      return SetupXmlParser::Vocabulary();
    case FileRole::DataAccessFile:
      return DsfXmlParser::Vocabulary();
    case FileRole::LocalizedDriverFile:
      return LocDrvXmlParser::Vocabulary();
    default:
      return kNone;
  }
}
