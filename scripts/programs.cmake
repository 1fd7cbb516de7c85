# The installed programs, a line each. Manual page (docs/manual/NAME.1.in), bash completion and package
# follow from this list.
set(quon5_programs
    quon5
    csv2logr
    quon5-new-test)
if(QUON5_COMPANIONS)
    list(APPEND quon5_programs
        quon5-check
        quon5-report
        quon5-compare
        quon5-archive)
endif()
