# Packs the SDK into its zips and checks that there is one per component and that the runtime
# zip, which hosts ship, holds only the runtime; unpacks the runtime and development zips into
# one scratch folder, builds tests/sdk/host against it with find_package of exactly this version,
# and runs the host beside the SDK's DLLs under Wine. Then, with the simulator's zip unpacked
# there too, builds each program of the documents that comes with its CMakeLists.txt as the
# documents say, and runs it with the SDK's sample records: it must print what they show.
include(${CMAKE_CURRENT_LIST_DIR}/sdk_script.cmake)
sdk_require(BUILD_DIR SOURCE_DIR WINE_RUN CPACK VERSION COMPONENTS SNIPPETS_DIR)
sdk_scratch(sdk-check)

sdk_pack(sdk COMPONENTS runtime development simulator)
set(sdk ${scratch}/sdk)
file(GLOB zips RELATIVE ${scratch}/sdk-package ${scratch}/sdk-package/*.zip)
list(SORT zips)
string(REPLACE "," ";" components "${COMPONENTS}")
list(SORT components)
list(TRANSFORM components PREPEND ostrel-${VERSION}-win64- OUTPUT_VARIABLE expected)
list(TRANSFORM expected APPEND .zip)
if(NOT zips STREQUAL expected)
    message(FATAL_ERROR "zips: ${zips}\nexpected: ${expected}")
endif()

# What a host ships, and nothing that exists only for our tests.
file(ARCHIVE_EXTRACT INPUT ${scratch}/sdk-package/ostrel-${VERSION}-win64-runtime.zip
    DESTINATION ${scratch}/runtime)
file(GLOB_RECURSE runtime RELATIVE ${scratch}/runtime ${scratch}/runtime/*)
list(SORT runtime)
set(expected LICENSE bin/ostrel.dll bin/vz.dll bin/vz.reduce.dll
    share/doc/ostrel/licences/gcc-runtime.txt share/doc/ostrel/licences/mingw-w64-runtime.txt
    share/doc/ostrel/third-party.md)
if(NOT runtime STREQUAL expected)
    message(FATAL_ERROR "the runtime zip holds: ${runtime}\nexpected: ${expected}")
endif()

sdk_run(${CMAKE_COMMAND} -S ${SOURCE_DIR}/tests/sdk/host -B ${scratch}/host
    -DCMAKE_TOOLCHAIN_FILE=${SOURCE_DIR}/cmake/mingw-w64.cmake
    -DCMAKE_PREFIX_PATH=${sdk} -DOSTREL_VERSION=${VERSION} -DCMAKE_BUILD_TYPE=Release)
sdk_run(${CMAKE_COMMAND} --build ${scratch}/host)

file(GLOB dlls ${sdk}/bin/*.dll)
file(COPY ${dlls} DESTINATION ${scratch}/host)
sdk_run(${WINE_RUN} ${scratch}/host/host.exe)
if(NOT run_output MATCHES "calibration object answered")
    message(FATAL_ERROR "unexpected host output: ${run_output}")
endif()
message(STATUS "${run_output}")

file(GLOB projects ${SNIPPETS_DIR}/*/CMakeLists.txt)
if(NOT projects)
    message(FATAL_ERROR "no program of the documents in ${SNIPPETS_DIR} comes with a CMakeLists.txt")
endif()
foreach(project ${projects})
    get_filename_component(source ${project} DIRECTORY)
    get_filename_component(name ${source} NAME)
    set(build ${scratch}/${name})
    sdk_run(${CMAKE_COMMAND} -S ${source} -B ${build}
        -DCMAKE_TOOLCHAIN_FILE=${SOURCE_DIR}/cmake/mingw-w64.cmake
        -Dostrel_DIR=${sdk}/lib/cmake/ostrel -DCMAKE_BUILD_TYPE=Release)
    sdk_run(${CMAKE_COMMAND} --build ${build})
    file(COPY ${dlls} DESTINATION ${build})
    sdk_run(${WINE_RUN} ${build}/${name}.exe Z:${sdk}/share/ostrel/samples)
    string(REPLACE "\r" "" printed "${run_output}")
    file(READ ${source}/output.txt expected)
    if(NOT printed STREQUAL expected)
        message(FATAL_ERROR "${name} printed:\n${printed}\nThe document shows:\n${expected}")
    endif()
endforeach()


# The simulator finds the SDK's sample records from its own place, wherever it is run from.
sdk_run(${WINE_RUN} ${sdk}/bin/camsim.exe /Scene Z:${scratch}/scene.pgm Z:${scratch}/truth.pfm
    --width 64 --height 48)
if(NOT run_output MATCHES "^Scene 64x48: min " OR NOT EXISTS ${scratch}/scene.pgm)
    message(FATAL_ERROR "camsim /Scene in the SDK: ${run_output}")
endif()
