# What `--version --verbose`, About and the software bill of materials tell of the build: libraries, versions, licences.

set(NIVORA_COMMIT "" CACHE STRING "The commit that is built; `make package` records it")

find_package(Pagmo REQUIRED)

# name | version | licence as an SPDX expression | what it is used for. Licences as stated by their Debian packages.
set(NIVORA_LIBRARIES
    "Qt|${Qt6Core_VERSION}|LGPL-3.0-only|windows, painting, settings"
    "SQLite|${SQLite3_VERSION}|blessing|basin files"
    "SQLiteCpp|${SQLiteCpp_VERSION}|MIT|basin files"
    "fmt|${fmt_VERSION}|MIT|texts of numbers"
    "utf8proc|${utf8proc_VERSION}|MIT AND Unicode-DFS-2015|comparison of names"
    "CLI11|${CLI11_VERSION}|BSD-3-Clause|command line of nivora-batch"
    "nlohmann-json|${nlohmann_json_VERSION}|MIT|output of nivora-batch"
    "pagmo|${Pagmo_VERSION}|GPL-3.0-or-later OR LGPL-3.0-or-later|calibration")

set(NIVORA_LIBRARY_ROWS "")
foreach(library IN LISTS NIVORA_LIBRARIES)
    string(REPLACE "|" "\", \"" row "${library}")
    string(APPEND NIVORA_LIBRARY_ROWS "    Library{\"${row}\"},\n")
endforeach()
configure_file("${PROJECT_SOURCE_DIR}/src/base/build_details.cpp.in"
    "${PROJECT_BINARY_DIR}/generated/base/build_details.cpp" @ONLY)
# Only this file knows the commit, so that another one compiles one file anew.
set_source_files_properties("${PROJECT_BINARY_DIR}/generated/base/build_details.cpp" TARGET_DIRECTORY nivora_base
    PROPERTIES COMPILE_DEFINITIONS "NIVORA_COMMIT=\"${NIVORA_COMMIT}\"")
target_sources(nivora_base PRIVATE "${PROJECT_BINARY_DIR}/generated/base/build_details.cpp")
