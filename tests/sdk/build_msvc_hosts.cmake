# Installs the SDK into a scratch folder and builds tests/sdk/msvc_host against it with the
# MSVC-ABI toolchain, as a Visual Studio host project would (find_package through
# CMAKE_PREFIX_PATH); the hosts go to HOSTS_DIR, beside the build's ostrel.dll.
include(${CMAKE_CURRENT_LIST_DIR}/sdk_script.cmake)
sdk_require(BUILD_DIR SOURCE_DIR VERSION HOSTS_DIR)
sdk_scratch(msvc-hosts)

sdk_run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${scratch}/sdk)
sdk_run(${CMAKE_COMMAND} -S ${SOURCE_DIR}/tests/sdk/msvc_host -B ${scratch}/build
    -DCMAKE_TOOLCHAIN_FILE=${SOURCE_DIR}/cmake/msvc-clang.cmake -DCMAKE_BUILD_TYPE=Release
    -DCMAKE_PREFIX_PATH=${scratch}/sdk -DOSTREL_VERSION=${VERSION}
    -DCMAKE_RUNTIME_OUTPUT_DIRECTORY=${HOSTS_DIR})
sdk_run(${CMAKE_COMMAND} --build ${scratch}/build)
