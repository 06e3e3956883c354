# Runs one simulation of a basin in a copy, which is then removed; the sample itself is not changed.
#
# cmake -DPROGRAM=... -DBASIN=... -DSIMULATION=... -DFOLDER=... -P RunSample.cmake

cmake_path(GET BASIN FILENAME name)
file(REMOVE_RECURSE "${FOLDER}")
file(COPY "${BASIN}" DESTINATION "${FOLDER}")
execute_process(
    COMMAND "${PROGRAM}" run "${FOLDER}/${name}" --simulation "${SIMULATION}" --kind year-round
    RESULT_VARIABLE result)
file(REMOVE_RECURSE "${FOLDER}")
if(NOT result EQUAL 0)
    message(FATAL_ERROR "The run of ${SIMULATION} ended with ${result}")
endif()
