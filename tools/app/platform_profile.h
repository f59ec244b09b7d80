// The process description qrconfig loads with for --platform NAME.
#pragma once

#include <string>

#include "qr_config/platform/process.h"

namespace qrconfig {

// The settings that make the library load as if it ran on the platform `name`:
//  - Name is `name`; CharSetName is "UTF-8";
//  - PlatformNames is `name` followed by its families: the part before the first '-' when
//    that part is a known platform (so "Linux-ppc64le" belongs to "Linux"), then the families
//    of that platform: "Linux", "AIX", "Solaris", "HP-UX", "macOS" and "FreeBSD" belong to
//    "Unix"; "Windows" and "Unix" belong to nothing further. An unknown name has no family.
//    Examples: "Linux-x86_64" -> {Linux-x86_64, Linux, Unix}; "Windows-x64" -> {Windows-x64,
//    Windows}; "AIX" -> {AIX, Unix}; "Plan9" -> {Plan9};
//  - OSLists are the build defaults (Process::Defaults) with `name` added to its own list and
//    to the list of each of its families (each made when missing), so that in server mode a
//    locale entry written for the platform or a family is filed under `name`.
Process::Settings PlatformSettings(const std::string& name);

}  // namespace qrconfig
