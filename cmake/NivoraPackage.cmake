# What is installed, and where; tools/package makes a Debian package and a folder that runs from anywhere of it.
#
# Component "programs": the program folder is nivora among the libraries. What no machine differs in lies in share/nivora,
# with links to it in the program folder, where the programs look. Component "folder": the program folder as it is built.

find_package(Python3 COMPONENTS Interpreter)
if(NOT Python3_FOUND)
    message(STATUS "There is no Python to make man pages with: the packages are left out")
    return()
endif()
# What is packed was built before; a package never builds the tests.
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY TRUE)

string(TIMESTAMP NIVORA_RELEASE_DATE "%Y-%m-%d" UTC)  # of SOURCE_DATE_EPOCH, which `make package` sets
set(generated "${PROJECT_BINARY_DIR}/package")
configure_file("${PROJECT_SOURCE_DIR}/data/desktop/org.example.nivora.metainfo.xml.in"
    "${generated}/org.example.nivora.metainfo.xml" @ONLY)
string(REPLACE ";" "\n" libraries "${NIVORA_LIBRARIES}")
file(CONFIGURE OUTPUT "${generated}/libraries.txt" CONTENT "${libraries}\n")

# Man pages, completions and the texts of the Debian package, made when they are installed: from the programs.
set(texts "${generated}/texts")
set(manual_name "Hollin Flow Model (Nivora) Users Manual.pdf")
install(CODE "
    execute_process(COMMAND \"${Python3_EXECUTABLE}\" \"${PROJECT_SOURCE_DIR}/tools/packaging/make_texts.py\"
        --programs \"${NIVORA_PROGRAM_FOLDER}\" --version \"${PROJECT_VERSION}\"
        --changelog \"${PROJECT_SOURCE_DIR}/CHANGELOG.md\" --folder \"${texts}\"
        COMMAND_ERROR_IS_FATAL ANY)" ALL_COMPONENTS)

set(place "lib/nivora")
set(to_prefix "../..")
if(CMAKE_LIBRARY_ARCHITECTURE)
    set(place "lib/${CMAKE_LIBRARY_ARCHITECTURE}/nivora")
    set(to_prefix "../../..")
endif()
set(program_files NIVORAHelp.txt quickhelp.txt climate_1.ss2 null.mdb)
list(TRANSFORM program_files PREPEND "${NIVORA_PROGRAM_FOLDER}/" OUTPUT_VARIABLE program_paths)

# For the package.
install(TARGETS nivora nivora-batch RUNTIME DESTINATION ${place} COMPONENT programs)
install(TARGETS nivora_search_module nivora_paint_module nivora_netcdf_module LIBRARY DESTINATION ${place} COMPONENT programs)
install(FILES "${PROJECT_SOURCE_DIR}/data/desktop/nivora.installed" DESTINATION ${place} COMPONENT programs)
install(FILES ${program_paths} DESTINATION share/nivora COMPONENT programs)
install(DIRECTORY "${NIVORA_PROGRAM_FOLDER}/samples" DESTINATION share/nivora COMPONENT programs)
install(FILES "${texts}/${manual_name}" DESTINATION share/doc/nivora COMPONENT programs)
set(links "")
foreach(name IN ITEMS ${program_files} "${NIVORA_PROGRAM_FOLDER}/samples")
    cmake_path(GET name FILENAME name)
    string(APPEND links "link(\"${to_prefix}/share/nivora/${name}\" \"${place}/${name}\")\n")
endforeach()
install(CODE "
    function(link target name)
        set(made \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/\${name}\")
        cmake_path(GET made PARENT_PATH folder)
        file(MAKE_DIRECTORY \"\${folder}\")
        file(CREATE_LINK \"\${target}\" \"\${made}\" SYMBOLIC)
    endfunction()
    ${links}
    link(\"${to_prefix}/share/doc/nivora/${manual_name}\" \"${place}/${manual_name}\")
    link(../${place}/nivora bin/nivora)
    link(../${place}/nivora-batch bin/nivora-batch)" COMPONENT programs)
install(FILES "${PROJECT_SOURCE_DIR}/data/desktop/org.example.nivora.desktop" DESTINATION share/applications
    COMPONENT programs)
install(FILES "${PROJECT_SOURCE_DIR}/data/desktop/nivora.xml" DESTINATION share/mime/packages COMPONENT programs)
install(FILES "${generated}/org.example.nivora.metainfo.xml" DESTINATION share/metainfo COMPONENT programs)
set(theme share/icons/hicolor)
foreach(size IN LISTS NIVORA_ICON_SIZES)
    install(FILES "${NIVORA_ICON_FOLDER}/${size}/nivora.png" DESTINATION ${theme}/${size}x${size}/apps
        COMPONENT programs)
    install(FILES "${NIVORA_ICON_FOLDER}/${size}/nivora-basin.png" DESTINATION ${theme}/${size}x${size}/mimetypes
        RENAME application-x-nivora-basin.png COMPONENT programs)
endforeach()
install(FILES "${PROJECT_SOURCE_DIR}/data/desktop/nivora.svg" DESTINATION ${theme}/scalable/apps COMPONENT programs)
install(FILES "${PROJECT_SOURCE_DIR}/data/desktop/nivora-basin.svg" DESTINATION ${theme}/scalable/mimetypes
    RENAME application-x-nivora-basin.svg COMPONENT programs)
install(FILES "${texts}/nivora.1.gz" "${texts}/nivora-batch.1.gz" DESTINATION share/man/man1 COMPONENT programs)
install(FILES "${texts}/bash/nivora" "${texts}/bash/nivora-batch" DESTINATION share/bash-completion/completions
    COMPONENT programs)
install(FILES "${texts}/zsh/_nivora" "${texts}/zsh/_nivora-batch" DESTINATION share/zsh/vendor-completions
    COMPONENT programs)
install(FILES "${PROJECT_SOURCE_DIR}/data/desktop/copyright" "${texts}/changelog.gz" "${texts}/NEWS.md.gz"
    DESTINATION share/doc/nivora COMPONENT programs)

# The Python package, for Debian's own Python.
if(TARGET nivora_python_module)
    set(python_place lib/python3/dist-packages/nivora)
    install(TARGETS nivora_python_module LIBRARY DESTINATION ${python_place} COMPONENT python)
    install(DIRECTORY "${PROJECT_SOURCE_DIR}/python/nivora/" DESTINATION ${python_place} COMPONENT python
        FILES_MATCHING PATTERN "*.py" PATTERN "*.pyi" PATTERN "py.typed" PATTERN "__pycache__" EXCLUDE)
    install(DIRECTORY "${PROJECT_SOURCE_DIR}/python/examples" DESTINATION share/doc/python3-nivora COMPONENT python
        FILES_MATCHING PATTERN "*.py")
    install(FILES "${PROJECT_SOURCE_DIR}/data/desktop/copyright" "${texts}/changelog.gz"
        DESTINATION share/doc/python3-nivora COMPONENT python)
endif()

# For the folder that runs from anywhere.
install(TARGETS nivora nivora-batch RUNTIME DESTINATION nivora COMPONENT folder EXCLUDE_FROM_ALL)
install(TARGETS nivora_search_module nivora_paint_module nivora_netcdf_module LIBRARY DESTINATION nivora COMPONENT folder EXCLUDE_FROM_ALL)
install(FILES ${program_paths} "${texts}/${manual_name}" "${PROJECT_SOURCE_DIR}/LICENSE"
    DESTINATION nivora COMPONENT folder EXCLUDE_FROM_ALL)
install(DIRECTORY "${NIVORA_PROGRAM_FOLDER}/samples" DESTINATION nivora COMPONENT folder EXCLUDE_FROM_ALL)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME nivora)
set(CPACK_PACKAGE_VENDOR "The Nivora developers")
set(CPACK_PACKAGE_CONTACT "The Nivora developers <nivora@example.org>")
set(CPACK_PACKAGE_HOMEPAGE_URL "https://example.org/nivora")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "snowmelt runoff of mountain basins")
set(CPACK_PACKAGE_DESCRIPTION "Nivora simulates and forecasts the daily streamflow of mountain basins in
which melting snow is a major source of runoff, and evaluates how a changed
climate would alter the seasonal snow cover and the runoff.
.
This package has the desktop program, nivora-batch for scripts, the users
manual and a sample basin.")
set(CPACK_PACKAGE_FILE_NAME "nivora-${PROJECT_VERSION}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/packages")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL programs)
if(TARGET nivora_python_module)
    list(APPEND CPACK_COMPONENTS_ALL python)
endif()
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_NAME nivora)
set(CPACK_DEBIAN_PROGRAMS_DESCRIPTION "${CPACK_PACKAGE_DESCRIPTION}")
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PROGRAMS_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_RECOMMENDS "fonts-dejavu-core, xdg-utils")
set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-nivora)
set(CPACK_DEBIAN_PYTHON_DESCRIPTION "snowmelt runoff of mountain basins (Python 3)
Basins, runs and studies of Nivora in Python: daily values as pandas frames,
results as xarray datasets, calibration, samples and responses on all cores
or on a cluster of Dask.")
set(CPACK_DEBIAN_PYTHON_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PYTHON_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS
    "python3 (>= 3.11), python3 (<< 3.12), python3-numpy, nivora (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_PYTHON_PACKAGE_RECOMMENDS "python3-pandas, python3-xarray")
set(CPACK_DEBIAN_PYTHON_PACKAGE_SUGGESTS "python3-distributed")
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION TRUE)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
include(CPack)
