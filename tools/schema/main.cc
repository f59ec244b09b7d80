// qr_schema KIND FILE: writes the XML Schema of one XML file kind of qr_config to FILE.
// Run by the build (tools/schema/CMakeLists.txt); the schemas are installed with the tools.
#include <cerrno>
#include <cstring>
#include <exception>
#include <fstream>
#include <iostream>
#include <string>

#include "xml_schema.h"

int main(int argc, char** argv) {
  std::string kinds;
  for (const qr_schema::SchemaKind& kind : qr_schema::SchemaKinds())
    kinds += (kinds.empty() ? "" : ", ") + std::string(kind.Kind);
  if (argc != 3) {
    std::cerr << "usage: qr_schema KIND FILE, where KIND is one of " << kinds << '\n';
    return 2;
  }
  const qr_schema::SchemaKind* kind = qr_schema::FindSchemaKind(argv[1]);
  if (kind == nullptr) {
    std::cerr << "qr_schema: \"" << argv[1] << "\" is not a file kind; the kinds are " << kinds
              << '\n';
    return 2;
  }
  try {
    const std::string schema = qr_schema::XmlSchemaOf(*kind);
    errno = 0;
    std::ofstream out(argv[2], std::ios::binary | std::ios::trunc);
    out << schema;
    out.close();
    if (!out) {
      std::cerr << "qr_schema: cannot write " << argv[2];
      if (errno != 0) std::cerr << ": " << std::strerror(errno);
      std::cerr << '\n';
      return 1;
    }
  } catch (const std::exception& e) {
    std::cerr << "qr_schema: " << e.what() << '\n';
    return 1;
  }
  return 0;
}
