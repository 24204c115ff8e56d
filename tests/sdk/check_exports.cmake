# ostrel.dll exports exactly the C functions ostrel.def lists, so that none is added or lost by
# accident (the C++ classes' names are mangled and are not compared).
# -DREADOBJ=<llvm-readobj> -DDLL=<ostrel.dll> -DDEF=<ostrel.def>
execute_process(COMMAND ${READOBJ} --coff-exports ${DLL}
    OUTPUT_VARIABLE table RESULT_VARIABLE failed)
if(failed)
    message(FATAL_ERROR "llvm-readobj could not read ${DLL}")
endif()
string(REGEX MATCHALL "Name: ostrel_[a-z_]+" exported "${table}")
list(TRANSFORM exported REPLACE "^Name: " "")
file(STRINGS ${DEF} listed REGEX "^[ \t]+ostrel_")
list(TRANSFORM listed STRIP)
list(SORT exported)
list(SORT listed)
if(NOT exported STREQUAL listed)
    message(FATAL_ERROR "ostrel.dll's C exports differ from ostrel.def:\n"
                        "exported: ${exported}\nlisted:   ${listed}")
endif()
list(LENGTH listed count)
message(STATUS "${count} C exports, as listed")
