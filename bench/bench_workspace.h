// BenchWorkspace: the installations and the loaded configuration that the benchmarks share.
//
// Installations are generated on first use, once per shape and run, below one temporary
// directory that RemoveAll deletes. At most one configuration is loaded at a time (the
// manager is a process-wide singleton): Load replaces whatever is loaded, Unload destroys it.
// Only the benchmarks' setup code calls these, on one thread, outside the timed loops.
#pragma once

#include <string>
#include <vector>

#include "bench/generate_installation.h"
#include "qr_config/config/manager/initialization.h"

class BenchWorkspace {
 public:
  using Shape = InstallationGenerator::Shape;

  // The shapes measured, smallest first: S, M-half (50 x 100), M, L-half (50 x 1,000), L.
  // M-half has half the databases of M per driver, L-half half the drivers of L, so that
  // each doubling is measured on its own.
  static const std::vector<Shape>& Shapes();
  // The shape half as large as `shape`, or null.
  static const Shape* HalfOf(const Shape& shape);

  // The installation of `shape`, written on first use. Throws what the generator throws.
  static const InstallationGenerator::Summary& Installation(const Shape& shape);

  // Points the registry's "Config Directory" at the installation of `shape`.
  static void UseInstallation(const Shape& shape);

  // Makes the manager hold the installation of `shape` loaded in `mode`: does nothing when it
  // does already, otherwise destroys any loaded configuration and initialises. Throws what
  // ConfigStartup::Initialize throws.
  static void Load(const Shape& shape, Initialization::Mode mode);
  // Destroys the loaded configuration, if any.
  static void Unload();

  // Unloads and deletes every generated installation.
  static void RemoveAll();
};
