# Packs the SDK into its zips and checks that there is one per component and that the runtime
# zip, which hosts ship, holds only the runtime; unpacks the runtime and development zips into
# one scratch folder, builds tests/sdk/host against it with find_package of exactly this version,
# and runs the host beside the SDK's DLLs under Wine.
foreach(var BUILD_DIR SOURCE_DIR WINE_RUN CPACK VERSION COMPONENTS)
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
file(GLOB zips RELATIVE ${scratch}/package ${scratch}/package/*.zip)
list(SORT zips)
string(REPLACE "," ";" components "${COMPONENTS}")
list(SORT components)
list(TRANSFORM components PREPEND ostrel-${VERSION}-win64- OUTPUT_VARIABLE expected)
list(TRANSFORM expected APPEND .zip)
if(NOT zips STREQUAL expected)
    message(FATAL_ERROR "zips: ${zips}\nexpected: ${expected}")
endif()

# What a host ships, and nothing that exists only for our tests.
file(ARCHIVE_EXTRACT INPUT ${scratch}/package/ostrel-${VERSION}-win64-runtime.zip
    DESTINATION ${scratch}/runtime)
file(GLOB_RECURSE runtime RELATIVE ${scratch}/runtime ${scratch}/runtime/*)
list(SORT runtime)
set(expected LICENSE bin/ostrel.dll bin/vz.dll bin/vz.reduce.dll
    share/doc/ostrel/licences/gcc-runtime.txt share/doc/ostrel/licences/mingw-w64-runtime.txt
    share/doc/ostrel/third-party.md)
if(NOT runtime STREQUAL expected)
    message(FATAL_ERROR "the runtime zip holds: ${runtime}\nexpected: ${expected}")
endif()

set(sdk ${scratch}/sdk)
foreach(component runtime development)
    file(ARCHIVE_EXTRACT INPUT ${scratch}/package/ostrel-${VERSION}-win64-${component}.zip
        DESTINATION ${sdk})
endforeach()
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
