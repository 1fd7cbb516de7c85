# Makes the bash completion of a program from the words and options in its help.
#
#   cmake -DPROGRAM=path -DTASK=path of quon5 -DTEMPLATE=... -DCOMPLETION=... -P make_completion.cmake
#
# Where the help says that the 17 words of the task may stand, these are completed too. A program
# whose usage begins with a word in capitals takes a file or directory there.
get_filename_component(name ${PROGRAM} NAME)
function(read_help program result words)
    execute_process(COMMAND ${program} --help OUTPUT_VARIABLE help COMMAND_ERROR_IS_FATAL ANY)
    string(REPLACE ";" "," help "${help}")
    string(REGEX MATCHALL "\n  [A-Za-z0-9_]+  " lines "${help}")
    list(TRANSFORM lines STRIP)
    list(TRANSFORM lines APPEND "=")
    set(${result} "${help}" PARENT_SCOPE)
    set(${words} ${lines} PARENT_SCOPE)
endfunction()
read_help(${PROGRAM} help WORDS)
if(help MATCHES "17 words" AND NOT name STREQUAL quon5)
    read_help(${TASK} task_help task_words)
    list(APPEND WORDS ${task_words})
endif()
string(REGEX MATCHALL "--[a-z]+" OPTIONS "${help} --help --version")
list(REMOVE_DUPLICATES OPTIONS)
set(FILES ":")
if(help MATCHES "Usage: [^ ]+ [A-Z]")
    set(FILES "mapfile -t -O \${#COMPREPLY[@]} COMPREPLY < <(compgen -f -- \"$current\")")
endif()
list(JOIN WORDS " " WORDS)
list(JOIN OPTIONS " " OPTIONS)
string(REPLACE "-" "_" FUNCTION "_${name}")
set(PROGRAM ${name})
configure_file(${TEMPLATE} ${COMPLETION} @ONLY)
