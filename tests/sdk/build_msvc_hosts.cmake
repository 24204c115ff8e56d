# Installs the SDK into a scratch folder and builds tests/sdk/msvc_host against it with the
# MSVC-ABI toolchain, as a Visual Studio host project would (find_package through
# CMAKE_PREFIX_PATH); the hosts go to HOSTS_DIR, beside the build's ostrel.dll.
foreach(var BUILD_DIR SOURCE_DIR VERSION HOSTS_DIR)
    if(NOT DEFINED ${var})
        message(FATAL_ERROR "${var} not set")
    endif()
endforeach()

set(scratch ${BUILD_DIR}/msvc-hosts)
file(REMOVE_RECURSE ${scratch})

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE out)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "failed: ${ARGN}\n${out}")
    endif()
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${scratch}/sdk)
run(${CMAKE_COMMAND} -S ${SOURCE_DIR}/tests/sdk/msvc_host -B ${scratch}/build
    -DCMAKE_TOOLCHAIN_FILE=${SOURCE_DIR}/cmake/msvc-clang.cmake -DCMAKE_BUILD_TYPE=Release
    -DCMAKE_PREFIX_PATH=${scratch}/sdk -DOSTREL_VERSION=${VERSION}
    -DCMAKE_RUNTIME_OUTPUT_DIRECTORY=${HOSTS_DIR})
run(${CMAKE_COMMAND} --build ${scratch}/build)
