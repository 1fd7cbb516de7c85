# Each manual page is made from its template, the version, and the arguments in the program's help.
set(manual_pages)
set(pages quon5.1 csv2logr.1 quon5-files.5)
if(QUON5_COMPANIONS)
    list(APPEND pages quon5-report.1 quon5-compare.1 quon5-check.1 quon5-archive.1)
endif()
foreach(page ${pages})
    set(program)
    if(page MATCHES "^(.*)\\.1$")
        set(program ${CMAKE_MATCH_1})
    endif()
    set(program_file)
    if(TARGET "${program}")
        set(program_file $<TARGET_FILE:${program}>)
    elseif(program)
        set(program_file ${CMAKE_BINARY_DIR}/${program})  # a program in Python
        set(program ${program_file})
    endif()
    set(template ${CMAKE_SOURCE_DIR}/docs/manual/${page}.in)
    set(script ${CMAKE_SOURCE_DIR}/docs/manual/make_page.cmake)
    add_custom_command(OUTPUT ${CMAKE_BINARY_DIR}/${page}
        COMMAND ${CMAKE_COMMAND} -DPROGRAM=${program_file}
            -DVERSION=${PROJECT_VERSION} -DTEMPLATE=${template} -DPAGE=${CMAKE_BINARY_DIR}/${page}
            -P ${script}
        DEPENDS ${template} ${script} ${program} VERBATIM)
    list(APPEND manual_pages ${CMAKE_BINARY_DIR}/${page})
endforeach()
add_custom_target(manual_pages ALL DEPENDS ${manual_pages})

# Pages made from the program's tables: `cmake --build ... --target pages` writes them into docs/,
# and a test compares them.
add_executable(messages_page ${CMAKE_SOURCE_DIR}/docs/pages/messages_page.cpp)
target_link_libraries(messages_page PRIVATE quon5_base)
add_custom_target(pages
    COMMAND $<TARGET_FILE:messages_page> > ${CMAKE_SOURCE_DIR}/docs/messages.md VERBATIM)
if(QUON5_COMPANIONS)
    add_custom_command(TARGET pages POST_BUILD
        COMMAND $<TARGET_FILE:quon5-check> --list > ${CMAKE_SOURCE_DIR}/docs/checks.md VERBATIM)
endif()
