// InstallationGenerator: writes a synthetic configuration directory of a chosen size, for the
// benchmarks and for qr_generate.
//
// An installation of shape N x M holds:
//  - qr.cfg: ten locales whose character sets name the running platform (Process::Instance())
//    or one of its families, plus one for a foreign platform; the driver-area settings with
//    "Library" and "Server" overrides; driver defaults; trace groups. No active data sources,
//    so both modes load every driver.
//  - driver.cfg: the N native drivers, each with two or three aliases, and N/10 (at least
//    one) drivers of another implementation.
//  - setup/: one setup file per native driver (directory, data file, two versions), one per
//    other driver (loads nothing) and a ".32." setup file for every tenth driver (skipped).
//  - drivers/dNNN/dNNN.dsf: a "Defaults" section (eleven parameters and a library), then M
//    databases, each with one or two aliases and eight parameters of the three types (texts,
//    integers, booleans: about twenty fields per database with the defaults); every fifth a
//    "Libraries" list, every seventh its own library, every eleventh without a character-set
//    table, every twentieth with extensions. Per fifty databases, one is inactive, one is for a
//    foreign platform and one lacks "Active": 47 of every 50 load (DatabaseLoaded).
//  - drivers/dNNN/dNNN.csl: the driver's character-set table; extension packages beside the
//    data-access files of even drivers.
//  - platform.csl: sections for the running platform, its last family name and a foreign one.
//  - driveren.cfg, driverfr.cfg, driverde_DE.cfg, driveres.cfg, driverja_JP.cfg: the texts of
//    every native driver (UTF-8, with non-ASCII characters).
//
// Names are made by the static functions below, so that a benchmark can address any driver,
// database or alias without reading the files back. Output is deterministic for a shape and
// a running platform.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

class InstallationGenerator {
 public:
  struct Shape {
    std::string Label;           // e.g. "M"
    int Drivers = 0;             // native drivers
    int DatabasesPerDriver = 0;  // databases declared in each data-access file
  };

  // What Write produced. "Start-up files" are those ConfigStartup::Initialize reads: the
  // main file, the driver list, the setup files, the data-access files (all XML), the
  // platform list and the character-set tables (INI). The localised driver files are read
  // only on demand.
  struct Summary {
    std::string Directory;
    Shape Layout;
    std::vector<std::string> StartupXmlFiles;  // full paths, in the order written
    std::uint64_t StartupXmlBytes = 0;
    std::uint64_t StartupIniBytes = 0;
    std::uint64_t LocalizedBytes = 0;
    std::uint64_t TotalBytes = 0;
    int LoadedDatabases = 0;  // databases a start-up creates nodes for

    std::uint64_t StartupBytes() const { return StartupXmlBytes + StartupIniBytes; }
  };

  // S (10 x 20), M (50 x 200) and L (100 x 1,000).
  static Shape Small() { return {"S", 10, 20}; }
  static Shape Medium() { return {"M", 50, 200}; }
  static Shape Large() { return {"L", 100, 1000}; }

  // Writes the installation of `shape` into `directory`, which is created when missing and
  // must hold no configuration yet. Throws std::runtime_error (with the path) when a file
  // cannot be written and std::invalid_argument for a shape without drivers or databases.
  static Summary Write(const std::string& directory, const Shape& shape);

  // Names, for driver indexes 0 to Drivers - 1 and database indexes 0 to
  // DatabasesPerDriver - 1.
  static std::string DriverName(int driver);
  static int DriverAliasCount(int driver);
  static std::string DriverAlias(int driver, int alias);
  static std::string DatabaseName(int driver, int database);
  static int DatabaseAliasCount(int database);
  static std::string DatabaseAlias(int driver, int database, int alias);
  // Whether a start-up creates a node for the database (active and for the running platform).
  static bool DatabaseLoaded(int database);
  // Whether a loaded database has a character-set table.
  static bool HasCharSetTable(int database);
  // The entry names of every character-set table.
  static const std::vector<std::string>& CharSetEntries();
  // (language, country) of the locales that have a localised driver file of their own or by
  // their language, and that the main file declares for the running platform.
  static const std::vector<std::pair<std::string, std::string>>& LocalizedLocales();
};
