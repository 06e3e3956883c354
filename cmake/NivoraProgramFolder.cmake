# The folder that runs from anywhere: the programs and the files beside them. See NIVORA_PROGRAM_FOLDER.

add_custom_target(nivora_program_folder ALL)

# nivora_put_beside_program(FILES <file>... [IN <subfolder>])
#
# Copies files into the program folder, again whenever one changes.
function(nivora_put_beside_program)
    cmake_parse_arguments(PARSE_ARGV 0 arg "" "IN" "FILES")
    foreach(file IN LISTS arg_FILES)
        cmake_path(ABSOLUTE_PATH file BASE_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}")
        cmake_path(GET file FILENAME name)
        cmake_path(APPEND NIVORA_PROGRAM_FOLDER "${arg_IN}" "${name}" OUTPUT_VARIABLE copy)
        cmake_path(GET copy PARENT_PATH copy_folder)
        add_custom_command(OUTPUT "${copy}"
            COMMAND ${CMAKE_COMMAND} -E make_directory "${copy_folder}"
            COMMAND ${CMAKE_COMMAND} -E copy "${file}" "${copy}"
            DEPENDS "${file}"
            COMMENT "Putting ${name} beside the program"
            VERBATIM)
        nivora_program_folder_holds("${copy}")
    endforeach()
endfunction()

# Adds a file that a custom command of this directory creates to the program folder.
function(nivora_program_folder_holds file)
    cmake_path(RELATIVE_PATH file BASE_DIRECTORY "${NIVORA_PROGRAM_FOLDER}" OUTPUT_VARIABLE name)
    string(MAKE_C_IDENTIFIER "nivora_program_file_${name}" target)
    add_custom_target(${target} DEPENDS "${file}")
    add_dependencies(nivora_program_folder ${target})
endfunction()

# nivora_basin_template()
#
# Lets the batch program create the template of all basins, null.mdb.
function(nivora_basin_template)
    set(template "${NIVORA_PROGRAM_FOLDER}/null.mdb")
    add_custom_command(OUTPUT "${template}"
        COMMAND ${CMAKE_COMMAND} -E rm -f "${template}"
        COMMAND nivora-batch template "${template}"
        DEPENDS nivora-batch
        COMMENT "Making the basin template"
        VERBATIM)
    nivora_program_folder_holds("${template}")
endfunction()

# nivora_sample_basin(<name.mdb> IMPORT <record.NVR> [<option>...] [IMPORT ...])
#
# Makes a basin in samples/ from records of this directory, one call of `nivora-batch import` for each IMPORT.
function(nivora_sample_basin name)
    if(NOT TARGET nivora-batch)
        message(FATAL_ERROR "nivora_sample_basin(${name}): there is no batch program to import with")
    endif()
    set(scratch "${CMAKE_CURRENT_BINARY_DIR}/${name}")
    set(basin "${NIVORA_PROGRAM_FOLDER}/samples/${name}")

    # Splits the arguments at each IMPORT into one command line.
    set(commands "")
    set(records "")
    set(expects_record FALSE)
    foreach(argument IN LISTS ARGN)
        if(argument STREQUAL "IMPORT")
            set(expects_record TRUE)
        elseif(expects_record)
            cmake_path(ABSOLUTE_PATH argument BASE_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}")
            list(APPEND records "${argument}")
            list(APPEND commands COMMAND nivora-batch import "${argument}" "${scratch}")
            set(expects_record FALSE)
        elseif(commands)
            list(APPEND commands "${argument}")
        else()
            message(FATAL_ERROR "nivora_sample_basin(${name}): '${argument}' stands before the first IMPORT")
        endif()
    endforeach()
    if(expects_record OR NOT commands)
        message(FATAL_ERROR "nivora_sample_basin(${name}): an IMPORT names no record")
    endif()

    add_custom_command(OUTPUT "${basin}"
        COMMAND ${CMAKE_COMMAND} -E rm -f "${scratch}"
        ${commands}
        COMMAND ${CMAKE_COMMAND} -E make_directory "${NIVORA_PROGRAM_FOLDER}/samples"
        COMMAND ${CMAKE_COMMAND} -E copy "${scratch}" "${basin}"
        DEPENDS nivora-batch ${records} nivora_program_file_null_mdb "${NIVORA_PROGRAM_FOLDER}/null.mdb"
        COMMENT "Making the sample basin ${name}"
        VERBATIM)
    nivora_program_folder_holds("${basin}")
endfunction()

# nivora_sample_run(<name.mdb> <simulation>)
#
# The target run_sample: runs one simulation of a sample basin in a copy and prints its statistics.
function(nivora_sample_run basin simulation)
    add_custom_target(run_sample
        COMMAND ${CMAKE_COMMAND}
            "-DPROGRAM=$<TARGET_FILE:nivora-batch>"
            "-DBASIN=${NIVORA_PROGRAM_FOLDER}/samples/${basin}"
            "-DSIMULATION=${simulation}"
            "-DFOLDER=${PROJECT_BINARY_DIR}/run_sample"
            -P "${PROJECT_SOURCE_DIR}/cmake/RunSample.cmake"
        USES_TERMINAL
        COMMENT "Running ${simulation} of a copy of ${basin}"
        VERBATIM)
    add_dependencies(run_sample nivora_program_folder)
endfunction()
