// Common base of the two driver-file readers.
#pragma once

#include "qr_config/config/readers/reader_frame.h"

// The driver list file and the localised driver files share their parse: a BasicDrvXmlParser
// is a ReaderFrame that reports the parse codes 45 to 48 as 264 to 267 with the file's path.
// It adds no member and no handler. Unlike the other readers, the driver-file readers compare
// element names as UTF-8 text and keep character data without the line-break cut.
class BasicDrvXmlParser : public ReaderFrame {
 public:
  ~BasicDrvXmlParser() override;

 protected:
  BasicDrvXmlParser(FileRole role, const std::vector<ElementVocabulary>& vocabulary)
      : ReaderFrame(kConfigFileCodes, role, vocabulary) {}
};
