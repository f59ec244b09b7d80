# Every dependency comes from Debian's packages (scripts/install-deps).
find_package(Poco REQUIRED COMPONENTS Foundation)

# Expat's UTF-16 build: its handlers receive UTF-16 code units directly.
find_path(QR_EXPAT_INCLUDE_DIR expat.h REQUIRED)
find_library(QR_EXPATW_LIBRARY NAMES expatw REQUIRED)
add_library(qr::expatw UNKNOWN IMPORTED)
set_target_properties(qr::expatw PROPERTIES
  IMPORTED_LOCATION ${QR_EXPATW_LIBRARY}
  INTERFACE_INCLUDE_DIRECTORIES ${QR_EXPAT_INCLUDE_DIR}
  INTERFACE_COMPILE_DEFINITIONS XML_UNICODE)

find_path(QR_INIH_INCLUDE_DIR ini.h REQUIRED)
find_library(QR_INIH_LIBRARY NAMES inih REQUIRED)
add_library(qr::inih UNKNOWN IMPORTED)
set_target_properties(qr::inih PROPERTIES
  IMPORTED_LOCATION ${QR_INIH_LIBRARY}
  INTERFACE_INCLUDE_DIRECTORIES ${QR_INIH_INCLUDE_DIR})

if(QR_BUILD_TESTS)
  find_package(GTest REQUIRED)
endif()
if(QR_BUILD_BENCH)
  find_package(benchmark REQUIRED)
endif()
