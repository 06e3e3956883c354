# How our own code is compiled: one interface target that every target of the project links.

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "Kind of build" FORCE)
endif()

set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(NIVORA_CCACHE ccache DOC "Compiler cache, used when it is there")
if(NIVORA_CCACHE AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${NIVORA_CCACHE}")
endif()

add_library(nivora_compiler INTERFACE)
target_compile_features(nivora_compiler INTERFACE cxx_std_20)
set(CMAKE_CXX_EXTENSIONS OFF)

option(NIVORA_WARNINGS_AS_ERRORS "A warning in our own code ends the build" OFF)

# Every build has to give the same floating-point bits: a product and a sum are never contracted into one operation,
# and no option may give up exactness for speed.
target_compile_options(nivora_compiler INTERFACE -ffp-contract=off -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
if(NIVORA_WARNINGS_AS_ERRORS)
    target_compile_options(nivora_compiler INTERFACE -Werror)
endif()
# GCC warns that an empty std::optional is read uninitialised where it is not (GCC bug 80635). Clang's check stays on.
target_compile_options(nivora_compiler INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
target_compile_definitions(nivora_compiler INTERFACE $<$<CONFIG:Debug>:_GLIBCXX_ASSERTIONS>)

# What is shipped is hardened: checked copies, protected stacks, and tables of the linker that are read-only before the
# program starts. Programs are position-independent by the compiler's own default; -fPIC for them would keep calls within
# a library from being inlined. tools/package-test looks for all of it.
if(NOT NIVORA_SANITIZERS)
    target_compile_options(nivora_compiler INTERFACE -fstack-protector-strong
        $<$<CONFIG:Release>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>)
    target_link_options(nivora_compiler INTERFACE -Wl,-z,relro,-z,now)
endif()

# No path of the machine that built it is in a program, so that two builds of one commit are the same.
target_compile_options(nivora_compiler INTERFACE "-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=")

# Sanitizer reports need only line numbers: with these, objects are a third as large and tests compile in two thirds
# of the time. Test files (the property NIVORA_TEST_CODE) are checked for addresses only: their many expectations take
# twice as long to compile with the checks for undefined behaviour, which the libraries that they call have anyway.
# The libraries are optimised as in the shipped program, so that the golden numbers hold for a second optimiser, too.
if(NIVORA_SANITIZERS)
    set(sanitize "-fsanitize=${NIVORA_SANITIZERS}")
    if(NIVORA_SANITIZERS MATCHES "undefined")
        # GCC has no group that includes the overflow of a conversion to an integer.
        string(APPEND sanitize ",float-cast-overflow")
    endif()
    string(REGEX REPLACE "=.*address.*" "=address" sanitize_test "${sanitize}")
    string(REPLACE "," "$<COMMA>" sanitize_library "${sanitize}")
    set(is_test "$<BOOL:$<TARGET_PROPERTY:NIVORA_TEST_CODE>>")
    target_compile_options(nivora_compiler INTERFACE
        $<IF:${is_test},${sanitize_test},${sanitize_library}> -fno-sanitize-recover=all -fno-omit-frame-pointer -g1
        $<$<AND:$<CONFIG:Debug>,$<NOT:${is_test}>>:-O2>)
    target_link_options(nivora_compiler INTERFACE ${sanitize})
endif()

if(NIVORA_FUZZERS)
    if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
        message(FATAL_ERROR "NIVORA_FUZZERS needs Clang: use the preset 'fuzz'")
    endif()
    target_compile_options(nivora_compiler INTERFACE -fsanitize=fuzzer-no-link)
endif()
