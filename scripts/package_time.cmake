# cpack dates everything by the commit, so that the same commit gives the same bytes.
if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})
    execute_process(COMMAND git -C ${CMAKE_CURRENT_LIST_DIR} log -1 --format=%ct
        OUTPUT_VARIABLE commit_time OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
    if(commit_time)
        set(ENV{SOURCE_DATE_EPOCH} ${commit_time})
    endif()
endif()
