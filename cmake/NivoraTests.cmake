# The test programs, one for each folder under tests/.

# nivora_tests(<folder> [LIBRARY <target>] [DEFINITIONS <name=value>...])
#
# Makes nivora_<folder>_test from tests/<folder>/*_test.cpp on nivora_<folder>, or <target>. Its tests are known to
# ctest as <folder>.<suite>.<test> and bear the folder's name as label.
function(nivora_tests folder)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "LIBRARY" "DEFINITIONS")
    file(GLOB sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/tests/${folder}/*_test.cpp")
    if(NOT sources)
        return()
    endif()
    set(library "nivora_${folder}")
    if(arg_LIBRARY)
        set(library "${arg_LIBRARY}")
    endif()

    set(target "nivora_${folder}_test")
    add_executable(${target} ${sources})
    target_link_libraries(${target} PRIVATE nivora_compiler nivora_test_support ${library} GTest::gmock_main)
    target_compile_definitions(${target} PRIVATE ${arg_DEFINITIONS})
    gtest_discover_tests(${target}
        TEST_PREFIX "${folder}."
        NO_PRETTY_VALUES # the bytes of a parameter are another text in each build
        DISCOVERY_MODE PRE_TEST
        DISCOVERY_TIMEOUT 60
        PROPERTIES TIMEOUT 300 LABELS "${folder}")
endfunction()
