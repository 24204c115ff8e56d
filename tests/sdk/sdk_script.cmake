# What the SDK's check scripts share: their arguments, a scratch folder, commands that must
# succeed, the SDK packed and unpacked, and one report of every failure.

# Stops unless every variable named is given (-D<name>=...).
function(sdk_require)
    foreach(var ${ARGN})
        if(NOT DEFINED ${var})
            message(FATAL_ERROR "${var} not set")
        endif()
    endforeach()
endfunction()

# An empty folder of the build's for the script: sets `scratch`.
macro(sdk_scratch name)
    set(scratch ${BUILD_DIR}/${name})
    file(REMOVE_RECURSE ${scratch})
    file(MAKE_DIRECTORY ${scratch})
endmacro()

# Runs a command that must succeed; its output in `run_output`.
function(sdk_run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE out)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "failed: ${ARGN}\n${out}")
    endif()
    set(run_output "${out}" PARENT_SCOPE)
endfunction()

# sdk_pack(<folder> COMPONENTS <component>... [ENVIRONMENT <name=value|--unset=name>...]):
# cpack's zips in <scratch>/<folder>-package, the components' unpacked together in
# <scratch>/<folder>.
function(sdk_pack folder)
    cmake_parse_arguments(arg "" "" "COMPONENTS;ENVIRONMENT" ${ARGN})
    sdk_run(${CMAKE_COMMAND} -E env ${arg_ENVIRONMENT} ${CPACK} -G ZIP
        --config ${BUILD_DIR}/CPackConfig.cmake -B ${scratch}/${folder}-package)
    foreach(component ${arg_COMPONENTS})
        file(ARCHIVE_EXTRACT
            INPUT ${scratch}/${folder}-package/ostrel-${VERSION}-win64-${component}.zip
            DESTINATION ${scratch}/${folder})
    endforeach()
endfunction()

# The programs and DLLs in <folder>/bin, in `binaries`: all seven the SDK ships.
function(sdk_binaries folder)
    file(GLOB found RELATIVE ${folder}/bin ${folder}/bin/*.dll ${folder}/bin/*.exe)
    list(LENGTH found count)
    if(NOT count EQUAL 7)
        message(FATAL_ERROR "expected the seven shipped binaries, found: ${found}")
    endif()
    set(binaries ${found} PARENT_SCOPE)
endfunction()

# Stops with every failure collected, one per line, if there is one.
function(sdk_report failures)
    if(failures)
        string(JOIN "\n" text ${failures})
        message(FATAL_ERROR "${text}")
    endif()
endfunction()
