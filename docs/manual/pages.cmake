# Each manual page is made from its template, the version, and the arguments in the program's help.
include(${CMAKE_SOURCE_DIR}/scripts/programs.cmake)
# What runs an installed program in the build directory, and what it depends on.
function(find_program_file program file_of depends_on)
    if(TARGET "${program}")
        set(${file_of} $<TARGET_FILE:${program}> PARENT_SCOPE)
        set(${depends_on} ${program} PARENT_SCOPE)
    else()
        set(${file_of} ${CMAKE_BINARY_DIR}/${program} PARENT_SCOPE)  # a program in Python
        set(${depends_on} ${CMAKE_BINARY_DIR}/${program} PARENT_SCOPE)
    endif()
endfunction()

set(manual_pages)
set(pages quon5-files.5 quon5-keywords.5)
foreach(program ${quon5_programs})
    list(APPEND pages ${program}.1)
endforeach()
foreach(page ${pages})
    set(program_file)
    set(program)
    if(page MATCHES "^(.*)\\.1$")
        find_program_file(${CMAKE_MATCH_1} program_file program)
    endif()
    set(body)
    if(page STREQUAL quon5-keywords.5)
        set(body keywords_page)
    endif()
    set(template ${CMAKE_SOURCE_DIR}/docs/manual/${page}.in)
    set(script ${CMAKE_SOURCE_DIR}/docs/manual/make_page.cmake)
    add_custom_command(OUTPUT ${CMAKE_BINARY_DIR}/${page}
        COMMAND ${CMAKE_COMMAND} -DPROGRAM=${program_file}
            -DBODY=$<$<BOOL:${body}>:$<TARGET_FILE:${body}>>
            -DVERSION=${PROJECT_VERSION} -DTEMPLATE=${template} -DPAGE=${CMAKE_BINARY_DIR}/${page}
            -P ${script}
        DEPENDS ${template} ${script} ${program} ${body} VERBATIM)
    list(APPEND manual_pages ${CMAKE_BINARY_DIR}/${page})
endforeach()
add_custom_target(manual_pages ALL DEPENDS ${manual_pages})

# Each bash completion is made from the words in the program's help.
set(completions)
foreach(program ${quon5_programs})
    set(template ${CMAKE_SOURCE_DIR}/docs/completion/completion.bash.in)
    set(script ${CMAKE_SOURCE_DIR}/docs/completion/make_completion.cmake)
    set(completion ${CMAKE_BINARY_DIR}/completions/${program})
    find_program_file(${program} program_file depends)
    add_custom_command(OUTPUT ${completion}
        COMMAND ${CMAKE_COMMAND} -DPROGRAM=${program_file} -DTASK=$<TARGET_FILE:quon5>
            -DTEMPLATE=${template} -DCOMPLETION=${completion} -P ${script}
        DEPENDS ${template} ${script} ${depends} quon5 VERBATIM)
    list(APPEND completions ${completion})
endforeach()
add_custom_target(completions ALL DEPENDS ${completions})

# Pages made from the program's tables: `cmake --build ... --target pages` writes them into docs/,
# and a test compares them.
add_executable(messages_page ${CMAKE_SOURCE_DIR}/docs/pages/messages_page.cpp)
target_link_libraries(messages_page PRIVATE quon5_base)
add_executable(keywords_page ${CMAKE_SOURCE_DIR}/docs/pages/keywords_page.cpp)
target_link_libraries(keywords_page PRIVATE quon5_reference)
add_custom_target(pages
    COMMAND $<TARGET_FILE:messages_page> > ${CMAKE_SOURCE_DIR}/docs/messages.md
    COMMAND $<TARGET_FILE:keywords_page> > ${CMAKE_SOURCE_DIR}/docs/keywords.md VERBATIM)
if(QUON5_COMPANIONS)
    add_custom_command(TARGET pages POST_BUILD
        COMMAND $<TARGET_FILE:quon5-check> --list > ${CMAKE_SOURCE_DIR}/docs/checks.md VERBATIM)
endif()
