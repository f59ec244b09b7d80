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

# PCRE2 (8-bit code units): the active-data-source patterns and value classification. Its
# interpreter keeps backtracking frames on the heap and honours match and heap limits.
find_path(QR_PCRE2_INCLUDE_DIR pcre2.h REQUIRED)
find_library(QR_PCRE2_LIBRARY NAMES pcre2-8 REQUIRED)
add_library(qr::pcre2 UNKNOWN IMPORTED)
set_target_properties(qr::pcre2 PROPERTIES
  IMPORTED_LOCATION ${QR_PCRE2_LIBRARY}
  INTERFACE_INCLUDE_DIRECTORIES ${QR_PCRE2_INCLUDE_DIR})

if(QR_BUILD_TESTS)
  find_package(GTest REQUIRED)
endif()
if(QR_BUILD_BENCH)
  find_package(benchmark REQUIRED)
endif()
