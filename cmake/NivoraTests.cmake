# The test programs, one for each folder under tests/.

# The headers of libraries that tests use, compiled once for all test programs without windows, once for those that
# paint, and once for those with windows.
function(nivora_test_headers target)
    nivora_headers(${target} ${ARGN})
    target_compile_options(${target} PRIVATE -O0)
    set_target_properties(${target} PROPERTIES NIVORA_TEST_CODE ON)
endfunction()

option(NIVORA_JOIN_TESTS "Compile the tests of a folder four files at a time, in half the time" ON)

# nivora_tests(<folder> [WINDOWS | PAINTED] [APART] [LIBRARY <target>] [DEFINITIONS <name=value>...])
#
# Makes nivora_<folder>_test from tests/<folder>/*_test.cpp on nivora_<folder>, or <target>. Its tests are known to
# ctest as <folder>.<suite>.<test> with the folder's name as label; a slash becomes an underscore. WINDOWS adds what
# window tests need. PAINTED compiles with the options that QtGui requires.
# The tests are compiled without optimisation, in a third of the time; the code that they test is optimised. Files are
# joined, so that a name of a file's own is used once in a folder; APART is for files whose names can't be told apart.
function(nivora_tests folder)
    cmake_parse_arguments(PARSE_ARGV 1 arg "WINDOWS;PAINTED;APART" "LIBRARY" "DEFINITIONS")
    file(GLOB sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/tests/${folder}/*_test.cpp")
    if(NOT sources)
        return()
    endif()
    string(REPLACE "/" "_" name "${folder}")
    set(library "nivora_${name}")
    if(arg_LIBRARY)
        set(library "${arg_LIBRARY}")
    endif()

    set(target "nivora_${name}_test")
    add_executable(${target} ${sources})
    target_link_libraries(${target} PRIVATE nivora_compiler nivora_test_support ${library})
    target_compile_options(${target} PRIVATE -O0)
    set_target_properties(${target} PROPERTIES NIVORA_TEST_CODE ON)
    if(NIVORA_JOIN_TESTS AND NOT arg_APART)
        set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 4)
    endif()
    if(arg_WINDOWS)
        target_link_libraries(${target} PRIVATE Qt6::Test nivora_offscreen_main)
        target_precompile_headers(${target} REUSE_FROM nivora_window_test_headers)
    else()
        target_link_libraries(${target} PRIVATE GTest::gmock_main)
        if(arg_PAINTED)
            target_precompile_headers(${target} REUSE_FROM nivora_painted_test_headers)
        else()
            target_precompile_headers(${target} REUSE_FROM nivora_plain_test_headers)
        endif()
    endif()
    target_compile_definitions(${target} PRIVATE ${arg_DEFINITIONS})
    gtest_discover_tests(${target}
        TEST_PREFIX "${name}."
        NO_PRETTY_VALUES # the bytes of a parameter print differently in each build
        DISCOVERY_MODE PRE_TEST
        DISCOVERY_TIMEOUT 60
        PROPERTIES TIMEOUT 300 LABELS "${name}")
endfunction()
