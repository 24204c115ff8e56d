# Hosts of ostrel.dll built the way hosts outside MinGW build them, for the tests to run against
# the simulator: the C example compiled for the MSVC ABI (clang in MSVC mode with the Windows and
# UCRT headers of Wine's development package, linked by lld-link against ostrel.lib), the Go
# example (syscall only) and the Node.js example (koffi, with a Windows build of node.exe).

find_program(OSTREL_CLANG NAMES clang-14 clang REQUIRED)
find_program(OSTREL_LLD_LINK NAMES lld-link-14 lld-link REQUIRED)
set(OSTREL_WINE_HEADERS /usr/include/wine/wine CACHE PATH "Wine's msvcrt and windows headers")
set(OSTREL_WINE_WINDOWS_LIBS /usr/lib/x86_64-linux-gnu/wine/x86_64-windows
    CACHE PATH "Wine's import libraries and start-up code for Windows programs")
if(NOT EXISTS ${OSTREL_WINE_HEADERS}/msvcrt/stdio.h)
    message(FATAL_ERROR "Wine's Windows headers not found: install the Debian package libwine-dev")
endif()
execute_process(COMMAND ${OSTREL_CLANG} -print-resource-dir
    OUTPUT_VARIABLE _clang_resources OUTPUT_STRIP_TRAILING_WHITESPACE)

# ostrel_add_msvc_host(<name> <source> C|CXX): bin/<name>.exe, warning-free at -Wall -Wextra.
function(ostrel_add_msvc_host _name _source _language)
    set(_flags --target=x86_64-pc-windows-msvc -fms-extensions -fms-compatibility
        -fms-compatibility-version=19.29 -nostdinc -isystem ${_clang_resources}/include
        -isystem ${OSTREL_WINE_HEADERS}/msvcrt -isystem ${OSTREL_WINE_HEADERS}/windows -D_UCRT
        -I${PROJECT_SOURCE_DIR}/include -I${OSTREL_GENERATED_INCLUDE_DIR} -Wall -Wextra -Werror)
    if(_language STREQUAL "CXX")
        # Wine's winnt.h declares an intrinsic that clang already provides.
        list(APPEND _flags -x c++ -std=c++17
            -D_InterlockedCompareExchange128=wine_InterlockedCompareExchange128)
    else()
        list(APPEND _flags -x c -std=c99)
    endif()
    set(_object ${CMAKE_CURRENT_BINARY_DIR}/${_name}.obj)
    set(_program ${CMAKE_BINARY_DIR}/bin/${_name}.exe)
    set(_libs ${OSTREL_WINE_WINDOWS_LIBS})
    add_custom_command(OUTPUT ${_program}
        COMMAND ${OSTREL_CLANG} ${_flags} -c ${_source} -o ${_object}
        COMMAND ${OSTREL_LLD_LINK} /nologo /subsystem:console /entry:mainCRTStartup
                /out:${_program} ${_object} ${OSTREL_MSVC_IMPORT_LIBRARY} ${_libs}/libwinecrt0.a
                ${_libs}/libucrtbase.a ${_libs}/libkernel32.a ${_libs}/libuser32.a
        DEPENDS ${_source} ${OSTREL_MSVC_IMPORT_LIBRARY} ${PROJECT_SOURCE_DIR}/include/ostrel_c.h
        COMMENT "${_name}.exe for the MSVC ABI"
        VERBATIM)
    add_custom_target(${_name} ALL DEPENDS ${_program})
    add_dependencies(${_name} ostrel ostrel_msvc_import_library)
endfunction()
