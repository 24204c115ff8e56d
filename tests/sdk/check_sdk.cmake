# Installs the SDK into a scratch folder, builds tests/sdk/host against it with find_package,
# and runs the host beside the installed DLLs under Wine.
foreach(var BUILD_DIR SOURCE_DIR WINE_RUN)
    if(NOT DEFINED ${var})
        message(FATAL_ERROR "${var} not set")
    endif()
endforeach()

set(scratch ${BUILD_DIR}/sdk-check)
file(REMOVE_RECURSE ${scratch})

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE out)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "failed: ${ARGN}\n${out}")
    endif()
    set(last_output "${out}" PARENT_SCOPE)
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${scratch}/sdk)
run(${CMAKE_COMMAND} -S ${SOURCE_DIR}/tests/sdk/host -B ${scratch}/host
    -DCMAKE_TOOLCHAIN_FILE=${SOURCE_DIR}/cmake/mingw-w64.cmake
    -DCMAKE_PREFIX_PATH=${scratch}/sdk -DCMAKE_BUILD_TYPE=Release)
run(${CMAKE_COMMAND} --build ${scratch}/host)

file(GLOB dlls ${scratch}/sdk/bin/*.dll)
file(COPY ${dlls} DESTINATION ${scratch}/host)
run(${WINE_RUN} ${scratch}/host/host.exe)
if(NOT last_output MATCHES "calibration object answered")
    message(FATAL_ERROR "unexpected host output: ${last_output}")
endif()
message(STATUS "${last_output}")
