# The files of `cmake --install`, and the Debian package that `cpack` makes of them.
include(GNUInstallDirs)

# The installed example test. It is as small as it can be and still goes all the way.
set(example ${CMAKE_BINARY_DIR}/example)
add_custom_command(OUTPUT ${example}/logr_data.csv
    COMMAND simulate_test output=${example} rate=1 cycle=120
    COMMAND ${CMAKE_SOURCE_DIR}/examples/logger_to_csv ${example}/logr_data.42
        > ${example}/logr_data.csv
    DEPENDS simulate_test examples/logger_to_csv VERBATIM)
add_custom_target(example ALL DEPENDS ${example}/logr_data.csv)

set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
file(GLOB documents CONFIGURE_DEPENDS docs/*.md)
install(TARGETS quon5 csv2logr)
if(QUON5_COMPANIONS)
    install(TARGETS quon5-report quon5-compare quon5-check)
    install(TARGETS quon5-archive-one DESTINATION ${CMAKE_INSTALL_LIBEXECDIR}/quon5)
    install(PROGRAMS ${CMAKE_BINARY_DIR}/quon5-archive DESTINATION ${CMAKE_INSTALL_BINDIR})
    install(DIRECTORY ${CMAKE_BINARY_DIR}/share/quon5/ DESTINATION ${CMAKE_INSTALL_DATADIR}/quon5)
    install(FILES docs/report.schema.json docs/report.png docs/report_traces.png
        DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs)
endif()
foreach(page ${manual_pages})
    string(REGEX MATCH "[0-9]$" chapter ${page})
    install(FILES ${page} DESTINATION ${CMAKE_INSTALL_MANDIR}/man${chapter})
endforeach()
install(FILES README.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES ${documents} DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs)  # as README.md links to them
install(DIRECTORY ${example}/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples)
install(PROGRAMS examples/reduce_example examples/small_test
    DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples)

set(QUON5_MAINTAINER "quon5 maintainer not named yet <nobody@example.invalid>" CACHE STRING
    "Maintainer that the Debian package names")
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT ${QUON5_MAINTAINER})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "post-test data reduction of an engine test cell's emissions system")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS ${CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS})
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Of quon5-archive alone: the task needs none of them.
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "python3, parallel, slurm-client, openssh-client")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"quon5 is started once after a test. It reads the logger data, the test
specification and the files of the analyser bench, the FTIR analysers and the
particulate cart, and writes the result file, the filter data file and the
composite end-of-test file. csv2logr makes a logger data file from a CSV file,
quon5-check says what is wrong with the files of a test, quon5-report makes a
page of the results, quon5-compare tells what differs between two results, and
quon5-archive reduces stored tests again.")
set(CPACK_PROJECT_CONFIG_FILE ${CMAKE_SOURCE_DIR}/scripts/package_time.cmake)
include(CPack)
