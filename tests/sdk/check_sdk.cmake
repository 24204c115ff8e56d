# Packs the SDK into its zip, unpacks it into a scratch folder, builds tests/sdk/host against it
# with find_package of exactly this version, and runs the host beside the SDK's DLLs under Wine.
foreach(var BUILD_DIR SOURCE_DIR WINE_RUN CPACK VERSION)
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

run(${CPACK} -G ZIP --config ${BUILD_DIR}/CPackConfig.cmake -B ${scratch}/package)
file(ARCHIVE_EXTRACT INPUT ${scratch}/package/ostrel-${VERSION}-win64.zip
    DESTINATION ${scratch}/unpacked)
set(sdk ${scratch}/unpacked/ostrel-${VERSION}-win64)
run(${CMAKE_COMMAND} -S ${SOURCE_DIR}/tests/sdk/host -B ${scratch}/host
    -DCMAKE_TOOLCHAIN_FILE=${SOURCE_DIR}/cmake/mingw-w64.cmake
    -DCMAKE_PREFIX_PATH=${sdk} -DOSTREL_VERSION=${VERSION} -DCMAKE_BUILD_TYPE=Release)
run(${CMAKE_COMMAND} --build ${scratch}/host)

file(GLOB dlls ${sdk}/bin/*.dll)
file(COPY ${dlls} DESTINATION ${scratch}/host)
run(${WINE_RUN} ${scratch}/host/host.exe)
if(NOT last_output MATCHES "calibration object answered")
    message(FATAL_ERROR "unexpected host output: ${last_output}")
endif()
message(STATUS "${last_output}")
