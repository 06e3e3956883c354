# cmake -DTREE=<folder that holds src/> -P check_layers.cmake
#
# Fails with a list of the faults if a file of the tree includes what its layer may not, or has a wrong name.
cmake_minimum_required(VERSION 3.25)
include("${CMAKE_CURRENT_LIST_DIR}/layers.cmake")

check_layers("${TREE}")
if(checked EQUAL 0)
    message(FATAL_ERROR "There is nothing to check under '${TREE}/src'")
endif()
foreach(finding IN LISTS findings)
    message(NOTICE "${finding}")
endforeach()
list(LENGTH findings count)
if(count GREATER 0)
    message(FATAL_ERROR "${count} faults in ${checked} files")
endif()
message(NOTICE "No faults in ${checked} files")
