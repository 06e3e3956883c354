# The libraries under src/, and the libraries of others that they use.

find_package(PkgConfig REQUIRED)
find_package(fmt REQUIRED)
find_package(SQLite3 REQUIRED)
find_package(SQLiteCpp REQUIRED)
find_package(CLI11 REQUIRED)
find_package(nlohmann_json REQUIRED)
pkg_check_modules(utf8proc REQUIRED IMPORTED_TARGET libutf8proc)

# nivora_headers(<target> HEADERS <header>... LIBRARIES <target>...)
#
# Compiles headers once for all targets that call target_precompile_headers with REUSE_FROM <target>. More than half of
# the work of compiling most files is parsing the headers of libraries.
function(nivora_headers target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "HEADERS;LIBRARIES")
    set(source "${CMAKE_CURRENT_BINARY_DIR}/${target}.cpp")
    file(CONFIGURE OUTPUT "${source}" CONTENT "")
    add_library(${target} OBJECT "${source}")
    target_link_libraries(${target} PRIVATE nivora_compiler ${arg_LIBRARIES})
    target_precompile_headers(${target} PRIVATE ${arg_HEADERS})
endfunction()

nivora_headers(nivora_core_headers LIBRARIES fmt::fmt
    HEADERS <algorithm> <array> <cmath> <cstdint> <filesystem> <functional> <map> <optional> <span> <string> <string_view>
        <vector> <fmt/format.h>)

# nivora_library(<folder> [HEADERS <target>] [NAME <target>] [EXCEPT <file>...] [DEPENDS <folder>...] [LIBRARIES <target>...])
#
# Makes the static library nivora_<folder>, or <target>, from the .cpp files of src/<folder> except those named after
# EXCEPT. In the name of a target the slash of a folder becomes an underscore. DEPENDS names the lower folders that it
# uses, LIBRARIES the targets of others. HEADERS names the target whose precompiled headers it uses in the place of
# nivora_core_headers. A folder with headers only gives an interface library.
function(nivora_library folder)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "NAME;HEADERS" "EXCEPT;DEPENDS;LIBRARIES")
    if(arg_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "nivora_library(${folder}): what is '${arg_UNPARSED_ARGUMENTS}'?")
    endif()
    string(REPLACE "/" "_" target "nivora_${folder}")
    if(arg_NAME)
        set(target "${arg_NAME}")
    endif()

    file(GLOB headers CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/src/${folder}/*.h")
    file(GLOB sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/src/${folder}/*.cpp")
    foreach(file IN LISTS arg_EXCEPT)
        list(REMOVE_ITEM sources "${PROJECT_SOURCE_DIR}/src/${folder}/${file}")
    endforeach()

    if(sources)
        add_library(${target} STATIC ${sources} ${headers})
        set(reach PUBLIC)
        target_link_libraries(${target} PRIVATE nivora_compiler)
        if(NOT arg_HEADERS)
            set(arg_HEADERS nivora_core_headers)
        endif()
        target_precompile_headers(${target} REUSE_FROM ${arg_HEADERS})
        # What GCC 12 reports in error about std::string (GCC bugs 105329 and 105651) is hidden only where headers of
        # the system are not precompiled.
        target_compile_options(${target} PRIVATE
            $<$<CXX_COMPILER_ID:GNU>:-Wno-array-bounds;-Wno-restrict;-Wno-stringop-overflow>)
    else()
        add_library(${target} INTERFACE)
        set(reach INTERFACE)
    endif()
    target_include_directories(${target} ${reach} "${PROJECT_SOURCE_DIR}/src")
    list(TRANSFORM arg_DEPENDS PREPEND nivora_)
    target_link_libraries(${target} ${reach} ${arg_DEPENDS} ${arg_LIBRARIES})
endfunction()
