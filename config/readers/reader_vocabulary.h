// The elements and attributes each reader acts on, for tools that complete or validate files.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "qr_config/config/readers/load_observer.h"
#include "qr_config/platform/qr_export.h"

// One element a reader acts on, with the attributes it reads on it, in the reader's order.
// Values lists, for the attributes whose value the reader compares with a closed set of
// words, those words; an attribute absent from it takes any text.
struct ElementVocabulary {
  std::string Element;
  std::vector<std::string> Attributes;
  std::map<std::string, std::vector<std::string>> Values;
};

// Every element a reader of that file role acts on (wherever it stands: the readers do not
// check nesting, and the root element's name is free), from the same names the reader
// compares with. Names are case-sensitive. Empty for the roles that are not XML files.
QR_API const std::vector<ElementVocabulary>& VocabularyOf(FileRole role);
