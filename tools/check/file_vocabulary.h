// The element and attribute names each reader of the library acts on.
#pragma once

#include <string>
#include <vector>

namespace qrconfig {

// The kinds of XML files of an installation, each read by its own reader.
enum class FileKind { Main, DriverList, Localised, Setup, DataAccess };

// "main configuration file", "driver list", "localised driver file", "setup file",
// "data-access file".
const char* FileKindName(FileKind kind);

// One element a reader acts on, with the attributes it reads (exact names: case matters).
struct ElementWords {
  const char* Element;
  std::vector<const char*> Attributes;
};

// The elements (other than the root, whose name is free) and attributes that the reader of
// `kind` acts on; everything else it passes over without a word.
const std::vector<ElementWords>& VocabularyOf(FileKind kind);

// The words of `element` in `kind`, or nullptr when the reader ignores that element.
const ElementWords* FindElement(FileKind kind, const std::string& element);

}  // namespace qrconfig
