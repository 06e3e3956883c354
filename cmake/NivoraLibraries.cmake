# The libraries under src/, and the libraries of others that they use.

find_package(PkgConfig REQUIRED)
find_package(fmt REQUIRED)
find_package(SQLite3 REQUIRED)
find_package(SQLiteCpp REQUIRED)
find_package(CLI11 REQUIRED)
find_package(nlohmann_json REQUIRED)
pkg_check_modules(utf8proc REQUIRED IMPORTED_TARGET libutf8proc)

# nivora_library(<folder> [NAME <target>] [EXCEPT <file>...] [DEPENDS <folder>...] [LIBRARIES <target>...])
#
# Makes the static library nivora_<folder>, or <target>, from the .cpp files of src/<folder> except those named after
# EXCEPT. In the name of a target the slash of a folder becomes an underscore. DEPENDS names the lower folders that it
# uses, LIBRARIES the targets of others. A folder with headers only gives an interface library.
function(nivora_library folder)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "NAME" "EXCEPT;DEPENDS;LIBRARIES")
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
    else()
        add_library(${target} INTERFACE)
        set(reach INTERFACE)
    endif()
    target_include_directories(${target} ${reach} "${PROJECT_SOURCE_DIR}/src")
    list(TRANSFORM arg_DEPENDS PREPEND nivora_)
    target_link_libraries(${target} ${reach} ${arg_DEPENDS} ${arg_LIBRARIES})
endfunction()
