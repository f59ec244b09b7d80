// qr_generate: writes a synthetic installation into a directory.
//
//   qr_generate DIRECTORY S|M|L
//   qr_generate DIRECTORY DRIVERS DATABASES_PER_DRIVER
//
// The directory is created when missing; one that holds a qr.cfg already is refused. The
// locales and platform sections are written for the platform this program runs on.
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>

#include "bench/generate_installation.h"

namespace {

int Usage() {
  std::cerr << "usage: qr_generate DIRECTORY S|M|L\n"
               "       qr_generate DIRECTORY DRIVERS DATABASES_PER_DRIVER\n";
  return 2;
}

bool ParseCount(const char* text, int& value) {
  char* end = nullptr;
  const long parsed = std::strtol(text, &end, 10);
  if (end == text || *end != 0 || parsed <= 0 || parsed > 100000) return false;
  value = static_cast<int>(parsed);
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3 && argc != 4) return Usage();
  InstallationGenerator::Shape shape;
  if (argc == 3) {
    const std::string label = argv[2];
    if (label == "S") {
      shape = InstallationGenerator::Small();
    } else if (label == "M") {
      shape = InstallationGenerator::Medium();
    } else if (label == "L") {
      shape = InstallationGenerator::Large();
    } else {
      return Usage();
    }
  } else {
    if (!ParseCount(argv[2], shape.Drivers) || !ParseCount(argv[3], shape.DatabasesPerDriver))
      return Usage();
    shape.Label = std::to_string(shape.Drivers) + "x" + std::to_string(shape.DatabasesPerDriver);
  }
  try {
    const InstallationGenerator::Summary summary = InstallationGenerator::Write(argv[1], shape);
    std::cout << "wrote " << summary.Directory << " (" << shape.Label << ": " << shape.Drivers
              << " drivers x " << shape.DatabasesPerDriver << " databases, "
              << summary.LoadedDatabases << " loaded)\n"
              << "  start-up XML files: " << summary.StartupXmlFiles.size() << ", "
              << summary.StartupXmlBytes << " bytes\n"
              << "  start-up INI files: " << summary.StartupIniBytes << " bytes\n"
              << "  localised driver files: " << summary.LocalizedBytes << " bytes\n"
              << "  all files: " << summary.TotalBytes << " bytes\n";
  } catch (const std::exception& error) {
    std::cerr << "qr_generate: " << error.what() << "\n";
    return 1;
  }
  return 0;
}
